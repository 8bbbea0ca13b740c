// RTF files written from pages: their structure read directly, and their
// text read back through a word processor's own RTF reader when one is
// installed: in reading order, with Unicode intact and RTF's own control
// characters as plain text.

#include "TextSampleDocument.h"

#include "engine/export/RtfExporter.h"
#include "engine/export/RtfExporterObject.h"
#include "engine/render/PagesObject.h"

#include "support/ErrorCapture.h"
#include "support/TempDir.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::TempDir;

namespace {

// The depth of braces at the end, counting escaped braces as text; -1 when
// a closing brace comes without its opening one.
int braceBalance(const QByteArray &rtf) {
  int depth = 0;
  for (qsizetype index = 0; index < rtf.size(); ++index) {
    const char c = rtf[index];
    if (c == '\\')
      ++index; // the escaped character, or the first of a control word
    else if (c == '{')
      ++depth;
    else if (c == '}' && --depth < 0)
      return -1;
  }
  return depth;
}

// The document as text, converted by the word processor in its headless
// mode (UTF-8, its byte order mark dropped); an empty string when the
// conversion fails.
QString convertToText(const QString &soffice, const QString &rtfPath, const QString &outDir) {
  TempDir home;
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("HOME"), home.path());
  process.setProcessEnvironment(environment);
  process.start(soffice, {QStringLiteral("--headless"), QStringLiteral("--convert-to"), QStringLiteral("txt:Text"),
                          QStringLiteral("--outdir"), outDir, rtfPath});
  if (!process.waitForFinished(120000) || process.exitCode() != 0)
    return {};
  QByteArray text = test::readFile(QDir(outDir).filePath(QFileInfo(rtfPath).completeBaseName() + ".txt"));
  if (text.startsWith("\xEF\xBB\xBF"))
    text.remove(0, 3);
  return QString::fromUtf8(text);
}

class RtfExport : public ::testing::Test {
protected:
  TempDir dir_;
};

TEST_F(RtfExport, DocumentIsSevenBitRtfWithBalancedBraces) {
  const QByteArray rtf = RtfExporter().rtf(test::textSampleDocument());
  EXPECT_TRUE(rtf.startsWith("{\\rtf1")) << rtf.left(40).toStdString();
  EXPECT_EQ(braceBalance(rtf), 0);
  for (const char c : rtf)
    ASSERT_EQ(uchar(c) & 0x80, 0) << "non-ASCII byte in " << rtf.toStdString();
}

TEST_F(RtfExport, ControlCharactersAndUnicodeAreEscaped) {
  const QByteArray rtf = RtfExporter().rtf(test::textSampleDocument());
  EXPECT_TRUE(rtf.contains("\\{\\\\rtf\\} C:\\\\temp \"quoted\" 'single'")) << rtf.toStdString();
  EXPECT_TRUE(rtf.contains("\\u381?lu\\u357?ou\\u269?k\\u253?")) << "Žluťoučký as Unicode escapes";
  EXPECT_TRUE(rtf.contains("\\u917?\\u955?")) << "Greek capital epsilon and lambda";
  EXPECT_TRUE(rtf.contains("<b>Acme & Co</b>")) << "nothing to escape for RTF";
}

TEST_F(RtfExport, PaperFontsAndColoursComeFromTheDocument) {
  const QByteArray rtf = RtfExporter().rtf(test::textSampleDocument());
  // The paper of the first page; margins from the text nearest the edges.
  EXPECT_TRUE(rtf.contains("\\paperw11906\\paperh16838\\margl1440\\margr1440\\margt1440\\margb")) << rtf.toStdString();
  // The landscape second page starts a section of its own size.
  EXPECT_TRUE(rtf.contains("\\sect\\sectd\\sbkpage\\pgwsxn16838\\pghsxn11906\\lndscpsxn"));
  EXPECT_TRUE(rtf.contains("{\\fonttbl{\\f0\\fnil\\fcharset0 DejaVu Sans;}{\\f1\\fnil\\fcharset0 DejaVu Sans;}}"));
  EXPECT_TRUE(rtf.contains("{\\colortbl;\\red0\\green0\\blue0;\\red204\\green0\\blue0;}"));
  EXPECT_TRUE(rtf.contains("{\\f1\\fs24\\cf2\\b <b>Acme")) << "bold 12 point red";
  // The Czech run stands at 6000 twips, 4560 from the margin, after a tab.
  EXPECT_TRUE(rtf.contains("\\tx4560 {\\f0\\fs20\\cf1 \\u197?sa")) << rtf.toStdString();
  EXPECT_TRUE(rtf.contains("\\tab{\\f0\\fs20\\cf1 \\u381?lu"));
}

TEST_F(RtfExport, WordProcessorReadsTheTextInOrder) {
  const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
  if (soffice.isEmpty())
    GTEST_SKIP() << "soffice is needed to read RTF back";
  const QString path = dir_.file(QStringLiteral("report.rtf"));
  RtfExporter().exportDocument(test::textSampleDocument(), path);
  TempDir out;
  const QString text = convertToText(soffice, path, out.path());
  ASSERT_FALSE(text.isEmpty()) << "the conversion failed";

  qsizetype previous = -1;
  for (const QString &expected :
       {test::kSwedish, test::kCzech, test::kMarkup, test::kRtfLike, test::kGreek, test::kSecondPageEnd}) {
    const qsizetype at = text.indexOf(expected);
    ASSERT_GE(at, 0) << expected.toStdString() << " missing in\n" << text.toStdString();
    EXPECT_GT(at, previous) << expected.toStdString() << " out of order in\n" << text.toStdString();
    previous = at;
  }
  EXPECT_TRUE(text.contains(test::kSwedish + QLatin1Char('\t') + test::kCzech)) << "one line, parted by a tab";
}

TEST_F(RtfExport, MissingFolderOrNoPagesRaiseAndWriteNothing) {
  const QString missing = dir_.file(QStringLiteral("missing/report.rtf"));
  EXPECT_EQ(test::errorNumber([&] { RtfExporter().exportDocument(test::textSampleDocument(), missing); }),
            ErrorNumber::PathNotFound);
  const QString path = dir_.file(QStringLiteral("report.rtf"));
  EXPECT_EQ(test::errorNumber([&] { RtfExporter().exportDocument(PageDocument(), path); }), ErrorNumber::InvalidCall);
  EXPECT_TRUE(QDir(dir_.path()).isEmpty());
}

TEST_F(RtfExport, LateBoundExporterWritesToItsFileName) {
  auto exporter = std::make_shared<RtfExporterObject>();
  const QString path = dir_.file(QStringLiteral("late.rtf"));
  exporter->set(QStringLiteral("FileName"), Variant(path));
  auto pages = std::make_shared<PagesObject>(std::make_shared<PageDocument>(test::textSampleDocument()));
  exporter->invoke(QStringLiteral("Export"), {Variant(pages)});
  EXPECT_EQ(test::readFile(path), RtfExporter().rtf(test::textSampleDocument()));
}

} // namespace

// RTF files written from pages: their structure read directly, and their
// text read back through a word processor's own RTF reader when one is
// installed: in reading order, with Unicode intact and RTF's own control
// characters as plain text.

#include "OfficeConversion.h"
#include "TextSampleDocument.h"

#include "engine/export/RtfExporter.h"
#include "engine/export/RtfExporterObject.h"
#include "engine/render/PagesObject.h"

#include "support/ErrorCapture.h"
#include "support/PdfTools.h"
#include "support/TempDir.h"

#include <QDir>
#include <QRawFont>
#include <QRegularExpression>

#include <map>

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
QString convertToText(const QString &rtfPath, const QString &outDir) {
  QByteArray text = test::readFile(test::convertWithOffice(rtfPath, QStringLiteral("txt:Text"), outDir));
  if (text.startsWith("\xEF\xBB\xBF"))
    text.remove(0, 3);
  return QString::fromUtf8(text);
}

// A report of six pages as the engine lays them out: a title at the top,
// rows down to two thirds of the page and a footer with the page number at
// the foot, so that the footer's paragraph has much space above it.
PageDocument sixPageReport() {
  PageDocument document;
  const int body = document.internFont(PageFont{});
  PageFont titleFont;
  titleFont.bold = true;
  titleFont.pointSize = 14;
  const int title = document.internFont(titleFont);
  constexpr int kPages = 6;
  for (int number = 1; number <= kPages; ++number) {
    Page page(11906, 16838);
    page.addText({1134, 1134, 9000, 340}, QStringLiteral("Company list"), title);
    for (Twips y = 1800; y < 11000; y += 240) {
      page.addText({1134, y, 4000, 240}, QStringLiteral("Company %1").arg(y), body);
      page.addText({6000, y, 3000, 240}, QStringLiteral("Göteborg"), body);
    }
    page.addText({6734, 15800, 4000, 240}, QStringLiteral("Page %1 of %2").arg(number).arg(kPages), body, kBlack,
                 TextAlign::Right);
    document.append(page);
  }
  return document;
}

// The font table's entries: index to character set and family.
std::map<int, std::pair<int, QString>> fontTable(const QByteArray &rtf) {
  static const QRegularExpression entry(QStringLiteral(R"(\{\\f(\d+)\\fnil\\fcharset(\d+) ([^;]*);\})"));
  std::map<int, std::pair<int, QString>> table;
  for (const auto &match : entry.globalMatch(QString::fromLatin1(rtf)))
    table[match.captured(1).toInt()] = {match.captured(2).toInt(), match.captured(3)};
  return table;
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
  if (test::officeConverter().isEmpty())
    GTEST_SKIP() << "soffice is needed to read RTF back";
  const QString path = dir_.file(QStringLiteral("report.rtf"));
  RtfExporter().exportDocument(test::textSampleDocument(), path);
  TempDir out;
  const QString text = convertToText(path, out.path());
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

TEST_F(RtfExport, WordProcessorLaysOutAsManyPagesAsTheReportHasEachWithItsFooter) {
  if (test::officeConverter().isEmpty())
    GTEST_SKIP() << "soffice is needed to lay the RTF out";
  const QString path = dir_.file(QStringLiteral("pages.rtf"));
  const PageDocument document = sixPageReport();
  RtfExporter().exportDocument(document, path);
  const QString pdf = test::convertWithOffice(path, QStringLiteral("pdf"), dir_.path());
  ASSERT_FALSE(pdf.isEmpty());

  ASSERT_EQ(test::pdfInfoValue(pdf, QStringLiteral("Pages")).toInt(), document.pageCount());
  const QStringList pages = test::pdfPageTexts(pdf);
  for (int number = 1; number <= document.pageCount(); ++number) {
    const QString &text = pages.value(number - 1);
    EXPECT_TRUE(text.contains(QStringLiteral("Page %1 of").arg(number))) << number << ":\n" << text.toStdString();
    EXPECT_TRUE(text.trimmed().startsWith(QStringLiteral("Company list"))) << number << ":\n" << text.toStdString();
  }
}

TEST_F(RtfExport, EastAsianAndArabicTextNameFontsThatHaveThemAndTheWordProcessorTakesThem) {
  const struct {
    QString text;
    int charset;
    bool eastAsian;
  } samples[] = {
      {QStringLiteral("北京市朝阳区"), 134, true},
      {QStringLiteral("東京の会社"), 128, true},
      {QStringLiteral("서울 지점"), 129, true},
      {QStringLiteral("شركة القاهرة"), 178, false},
  };
  PageDocument document;
  document.setTitle(QStringLiteral("Kunder i Göteborg"));
  const int body = document.internFont(PageFont{});
  Page page(11906, 16838);
  Twips y = 1440;
  for (const auto &sample : samples) {
    page.addText({1440, y, 9000, 300}, QStringLiteral("Kund: ") + sample.text, body);
    y += 400;
  }
  document.append(page);
  const QByteArray rtf = RtfExporter().rtf(document);
  const auto table = fontTable(rtf);
  EXPECT_TRUE(rtf.contains("{\\info{\\title Kunder i G\\u246?teborg}}")) << rtf.toStdString();

  // Each run names for its script a font whose character set is the
  // script's and which has the characters.
  static const QRegularExpression runFonts(QStringLiteral(R"(\\rtlch\\af(\d+).*\\dbch\\af(\d+)\\loch\\f0)"));
  const QStringList lines = QString::fromLatin1(rtf).split(QLatin1Char('\n')).filter(QStringLiteral("Kund: "));
  ASSERT_EQ(lines.size(), 4) << rtf.toStdString();
  QStringList eastAsianFamilies;
  for (int i = 0; i < 4; ++i) {
    const auto match = runFonts.match(lines[i]);
    ASSERT_TRUE(match.hasMatch()) << lines[i].toStdString();
    const int named = match.captured(samples[i].eastAsian ? 2 : 1).toInt();
    ASSERT_TRUE(table.count(named)) << rtf.toStdString();
    const auto &[charset, family] = table.at(named);
    EXPECT_EQ(charset, samples[i].charset) << lines[i].toStdString();
    QFont font(family);
    font.setStyleStrategy(QFont::NoFontMerging);
    EXPECT_TRUE(QRawFont::fromFont(font).supportsCharacter(samples[i].text.front())) << family.toStdString();
    if (samples[i].eastAsian)
      eastAsianFamilies += family;
  }
  // The Latin text keeps the document's own font.
  EXPECT_EQ(table.at(0), std::make_pair(0, QStringLiteral("DejaVu Sans")));

  if (test::officeConverter().isEmpty())
    GTEST_SKIP() << "soffice is needed to read the RTF back";
  const QString path = dir_.file(QStringLiteral("scripts.rtf"));
  RtfExporter().exportDocument(document, path);
  const QString converted =
      QString::fromUtf8(test::readFile(test::convertWithOffice(path, QStringLiteral("fodt"), dir_.path())));
  for (const auto &sample : samples)
    EXPECT_TRUE(converted.contains(sample.text)) << sample.text.toStdString();
  for (const QString &family : eastAsianFamilies)
    EXPECT_TRUE(converted.contains(QStringLiteral("style:font-name-asian=\"%1\"").arg(family)))
        << family.toStdString() << " is not the East Asian font of any text";
  EXPECT_TRUE(converted.contains(QStringLiteral("<dc:title>Kunder i Göteborg</dc:title>")));
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

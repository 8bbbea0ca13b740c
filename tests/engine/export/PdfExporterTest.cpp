// PDF files written from pages and read back with pdftotext, pdfinfo and pdffonts, checked
// with qpdf and rendered with pdftoppm: text in reading order, every letter
// of text in any script, page sizes, embedded font subsets and the fonts
// that stand in for characters a font lacks, lines, shapes and images in
// their colours, the document's title, the warning for characters no font
// has, and what a failed export leaves behind.

#include "support/PdfTools.h"

#include "engine/export/PdfExporter.h"
#include "engine/export/TiffExporter.h"

#include "support/ErrorCapture.h"
#include "support/TempDir.h"

#include <QDir>
#include <QFontDatabase>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <functional>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::TempDir;

namespace {

constexpr Twips kA4Short = 11906;
constexpr Twips kA4Long = 16838;

QStringList *warningsSeen = nullptr;

void keepWarning(QtMsgType type, const QMessageLogContext &, const QString &message) {
  if (type == QtWarningMsg && warningsSeen)
    warningsSeen->append(message);
}

// Qt's warnings while it lives.
class Warnings {
public:
  Warnings() : previous_(qInstallMessageHandler(keepWarning)) { warningsSeen = &seen_; }
  ~Warnings() {
    qInstallMessageHandler(previous_);
    warningsSeen = nullptr;
  }
  Warnings(const Warnings &) = delete;
  Warnings &operator=(const Warnings &) = delete;

  // Those about characters without a glyph.
  QStringList aboutGlyphs() const { return seen_.filter(QStringLiteral("no glyph")); }

private:
  QStringList seen_;
  QtMessageHandler previous_;
};

class PdfExport : public ::testing::Test {
protected:
  void SetUp() override {
    if (!test::pdfToolsAvailable())
      GTEST_SKIP() << "pdftotext, pdfinfo and pdffonts are needed";
  }

  // Three pages: A4 portrait with names in two columns and a line below
  // them, A4 landscape in bold, A4 portrait in italic serif.
  // Three pages; change may add to each page before it goes into the
  // document.
  static PageDocument threePages(const std::function<void(int, Page &)> &change = {}) {
    PageDocument document;
    const auto append = [&](Page &page) {
      if (change)
        change(document.pageCount(), page);
      document.append(page);
    };
    const int body = document.internFont(PageFont{});
    PageFont boldFont;
    boldFont.bold = true;
    boldFont.pointSize = 14;
    const int bold = document.internFont(boldFont);
    PageFont serifFont;
    serifFont.family = QStringLiteral("DejaVu Serif");
    serifFont.italic = true;
    const int serif = document.internFont(serifFont);

    Page first(kA4Short, kA4Long);
    first.addText({6000, 1440, 4000, 300}, QStringLiteral("Žluťoučký kůň"), body); // painted first, stands right
    first.addText({1440, 1440, 4000, 300}, QStringLiteral("Åsa Öberg"), body);
    first.addText({1440, 2880, 4000, 300}, QStringLiteral("Ελληνικά"), body);
    first.addLine({1440, 3300, 10000, 3300, Stroke{}});
    append(first);

    Page second(kA4Long, kA4Short);
    second.addText({1440, 1440, 14000, 400}, QStringLiteral("Landscape summary"), bold, kBlack, TextAlign::Center);
    append(second);

    Page third(kA4Short, kA4Long);
    third.addText({1440, 1440, 9000, 300}, QStringLiteral("Third page ends the report"), serif, kBlack,
                  TextAlign::Right);
    append(third);
    return document;
  }

  TempDir dir_;
};

TEST_F(PdfExport, TextComesBackInReadingOrderPageByPage) {
  const QString path = dir_.file(QStringLiteral("report.pdf"));
  PdfExporter().exportDocument(threePages(), path);

  const QStringList pages = test::pdfPageTexts(path);
  ASSERT_EQ(pages.size(), 3) << pages.join(QStringLiteral("\n---\n")).toStdString();
  const QString &first = pages[0];
  const qsizetype name = first.indexOf(QStringLiteral("Åsa Öberg"));
  const qsizetype horse = first.indexOf(QStringLiteral("Žluťoučký kůň"));
  const qsizetype greek = first.indexOf(QStringLiteral("Ελληνικά"));
  ASSERT_GE(name, 0) << first.toStdString();
  ASSERT_GE(horse, 0) << first.toStdString();
  ASSERT_GE(greek, 0) << first.toStdString();
  EXPECT_LT(name, horse);                                                  // left column first
  EXPECT_FALSE(first.mid(name, horse - name).contains(QLatin1Char('\n'))); // on the same line
  EXPECT_LT(horse, greek);                                                 // the lower line after
  EXPECT_TRUE(first.mid(horse, greek - horse).contains(QLatin1Char('\n')));
  EXPECT_TRUE(pages[1].contains(QStringLiteral("Landscape summary"))) << pages[1].toStdString();
  EXPECT_TRUE(pages[2].contains(QStringLiteral("Third page ends the report"))) << pages[2].toStdString();
}

TEST_F(PdfExport, EachPageHasItsOwnSizeAndTheDocumentItsTitle) {
  const QString path = dir_.file(QStringLiteral("sizes.pdf"));
  PdfExporter exporter;
  exporter.setTitle(QStringLiteral("Kunder i Göteborg"));
  exporter.setCreator(QStringLiteral("Kordel tests"));
  exporter.exportDocument(threePages(), path);

  EXPECT_EQ(test::pdfInfoValue(path, QStringLiteral("Pages")), QStringLiteral("3"));
  EXPECT_EQ(test::pdfInfoValue(path, QStringLiteral("Title")), QStringLiteral("Kunder i Göteborg"));
  EXPECT_EQ(test::pdfInfoValue(path, QStringLiteral("Creator")), QStringLiteral("Kordel tests"));
  const std::vector<QSizeF> sizes = test::pdfPageSizes(path);
  ASSERT_EQ(sizes.size(), 3u);
  const auto rounded = [](const QSizeF &size) {
    return QSize(int(std::lround(size.width())), int(std::lround(size.height())));
  };
  EXPECT_EQ(rounded(sizes[0]), QSize(595, 842));
  EXPECT_EQ(rounded(sizes[1]), QSize(842, 595));
  EXPECT_EQ(rounded(sizes[2]), QSize(595, 842));
}

TEST_F(PdfExport, TheTitleIsTheReportsNameAndTheCreatorIsNamed) {
  const QString path = dir_.file(QStringLiteral("titled.pdf"));
  PageDocument document = threePages();
  document.setTitle(QStringLiteral("Kunder i Göteborg"));
  PdfExporter().exportDocument(document, path);
  EXPECT_EQ(test::pdfInfoValue(path, QStringLiteral("Title")), QStringLiteral("Kunder i Göteborg"));
  EXPECT_FALSE(test::pdfInfoValue(path, QStringLiteral("Creator")).isEmpty());
}

TEST_F(PdfExport, EastAsianTextIsShownInAnInstalledFontThatHasItWithoutWarning) {
  ASSERT_FALSE(QFontDatabase::families(QFontDatabase::Japanese).isEmpty())
      << "no font for Chinese, Japanese and Korean text is installed (fonts-noto-cjk)";
  const QString text = QStringLiteral("株式会社東京 서울 こんにちは");
  PageDocument document;
  const int body = document.internFont(PageFont{});
  Page page(kA4Short, kA4Long);
  page.addText({1440, 1440, 9000, 300}, QStringLiteral("Kund: ") + text, body);
  document.append(page);
  const QString path = dir_.file(QStringLiteral("cjk.pdf"));
  const Warnings warnings;
  PdfExporter().exportDocument(document, path);

  EXPECT_TRUE(test::pdfPageTexts(path).value(0).contains(text)) << test::pdfPageTexts(path).value(0).toStdString();
  QStringList standIns;
  for (const test::PdfFont &font : test::pdfFonts(path)) {
    EXPECT_TRUE(font.embedded) << font.name.toStdString();
    if (!font.name.contains(QLatin1String("DejaVu")))
      standIns += font.name;
  }
  EXPECT_FALSE(standIns.isEmpty()) << "no font but the layout's own shows the text";
  EXPECT_TRUE(warnings.aboutGlyphs().isEmpty()) << warnings.aboutGlyphs().join(u'\n').toStdString();
}

TEST_F(PdfExport, EveryLetterOfTextInAnyScriptComesBackAsWritten) {
  // Ligatures, accents, scripts that join their letters or read right to
  // left, and ideographs that fonts also hold as radicals.
  const QStringList texts = {
      QStringLiteral("Räksmörgås åt Öberg"),
      QStringLiteral("Größe über Straße"),
      QStringLiteral("Zażółć gęślą jaźń"),
      QStringLiteral("Ελληνικά γράμματα"),
      QStringLiteral("Съешь же ещё этих булок"),
      QStringLiteral("北京市朝阳区的公司"),
      QStringLiteral("東京都の株式会社です"),
      QStringLiteral("مرحبا بالعالم"),
      QStringLiteral("שלום עולם"),
      QStringLiteral("Qualified office flow"),
      QStringLiteral("affluent fjord baffle ffi"),
  };
  PageDocument document;
  const int body = document.internFont(PageFont{});
  PageFont boldFont;
  boldFont.bold = true;
  const int bold = document.internFont(boldFont);
  Page page(kA4Short, kA4Long);
  Twips y = 1440;
  for (const QString &text : texts) {
    page.addText({1440, y, 9000, 300}, text, body);
    page.addText({1440, y + 400, 9000, 300}, text, bold, kBlack, TextAlign::Right);
    y += 900;
  }
  document.append(page);
  const QString path = dir_.file(QStringLiteral("scripts.pdf"));
  PdfExporter().exportDocument(document, path);

  const QStringList lines =
      test::pdfPageTexts(path).value(0).normalized(QString::NormalizationForm_C).split(QLatin1Char('\n'));
  for (const QString &text : texts) {
    const QString expected = text.normalized(QString::NormalizationForm_C);
    EXPECT_EQ(lines.filter(expected).size(), 2) << expected.toStdString() << " in:\n"
                                                << lines.join(QLatin1Char('\n')).toStdString();
  }
  const std::vector<test::PdfFont> fonts = test::pdfFonts(path);
  EXPECT_GE(fonts.size(), 3u); // the two fonts and at least one stand-in for the ideographs
  for (const test::PdfFont &font : fonts) {
    EXPECT_TRUE(font.embedded) << font.name.toStdString();
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^[A-Z]{6}\\+")).match(font.name).hasMatch())
        << font.name.toStdString();
  }
  test::expectSoundPdfStructure(path);
}

TEST_F(PdfExport, LinesShapesAndImagesShowInTheirColours) {
  PageDocument document;
  QImage blue(4, 4, QImage::Format_ARGB32);
  blue.fill(QColor(0, 0, 255));
  const int image = document.internImage(blue);
  Page page(2880, 2880);                                                          // 144 points square
  page.addLine({288, 720, 2592, 720, Stroke{}});                                  // a hairline at y 36
  page.addLine({288, 1080, 2592, 1080, Stroke{0xff00aa00, 40, LineStyle::Dash}}); // dashed at y 54
  page.addRect({{288, 1440, 1152, 576}, 0xffcc0000, std::nullopt, 0});            // red, x 14 to 72
  page.addImage({1728, 1440, 864, 576}, image);                                   // blue, x 86 to 130
  page.addEllipse({{288, 2160, 1152, 576}, 0xff00aa00, Stroke{}});                // green, around (36, 122)
  page.addRect({{1728, 2160, 864, 576}, 0x40000000, Stroke{kBlack, 60}, 288});    // pale grey, rounded
  document.append(page);
  const QString path = dir_.file(QStringLiteral("shapes.pdf"));
  PdfExporter().exportDocument(document, path);
  const QImage rendered = test::renderedPdfPage(path, 1, 72, dir_.path());
  if (rendered.isNull())
    GTEST_SKIP() << "pdftoppm is needed";
  ASSERT_EQ(rendered.size(), QSize(144, 144));

  const auto darkest = [&](int y) {
    int gray = 255;
    for (int dy = -1; dy <= 1; ++dy)
      gray = std::min(gray, qGray(rendered.pixel(72, y + dy)));
    return gray;
  };
  EXPECT_LT(darkest(36), 128) << "the hairline is missing";
  int dashes = 0; // changes between ink and paper along the dashed line
  for (int x = 16; x < 128; ++x)
    dashes += (qGreen(rendered.pixel(x, 54)) < 250) != (qGreen(rendered.pixel(x + 1, 54)) < 250);
  EXPECT_GE(dashes, 6);
  EXPECT_EQ(QColor(rendered.pixel(43, 86)), QColor(0xcc, 0, 0));
  EXPECT_EQ(QColor(rendered.pixel(108, 86)), QColor(0, 0, 255));
  EXPECT_EQ(QColor(rendered.pixel(36, 122)), QColor(0, 0xaa, 0));
  EXPECT_EQ(QColor(rendered.pixel(15, 109)), QColor(Qt::white)); // outside the ellipse, inside its box
  const QColor pale(rendered.pixel(108, 122));
  EXPECT_GT(pale.lightness(), 150) << "the fill's alpha is lost";
  EXPECT_LT(pale.lightness(), 230);
  EXPECT_EQ(QColor(rendered.pixel(87, 109)), QColor(Qt::white)); // cut off by the rounded corner
}

TEST_F(PdfExport, CharactersNoInstalledFontHasAreCountedInOneWarningAnExport) {
  // Code points that Unicode has not assigned have no glyph in any font.
  // Beyond the first plane too (two UTF-16 units each): U+1FFFD has no
  // glyph, the mathematical bold A (U+1D400) has one in a fallback font.
  const QString unassigned = QString(QChar(0x0378)) + QChar(0x0379) + QString::fromUcs4(U"\U0001FFFD");
  PageDocument document = threePages([&](int index, Page &page) {
    if (index == 0)
      page.addText({1440, 5000, 4000, 300}, QStringLiteral("Code ") + unassigned + QString::fromUcs4(U"\U0001D400"), 0);
    if (index == 2)
      page.addText({1440, 5000, 4000, 300}, QString(QChar(0x0378)), 0);
  });
  document.setTitle(QStringLiteral("Price list"));

  const Warnings warnings;
  PdfExporter().exportDocument(document, dir_.file(QStringLiteral("boxes.pdf")));
  TiffExporter().exportDocument(document, dir_.file(QStringLiteral("boxes.tif")));
  const QStringList seen = warnings.aboutGlyphs();
  ASSERT_EQ(seen.size(), 2) << seen.join(u'\n').toStdString();
  for (const QString &warning : seen) {
    EXPECT_TRUE(warning.contains(QLatin1String("4 character"))) << warning.toStdString();
    EXPECT_TRUE(warning.contains(QLatin1String("U+0378, U+0379, U+1FFFD"))) << warning.toStdString();
    EXPECT_TRUE(warning.contains(QLatin1String("\"Price list\""))) << warning.toStdString();
  }

  // Pages without them give no warning.
  const Warnings again;
  PdfExporter().exportPages(document, dir_.file(QStringLiteral("second.pdf")), 1, 1);
  EXPECT_TRUE(again.aboutGlyphs().isEmpty()) << again.aboutGlyphs().join(u'\n').toStdString();
}

TEST_F(PdfExport, FontsAreEmbedded) {
  const QString path = dir_.file(QStringLiteral("fonts.pdf"));
  PdfExporter().exportDocument(threePages(), path);
  const std::vector<test::PdfFont> fonts = test::pdfFonts(path);
  ASSERT_GE(fonts.size(), 3u); // plain, bold and serif italic
  bool serif = false;
  for (const test::PdfFont &font : fonts) {
    EXPECT_TRUE(font.embedded) << font.name.toStdString();
    // Subsets of the glyphs used, named with their six letter tag.
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^[A-Z]{6}\\+")).match(font.name).hasMatch())
        << font.name.toStdString();
    EXPECT_TRUE(font.name.contains(QStringLiteral("DejaVu"))) << font.name.toStdString();
    serif = serif || font.name.contains(QStringLiteral("Serif"));
  }
  EXPECT_TRUE(serif);
}

TEST_F(PdfExport, ARangeWritesOnlyItsPages) {
  const QString path = dir_.file(QStringLiteral("range.pdf"));
  const PageDocument document = threePages();
  PdfExporter().exportPages(document, path, 1, 2);
  const QStringList pages = test::pdfPageTexts(path);
  ASSERT_EQ(pages.size(), 2);
  EXPECT_TRUE(pages[0].contains(QStringLiteral("Landscape summary")));
  EXPECT_FALSE(pages.join(QString()).contains(QStringLiteral("Åsa")));
  ASSERT_EQ(test::pdfPageSizes(path).size(), 2u);
  EXPECT_GT(test::pdfPageSizes(path)[0].width(), test::pdfPageSizes(path)[0].height());

  for (const auto &[first, last] : {std::pair{-1, 1}, std::pair{0, 3}, std::pair{2, 1}})
    EXPECT_EQ(
        test::errorNumber([&, first = first, last = last] { PdfExporter().exportPages(document, path, first, last); }),
        ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(test::errorNumber([&] { PdfExporter().exportDocument(PageDocument(), dir_.file("empty.pdf")); }),
            ErrorNumber::InvalidCall);
  EXPECT_FALSE(QFile::exists(dir_.file(QStringLiteral("empty.pdf"))));
}

TEST_F(PdfExport, AMissingFolderRaises76AndLeavesNothing) {
  const QString missing = dir_.file(QStringLiteral("no such folder"));
  const QString path = missing + QStringLiteral("/report.pdf");
  const Error error = test::errorOf([&] { PdfExporter().exportDocument(threePages(), path); });
  EXPECT_EQ(error.number(), ErrorNumber::PathNotFound);
  EXPECT_TRUE(error.description().contains(missing)) << error.what();
  EXPECT_FALSE(QFileInfo::exists(missing));
  EXPECT_TRUE(QDir(dir_.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden).isEmpty());
}

TEST_F(PdfExport, ATargetThatCannotBeWrittenRaises70) {
  const QString folder = dir_.file(QStringLiteral("report.pdf"));
  ASSERT_TRUE(QDir().mkdir(folder));
  const Error error = test::errorOf([&] { PdfExporter().exportDocument(threePages(), folder); });
  EXPECT_EQ(error.number(), ErrorNumber::PermissionDenied);
  EXPECT_TRUE(error.description().contains(folder)) << error.what();
  EXPECT_TRUE(QFileInfo(folder).isDir());
}

TEST_F(PdfExport, AFailureOnTheWayKeepsTheEarlierFileAndLeavesNoPartOfTheNewOne) {
  const QString path = dir_.file(QStringLiteral("report.pdf"));
  ASSERT_TRUE(test::writeFile(path, "the earlier export"));
  const PageDocument document = threePages();
  // A child process exports under a file size limit the PDF cannot fit
  // (its fonts alone are larger): a full disk, as the export sees it.
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const rlimit fileSize{8192, 8192};
    ::setrlimit(RLIMIT_FSIZE, &fileSize);
    ::signal(SIGXFSZ, SIG_IGN); // a write beyond the limit fails instead of ending the process
    const int number = test::errorNumber([&] { PdfExporter().exportDocument(document, path); });
    ::_exit(number == ErrorNumber::PermissionDenied ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the export fails with error 70";
  EXPECT_EQ(test::readFile(path), QByteArray("the earlier export"));
  EXPECT_EQ(QDir(dir_.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
            QStringList{QStringLiteral("report.pdf")});
}

} // namespace

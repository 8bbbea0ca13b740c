// HTML files written from pages and read back as XML: text escaped so that
// none of it becomes markup, pages sized as the document's pages, pictures
// written beside the page and referred to, and what a failed export leaves.

#include "TextSampleDocument.h"

#include "engine/export/HtmlExporter.h"
#include "engine/export/HtmlExporterObject.h"
#include "engine/model/LayoutReport.h"
#include "engine/render/PagesObject.h"

#include "support/ErrorCapture.h"
#include "support/TempDir.h"

#include <QDir>
#include <QImage>
#include <QRawFont>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <map>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::TempDir;

namespace {

// What the XML reader finds in an HTML file.
struct HtmlContent {
  QString title;
  QStringList elementNames;
  QStringList pageStyles; // the style of each page block
  QStringList texts;      // the text of each text block, in file order
  QStringList imageSources;
  QString error; // empty when the file is well-formed
};

HtmlContent readHtml(const QByteArray &bytes) {
  HtmlContent content;
  QXmlStreamReader xml(bytes);
  while (!xml.atEnd()) {
    if (xml.readNext() != QXmlStreamReader::StartElement)
      continue;
    const QString name = xml.name().toString();
    content.elementNames += name;
    const QXmlStreamAttributes attributes = xml.attributes();
    const QString cssClass = attributes.value(QLatin1String("class")).toString();
    if (name == QLatin1String("title"))
      content.title = xml.readElementText();
    else if (name == QLatin1String("img"))
      content.imageSources += attributes.value(QLatin1String("src")).toString();
    else if (cssClass == QLatin1String("page"))
      content.pageStyles += attributes.value(QLatin1String("style")).toString();
    else if (cssClass.startsWith(QLatin1String("t ")))
      content.texts += xml.readElementText();
  }
  if (xml.hasError())
    content.error = xml.errorString() + QStringLiteral(" at line %1").arg(xml.lineNumber());
  return content;
}

class HtmlExport : public ::testing::Test {
protected:
  HtmlContent exportSample(const QString &baseName = QStringLiteral("report")) {
    exporter_.exportDocument(test::textSampleDocument(), dir_.path(), baseName);
    const QByteArray bytes = test::readFile(dir_.file(HtmlExporter::htmlFileName(baseName)));
    EXPECT_FALSE(bytes.isEmpty());
    return readHtml(bytes);
  }

  QStringList filesInFolder() const { return QDir(dir_.path()).entryList(QDir::Files, QDir::Name); }

  HtmlExporter exporter_;
  TempDir dir_;
};

TEST_F(HtmlExport, TextWithMarkupCharactersStaysTextAndUnicodeIsKept) {
  const HtmlContent html = exportSample();
  const QByteArray bytes = test::readFile(dir_.file(QStringLiteral("report.html")));
  ASSERT_TRUE(html.error.isEmpty()) << html.error.toStdString();
  EXPECT_FALSE(html.elementNames.contains(QLatin1String("b"))) << "text became a tag";
  EXPECT_FALSE(bytes.contains("<b>"));
  EXPECT_TRUE(bytes.contains("&lt;b&gt;Acme &amp; Co&lt;/b&gt;"));
  EXPECT_TRUE(bytes.contains("&quot;quoted&quot; &#39;single&#39;"));
  EXPECT_FALSE(bytes.startsWith("\xEF\xBB\xBF")) << "no byte order mark";
  EXPECT_TRUE(bytes.contains(test::kCzech.toUtf8())) << "UTF-8 as it is, not as references";
  EXPECT_EQ(html.texts, (QStringList{test::kCzech, test::kSwedish, test::kMarkup, test::kRtfLike, test::kGreek,
                                     test::kSecondPageEnd}))
      << "every run in painting order, read back as the same text";
}

TEST_F(HtmlExport, EachPageBlockHasThePageSizeInPoints) {
  const HtmlContent html = exportSample();
  ASSERT_TRUE(html.error.isEmpty()) << html.error.toStdString();
  ASSERT_EQ(html.pageStyles.size(), 2);
  EXPECT_EQ(html.pageStyles[0], QLatin1String("width:595.3pt;height:841.9pt"));
  EXPECT_EQ(html.pageStyles[1], QLatin1String("width:841.9pt;height:595.3pt"));
}

TEST_F(HtmlExport, ItemsStandWhereTheyStandOnThePage) {
  exportSample();
  const QString html = QString::fromUtf8(test::readFile(dir_.file(QStringLiteral("report.html"))));
  // The Swedish run at 1440, 1440 twips, 4000 wide, 300 high.
  EXPECT_TRUE(html.contains(
      QLatin1String("left:72pt;top:72pt;width:200pt;height:15pt;color:#000000;text-align:left\">") + test::kSwedish))
      << html.toStdString();
  EXPECT_TRUE(html.contains(QLatin1String("color:#cc0000")));
  EXPECT_TRUE(html.contains(QLatin1String("text-align:center\">") + test::kGreek));
  EXPECT_TRUE(html.contains(QLatin1String("border:1pt dashed #000080;border-radius:5pt")));
  EXPECT_TRUE(html.contains(QLatin1String("left:230pt;top:165pt;width:72pt;height:72pt;border:1px solid "
                                          "#000000;border-radius:50%")));
  EXPECT_TRUE(html.contains(QLatin1String("left:72pt;top:155pt;width:450pt;height:0;border-top:1px solid #000000\"")))
      << "a horizontal line is not turned";
  EXPECT_TRUE(
      html.contains(QLatin1String(".f1{font-family:\"DejaVu Sans\",sans-serif;font-size:12pt;font-weight:bold;")));
}

TEST_F(HtmlExport, PicturesAreWrittenBesideTheFileAndReferred) {
  const HtmlContent html = exportSample();
  ASSERT_EQ(html.imageSources, QStringList{QStringLiteral("report_1.png")});
  EXPECT_EQ(filesInFolder(), (QStringList{QStringLiteral("report.html"), QStringLiteral("report_1.png")}));
  const QImage written(dir_.file(QStringLiteral("report_1.png")), "PNG");
  ASSERT_FALSE(written.isNull());
  EXPECT_EQ(written.size(), QSize(40, 20));
  EXPECT_EQ(written.pixel(5, 5), QColor(Qt::blue).rgb());
  EXPECT_EQ(written.pixel(35, 5), QColor(Qt::red).rgb());
}

TEST_F(HtmlExport, TitleIsTheReportsNameEscapedAndDefaultsToTheBaseName) {
  PageDocument document = test::textSampleDocument();
  EXPECT_EQ(readHtml(exporter_.html(document, QStringLiteral("report"))).title, QLatin1String("report"));
  document.setTitle(QStringLiteral("Kunder i Göteborg"));
  EXPECT_EQ(readHtml(exporter_.html(document, QStringLiteral("report"))).title, QStringLiteral("Kunder i Göteborg"));
  exporter_.setTitle(QStringLiteral("Sales <Q1> & \"more\""));
  EXPECT_EQ(readHtml(exporter_.html(document, QStringLiteral("report"))).title, QLatin1String("Sales <Q1> & \"more\""));
}

TEST_F(HtmlExport, FontListsGoOnWithFontsThatHaveTheCharactersAndEndWithAGenericKind) {
  PageDocument document;
  const int sans = document.internFont(PageFont{});
  PageFont serifFont;
  serifFont.family = QStringLiteral("DejaVu Serif");
  const int serif = document.internFont(serifFont);
  PageFont monoFont;
  monoFont.family = QStringLiteral("DejaVu Sans Mono");
  const int mono = document.internFont(monoFont);
  const QString eastAsian = QStringLiteral("株式会社");
  Page page(11906, 16838);
  page.addText({1440, 1440, 6000, 300}, QStringLiteral("Kund: ") + eastAsian, sans);
  page.addText({1440, 2000, 6000, 300}, QStringLiteral("Göteborg"), serif);
  page.addText({1440, 2600, 6000, 300}, QStringLiteral("Nr 42"), mono);
  document.append(page);
  const QString html = QString::fromUtf8(exporter_.html(document, QStringLiteral("fonts")));

  static const QRegularExpression rule(QStringLiteral(R"(\.f(\d)\{font-family:([^;]*);)"));
  std::map<int, QStringList> families;
  for (const auto &match : rule.globalMatch(html)) {
    QStringList list = match.captured(2).split(QLatin1Char(','));
    for (QString &family : list)
      family.remove(QLatin1Char('"'));
    families[match.captured(1).toInt()] = list;
  }
  ASSERT_EQ(families.size(), 3u) << html.toStdString();
  const QStringList &sansList = families[sans];
  ASSERT_EQ(sansList.size(), 3) << sansList.join(u',').toStdString();
  EXPECT_EQ(sansList.front(), QLatin1String("DejaVu Sans"));
  QFont standIn(sansList[1]);
  standIn.setStyleStrategy(QFont::NoFontMerging);
  EXPECT_TRUE(QRawFont::fromFont(standIn).supportsCharacter(eastAsian.front())) << sansList[1].toStdString();
  EXPECT_EQ(sansList.back(), QLatin1String("sans-serif"));
  EXPECT_EQ(families[serif], (QStringList{QStringLiteral("DejaVu Serif"), QStringLiteral("serif")}));
  EXPECT_EQ(families[mono], (QStringList{QStringLiteral("DejaVu Sans Mono"), QStringLiteral("monospace")}));
}

TEST_F(HtmlExport, BaseNameWithAnHtmlEndingNamesTheFileItself) {
  const HtmlContent html = exportSample(QStringLiteral("Sales 2024.htm"));
  EXPECT_TRUE(html.error.isEmpty());
  EXPECT_EQ(html.imageSources, QStringList{QStringLiteral("Sales%202024_1.png")});
  EXPECT_EQ(filesInFolder(), (QStringList{QStringLiteral("Sales 2024.htm"), QStringLiteral("Sales 2024_1.png")}));
}

TEST_F(HtmlExport, MissingFolderOrNoPagesRaiseAndWriteNothing) {
  const QString missing = dir_.file(QStringLiteral("missing"));
  EXPECT_EQ(test::errorNumber([&] { exporter_.exportDocument(test::textSampleDocument(), missing, "report"); }),
            ErrorNumber::PathNotFound);
  EXPECT_FALSE(QFileInfo::exists(missing));
  EXPECT_EQ(test::errorNumber([&] { exporter_.exportDocument(test::textSampleDocument(), QString(), "report"); }),
            ErrorNumber::PathNotFound);
  EXPECT_EQ(test::errorNumber([&] { exporter_.exportDocument(PageDocument(), dir_.path(), "report"); }),
            ErrorNumber::InvalidCall);
  EXPECT_TRUE(filesInFolder().isEmpty());
}

TEST_F(HtmlExport, AFileInTheWayOfAPictureLeavesTheEarlierPageAsItWas) {
  ASSERT_TRUE(test::writeFile(dir_.file(QStringLiteral("report.html")), "earlier"));
  ASSERT_TRUE(QDir(dir_.path()).mkdir(QStringLiteral("report_1.png")));
  EXPECT_EQ(test::errorNumber([&] { exportSample(); }), ErrorNumber::PermissionDenied);
  EXPECT_EQ(test::readFile(dir_.file(QStringLiteral("report.html"))), "earlier");
}

TEST_F(HtmlExport, LateBoundExporterWritesTheReportsPages) {
  auto exporter = std::make_shared<HtmlExporterObject>();
  exporter->set(QStringLiteral("FileNamePrefix"), Variant("report.html"));
  exporter->set(QStringLiteral("HtmlOutputPath"), Variant(dir_.path() + QLatin1Char('/')));
  exporter->set(QStringLiteral("Title"), Variant("Monthly"));
  auto pages = std::make_shared<PagesObject>(std::make_shared<PageDocument>(test::textSampleDocument()));
  EXPECT_EQ(pages->get(QStringLiteral("Count")).toLong(), 2);
  exporter->invoke(QStringLiteral("Export"), {Variant(pages)});
  EXPECT_EQ(readHtml(test::readFile(dir_.file(QStringLiteral("report.html")))).title, QLatin1String("Monthly"));

  EXPECT_EQ(test::errorNumber([&] { exporter->invoke(QStringLiteral("Export"), {Variant("pages")}); }),
            ErrorNumber::ObjectRequired);
  EXPECT_EQ(test::errorNumber([&] { exporter->invoke(QStringLiteral("Export"), {Variant(exporter)}); }),
            ErrorNumber::TypeMismatch);
  EXPECT_EQ(test::errorNumber([&] { exporter->invoke(QStringLiteral("Export"), {Variant::nothing()}); }),
            ErrorNumber::ObjectNotSet);

  // The pages of a report that has not run yet: none to export.
  auto report = LayoutReport::create();
  const Variant reportPages = report->get(QStringLiteral("Pages"));
  ASSERT_TRUE(objectAs<PagesObject>(reportPages));
  EXPECT_EQ(objectAs<PagesObject>(reportPages)->count(), 0);
  EXPECT_EQ(test::errorNumber([&] { exporter->invoke(QStringLiteral("Export"), {reportPages}); }),
            ErrorNumber::InvalidCall);
}

} // namespace

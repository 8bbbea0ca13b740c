// Layout files: a layout with every section type and control kind saved,
// loaded into a fresh report and saved again; hand-written files with
// attributes left out; files that are refused without touching the report;
// and the report's late-bound LoadLayout and SaveLayout.

#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "support/ErrorCapture.h"
#include "support/TempDir.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cmath>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::errorOf;
using kordel::test::TempDir;

namespace {

const QString kHostile = QStringLiteral("Line one\r\nLine two\ttabbed, \"double\" and 'single' quotes, <b>&amp; & ]]> "
                                        "Åsa Öberg i Göteborg, Příliš žluťoučký kůň, Ελληνικά γράμματα\nlast\rline  ");

const QString kScript = QStringLiteral("Sub Detail_Format()\r\n"
                                       "  s = \"]]>\" & \"<![CDATA[\" & \"]]]]>>\"\r\n"
                                       "  t = \"Ελληνικά\"\r\r"
                                       "End Sub\n]]");

QImage testImage() {
  QImage image(7, 5, QImage::Format_ARGB32);
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      image.setPixel(x, y, qRgba(x * 36, y * 50, 200 - x * 20, 40 + x * 30));
  return image;
}

template <class T> std::shared_ptr<T> addControl(Section &section, const char *name) {
  auto control = std::make_shared<T>();
  control->name = QLatin1String(name);
  section.controls()->append(control);
  return control;
}

// A layout that sets every value of the format away from its default.
std::shared_ptr<LayoutReport> fullLayout() {
  auto report = LayoutReport::create();
  report->scriptLanguage = QStringLiteral("JScript");
  report->script = kScript;
  report->printWidth = 10000.5f;
  report->documentName = kHostile;
  report->caption = QStringLiteral("Försäljning & vinst");
  PageSettings &page = *report->pageSettings();
  page.leftMargin = 720;
  page.topMargin = 0.1f;
  page.rightMargin = 1000.25f;
  page.bottomMargin = 0;
  page.orientation = 2;
  page.paperWidth = 16838;
  page.paperHeight = 11906;

  auto &sections = *report->sections();
  const std::pair<const char *, SectionType> order[] = {
      {"ReportHeader", SectionType::ReportHeader}, {"PageHeader", SectionType::PageHeader},
      {"GroupHeader1", SectionType::GroupHeader},  {"Detail", SectionType::Detail},
      {"GroupFooter1", SectionType::GroupFooter},  {"PageFooter", SectionType::PageFooter},
      {"ReportFooter", SectionType::ReportFooter},
  };
  for (const auto &[name, type] : order)
    sections.add(QLatin1String(name), sections.count(), type, 300 + 10 * sections.count());
  Section &group = *sections.at(2);
  group.dataField = QStringLiteral("Kund\tnr");
  group.keepTogether = true;
  group.newPage = NewPage::BeforeAfter;
  group.backStyle = 1;
  group.backColor = QColor(0xfe, 0xdc, 0xba);
  group.script = QStringLiteral("Sub GroupHeader1_Format\n  ' ]]> \nEnd Sub");
  Section &footer = *sections.at(5);
  footer.visible = false;
  footer.canGrow = false;
  footer.canShrink = true;

  Section &detail = *sections.at(3);
  detail.script = QStringLiteral("Sub Detail_Format\n  n = n + 1 ' <count> & more\nEnd Sub");
  auto label = addControl<Label>(detail, "Label1");
  label->caption = kHostile;
  label->left = 0.1f;
  label->top = 1.0f / 3.0f;
  label->width = 1440;
  label->height = 12345.678f;
  label->visible = false;
  label->tag = QStringLiteral("tag \"with\" <brackets>");
  label->foreColor = QColor(0x01, 0x02, 0x03);
  label->backColor = QColor(0xa0, 0xb0, 0xc0);
  label->backStyle = 1;
  label->alignment = Alignment::Center;
  label->borderStyle = 1;
  label->borderColor = QColor(0x10, 0x20, 0x30);
  QFont font(QStringLiteral("DejaVu Serif"));
  font.setPointSizeF(11.5);
  font.setBold(true);
  font.setItalic(true);
  font.setUnderline(true);
  font.setStrikeOut(true);
  label->font->setFont(font);

  auto field = addControl<Field>(detail, "Field1");
  field->text = QStringLiteral("Tab\there");
  field->dataField = QStringLiteral("=Amount * 1.25 & \"kr\"");
  field->outputFormat = QStringLiteral("#,##0.00 \"kr\"");
  field->canGrow = false;
  field->canShrink = true;
  field->countKind = 2;
  field->runningKind = 1;
  field->fieldMode = 3;
  field->summaryGroup = QStringLiteral("GroupHeader1");
  field->alignment = Alignment::Right;

  auto sub = addControl<SubReport>(*sections.at(4), "SubReport1");
  sub->reportName = QStringLiteral("Orderrader");

  auto line = addControl<Line>(*sections.at(1), "Line1");
  line->x1 = 10;
  line->y1 = 20.5f;
  line->x2 = 9000;
  line->y2 = -1;
  line->lineWeight = 2.5f;
  line->lineStyle = 2;
  line->lineColor = QColor(0x77, 0x00, 0x11);

  auto shape = addControl<Shape>(*sections.at(0), "Shape1");
  shape->shape = 2;
  shape->lineWeight = 3;
  shape->lineColor = QColor(0x00, 0x80, 0xff);

  auto picture = addControl<Picture>(*sections.at(6), "Picture1");
  picture->image = testImage();
  picture->sizeMode = 1;
  addControl<Picture>(*sections.at(6), "Picture2"); // without an image
  return report;
}

void expectSameFont(const FontObject &a, const FontObject &b) {
  EXPECT_EQ(a.font().family(), b.font().family());
  EXPECT_EQ(a.font().pointSizeF(), b.font().pointSizeF());
  EXPECT_EQ(a.font().bold(), b.font().bold());
  EXPECT_EQ(a.font().italic(), b.font().italic());
  EXPECT_EQ(a.font().underline(), b.font().underline());
  EXPECT_EQ(a.font().strikeOut(), b.font().strikeOut());
}

void expectSameKindValues(const Control &a, const Control &b) {
  switch (a.kind()) {
  case ControlKind::Label:
    EXPECT_EQ(static_cast<const Label &>(a).caption, static_cast<const Label &>(b).caption);
    break;
  case ControlKind::Field: {
    const auto &x = static_cast<const Field &>(a);
    const auto &y = static_cast<const Field &>(b);
    EXPECT_EQ(x.text, y.text);
    EXPECT_EQ(x.dataField, y.dataField);
    EXPECT_EQ(x.outputFormat, y.outputFormat);
    EXPECT_EQ(x.canGrow, y.canGrow);
    EXPECT_EQ(x.canShrink, y.canShrink);
    EXPECT_EQ(x.countKind, y.countKind);
    EXPECT_EQ(x.runningKind, y.runningKind);
    EXPECT_EQ(x.fieldMode, y.fieldMode);
    EXPECT_EQ(x.summaryGroup, y.summaryGroup);
    break;
  }
  case ControlKind::SubReport:
    EXPECT_EQ(static_cast<const SubReport &>(a).reportName, static_cast<const SubReport &>(b).reportName);
    break;
  case ControlKind::Line: {
    const auto &x = static_cast<const Line &>(a);
    const auto &y = static_cast<const Line &>(b);
    EXPECT_EQ(x.x1, y.x1);
    EXPECT_EQ(x.y1, y.y1);
    EXPECT_EQ(x.x2, y.x2);
    EXPECT_EQ(x.y2, y.y2);
    EXPECT_EQ(x.lineWeight, y.lineWeight);
    EXPECT_EQ(x.lineStyle, y.lineStyle);
    EXPECT_EQ(x.lineColor, y.lineColor);
    break;
  }
  case ControlKind::Shape: {
    const auto &x = static_cast<const Shape &>(a);
    const auto &y = static_cast<const Shape &>(b);
    EXPECT_EQ(x.shape, y.shape);
    EXPECT_EQ(x.lineWeight, y.lineWeight);
    EXPECT_EQ(x.lineColor, y.lineColor);
    break;
  }
  case ControlKind::Picture: {
    const auto &x = static_cast<const Picture &>(a);
    const auto &y = static_cast<const Picture &>(b);
    EXPECT_EQ(x.sizeMode, y.sizeMode);
    EXPECT_EQ(x.image.isNull(), y.image.isNull());
    if (!x.image.isNull()) {
      EXPECT_EQ(x.image.convertToFormat(QImage::Format_ARGB32), y.image.convertToFormat(QImage::Format_ARGB32));
    }
    break;
  }
  }
}

void expectSameControl(const Control &a, const Control &b) {
  SCOPED_TRACE(a.name.toStdString());
  ASSERT_EQ(a.kind(), b.kind());
  EXPECT_EQ(a.name, b.name);
  EXPECT_EQ(a.left, b.left);
  EXPECT_EQ(a.top, b.top);
  EXPECT_EQ(a.width, b.width);
  EXPECT_EQ(a.height, b.height);
  EXPECT_EQ(a.visible, b.visible);
  EXPECT_EQ(a.tag, b.tag);
  EXPECT_EQ(a.foreColor, b.foreColor);
  EXPECT_EQ(a.backColor, b.backColor);
  EXPECT_EQ(a.backStyle, b.backStyle);
  EXPECT_EQ(a.alignment, b.alignment);
  EXPECT_EQ(a.borderStyle, b.borderStyle);
  EXPECT_EQ(a.borderColor, b.borderColor);
  expectSameFont(*a.font, *b.font);
  expectSameKindValues(a, b);
}

void expectSameLayout(const LayoutReport &a, const LayoutReport &b) {
  EXPECT_EQ(a.scriptLanguage, b.scriptLanguage);
  EXPECT_EQ(a.script, b.script);
  EXPECT_EQ(a.printWidth, b.printWidth);
  EXPECT_EQ(a.documentName, b.documentName);
  EXPECT_EQ(a.caption, b.caption);
  const PageSettings &p = *a.pageSettings();
  const PageSettings &q = *b.pageSettings();
  EXPECT_EQ(p.leftMargin, q.leftMargin);
  EXPECT_EQ(p.topMargin, q.topMargin);
  EXPECT_EQ(p.rightMargin, q.rightMargin);
  EXPECT_EQ(p.bottomMargin, q.bottomMargin);
  EXPECT_EQ(p.orientation, q.orientation);
  EXPECT_EQ(p.paperWidth, q.paperWidth);
  EXPECT_EQ(p.paperHeight, q.paperHeight);

  ASSERT_EQ(a.sections()->count(), b.sections()->count());
  for (int i = 0; i < a.sections()->count(); ++i) {
    const Section &s = *a.sections()->at(i);
    const Section &t = *b.sections()->at(i);
    SCOPED_TRACE(s.name.toStdString());
    EXPECT_EQ(s.name, t.name);
    EXPECT_EQ(s.type(), t.type());
    EXPECT_EQ(s.height, t.height);
    EXPECT_EQ(s.visible, t.visible);
    EXPECT_EQ(s.backStyle, t.backStyle);
    EXPECT_EQ(s.backColor, t.backColor);
    EXPECT_EQ(s.dataField, t.dataField);
    EXPECT_EQ(s.script, t.script);
    EXPECT_EQ(s.canGrow, t.canGrow);
    EXPECT_EQ(s.canShrink, t.canShrink);
    EXPECT_EQ(s.keepTogether, t.keepTogether);
    EXPECT_EQ(s.newPage, t.newPage);
    ASSERT_EQ(s.controls()->count(), t.controls()->count());
    for (int j = 0; j < s.controls()->count(); ++j)
      expectSameControl(*s.controls()->at(j), *t.controls()->at(j));
  }
}

// ---- Saving and loading again ----

TEST(LayoutRoundTrip, SavingWhatWasLoadedGivesTheSameBytesAndValues) {
  const auto original = fullLayout();
  const QByteArray saved = saveLayout(*original);

  const auto loaded = LayoutReport::create();
  loadLayout(*loaded, saved);
  expectSameLayout(*original, *loaded);
  EXPECT_EQ(saveLayout(*loaded), saved);

  // The loaded controls belong to the loaded sections, which belong to the report.
  const auto detail = loaded->detail();
  ASSERT_TRUE(detail);
  EXPECT_EQ(detail->report(), loaded);
  EXPECT_EQ(detail->controls()->at(0)->section(), detail);
  EXPECT_TRUE(loaded->hasControlNamed(QStringLiteral("Picture2")));
}

TEST(LayoutRoundTrip, OutputIsCanonicalIndentedXml) {
  const auto report = fullLayout();
  const QByteArray saved = saveLayout(*report);
  EXPECT_TRUE(saved.startsWith("<?xml version=\"1.0\"?>\n<Layout Version=\"1\">\n  <Report ScriptLanguage=\"JScript\" "
                               "PrintWidth=\"10000.5\" DocumentName=\""));
  EXPECT_TRUE(saved.endsWith("  </Section>\n</Layout>\n"));
  EXPECT_TRUE(saved.contains("\n    <PageSettings LeftMargin=\"720\" TopMargin=\"0.1\" RightMargin=\"1000.25\" "
                             "BottomMargin=\"0\" Orientation=\"2\" PaperWidth=\"16838\" PaperHeight=\"11906\"/>\n"));
  // A section without controls or script, every attribute in order.
  EXPECT_TRUE(saved.contains("\n  <Section Name=\"PageFooter\" Type=\"3\" Height=\"350\" Visible=\"0\" BackStyle=\"0\" "
                             "BackColor=\"#ffffff\" DataField=\"\" CanGrow=\"0\" CanShrink=\"1\" KeepTogether=\"0\" "
                             "NewPage=\"0\" RepeatStyle=\"0\"/>\n"));
  EXPECT_TRUE(
      saved.contains("\n    <Field Name=\"Field1\" Left=\"0\" Top=\"0\" Width=\"1440\" Height=\"270\" Visible=\"1\" "
                     "Tag=\"\" ForeColor=\"#000000\" BackColor=\"#ffffff\" BackStyle=\"0\" Alignment=\"1\" "
                     "BorderStyle=\"0\" BorderColor=\"#000000\" Text=\"Tab&#9;here\" "));
  EXPECT_TRUE(
      saved.contains("\n      <Font Name=\"DejaVu Serif\" Size=\"11.5\" Bold=\"1\" Italic=\"1\" Underline=\"1\" "
                     "Strikethrough=\"1\"/>\n    </Label>\n"));
  // A script is one CDATA section, or text where it holds what CDATA cannot.
  EXPECT_TRUE(saved.contains("<Script><![CDATA[Sub Detail_Format\n  n = n + 1 ' <count> & more\nEnd Sub]]></Script>"));
  EXPECT_TRUE(saved.contains("<Script>Sub GroupHeader1_Format\n  ' ]]&gt; \nEnd Sub</Script>"));
  EXPECT_TRUE(saved.contains("<Script>Sub Detail_Format()&#13;\n"));
  EXPECT_TRUE(saved.contains("Ελληνικά")) << "text is UTF-8, not character references";
}

TEST(LayoutRoundTrip, EveryScriptIsOneNodeHoldingAllOfIt) {
  // Whoever checks a script reads the first child of its element: that
  // must be the whole script, whatever it holds.
  const auto report = fullLayout();
  report->script = kScript + QStringLiteral("\rSet sh = CreateObject(\"WScript.Shell\")\r\n");
  const auto document = XmlDocument::create();
  document->load(saveLayout(*report));
  const auto scripts = document->selectNodes(QStringLiteral("//Script"));
  ASSERT_EQ(scripts->length(), 3);
  const QString expected[] = {report->script, report->sections()->at(2)->script, report->sections()->at(3)->script};
  for (int i = 0; i < scripts->length(); ++i) {
    EXPECT_EQ(scripts->item(i)->childNodes()->length(), 1);
    EXPECT_EQ(scripts->item(i)->firstChild()->text(), expected[i]);
  }
}

TEST(LayoutRoundTrip, AdjacentCDataSectionsAreOneScript) {
  const QByteArray file = "<Layout Version=\"1\"><Report><Script><![CDATA[x = 1]]><![CDATA[ : Run]]></Script>"
                          "</Report></Layout>";
  const auto document = XmlDocument::create();
  document->load(file);
  EXPECT_EQ(document->selectNodes(QStringLiteral("//Script"))->item(0)->childNodes()->length(), 1);
  auto report = LayoutReport::create();
  loadLayout(*report, file);
  EXPECT_EQ(report->script, "x = 1 : Run");
}

TEST(LayoutRoundTrip, LoadingReplacesTheLayoutButKeepsFieldsAndNamedItems) {
  auto report = LayoutReport::create();
  report->sections()->add(QStringLiteral("Old"), 0, SectionType::Detail, 100);
  addControl<Label>(*report->sections()->at(0), "Label1");
  report->fields()->add(QStringLiteral("Amount"))->value = Variant(42);
  const auto named = LayoutReport::create();
  report->addNamedItem(QStringLiteral("Helper"), ObjectRef(named));

  const auto source = fullLayout();
  loadLayout(*report, saveLayout(*source));
  expectSameLayout(*source, *report);
  EXPECT_FALSE(report->sections()->find(QStringLiteral("Old")));
  ASSERT_EQ(report->fields()->count(), 1);
  EXPECT_EQ(report->fields()->find(QStringLiteral("Amount"))->value, Variant(42));
  ASSERT_EQ(report->namedItems().size(), 1u);
  EXPECT_EQ(report->namedItems()[0].second.get(), named.get());
}

TEST(LayoutRoundTrip, HandWrittenFilesTakeDefaultsForWhatTheyLeaveOut) {
  const QByteArray file = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- written by hand -->
<Layout Version="1">
  <Report Caption="Kvartal"/>
  <Section Name="Detail" Type="6">
    <Script><![CDATA[Sub Detail_Format
End Sub]]></Script>
    <Field Name="Amount" DataField="Belopp"/>
    <Picture Name="Logo">
      <Image>
        iVBORw0KGgoAAAANSUhEUgAAAAIAAAABCAIAAAB7QOjdAAAADUlEQVR4
        nGP4zwAE/wEHAAH/4iOeWQAAAABJRU5ErkJggg==
      </Image>
    </Picture>
  </Section>
</Layout>
)";
  auto report = LayoutReport::create();
  report->caption = QStringLiteral("Set before loading");
  report->documentName = QStringLiteral("Invoices");
  loadLayout(*report, file);
  EXPECT_EQ(report->caption, "Kvartal");
  EXPECT_EQ(report->documentName, "Invoices") << "a name the layout leaves out stays as the caller set it";
  EXPECT_EQ(report->scriptLanguage, "VBScript");
  EXPECT_EQ(report->printWidth, 9360);
  EXPECT_TRUE(report->script.isEmpty());
  EXPECT_EQ(report->pageSettings()->leftMargin, 1440);
  EXPECT_EQ(report->pageSettings()->paperHeight, 16838);
  ASSERT_EQ(report->sections()->count(), 1);
  const Section &detail = *report->sections()->at(0);
  EXPECT_EQ(detail.type(), SectionType::Detail);
  EXPECT_EQ(detail.height, 360);
  EXPECT_TRUE(detail.canGrow);
  EXPECT_EQ(detail.script, "Sub Detail_Format\nEnd Sub");
  ASSERT_EQ(detail.controls()->count(), 2);
  const auto &field = static_cast<const Field &>(*detail.controls()->at(0));
  EXPECT_EQ(field.dataField, "Belopp");
  EXPECT_EQ(field.width, 1440);
  EXPECT_EQ(field.height, 270);
  EXPECT_TRUE(field.canGrow);
  EXPECT_EQ(field.foreColor, QColor(Qt::black));
  EXPECT_EQ(field.font->font().family(), "DejaVu Sans");
  EXPECT_EQ(field.font->font().pointSizeF(), 10);
  const auto &picture = static_cast<const Picture &>(*detail.controls()->at(1));
  EXPECT_EQ(picture.sizeMode, 2);
  ASSERT_EQ(picture.image.size(), QSize(2, 1));
  EXPECT_EQ(picture.image.pixel(0, 0), qRgb(255, 0, 0));
  EXPECT_EQ(picture.image.pixel(1, 0), qRgb(0, 0, 255));

  // Saved, the file takes its canonical form, which then stays.
  const QByteArray canonical = saveLayout(*report);
  const auto again = LayoutReport::create();
  loadLayout(*again, canonical);
  EXPECT_EQ(saveLayout(*again), canonical);
}

// ---- Refused files ----

struct RefusedFile {
  const char *why;
  QByteArray bytes;
  const char *named; // what the description must name
};

QByteArray layoutWith(const QByteArray &sections, const QByteArray &version = "1") {
  return "<Layout Version=\"" + version + "\">\n  <Report/>\n" + sections + "</Layout>\n";
}

const RefusedFile kRefusedFiles[] = {
    {"not XML", "Kund;Belopp\n1;2\n", "Line 1"},
    {"XML cut short", "<Layout Version=\"1\">\n  <Report/>\n  <Section Type=\"6\">", "Line 3"},
    {"empty", "", "empty"},
    {"another root", "<Report Version=\"1\"/>", "root element is <Report>"},
    {"no version", "<Layout><Report/></Layout>", "no Version"},
    {"version not a number", layoutWith("", "one"), "\"one\""},
    {"version from a newer engine", layoutWith("", "2"), "newer version"},
    {"version zero", layoutWith("", "0"), "Version 0"},
    {"attribute on the root", "<Layout Version=\"1\" Author=\"x\"><Report/></Layout>", "Author"},
    {"no report", "<Layout Version=\"1\"/>", "no <Report>"},
    {"two reports", layoutWith("  <Report/>\n"), "twice"},
    {"unknown element", layoutWith("  <Band Type=\"6\"/>\n"), "<Band>"},
    {"unknown control", layoutWith("  <Section Name=\"D\" Type=\"6\"><Chart Name=\"C\"/></Section>\n"),
     "<Chart Name=\"C\"> in <Section Name=\"D\">"},
    {"unknown attribute", layoutWith("  <Section Name=\"D\" Type=\"6\"><Field Name=\"F\" Colour=\"1\"/></Section>\n"),
     "Colour"},
    {"unknown report attribute", "<Layout Version=\"1\"><Report Title=\"x\"/></Layout>", "Title"},
    {"length not a number",
     layoutWith("  <Section Name=\"D\" Type=\"6\"><Label Name=\"L\" Left=\"12px\"/></Section>\n"), "Left is \"12px\""},
    {"boolean spelt out", layoutWith("  <Section Name=\"D\" Type=\"6\" Visible=\"true\"/>\n"), "Visible"},
    {"colour by name", layoutWith("  <Section Name=\"D\" Type=\"6\"><Line Name=\"L\" LineColor=\"red\"/></Section>\n"),
     "LineColor"},
    {"page setting not a number", "<Layout Version=\"1\"><Report><PageSettings TopMargin=\"\"/></Report></Layout>",
     "TopMargin"},
    {"font size not a number",
     layoutWith("  <Section Name=\"D\" Type=\"6\"><Label Name=\"L\"><Font Size=\"big\"/></Label></Section>\n"), "Size"},
    {"section type 7", layoutWith("  <Section Name=\"D\" Type=\"7\"/>\n"), "Type is 7"},
    {"section without type", layoutWith("  <Section Name=\"D\"/>\n"), "no Type"},
    {"alignment out of range",
     layoutWith("  <Section Name=\"D\" Type=\"6\"><Field Name=\"F\" Alignment=\"3\"/></Section>\n"), "Alignment"},
    {"same section name twice",
     layoutWith("  <Section Name=\"Detail\" Type=\"6\"/>\n  <Section Name=\"DETAIL\" Type=\"2\"/>\n"),
     "section named \"DETAIL\""},
    {"same control name in two sections",
     layoutWith("  <Section Name=\"A\" Type=\"2\"><Label Name=\"Total\"/></Section>\n"
                "  <Section Name=\"B\" Type=\"6\"><Field Name=\"total\"/></Section>\n"),
     "control named \"total\""},
    {"image not base64",
     layoutWith(
         "  <Section Name=\"D\" Type=\"6\"><Picture Name=\"P\"><Image>not*base64!</Image></Picture></Section>\n"),
     "<Image> in <Picture Name=\"P\">"},
    {"image not a PNG",
     layoutWith(
         "  <Section Name=\"D\" Type=\"6\"><Picture Name=\"P\"><Image>aGVsbG8gd29ybGQ=</Image></Picture></Section>\n"),
     "PNG"},
    {"image on a label",
     layoutWith("  <Section Name=\"D\" Type=\"6\"><Label Name=\"L\"><Image>aGVsbG8=</Image></Label></Section>\n"),
     "<Image>"},
    {"text between elements", layoutWith("  <Section Name=\"D\" Type=\"6\">stray</Section>\n"), "stray"},
    {"element in a script", layoutWith("  <Section Name=\"D\" Type=\"6\"><Script>x<b/></Script></Section>\n"), "<b>"},
    {"two scripts", layoutWith("  <Section Name=\"D\" Type=\"6\"><Script>a</Script><Script>b</Script></Section>\n"),
     "twice"},
    // A script in pieces could be checked in part: it is refused however it
    // is split. (Adjacent CDATA sections are one node to the parser.)
    {"script of text and CDATA",
     layoutWith("  <Section Name=\"D\" Type=\"6\"><Script>\n  <![CDATA[x = 1]]>\n</Script></Section>\n"),
     "text, a CDATA section, text"},
    {"script around a comment",
     layoutWith("  <Section Name=\"D\" Type=\"6\"><Script>x = 1<!-- note -->Run</Script></Section>\n"),
     "text, a comment, text"},
    {"report script around a processing instruction",
     "<Layout Version=\"1\"><Report><Script>x<?pi y?>z</Script></Report></Layout>", "a processing instruction"},
    {"script made of an entity",
     "<!DOCTYPE Layout [<!ENTITY run \"Run\">]>\n<Layout "
     "Version=\"1\"><Report><Script>&run;</Script></Report></Layout>",
     "Document type declarations"},
};

class RefusedLayout : public ::testing::TestWithParam<RefusedFile> {};

TEST_P(RefusedLayout, RaisesInvalidFormatAndLeavesTheReportAsItWas) {
  const RefusedFile &file = GetParam();
  const auto report = fullLayout();
  report->fields()->add(QStringLiteral("Amount"));
  const QByteArray before = saveLayout(*report);
  const auto detail = report->detail();

  const Error error = errorOf([&] { loadLayout(*report, file.bytes); });
  EXPECT_EQ(error.number(), ErrorNumber::InvalidFileFormat) << error.description().toStdString();
  EXPECT_TRUE(error.description().contains(QString::fromUtf8(file.named)))
      << "\"" << error.description().toStdString() << "\" should name " << file.named;

  EXPECT_EQ(saveLayout(*report), before);
  EXPECT_EQ(report->detail(), detail) << "the same section objects";
  EXPECT_EQ(report->scriptLanguage, "JScript");
  EXPECT_EQ(report->pageSettings()->orientation, 2);
  EXPECT_EQ(report->fields()->count(), 1);
}

INSTANTIATE_TEST_SUITE_P(LayoutFormat, RefusedLayout, ::testing::ValuesIn(kRefusedFiles),
                         [](const ::testing::TestParamInfo<RefusedFile> &info) {
                           std::string name;
                           for (const char c : std::string(info.param.why))
                             if (std::isalnum(static_cast<unsigned char>(c)))
                               name += c;
                           return name;
                         });

TEST(LayoutSaving, TextsXmlCannotHoldAndEndlessNumbersAreRefusedNamingTheControl) {
  const auto report = fullLayout();
  auto label = std::static_pointer_cast<Label>(report->detail()->controls()->at(0));
  label->caption = QStringLiteral("bell \x07");
  Error error = errorOf([&] { saveLayout(*report); });
  EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(error.description().contains("<Label Name=\"Label1\"> in <Section Name=\"Detail\">"))
      << error.description().toStdString();

  label->caption.clear();
  report->sections()->at(1)->controls()->at(0)->width = std::nanf("");
  error = errorOf([&] { saveLayout(*report); });
  EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(error.description().contains("Width")) << error.description().toStdString();
}

// ---- Late-bound LoadLayout and SaveLayout ----

TEST(LayoutMembers, SaveLayoutFillsTheByRefArgumentAndLoadLayoutTakesBytesOrText) {
  const auto report = fullLayout();
  Args args{Variant(QString()), Variant(2), Variant()};
  const Variant result = report->call(QStringLiteral("SaveLayout"), args);
  ASSERT_TRUE(args[2].isByteArray());
  EXPECT_EQ(args[2].rawBytes(), saveLayout(*report));
  EXPECT_EQ(result, args[2]);

  const auto fromBytes = LayoutReport::create();
  fromBytes->invoke(QStringLiteral("LoadLayout"), {args[2]});
  expectSameLayout(*report, *fromBytes);

  const auto fromText = LayoutReport::create();
  fromText->invoke(QStringLiteral("LoadLayout"), {Variant(QString::fromUtf8(args[2].rawBytes()))});
  expectSameLayout(*report, *fromText);

  EXPECT_EQ(errorOf([&] {
              report->invoke(QStringLiteral("SaveLayout"), {Variant(QString()), Variant(1)});
            }).number(),
            ErrorNumber::InvalidCall);
  EXPECT_EQ(errorOf([&] { fromText->invoke(QStringLiteral("LoadLayout"), {Variant("<Layout/>")}); }).number(),
            ErrorNumber::InvalidFileFormat);
  expectSameLayout(*report, *fromText);
}

TEST(LayoutMembers, SaveLayoutWithAPathReplacesTheFileWhole) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("rapport.layout"));
  ASSERT_TRUE(test::writeFile(path, QByteArray(100000, 'x')));
  const auto report = fullLayout();
  EXPECT_TRUE(report->invoke(QStringLiteral("SaveLayout"), {Variant(path), Variant(2)}).isEmpty());
  EXPECT_EQ(test::readFile(path), saveLayout(*report));
  EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("rapport.layout")})
      << "no temporary file stays behind";

  const QString missing = dir.file(QStringLiteral("no/such/folder/rapport.layout"));
  EXPECT_EQ(errorOf([&] {
              report->invoke(QStringLiteral("SaveLayout"), {Variant(missing), Variant(2)});
            }).number(),
            ErrorNumber::PathNotFound);
  EXPECT_EQ(errorOf([&] {
              report->invoke(QStringLiteral("SaveLayout"), {Variant(path), Variant(3)});
            }).number(),
            ErrorNumber::InvalidCall);
  EXPECT_EQ(test::readFile(path), saveLayout(*report));
}

} // namespace

// Layouts built in code and run over real rows: banded order, groups and
// their summaries, page X of Y, growing text, scripts in both languages,
// hidden sections, nested sub reports, script errors, an empty data set,
// and the pages read back from a PDF.

#include "engine/export/HtmlExporter.h"
#include "engine/export/PdfExporter.h"
#include "engine/export/TextExporter.h"
#include "engine/export/XlsExporter.h"
#include "engine/format/LayoutFormat.h"
#include <QFile>
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/render/PageDocument.h"

#include "support/TempDir.h"
#include "support/XlsReader.h"

#include "../export/OfficeConversion.h"

#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <map>

using namespace kordel;
using namespace kordel::engine;

namespace {

using RowValues = std::map<QString, Variant>;

// The event sink of a run: it declares the unbound fields and hands out
// rows as the add-in's run-time objects do.
class RowSource : public Object {
public:
  RowSource(std::shared_ptr<LayoutReport> report, std::vector<RowValues> rows)
      : report_(std::move(report)), rows_(std::move(rows)) {}

  std::vector<QString> events;
  std::function<void()> onReportStart;

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<RowSource>("ActiveReport_DataInitialize",
                          [](RowSource &s, Args &) {
                            s.events.push_back("DataInitialize");
                            s.next_ = 0;
                            if (!s.rows_.empty())
                              for (const auto &[name, value] : s.rows_.front())
                                s.report_->fields()->add(name);
                            return Variant();
                          }),
        method<RowSource>("ActiveReport_FetchData",
                          [](RowSource &s, Args &a) {
                            if (s.next_ >= s.rows_.size())
                              return Variant(); // eof stays True
                            for (const auto &[name, value] : s.rows_[s.next_])
                              s.report_->fields()->add(name)->value = value;
                            ++s.next_;
                            a[0] = Variant(false);
                            return Variant();
                          }),
        method<RowSource>("ActiveReport_ReportStart",
                          [](RowSource &s, Args &) {
                            s.events.push_back("ReportStart");
                            if (s.onReportStart)
                              s.onReportStart();
                            return Variant();
                          }),
        method<RowSource>("ActiveReport_PageStart",
                          [](RowSource &s, Args &) {
                            s.events.push_back("PageStart");
                            return Variant();
                          }),
        method<RowSource>("ActiveReport_ReportEnd",
                          [](RowSource &s, Args &) {
                            s.events.push_back("ReportEnd");
                            return Variant();
                          }),
    }};
    return table;
  }

private:
  std::shared_ptr<LayoutReport> report_;
  std::vector<RowValues> rows_;
  std::size_t next_ = 0;
};

std::shared_ptr<Field> addField(Section &section, const QString &dataField, float left, float width) {
  auto field = std::static_pointer_cast<Field>(section.controls()->add("DDActiveReports2.Field"));
  field->dataField = dataField;
  field->left = left;
  field->width = width;
  field->canGrow = false;
  return field;
}

std::shared_ptr<Label> addLabel(Section &section, const QString &caption, float left, float width) {
  auto label = std::static_pointer_cast<Label>(section.controls()->add("DDActiveReports2.Label"));
  label->caption = caption;
  label->left = left;
  label->width = width;
  return label;
}

// The lines of a page: the texts of its runs, top to bottom, left to right,
// runs on one line joined by a blank.
QStringList pageLines(const PageDocument &document, int index) {
  std::map<std::pair<int, int>, QString> runs;
  const Page page = document.page(index);
  for (const PageItem &item : page.items())
    if (const auto *run = std::get_if<TextRun>(&item))
      runs[{run->box.y, run->box.x}] += page.text(*run);
  QStringList lines;
  int lastY = -1;
  for (const auto &[place, text] : runs) {
    if (place.first != lastY)
      lines << text;
    else
      lines.last() += u' ' + text;
    lastY = place.first;
  }
  return lines;
}

QStringList allLines(const PageDocument &document) {
  QStringList lines;
  for (int i = 0; i < document.pageCount(); ++i)
    lines << pageLines(document, i);
  return lines;
}

std::vector<RowValues> customers(int count) {
  static const char *cities[] = {"Lund", "Malmö", "Ystad"};
  std::vector<RowValues> rows;
  for (int i = 0; i < count; ++i)
    rows.push_back({{"city", Variant(cities[i * 3 / count])},
                    {"name", Variant(QStringLiteral("Customer %1").arg(i + 1, 3, 10, QChar('0')))},
                    {"amount", Variant(i + 1)}});
  return rows;
}

// A list of customers grouped by city with page X of Y, counts per city
// and a total.
std::shared_ptr<LayoutReport> customerList() {
  auto report = LayoutReport::create();
  auto &sections = *report->sections();
  auto &reportHeader = *sections.add("ReportHeader", 0, SectionType::ReportHeader, 400);
  auto &pageHeader = *sections.add("PageHeader", 1, SectionType::PageHeader, 400);
  auto &groupHeader = *sections.add("GroupHeader1", 2, SectionType::GroupHeader, 300);
  auto &detail = *sections.add("Detail", 3, SectionType::Detail, 300);
  auto &groupFooter = *sections.add("GroupFooter1", 4, SectionType::GroupFooter, 300);
  auto &pageFooter = *sections.add("PageFooter", 5, SectionType::PageFooter, 300);
  auto &reportFooter = *sections.add("ReportFooter", 6, SectionType::ReportFooter, 300);
  addLabel(reportHeader, "Customer list", 0, 4000);
  addLabel(pageHeader, "Name", 0, 3000);
  groupHeader.dataField = "city";
  addField(groupHeader, "city", 0, 3000);
  addField(detail, "name", 0, 3000);
  addField(detail, "amount", 3500, 1500);
  addLabel(groupFooter, "Customers:", 0, 2000);
  auto count = addField(groupFooter, "name", 2100, 1000);
  count->countKind = 2;
  count->summaryGroup = "GroupHeader1";
  addLabel(pageFooter, "Page", 0, 700);
  auto number = addField(pageFooter, "", 750, 600);
  number->countKind = 4;
  number->runningKind = 2;
  addLabel(pageFooter, "of", 1400, 400);
  auto total = addField(pageFooter, "", 1850, 600);
  total->countKind = 4;
  addLabel(reportFooter, "Total", 0, 1000);
  auto sum = addField(reportFooter, "amount", 1100, 1500);
  sum->countKind = 1;
  sum->outputFormat = "#,##0.00";
  return report;
}

TEST(ReportRunTest, AGroupedListPrintsInBandedOrderWithPageXOfYAndSummaries) {
  auto report = customerList();
  auto source = std::make_shared<RowSource>(report, customers(120));
  report->setEventSink(source);
  report->run();
  EXPECT_TRUE(report->runErrors().isEmpty()) << report->runErrors().join("\n").toStdString();
  const PageDocument &pages = *report->pages();
  ASSERT_GT(pages.pageCount(), 1) << "120 rows do not fit one page";

  const QStringList lines = allLines(pages);
  EXPECT_EQ(lines.first(), "Customer list") << "the report header comes first";
  for (int i = 0; i < pages.pageCount(); ++i) {
    const QStringList page = pageLines(pages, i);
    EXPECT_TRUE(page.contains("Name")) << "page header on page " << i + 1;
    EXPECT_EQ(page.last(), QStringLiteral("Page %1 of %2").arg(i + 1).arg(pages.pageCount()))
        << "page footer on page " << i + 1;
  }
  const int lund = lines.indexOf("Lund");
  const int malmo = lines.indexOf(QString::fromUtf8("Malmö"));
  const int ystad = lines.indexOf("Ystad");
  ASSERT_TRUE(lund >= 0 && malmo > lund && ystad > malmo);
  EXPECT_EQ(lines[lund + 1], "Customer 001 1");
  EXPECT_EQ(lines.count("Customers: 40"), 3) << "a count per city";
  EXPECT_EQ(lines.indexOf("Customers: 40", lund), lines.indexOf("Customer 040 40", lund) + 1)
      << "the footer follows the group's last row";
  EXPECT_TRUE(lines.contains("Total 7,260.00")) << lines.join("\n").toStdString();
  EXPECT_EQ(source->events.front(), "ReportStart");
  EXPECT_EQ(source->events[1], "DataInitialize");
  EXPECT_EQ(std::count(source->events.begin(), source->events.end(), "PageStart"), pages.pageCount());
  EXPECT_EQ(source->events.back(), "ReportEnd");
}

TEST(ReportRunTest, AnEmptyDataSetStillPrintsHeadersAndFootersOnOnePage) {
  auto report = customerList();
  auto source = std::make_shared<RowSource>(report, std::vector<RowValues>{});
  report->setEventSink(source);
  report->run();
  ASSERT_EQ(report->pages()->pageCount(), 1);
  const QStringList lines = pageLines(*report->pages(), 0);
  EXPECT_EQ(lines, (QStringList{"Customer list", "Name", "Total 0.00", "Page 1 of 1"}));
}

TEST(ReportRunTest, GrowingTextPushesWhatFollowsAndFixedTextIsCut) {
  auto report = LayoutReport::create();
  auto &detail = *report->sections()->add("Detail", 0, SectionType::Detail, 300);
  auto note = addField(detail, "note", 0, 2000);
  note->canGrow = true;
  auto below = addField(detail, "name", 0, 2000);
  below->top = 300;
  const QString longNote = "one two three four five six seven eight nine ten eleven twelve thirteen fourteen";
  auto source = std::make_shared<RowSource>(
      report, std::vector<RowValues>{{{"note", Variant(longNote)}, {"name", Variant("after")}},
                                     {{"note", Variant("short")}, {"name", Variant("next")}}});
  report->setEventSink(source);
  report->run();
  const Page &page = report->pages()->page(0);
  std::map<QString, int> top;
  int noteLines = 0;
  for (const PageItem &item : page.items())
    if (const auto *run = std::get_if<TextRun>(&item)) {
      top[page.text(*run)] = run->box.y;
      if (longNote.contains(page.text(*run)) && page.text(*run) != "short")
        ++noteLines;
    }
  EXPECT_GT(noteLines, 2) << "the note wraps";
  EXPECT_GT(top["after"] - top["one two"], 300) << "the field below moved down";
  EXPECT_GT(top["short"], top["after"]) << "the next row starts below the grown one";

  // A field that may not grow shows its first line only.
  note->canGrow = false;
  report->run();
  int shown = 0;
  const Page &fixed = report->pages()->page(0);
  for (const PageItem &item : fixed.items())
    if (const auto *run = std::get_if<TextRun>(&item))
      if (fixed.text(*run).startsWith("one"))
        ++shown;
  EXPECT_EQ(shown, 1);

  // A size whose line height is not a whole number of twips: every line of
  // the grown field is drawn.
  note->canGrow = true;
  note->font->set(QStringLiteral("Size"), 9);
  report->run();
  QStringList drawn;
  const Page &nine = report->pages()->page(0);
  for (const PageItem &item : nine.items())
    if (const auto *run = std::get_if<TextRun>(&item))
      if (longNote.contains(nine.text(*run)) && nine.text(*run) != "short")
        drawn << nine.text(*run);
  EXPECT_EQ(drawn.join(' '), longNote);
}

// A field that may not grow prints what fits; the text and web exports,
// which are not bound to the printed look, keep its whole value, line
// breaks included, once.
TEST(ReportRunTest, TextAndWebExportsKeepTheWholeValueThatThePageCuts) {
  auto report = LayoutReport::create();
  auto &detail = *report->sections()->add("Detail", 0, SectionType::Detail, 300);
  addField(detail, "company", 0, 1800);
  addField(detail, "city", 2000, 1200);
  const QString longName = QStringLiteral("Müller Maschinenbau GmbH & Co. KG");
  const QString twoLines = QStringLiteral("first line\nsecond line");
  auto source = std::make_shared<RowSource>(
      report, std::vector<RowValues>{{{"company", Variant(longName)}, {"city", Variant("Köln")}},
                                     {{"company", Variant(twoLines)}, {"city", Variant("Ulm")}},
                                     {{"company", Variant("Short AB")}, {"city", Variant("Lund")}}});
  report->setEventSink(source);
  report->run();
  const PageDocument &pages = *report->pages();
  QStringList printed;
  const Page first = pages.page(0);
  for (const PageItem &item : first.items())
    if (const auto *run = std::get_if<TextRun>(&item))
      printed << first.text(*run);
  EXPECT_FALSE(printed.contains(longName)) << "the page shows the first line only";
  EXPECT_FALSE(printed.join(u'|').contains(QStringLiteral("second line")));

  const QString text = TextExporter().text(pages);
  EXPECT_EQ(text, QStringLiteral("Müller Maschinenbau GmbH & Co. KG;Köln\n"
                                 "\"first line\nsecond line\";Ulm\n"
                                 "Short AB;Lund\n"));
  const QString html = QString::fromUtf8(HtmlExporter().html(pages, QStringLiteral("list")));
  EXPECT_EQ(html.count(QStringLiteral("Müller Maschinenbau GmbH &amp; Co. KG")), 1);
  EXPECT_TRUE(html.contains(QStringLiteral("first line<br>second line")));
  EXPECT_TRUE(html.contains(QStringLiteral(">Short AB<")));
}

// A workbook of a run holds its values as a table: a row per band showing,
// values typed, page headers and footers and repeated group headers left
// out, the first page header kept in view; the printed look stays
// available as the pages layout.
TEST(ReportRunTest, AWorkbookHoldsTheRunsValuesAsATable) {
  auto report = customerList();
  report->sections()->find("GroupHeader1")->repeatStyle = RepeatStyle::OnPage;
  Section &detail = *report->sections()->find("Detail");
  addField(detail, "since", 5200, 1200)->outputFormat = "yyyy-mm-dd";
  addField(detail, "active", 6500, 600);
  addField(detail, "note", 7200, 1500);
  std::vector<RowValues> rows = customers(120);
  for (int i = 0; i < int(rows.size()); ++i) {
    rows[i]["since"] = Variant(Date{45000.0 + i});
    rows[i]["active"] = Variant(i % 2 == 0);
    rows[i]["note"] = Variant(i == 0 ? QStringLiteral("first line\nsecond line")
                                     : QStringLiteral("A note long enough to be cut at the field's width %1").arg(i));
  }
  auto source = std::make_shared<RowSource>(report, rows);
  report->setEventSink(source);
  report->run();
  const PageDocument &pages = *report->pages();
  ASSERT_GT(pages.pageCount(), 2);

  test::TempDir dir;
  const QString xls = dir.file("table.xls");
  XlsExporter().exportDocument(pages, xls);
  QString error;
  const auto book = test::readWorkbook(xls, &error);
  ASSERT_TRUE(book) << error.toStdString();
  const auto text = [&](int row, int column) {
    const test::ReadCell *cell = book->cell(row, column);
    return cell ? cell->text : QStringLiteral("<none>");
  };
  // Report header, the page header once, and per city its header, its
  // rows and its count; then the total.
  int lastRow = 0;
  for (const auto &[place, cell] : book->cells) {
    lastRow = std::max(lastRow, place.first);
    EXPECT_FALSE(cell.text.startsWith("Page") || cell.text == "of") << "page furniture at row " << place.first;
  }
  EXPECT_EQ(lastRow + 1, 2 + 3 * 2 + 120 + 1);
  EXPECT_EQ(text(0, 0), "Customer list");
  EXPECT_EQ(text(1, 0), "Name");
  EXPECT_EQ(book->frozenRows, 2);
  EXPECT_EQ(text(2, 0), "Lund");
  EXPECT_TRUE(book->cell(2, 0)->font.bold) << "group headers are bold";

  // Columns by the controls' left edges: name 0, the total 1100, the
  // count 2100, amount 3500, since 5200, active 6500, note 7200.
  const test::ReadCell *name = book->cell(3, 0);
  ASSERT_TRUE(name);
  EXPECT_EQ(name->text, "Customer 001");
  EXPECT_FALSE(name->font.bold);
  const test::ReadCell *amount = book->cell(3, 3);
  ASSERT_TRUE(amount && amount->isNumber);
  EXPECT_EQ(amount->number, 1);
  const test::ReadCell *since = book->cell(3, 4);
  ASSERT_TRUE(since && since->isNumber);
  EXPECT_EQ(since->number, 45000);
  EXPECT_EQ(since->numberFormat, "yyyy-mm-dd");
  const test::ReadCell *active = book->cell(3, 5);
  ASSERT_TRUE(active && active->isBoolean);
  EXPECT_EQ(active->number, 1);
  const test::ReadCell *note = book->cell(3, 6);
  ASSERT_TRUE(note);
  EXPECT_EQ(note->text, "first line\nsecond line");
  EXPECT_TRUE(note->wrap);
  EXPECT_EQ(text(4, 6), "A note long enough to be cut at the field's width 1");
  EXPECT_EQ(text(3 + 40, 0), "Customers:") << "the first city's 40 rows, then its count";
  ASSERT_TRUE(book->cell(3 + 40, 2));
  EXPECT_EQ(book->cell(3 + 40, 2)->number, 40);
  const test::ReadCell *total = book->cell(lastRow, 1);
  ASSERT_TRUE(total && total->isNumber);
  EXPECT_EQ(total->number, 120 * 121 / 2);
  EXPECT_EQ(total->numberFormat, "#,##0.00");

  // The printed look: the pages' lines, footers and all.
  const QString printed = dir.file("pages.xls");
  XlsExporter pagesExporter;
  pagesExporter.layout = SpreadsheetLayout::Pages;
  pagesExporter.exportDocument(pages, printed);
  const auto pagesBook = test::readWorkbook(printed, &error);
  ASSERT_TRUE(pagesBook) << error.toStdString();
  int footers = 0;
  for (const auto &[place, cell] : pagesBook->cells)
    footers += cell.text == "Page";
  EXPECT_EQ(footers, pages.pageCount());

  // The same table in the newer format, as a spreadsheet program reads it.
  if (test::officeConverter().isEmpty())
    return;
  const QString xlsx = dir.file("table.xlsx");
  XlsxExporter().exportDocument(pages, xlsx);
  const QString flat = test::convertWithOffice(xlsx, "fods", dir.path());
  ASSERT_FALSE(flat.isEmpty());
  const test::FlatSheet sheet = test::parseFlatSheet(test::readFile(flat));
  ASSERT_EQ(sheet.rows.size(), std::size_t(lastRow + 1));
  const std::vector<test::FlatCell> &first = sheet.rows[3];
  ASSERT_EQ(first.size(), 7u);
  EXPECT_EQ(first[0].text, "Customer 001");
  EXPECT_EQ(first[3].type, "float");
  EXPECT_EQ(first[4].type, "date");
  EXPECT_EQ(first[4].value, "2023-03-15");
  EXPECT_EQ(first[5].text, "TRUE") << "a truth value, which the program reads as a number shown as one";
  EXPECT_EQ(first[6].text, "first line\nsecond line");
}

// The same report script in both languages: rows made by the script
// itself, a control's text and visibility set per row, a hidden section.
void runScriptedReport(const QString &language, const QString &reportScript, const QString &detailScript) {
  auto report = LayoutReport::create();
  report->scriptLanguage = language;
  report->script = reportScript;
  auto &header = *report->sections()->add("ReportHeader", 0, SectionType::ReportHeader, 300);
  addLabel(header, "hidden header", 0, 2000);
  auto &detail = *report->sections()->add("Detail", 1, SectionType::Detail, 300);
  detail.script = detailScript;
  auto value = addField(detail, "n", 0, 1000);
  value->name = "Value";
  auto mark = addLabel(detail, "", 1100, 1500);
  mark->name = "Mark";
  addField(detail, "=rpt.Fields(\"n\").Value * 10", 2700, 1000);
  // The script's own counter has moved on to the next row when this row
  // is formatted; FieldMode 1 takes the value when the row is fetched.
  addField(detail, "=n", 3800, 600)->fieldMode = 1;
  report->run();
  ASSERT_TRUE(report->runErrors().isEmpty()) << report->runErrors().join("\n").toStdString();
  const QStringList lines = pageLines(*report->pages(), 0);
  EXPECT_EQ(lines, (QStringList{"1 odd 10 1", "2 20 2", "3 odd 30 3", "4 40 4"})) << language.toStdString();
}

TEST(ReportRunTest, ScriptsInBothLanguagesMakeRowsAndChangeControls) {
  runScriptedReport("VBScript", R"(
Dim n
Sub ActiveReport_DataInitialize
  rpt.Fields.Add "n"
  n = 0
End Sub
Sub ActiveReport_FetchData(eof)
  n = n + 1
  If n <= 4 Then
    rpt.Fields("n").Value = n
    eof = False
  End If
End Sub
Sub ReportHeader_Format
  rpt.Sections("ReportHeader").Visible = False
End Sub
)",
                    R"(
Sub OnFormat
  Mark.Visible = (rpt.Fields("n").Value Mod 2 = 1)
  Mark.Caption = "odd"
End Sub
)");
  runScriptedReport("JScript", R"(
var n;
function ActiveReport_DataInitialize() { rpt.Fields.Add("n"); n = 0; }
function ActiveReport_FetchData(eof) {
  n = n + 1;
  if (n <= 4) { rpt.Fields("n").Value = n; return false; }
}
function ReportHeader_Format() { rpt.Sections("ReportHeader").Visible = false; }
)",
                    R"(
function OnFormat() {
  Mark.Visible = (rpt.Fields("n").Value % 2 == 1);
  Mark.Caption = "odd";
}
)");
}

TEST(ReportRunTest, GroupHeadersRepeatOnThePagesTheirGroupGoesOnToWhenAskedTo) {
  const QStringList cities{"Lund", QString::fromUtf8("Malmö"), "Ystad"};
  for (const RepeatStyle style : {RepeatStyle::None, RepeatStyle::OnPage}) {
    auto report = customerList();
    report->sections()->find("GroupHeader1")->repeatStyle = style;
    auto source = std::make_shared<RowSource>(report, customers(120));
    report->setEventSink(source);
    report->run();
    const PageDocument &pages = *report->pages();
    ASSERT_GT(pages.pageCount(), 2);
    int headed = 0;
    for (int i = 1; i < pages.pageCount(); ++i) {
      const QStringList page = pageLines(pages, i);
      ASSERT_GE(page.size(), 3);
      EXPECT_EQ(page[0], "Name") << "the page header stays first";
      headed += cities.contains(page[1]);
      EXPECT_EQ(page.count(page[1]), 1) << "a group that starts at the top of a page is not headed twice";
    }
    if (style == RepeatStyle::OnPage)
      EXPECT_EQ(headed, pages.pageCount() - 1) << "every page says which city its rows are in";
    else
      EXPECT_LT(headed, pages.pageCount() - 1) << "some page goes on with a city without saying so";
  }
}

TEST(ReportRunTest, TheReportHeaderSeesTheFirstRowAndScriptsTakeTheLanguageSetAtReportStart) {
  auto report = LayoutReport::create();
  auto &header = *report->sections()->add("ReportHeader", 0, SectionType::ReportHeader, 300);
  addField(header, "name", 0, 2000);
  auto &detail = *report->sections()->add("Detail", 1, SectionType::Detail, 300);
  addField(detail, "name", 0, 2000);
  auto shout = addLabel(detail, "", 2500, 2000);
  // Saved as VBScript, the report's own language is JScript.
  detail.script = "function OnFormat() { " + shout->name + ".Caption = 'js ' + rpt.Fields.Item('name').Value; }";
  auto source =
      std::make_shared<RowSource>(report, std::vector<RowValues>{{{"name", Variant("a")}}, {{"name", Variant("b")}}});
  source->onReportStart = [&report] { report->set("ScriptLanguage", QStringLiteral("JScript")); };
  report->setEventSink(source);
  report->run();
  EXPECT_TRUE(report->runErrors().isEmpty()) << report->runErrors().join("\n").toStdString();
  EXPECT_EQ(pageLines(*report->pages(), 0), (QStringList{"a", "a js a", "b js b"}));
}

TEST(ReportRunTest, FailedFieldExpressionsAreKeptWithFieldSectionAndRow) {
  auto report = LayoutReport::create();
  auto &detail = *report->sections()->add("Detail", 0, SectionType::Detail, 300);
  addField(detail, "name", 0, 2000);
  for (const char *expression : {"=1 / 0", "=1 +", "=NoSuchThing.Value"})
    addField(detail, expression, 2500, 1000);
  auto source =
      std::make_shared<RowSource>(report, std::vector<RowValues>{{{"name", Variant("a")}}, {{"name", Variant("b")}}});
  report->setEventSink(source);
  report->run();
  QStringList printed = pageLines(*report->pages(), 0);
  for (QString &line : printed)
    line = line.trimmed();
  EXPECT_EQ(printed, (QStringList{"a", "b"})) << "a failed expression prints nothing";
  const QStringList errors = report->runErrors();
  ASSERT_EQ(errors.size(), 6) << errors.join("\n").toStdString();
  EXPECT_TRUE(errors[0].startsWith("field Field2 in section Detail, expression =1 / 0")) << errors[0].toStdString();
  EXPECT_TRUE(errors[0].contains(", row 1: ")) << errors[0].toStdString();
  EXPECT_TRUE(errors[0].endsWith("(11)")) << errors[0].toStdString();
  EXPECT_TRUE(errors[1].contains("expression =1 +")) << errors[1].toStdString();
  EXPECT_TRUE(errors[5].contains("Field4 in section Detail, expression =NoSuchThing.Value")) << errors[5].toStdString();
  EXPECT_TRUE(errors[5].contains(", row 2: ")) << errors[5].toStdString();
}

TEST(ReportRunTest, AScriptErrorIsKeptWithItsLineAndTheRunGoesOn) {
  auto report = LayoutReport::create();
  report->script = "Sub Detail_Format\n  x = 1 / 0\nEnd Sub\n";
  auto &detail = *report->sections()->add("Detail", 0, SectionType::Detail, 300);
  addField(detail, "name", 0, 2000);
  auto source =
      std::make_shared<RowSource>(report, std::vector<RowValues>{{{"name", Variant("a")}}, {{"name", Variant("b")}}});
  report->setEventSink(source);
  report->run();
  EXPECT_EQ(pageLines(*report->pages(), 0), (QStringList{"a", "b"}));
  ASSERT_EQ(report->runErrors().size(), 2);
  EXPECT_TRUE(report->runErrors().first().contains("Detail_Format (line 2, column"))
      << report->runErrors().first().toStdString();
  EXPECT_TRUE(report->runErrors().first().contains("(11)")) << "division by zero";
}

// A sub report's rows follow its parent's current row, as the add-in's
// sub page objects make them.
class ChildRows : public Object {
public:
  ChildRows(std::shared_ptr<LayoutReport> child, std::shared_ptr<LayoutReport> parent, int perParent)
      : child_(std::move(child)), parent_(std::move(parent)), perParent_(perParent) {}

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<ChildRows>("ActiveReport_ReportStart",
                          [](ChildRows &c, Args &) {
                            c.owner_ = c.parent_->fields()->find("name")->value.toString();
                            c.next_ = 0;
                            // An owner without children hides the whole sub report.
                            const bool any = !c.owner_.endsWith("3");
                            for (const auto &section : c.child_->sections()->all())
                              if (section->name != "Hidden")
                                section->visible = any;
                            return Variant();
                          }),
        method<ChildRows>("ActiveReport_FetchData",
                          [](ChildRows &c, Args &a) {
                            if (c.owner_.endsWith("3") || c.next_ >= c.perParent_)
                              return Variant();
                            c.child_->fields()->add("item")->value =
                                QStringLiteral("%1/%2").arg(c.owner_).arg(++c.next_);
                            a[0] = Variant(false);
                            return Variant();
                          }),
    }};
    return table;
  }

private:
  std::shared_ptr<LayoutReport> child_;
  std::shared_ptr<LayoutReport> parent_;
  int perParent_;
  QString owner_;
  int next_ = 0;
};

TEST(ReportRunTest, SubReportsRunOncePerParentRowAndPrintInsideIt) {
  auto parent = LayoutReport::create();
  auto &detail = *parent->sections()->add("Detail", 0, SectionType::Detail, 600);
  addField(detail, "name", 0, 2000);
  auto sub = std::static_pointer_cast<SubReport>(detail.controls()->add("DDActiveReports2.SubReport"));
  sub->left = 500;
  sub->top = 300;
  sub->width = 4000;
  sub->height = 300;

  auto child = LayoutReport::create();
  auto &childHeader = *child->sections()->add("Hidden", 0, SectionType::ReportHeader, 300);
  childHeader.visible = false;
  addLabel(childHeader, "never shown", 0, 2000);
  auto &childDetail = *child->sections()->add("Detail", 1, SectionType::Detail, 250);
  addField(childDetail, "item", 0, 2000);
  auto childRows = std::make_shared<ChildRows>(child, parent, 2);
  child->setEventSink(childRows);
  sub->report = child;
  EXPECT_EQ(sub->get("Object").rawObject(), child->eventSink()) << "the control's Object is the report's sink";

  std::vector<RowValues> rows;
  for (int i = 1; i <= 4; ++i)
    rows.push_back({{"name", Variant(QStringLiteral("owner%1").arg(i))}});
  auto parentRows = std::make_shared<RowSource>(parent, rows);
  parent->setEventSink(parentRows);
  parent->run();
  EXPECT_TRUE(parent->runErrors().isEmpty()) << parent->runErrors().join("\n").toStdString();
  EXPECT_EQ(pageLines(*parent->pages(), 0), (QStringList{"owner1", "owner1/1", "owner1/2", "owner2", "owner2/1",
                                                         "owner2/2", "owner3", "owner4", "owner4/1", "owner4/2"}));
  // The children stand where the control stands.
  const Page &page = parent->pages()->page(0);
  int childRuns = 0;
  for (const PageItem &item : page.items()) {
    const auto *run = std::get_if<TextRun>(&item);
    if (run && page.text(*run).startsWith("owner1/")) {
      EXPECT_EQ(run->box.x, 1440 + 500);
      ++childRuns;
    }
  }
  EXPECT_EQ(childRuns, 2);
}

// A sub report that shows the report it stands in (directly, or the one
// around its own report) is left out with a run error, not nested until
// the stack runs out.
TEST(ReportRunTest, ASubReportShowingAReportItStandsInIsLeftOut) {
  auto parent = LayoutReport::create();
  auto &detail = *parent->sections()->add("Detail", 0, SectionType::Detail, 600);
  addField(detail, "name", 0, 2000);
  auto own = std::static_pointer_cast<SubReport>(detail.controls()->add("DDActiveReports2.SubReport"));
  own->name = "Itself";
  own->report = parent;
  auto child = LayoutReport::create();
  child->sections()->add("Detail", 0, SectionType::Detail, 300);
  auto back = std::static_pointer_cast<SubReport>(
      child->sections()->find("Detail")->controls()->add("DDActiveReports2.SubReport"));
  back->name = "Back";
  back->report = parent;
  const auto childRows = std::make_shared<RowSource>(child, std::vector<RowValues>{{{"x", Variant(1)}}});
  child->setEventSink(childRows);
  auto inner = std::static_pointer_cast<SubReport>(detail.controls()->add("DDActiveReports2.SubReport"));
  inner->top = 300;
  inner->report = child;

  auto rows = std::make_shared<RowSource>(
      parent, std::vector<RowValues>{{{"name", Variant("one")}}, {{"name", Variant("two")}}});
  parent->setEventSink(rows);
  parent->run();
  EXPECT_EQ(allLines(*parent->pages()), (QStringList{"one", "two"}));
  const QString errors = parent->runErrors().join(u'\n');
  EXPECT_EQ(parent->runErrors().size(), 2) << errors.toStdString();
  EXPECT_TRUE(errors.contains("sub report Itself: it shows a report it stands in")) << errors.toStdString();
  EXPECT_TRUE(errors.contains("sub report Back: it shows a report it stands in")) << errors.toStdString();
  own->report = nullptr; // the reports hold each other
  back->report = nullptr;
}

TEST(ReportRunTest, NewPageAndTheFinishedPagesAsPdf) {
  auto report = customerList();
  report->sections()->find("GroupHeader1")->newPage = NewPage::Before;
  auto source = std::make_shared<RowSource>(report, customers(9));
  report->setEventSink(source);
  report->run();
  ASSERT_EQ(report->pages()->pageCount(), 4) << "the report header's page, then each city on a page of its own";
  EXPECT_EQ(pageLines(*report->pages(), 0), (QStringList{"Customer list", "Name", "Page 1 of 4"}));
  EXPECT_TRUE(pageLines(*report->pages(), 2).contains(QString::fromUtf8("Malmö")));

  test::TempDir dir;
  const QString pdf = dir.file("customers.pdf");
  PdfExporter().exportDocument(*report->pages(), pdf);
  QProcess text;
  text.start("pdftotext", {"-layout", pdf, "-"});
  ASSERT_TRUE(text.waitForFinished(30000));
  const QString extracted = QString::fromUtf8(text.readAllStandardOutput());
  EXPECT_TRUE(extracted.contains(QString::fromUtf8("Malmö"))) << extracted.toStdString();
  EXPECT_TRUE(extracted.contains(QRegularExpression("Page\\s+4\\s+of\\s+4"))) << extracted.toStdString();
  EXPECT_LT(extracted.indexOf("Customer list"), extracted.indexOf("Lund"));
}

TEST(ReportRunTest, ALayoutLoadedFromItsFileRunsWithItsScript) {
  QFile file(QStringLiteral(KORDEL_ENGINE_TEST_DIR "/run/layouts/customer-list.xml"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray bytes = file.readAll();
  auto report = LayoutReport::create();
  report->invoke("LoadLayout", {Variant(bytes)});
  EXPECT_EQ(saveLayout(*report), bytes) << "the file is in the canonical form";
  auto source = std::make_shared<RowSource>(report, customers(60));
  report->setEventSink(source);
  report->invoke("Run", {});
  EXPECT_TRUE(report->runErrors().isEmpty()) << report->runErrors().join("\n").toStdString();
  const PageDocument &pages = *report->pages();
  EXPECT_EQ(report->get("Pages").rawObject()->get("Count"), Variant(pages.pageCount()));
  for (int i = 0; i < pages.pageCount(); ++i)
    EXPECT_TRUE(pageLines(pages, i).contains("Customer name")) << "the script renamed the page header's label";
  EXPECT_TRUE(allLines(pages).contains("Total 1,830.00"));
  EXPECT_EQ(allLines(pages).count("Customers: 20"), 3);
}

} // namespace

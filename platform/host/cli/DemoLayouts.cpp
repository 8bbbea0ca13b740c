#include "cli/DemoLayouts.h"

#include "cli/DemoLayoutParts.h"

#include "engine/format/LayoutFormat.h"

namespace kordel::host::cli {

namespace {

using engine::Alignment;
using engine::LayoutReport;
using engine::Section;
using engine::SectionType;

// The guids of the pages of the documents in demo-reports/.
const QString kCompanyListCompanies = QStringLiteral("{E3336E1B-CB9C-4A34-A0F2-3A3BB22CAC49}");
const QString kCompanyListPersons = QStringLiteral("{6B1D1E0A-2C4F-4E39-9A51-3F2D7C0E8B11}");
const QString kDeals = QStringLiteral("{CC217EE5-80B9-435B-9E5C-A3BEB65F04D6}");
const QString kHistoryCompanies = QStringLiteral("{95CAC3B1-F0D8-446A-9A7A-D884965F7358}");
const QString kHistoryPersons = QStringLiteral("{289511F8-AD2E-4B8A-953E-67144372C67F}");
const QString kHistoryEvents = QStringLiteral("{09D644B3-E347-49DD-AB79-822D7FFACF1D}");

// A sub page stands this far in from its parent's rows; its band is
// narrower by as much, and its page's width in the documents says so.
constexpr float kIndent = 360;
// The engine's summary of a field over its group or the report.
constexpr int kCountSum = 1;
constexpr int kCountRecords = 2;

// The page header of a top page: the title, the print date and, above a
// rule, the captions of the columns.
void addPageHeader(LayoutReport &layout, const QString &title, const std::vector<Column> &columns) {
  const float right = layout.printWidth;
  Section &header = addSection(layout, SectionType::PageHeader, QStringLiteral("PageHeader"), 0);
  engine::Label &heading = addLabel(header, title, 0, 0, right - 2000);
  heading.height = 400;
  setFont(heading, 14, true);
  addPrintDate(header, 120, right);
  float top = 480;
  if (!columns.empty()) {
    addCaptions(header, columns, top);
    top += kRowHeight;
  }
  addRule(header, 0, top + 30, right);
  header.height = top + 90;
}

// The page footer of a top page: a rule and "Page X of Y" at the right.
void addPageFooter(LayoutReport &layout) {
  Section &footer = addSection(layout, SectionType::PageFooter, QStringLiteral("PageFooter"), 420);
  addRule(footer, 0, 60, layout.printWidth);
  addPageXOfY(footer, 120, layout.printWidth);
}

// A sub report control at the foot of a detail section, which then ends
// where the control does.
void addSubPageBelowRow(Section &detail, const QString &guid, const QString &name, const QString &source, float top) {
  const float width = detail.report()->printWidth - kIndent;
  const engine::SubReport &control = addSubPage(detail, guid, name, source, kIndent, top, width);
  detail.height = control.top + control.height;
}

// "Company list" on company: sorted by country, then name; a group per
// country; each company with its persons, which do not show for a company
// without any; "Page X of Y" below.
DemoReport companyList() {
  auto companies = newLayout(kDemoPrintWidth);
  const std::vector<Column> columns = {
      {QStringLiteral("name"), QStringLiteral("Company"), 0, 4000},
      {QStringLiteral("city"), QStringLiteral("City"), 4100, 2400},
      {QStringLiteral("coworker.name"), QStringLiteral("Responsible"), 6600, 3000},
  };
  addPageHeader(*companies, QStringLiteral("Company list"), columns);
  Section &country = addSection(*companies, SectionType::GroupHeader, QStringLiteral("GroupCountry1"), 420);
  country.dataField = QStringLiteral("country");
  country.repeatStyle = engine::RepeatStyle::OnPage; // each page says which country its rows are in
  setFont(addDataField(country, QStringLiteral("country"), 0, 90, 6000), 11, true);
  Section &detail = addSection(*companies, SectionType::Detail, QStringLiteral("Detail"), kRowHeight);
  detail.keepTogether = true; // a company stays on one page with its persons
  addColumnFields(detail, columns, 0);
  addSubPageBelowRow(detail, kCompanyListPersons, QStringLiteral("Persons"), QStringLiteral("person"), kRowHeight + 30);
  Section &sum = addSection(*companies, SectionType::GroupFooter, QStringLiteral("SumCountry1"), 360);
  addLabel(sum, QStringLiteral("Companies"), 4100, 30, 2400).alignment = Alignment::Right;
  engine::Field &count = addDataField(sum, QStringLiteral("name"), 6600, 30, 800);
  count.countKind = kCountRecords;
  count.summaryGroup = country.name;
  addPageFooter(*companies);

  auto persons = newLayout(kDemoPrintWidth - kIndent);
  const std::vector<Column> personColumns = {
      {QStringLiteral("firstname"), QStringLiteral("First name"), 0, 2400},
      {QStringLiteral("lastname"), QStringLiteral("Last name"), 2500, 2800},
      {QStringLiteral("position"), QStringLiteral("Position"), 5400, 3840},
  };
  addCaptions(addSection(*persons, SectionType::ReportHeader, QStringLiteral("ReportHeader"), kRowHeight),
              personColumns, 0);
  addColumnFields(addSection(*persons, SectionType::Detail, QStringLiteral("Detail"), kRowHeight), personColumns, 0);
  addSection(*persons, SectionType::ReportFooter, QStringLiteral("ReportFooter"), 120); // room before the next company

  return {
      QStringLiteral("1-company-list.xml"),
      {{kCompanyListCompanies, engine::saveLayout(*companies)}, {kCompanyListPersons, engine::saveLayout(*persons)}}};
}

// "Deals by value" on deal: the largest first, rows striped from the
// first row of every page, the total of all values at the end.
DemoReport dealsByValue() {
  auto deals = newLayout(kDemoPrintWidth);
  const QString amount = QStringLiteral("#,##0");
  const std::vector<Column> columns = {
      {QStringLiteral("name"), QStringLiteral("Deal"), 0, 3400},
      {QStringLiteral("company.name"), QStringLiteral("Company"), 3500, 2900},
      {QStringLiteral("value"), QStringLiteral("Value"), 6500, 1500, Alignment::Right, amount},
      {QStringLiteral("stage"), QStringLiteral("Stage"), 8200, 1400},
  };
  addPageHeader(*deals, QStringLiteral("Deals by value"), columns);
  Section &detail = addSection(*deals, SectionType::Detail, QStringLiteral("Detail"), 300);
  detail.backColor = QColor(0xe6, 0xee, 0xf7); // the stripe: the run fills every other row with it
  addColumnFields(detail, columns, 15);
  addPageFooter(*deals);
  Section &end = addSection(*deals, SectionType::ReportFooter, QStringLiteral("ReportFooter"), 480);
  addRule(end, 6500, 60, 8000);
  engine::Label &label = addLabel(end, QStringLiteral("Total"), 3500, 120, 2900);
  label.alignment = Alignment::Right;
  setFont(label, 10, true);
  engine::Field &total = addDataField(end, QStringLiteral("value"), 6500, 120, 1500);
  total.countKind = kCountSum;
  total.outputFormat = amount;
  total.alignment = Alignment::Right;
  setFont(total, 10, true);

  return {QStringLiteral("2-deals-by-value.xml"), {{kDeals, engine::saveLayout(*deals)}}};
}

// "Company history" on company: each company, its persons, and under each
// person the history events by date.
DemoReport companyHistory() {
  auto companies = newLayout(kDemoPrintWidth);
  addPageHeader(*companies, QStringLiteral("Company history"), {});
  Section &company = addSection(*companies, SectionType::Detail, QStringLiteral("Detail"), 0);
  engine::Field &name = addDataField(company, QStringLiteral("name"), 0, 120, 5600);
  setFont(name, 11, true);
  name.canGrow = true;
  addDataField(company, QStringLiteral("city"), 5700, 150, 3900).canGrow = true;
  addSubPageBelowRow(company, kHistoryPersons, QStringLiteral("Persons"), QStringLiteral("person"),
                     120 + kRowHeight + 90);
  addPageFooter(*companies);

  auto persons = newLayout(kDemoPrintWidth - kIndent);
  Section &person = addSection(*persons, SectionType::Detail, QStringLiteral("Detail"), 0);
  for (engine::Field *field : {&addDataField(person, QStringLiteral("firstname"), 0, 0, 2200),
                               &addDataField(person, QStringLiteral("lastname"), 2300, 0, 2800)}) {
    setFont(*field, 10, true);
    field->canGrow = true;
  }
  addDataField(person, QStringLiteral("position"), 5200, 0, 4040).canGrow = true;
  addSubPageBelowRow(person, kHistoryEvents, QStringLiteral("History"), QStringLiteral("person.history"),
                     kRowHeight + 15);

  auto history = newLayout(kDemoPrintWidth - 2 * kIndent);
  Section &event = addSection(*history, SectionType::Detail, QStringLiteral("Detail"), kRowHeight);
  addDataField(event, QStringLiteral("date"), 0, 0, 1700).outputFormat = QStringLiteral("yyyy-mm-dd");
  addDataField(event, QStringLiteral("type"), 1800, 0, 1600);
  addDataField(event, QStringLiteral("note"), 3500, 0, 5380).canGrow = true;
  for (const auto &control : event.controls()->all())
    setFont(*control, 9, false);

  return {QStringLiteral("3-company-history.xml"),
          {{kHistoryCompanies, engine::saveLayout(*companies)},
           {kHistoryPersons, engine::saveLayout(*persons)},
           {kHistoryEvents, engine::saveLayout(*history)}}};
}

} // namespace

std::vector<DemoReport> demoReports() { return {companyList(), dealsByValue(), companyHistory()}; }

} // namespace kordel::host::cli

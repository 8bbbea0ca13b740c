#include "script/ReportRunModel.h"

#include "core/Format.h"

namespace kordel::test {

TestExtensions::TestExtensions() : properties(std::make_shared<Dictionary>()) {
  properties->setCompareMode(CompareMode::Text);
}

QString TestExtensions::timestamp(const QString &format) const { return formatValue(Variant(clock), format); }

void TestExtensions::setProperty(const QString &name, const Variant &value) { properties->setItem(name, value); }

const MemberTable &TestExtensions::memberTable() const {
  static const MemberTable table{{
      method<TestExtensions>("Timestamp",
                             [](TestExtensions &e, Args &a) {
                               expectArgs(a, 1, 1);
                               return e.timestamp(a[0].toString());
                             }),
      property<TestExtensions>("Properties", [](TestExtensions &e) { return e.properties; }),
      method<TestExtensions>("SetProperty",
                             [](TestExtensions &e, Args &a) {
                               expectArgs(a, 2, 2);
                               e.setProperty(a[0].toString(), a[1]);
                               return Variant();
                             }),
  }};
  return table;
}

Variant TestRecords::value(const QString &field) const {
  if (eof())
    raiseError(ErrorNumber::InvalidCall, typeName(), QStringLiteral("No current record"));
  for (const auto &[name, value] : rows_[position_]) {
    if (name.compare(field, Qt::CaseInsensitive) == 0)
      return value;
  }
  raiseError(ErrorNumber::InvalidCall, typeName(), QStringLiteral("No field '%1'").arg(field));
}

void TestRecords::moveNext() {
  if (!eof())
    ++position_;
}

const MemberTable &TestRecords::memberTable() const {
  static const MemberTable table{{
      property<TestRecords>("EOF", [](TestRecords &r) { return r.eof(); }),
      property<TestRecords>("RecordIndex", [](TestRecords &r) { return r.recordIndex(); }),
      property<TestRecords>("RecordCount", [](TestRecords &r) { return int(r.rows_.size()); }),
      indexedProperty<TestRecords>("Value",
                                   [](TestRecords &r, Args &a) {
                                     expectArgs(a, 1, 1);
                                     return r.value(a[0].toString());
                                   }),
      method<TestRecords>("MoveFirst",
                          [](TestRecords &r, Args &) {
                            r.moveFirst();
                            return Variant();
                          }),
      method<TestRecords>("MoveNext",
                          [](TestRecords &r, Args &) {
                            r.moveNext();
                            return Variant();
                          }),
  }};
  return table;
}

TestReportRun::TestReportRun(std::vector<TestRecords::Row> rows)
    : records(std::make_shared<TestRecords>(std::move(rows))) {
  title = report->addSection(QStringLiteral("PageHeader"))->addControl(QStringLiteral("title"));
  const auto detail = report->addSection(QStringLiteral("Detail"));
  name = detail->addControl(QStringLiteral("name"));
  city = detail->addControl(QStringLiteral("city"));
  stamp = detail->addControl(QStringLiteral("stamp"));
  summary = report->addSection(QStringLiteral("ReportFooter"))->addControl(QStringLiteral("summary"));
}

} // namespace kordel::test

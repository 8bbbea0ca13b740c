#pragma once

#include "core/Dictionary.h"
#include "core/Object.h"
#include "script/JScriptTestModel.h"

#include <memory>
#include <utility>
#include <vector>

namespace kordel::test {

// The objects a layout script sees during a report run, small but working,
// for tests that run one script in both languages.

// Extensions: Timestamp(format) formats the run's clock as Format does;
// Properties is the run's bag of named values (a dictionary whose names
// ignore case), SetProperty(name, value) writes into it.
class TestExtensions : public Object {
public:
  TestExtensions();
  QString typeName() const override { return QStringLiteral("Extensions"); }
  QString timestamp(const QString &format) const;
  void setProperty(const QString &name, const Variant &value);

  Date clock;
  std::shared_ptr<Dictionary> properties;

protected:
  const MemberTable &memberTable() const override;
};

// Records: a cursor over rows of named values. RecordIndex counts the
// current row from 1; Value(name) raises 5 for a field the row lacks and
// past the end; MoveNext stops at EOF.
class TestRecords : public Object {
public:
  using Row = std::vector<std::pair<QString, Variant>>;

  explicit TestRecords(std::vector<Row> rows) : rows_(std::move(rows)) {}
  QString typeName() const override { return QStringLiteral("Records"); }
  bool eof() const { return position_ >= rows_.size(); }
  int recordIndex() const { return int(position_) + 1; }
  Variant value(const QString &field) const;
  void moveFirst() { position_ = 0; }
  void moveNext();

protected:
  const MemberTable &memberTable() const override;

private:
  std::vector<Row> rows_;
  std::size_t position_ = 0;
};

// A report with the sections PageHeader (control "title"), Detail ("name",
// "city", "stamp") and ReportFooter ("summary").
struct TestReportRun {
  explicit TestReportRun(std::vector<TestRecords::Row> rows);
  std::shared_ptr<TestExtensions> extensions = std::make_shared<TestExtensions>();
  std::shared_ptr<TestRecords> records;
  std::shared_ptr<TestReport> report = std::make_shared<TestReport>();
  std::shared_ptr<TestControl> title, name, city, stamp, summary;
};

} // namespace kordel::test

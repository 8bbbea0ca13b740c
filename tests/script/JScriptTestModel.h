#pragma once

#include "script/ScriptEngine.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace kordel::test {

// A small report-like object model for the JScript tests: a report with
// sections, sections with controls, each collection reached through its
// default member Item(name or index) and walkable with For Each.

class TestControl : public Object {
public:
  explicit TestControl(QString name) : name(std::move(name)) {}
  QString typeName() const override { return QStringLiteral("Field"); }
  QString name;
  Variant text;

protected:
  const MemberTable &memberTable() const override;
};

class TestCollection : public Object {
public:
  QString typeName() const override { return QStringLiteral("Collection"); }
  void add(const QString &name, ObjectRef item);
  // By position from 0, or by name without regard to case; raises 9.
  ObjectRef item(const Variant &key) const;
  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::vector<std::pair<QString, ObjectRef>> items_;
};

class TestSection : public Object {
public:
  explicit TestSection(QString name) : name(std::move(name)), controls(std::make_shared<TestCollection>()) {}
  QString typeName() const override { return QStringLiteral("Section"); }
  std::shared_ptr<TestControl> addControl(const QString &controlName);
  QString name;
  std::shared_ptr<TestCollection> controls;

protected:
  const MemberTable &memberTable() const override;
};

// The report: Title (read and write), RecordIndex, Sections, Timestamp(fmt)
// a method, Fail() raising 70, Keep(value) storing what it receives and
// Give() handing it back, and Apply(function, argument) calling a script
// function from the host.
class TestReport : public Object {
public:
  TestReport();
  QString typeName() const override { return QStringLiteral("Report"); }
  std::shared_ptr<TestSection> addSection(const QString &sectionName);

  Variant title;
  int recordIndex = 0;
  std::shared_ptr<TestCollection> sections;
  Variant kept;

protected:
  const MemberTable &memberTable() const override;
};

// Counts the live objects of this class, to see objects handed to scripts
// released.
class CountedObject : public Object {
public:
  CountedObject() { ++live; }
  ~CountedObject() override { --live; }
  static int live;
};

// An engine for JScript with the report as "rpt"; the report has the
// sections "PageHeader" and "Detail", the detail the controls "x" and "y".
struct JScriptFixture {
  JScriptFixture();
  std::unique_ptr<script::ScriptEngine> engine;
  std::shared_ptr<TestReport> report = std::make_shared<TestReport>();
  std::shared_ptr<TestSection> detail;
  std::shared_ptr<TestControl> x;

  Variant eval(const QString &expression) { return engine->evaluate(expression); }
  QString text(const QString &expression) { return eval(expression).toString(); }
  // The ScriptError that running code raises; a failure when none.
  script::ScriptError errorOf(const QString &code);
};

} // namespace kordel::test

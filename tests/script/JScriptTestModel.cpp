#include "script/JScriptTestModel.h"

#include <gtest/gtest.h>

namespace kordel::test {

int CountedObject::live = 0;

const MemberTable &TestControl::memberTable() const {
  static const MemberTable table{
      {
          property<TestControl>("Name", [](TestControl &c) { return c.name; }),
          property<TestControl>(
              "Text", [](TestControl &c) { return c.text; }, [](TestControl &c, const Variant &v) { c.text = v; }),
      },
      nullptr,
      QStringLiteral("Text")};
  return table;
}

void TestCollection::add(const QString &name, ObjectRef item) { items_.emplace_back(name, std::move(item)); }

ObjectRef TestCollection::item(const Variant &key) const {
  if (key.isString()) {
    for (const auto &[name, item] : items_) {
      if (name.compare(key.rawString(), Qt::CaseInsensitive) == 0)
        return item;
    }
  } else {
    const int index = key.toLong();
    if (index >= 0 && index < int(items_.size()))
      return items_[std::size_t(index)].second;
  }
  raiseError(ErrorNumber::SubscriptOutOfRange, typeName(), QStringLiteral("No item '%1'").arg(key.toText()));
}

std::unique_ptr<Enumerator> TestCollection::enumerate() {
  std::vector<Variant> values;
  for (const auto &entry : items_)
    values.emplace_back(entry.second);
  return std::make_unique<ListEnumerator>(std::move(values));
}

const MemberTable &TestCollection::memberTable() const {
  static const MemberTable table{
      {
          property<TestCollection>("Count", [](TestCollection &c) { return int(c.items_.size()); }),
          indexedProperty<TestCollection>("Item",
                                          [](TestCollection &c, Args &a) {
                                            expectArgs(a, 1, 1);
                                            return c.item(a[0]);
                                          }),
      },
      nullptr,
      QStringLiteral("Item")};
  return table;
}

std::shared_ptr<TestControl> TestSection::addControl(const QString &controlName) {
  auto control = std::make_shared<TestControl>(controlName);
  controls->add(controlName, control);
  return control;
}

const MemberTable &TestSection::memberTable() const {
  static const MemberTable table{{
      property<TestSection>("Name", [](TestSection &s) { return s.name; }),
      property<TestSection>("Controls", [](TestSection &s) { return s.controls; }),
  }};
  return table;
}

TestReport::TestReport() : sections(std::make_shared<TestCollection>()) {}

std::shared_ptr<TestSection> TestReport::addSection(const QString &sectionName) {
  auto section = std::make_shared<TestSection>(sectionName);
  sections->add(sectionName, section);
  return section;
}

const MemberTable &TestReport::memberTable() const {
  static const MemberTable table{{
      property<TestReport>(
          "Title", [](TestReport &r) { return r.title; }, [](TestReport &r, const Variant &v) { r.title = v; }),
      property<TestReport>("RecordIndex", [](TestReport &r) { return r.recordIndex; }),
      property<TestReport>("Sections", [](TestReport &r) { return r.sections; }),
      method<TestReport>("Timestamp",
                         [](TestReport &, Args &a) {
                           expectArgs(a, 1, 1);
                           return Variant(QStringLiteral("stamp ") + a[0].toString());
                         }),
      method<TestReport>("Fail",
                         [](TestReport &, Args &) -> Variant {
                           raiseError(ErrorNumber::PermissionDenied, QStringLiteral("Report"),
                                      QStringLiteral("The report refuses"));
                         }),
      method<TestReport>("Keep",
                         [](TestReport &r, Args &a) {
                           expectArgs(a, 1, 1);
                           r.kept = a[0];
                           return Variant();
                         }),
      method<TestReport>("Give", [](TestReport &r, Args &) { return r.kept; }),
      method<TestReport>("Apply",
                         [](TestReport &, Args &a) {
                           expectArgs(a, 2, 2);
                           Args inner{a[1]};
                           return a[0].toObject()->call(QString(), inner);
                         }),
  }};
  return table;
}

JScriptFixture::JScriptFixture() : engine(script::createScriptEngine(QStringLiteral("JScript"))) {
  report->addSection(QStringLiteral("PageHeader"));
  detail = report->addSection(QStringLiteral("Detail"));
  x = detail->addControl(QStringLiteral("x"));
  detail->addControl(QStringLiteral("y"));
  engine->addNamedItem(QStringLiteral("rpt"), report);
}

script::ScriptError JScriptFixture::errorOf(const QString &code) {
  try {
    engine->addCode(code);
  } catch (const script::ScriptError &error) {
    return error;
  }
  ADD_FAILURE() << "no error from: " << code.toStdString();
  return script::ScriptError(Error(0), 0, 0);
}

} // namespace kordel::test

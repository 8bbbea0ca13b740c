#include "CoreFixtures.h"

#include "core/Error.h"
#include "core/VbDate.h"

void PrintTo(const QString &text, std::ostream *os) { *os << '"' << text.toStdString() << '"'; }

namespace kordel {
void PrintTo(const Variant &value, std::ostream *os) {
  *os << value.typeName().toStdString() << ' ' << value.toText().toStdString();
}
} // namespace kordel

namespace kordel::test {

void RegionalTest::SetUp() {
  saved_ = regional();
  setRegional(RegionalSettings{});
}

void RegionalTest::TearDown() { setRegional(saved_); }

void RegionalTest::useLocale(const char *name) {
  setRegional(RegionalSettings::fromLocale(QLocale(QString::fromLatin1(name))));
}

Date dateTime(int year, int month, int day, int hours, int minutes, int seconds) {
  return combineDateTime(dateFromQt(QDate(year, month, day)), timeFromParts(hours, minutes, seconds));
}

const MemberTable &ValueObject::memberTable() const {
  static const MemberTable table{
      {property<ValueObject>("Value", [](ValueObject &o) { return o.value_; })}, nullptr, QStringLiteral("Value")};
  return table;
}

} // namespace kordel::test

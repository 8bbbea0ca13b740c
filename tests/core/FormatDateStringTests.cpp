// Format on dates (named and user formats, regional separators and names,
// week numbers with their first-day and first-week rules) and on strings.

#include "CoreFixtures.h"

#include "core/Error.h"
#include "core/Format.h"
#include "core/VbDate.h"

namespace kordel {
namespace {

using test::dateTime;
using test::errorNumber;

QString fmt(const Variant &value, const char *format, int firstDay = 1, int firstWeek = 1) {
  return formatValue(value, QString::fromUtf8(format), firstDay, firstWeek);
}

Variant day(int year, int month, int dayOfMonth) { return Variant(dateTime(year, month, dayOfMonth)); }

class FormatDates : public test::RegionalTest {
protected:
  const Variant thursday{dateTime(2023, 1, 5, 14, 7, 9)};
  const Variant march15{Date{45000}}; // a Wednesday
};

TEST_F(FormatDates, TheReportFormats) {
  EXPECT_EQ(fmt(thursday, "yyyy-mm-dd"), "2023-01-05");
  EXPECT_EQ(fmt(thursday, "yyyy-mm-dd hh:nn:ss"), "2023-01-05 14:07:09");
  EXPECT_EQ(fmt(thursday, "hh:nn"), "14:07");
  EXPECT_EQ(fmt(thursday, "General Date"), "2023-01-05 14:07:09");
  EXPECT_EQ(fmt(thursday, "dd"), "05");
  EXPECT_EQ(fmt(thursday, "mmm"), "Jan");
  EXPECT_EQ(fmt(thursday, "mmmm yyyy"), "January 2023");
  EXPECT_EQ(fmt(march15, "ww"), "11");
  EXPECT_EQ(fmt(Date{44931}, "General Date"), "2023-01-05");
  EXPECT_EQ(fmt(Date{0.5}, "General Date"), "12:00:00");
  EXPECT_EQ(fmt(Date{0}, "General Date"), "00:00:00");
}

TEST_F(FormatDates, DayMonthYearTokens) {
  EXPECT_EQ(fmt(thursday, "d"), "5");
  EXPECT_EQ(fmt(thursday, "ddd"), "Thu");
  EXPECT_EQ(fmt(thursday, "dddd"), "Thursday");
  EXPECT_EQ(fmt(thursday, "ddddd"), "2023-01-05");
  EXPECT_EQ(fmt(thursday, "dddddd"), "Thursday, January 5, 2023");
  EXPECT_EQ(fmt(thursday, "m"), "1");
  EXPECT_EQ(fmt(thursday, "mm"), "01");
  EXPECT_EQ(fmt(thursday, "q"), "1");
  EXPECT_EQ(fmt(day(2023, 8, 1), "q"), "3");
  EXPECT_EQ(fmt(thursday, "y"), "5");
  EXPECT_EQ(fmt(march15, "y"), "74");
  EXPECT_EQ(fmt(thursday, "yy"), "23");
  EXPECT_EQ(fmt(day(2005, 12, 31), "yy"), "05");
  EXPECT_EQ(fmt(thursday, "w"), "5");
  EXPECT_EQ(fmt(day(1993, 1, 27), "dddd, mmm d yyyy"), "Wednesday, Jan 27 1993");
  EXPECT_EQ(fmt(thursday, "YYYY-MM-DD"), "2023-01-05");
  EXPECT_EQ(fmt(thursday, "\\d\\a\\y d"), "day 5");
  EXPECT_EQ(fmt(march15, "\"Week \"ww"), "Week 11");
  EXPECT_EQ(fmt(thursday, "mm/dd"), "01-05"); // "/" is the regional date separator, "-" here
}

TEST_F(FormatDates, TheReferenceExamples) {
  const Variant evening(dateTime(1958, 12, 7, 20, 50, 35));
  useLocale("en_US");
  EXPECT_EQ(fmt(evening, "m/d/yy"), "12/7/58");
  EXPECT_EQ(fmt(evening, "d-mmm"), "7-Dec");
  EXPECT_EQ(fmt(evening, "d-mmmm-yy"), "7-December-58");
  EXPECT_EQ(fmt(evening, "d mmmm"), "7 December");
  EXPECT_EQ(fmt(evening, "mmmm yy"), "December 58");
  EXPECT_EQ(fmt(evening, "hh:mm AM/PM"), "08:50 PM");
  EXPECT_EQ(fmt(evening, "h:mm:ss a/p"), "8:50:35 p");
  EXPECT_EQ(fmt(evening, "h:mm"), "20:50");
  EXPECT_EQ(fmt(evening, "h:mm:ss"), "20:50:35");
  EXPECT_EQ(fmt(evening, "m/d/yy h:mm"), "12/7/58 20:50");
}

TEST_F(FormatDates, TimeTokens) {
  const Variant afternoon(timeFromParts(17, 4, 23));
  EXPECT_EQ(fmt(afternoon, "h:m:s"), "17:4:23"); // m after h is the minute
  EXPECT_EQ(fmt(afternoon, "hh:mm:ss AMPM"), "05:04:23 PM");
  EXPECT_EQ(fmt(thursday, "h:n:s"), "14:7:9");
  EXPECT_EQ(fmt(thursday, "HH:NN"), "14:07");
  EXPECT_EQ(fmt(thursday, "hh:mm"), "14:07");
  EXPECT_EQ(fmt(thursday, "h \\h mm \\m"), "14 h 07 m");
  EXPECT_EQ(fmt(thursday, "hh dd mm"), "14 05 01"); // a day between: the month again
  EXPECT_EQ(fmt(thursday, "ttttt"), "14:07:09");
  EXPECT_EQ(fmt(thursday, "c"), "2023-01-05 14:07:09");
  EXPECT_EQ(fmt(thursday, "hh:nn AM/PM"), "02:07 PM");
  EXPECT_EQ(fmt(thursday, "h:nn am/pm"), "2:07 pm");
  EXPECT_EQ(fmt(thursday, "h A/P"), "2 P");
  EXPECT_EQ(fmt(thursday, "h a/p"), "2 p");
  EXPECT_EQ(fmt(dateTime(2023, 1, 5, 0, 30), "h:nn AM/PM"), "12:30 AM");
  EXPECT_EQ(fmt(dateTime(2023, 1, 5, 12, 0), "h:nn AM/PM"), "12:00 PM");
  EXPECT_EQ(fmt(dateTime(2023, 1, 5, 9, 0), "hh AMPM"), "09 AM");
}

TEST_F(FormatDates, NamedFormats) {
  EXPECT_EQ(fmt(thursday, "Long Date"), "Thursday, January 5, 2023");
  EXPECT_EQ(fmt(thursday, "Medium Date"), "05-Jan-23");
  EXPECT_EQ(fmt(thursday, "Short Date"), "2023-01-05");
  EXPECT_EQ(fmt(thursday, "Long Time"), "14:07:09");
  EXPECT_EQ(fmt(thursday, "Medium Time"), "02:07 PM");
  EXPECT_EQ(fmt(thursday, "Short Time"), "14:07");
  EXPECT_EQ(fmt(thursday, "short date"), "2023-01-05");
  EXPECT_EQ(fmt(Variant::null(), "Short Date"), "");
}

TEST_F(FormatDates, WhatFormatTakesAsADate) {
  EXPECT_EQ(fmt(44931, "yyyy-mm-dd"), "2023-01-05");
  EXPECT_EQ(fmt(44931.75, "yyyy-mm-dd hh:nn"), "2023-01-05 18:00");
  EXPECT_EQ(fmt("2023-01-05", "dd"), "05");
  EXPECT_EQ(fmt("January 5, 2023", "yyyy-mm-dd"), "2023-01-05");
  EXPECT_EQ(fmt("abc", "yyyy"), "abc");
  EXPECT_EQ(fmt(Variant::null(), "yyyy-mm-dd"), "");
  EXPECT_EQ(fmt(Date{0}, "yyyy-mm-dd"), "1899-12-30");
  EXPECT_EQ(fmt(Date{1}, "yyyy-mm-dd"), "1899-12-31");
  EXPECT_EQ(fmt(Date{-1.25}, "yyyy-mm-dd hh:nn"), "1899-12-29 06:00");
  EXPECT_EQ(fmt(Date{44931}, ""), "2023-01-05");
  EXPECT_EQ(errorNumber([] { fmt(3e6, "yyyy"); }), ErrorNumber::Overflow);
}

TEST_F(FormatDates, WeekdayAndWeekOfYear) {
  EXPECT_EQ(vbWeekday(thursday.rawDate()), 5);
  EXPECT_EQ(vbWeekday(thursday.rawDate(), 2), 4); // from Monday
  EXPECT_EQ(vbWeekday(thursday.rawDate(), 7), 6); // from Saturday
  EXPECT_EQ(vbWeekday(dateTime(2023, 1, 1)), 1);  // a Sunday
  EXPECT_EQ(fmt(thursday, "w", 2), "4");

  // The week of 1 January, from Sunday: VB's default.
  EXPECT_EQ(fmt(day(2022, 1, 1), "ww"), "1"); // a Saturday
  EXPECT_EQ(fmt(day(2022, 1, 2), "ww"), "2");
  EXPECT_EQ(fmt(day(2000, 12, 31), "ww"), "54");
  EXPECT_EQ(fmt(day(2023, 1, 1), "ww", 2, 1), "1"); // a Sunday, weeks from Monday
  EXPECT_EQ(fmt(day(2023, 1, 2), "ww", 2, 1), "2");

  // The first week of four days, from Monday: ISO weeks.
  auto iso = [](int y, int m, int d) { return vbWeekOfYear(dateTime(y, m, d), 2, 2); };
  EXPECT_EQ(iso(2021, 1, 1), 53);
  EXPECT_EQ(iso(2021, 1, 3), 53);
  EXPECT_EQ(iso(2021, 1, 4), 1);
  EXPECT_EQ(iso(2020, 12, 31), 53);
  EXPECT_EQ(iso(2023, 3, 15), 11);
  EXPECT_EQ(iso(2024, 12, 31), 1);
  EXPECT_EQ(iso(2025, 12, 31), 1);
  EXPECT_EQ(iso(2026, 1, 1), 1);
  EXPECT_EQ(iso(2022, 1, 2), 52);
  EXPECT_EQ(fmt(day(2021, 1, 1), "ww", 2, 2), "53");

  // The first full week.
  EXPECT_EQ(fmt(day(2022, 1, 1), "ww", 1, 3), "52");
  EXPECT_EQ(fmt(day(2022, 1, 2), "ww", 1, 3), "1");
  EXPECT_EQ(fmt(day(2023, 1, 1), "ww", 1, 3), "1");
  EXPECT_EQ(fmt(day(2023, 1, 1), "ww", 2, 3), "52");

  // System settings: Sunday and 1 January for the C locale.
  EXPECT_EQ(fmt(day(2022, 1, 2), "ww", 0, 0), "2");
  EXPECT_EQ(vbWeekday(thursday.rawDate(), 0), 5);
  EXPECT_EQ(errorNumber([&] { vbWeekday(thursday.rawDate(), 8); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(errorNumber([&] { vbWeekOfYear(thursday.rawDate(), 1, 4); }), ErrorNumber::InvalidCall);
}

TEST_F(FormatDates, RegionalSeparatorsNamesAndWeeks) {
  useLocale("de_DE");
  EXPECT_EQ(fmt(thursday, "dd/mm/yyyy"), "05.01.2023");
  EXPECT_EQ(fmt(thursday, "hh:nn"), "14:07");
  EXPECT_EQ(fmt(thursday, "dddd"), "Donnerstag");

  useLocale("en_US");
  EXPECT_EQ(fmt(thursday, "dd/mm/yyyy"), "05/01/2023");
  EXPECT_EQ(fmt(thursday, "General Date"), "1/5/2023 2:07:09 PM");
  EXPECT_EQ(fmt(thursday, "Short Date"), "1/5/2023");
  EXPECT_EQ(fmt(thursday, "Short Time"), "14:07");
  EXPECT_EQ(fmt(thursday, "Long Time"), "2:07:09 PM");
  EXPECT_EQ(fmt(day(2022, 1, 2), "ww", 0, 0), "2");

  useLocale("sv_SE");
  EXPECT_EQ(fmt(thursday, "yyyy-mm-dd hh:nn:ss"), "2023-01-05 14:07:09");
  EXPECT_EQ(fmt(thursday, "General Date"), "2023-01-05 14:07:09");
  EXPECT_EQ(fmt(thursday, "mmmm yyyy"), "januari 2023");
  EXPECT_EQ(fmt(thursday, "dddd"), "torsdag");
  EXPECT_EQ(fmt(thursday, "Long Date"), "torsdag 5 januari 2023");
  EXPECT_EQ(fmt(thursday, "dd/mm/yyyy"), "05-01-2023");
  EXPECT_EQ(fmt(thursday, "hh:nn AMPM"), "02:07 em");
  // Weeks from Monday, the first week of four days.
  EXPECT_EQ(fmt(day(2022, 1, 2), "ww", 0, 0), "52");
  EXPECT_EQ(fmt(thursday, "w", 0), "4");
  EXPECT_EQ(fmt(day(2022, 1, 2), "ww"), "2"); // the default stays Sunday and 1 January
}

// ---- strings ----

class FormatStrings : public test::RegionalTest {};

TEST_F(FormatStrings, CaseAndPlaceholders) {
  EXPECT_EQ(fmt("HELLO", "<"), "hello");
  EXPECT_EQ(fmt("This is it", ">"), "THIS IS IT");
  EXPECT_EQ(fmt("abc", "@@@@@"), "  abc");
  EXPECT_EQ(fmt("abc", "!@@@@@"), "abc  ");
  EXPECT_EQ(fmt("abc", "&&&&&"), "abc");
  EXPECT_EQ(fmt("abc", ">@@@@"), " ABC");
  EXPECT_EQ(fmt("AbC", "<&&&"), "abc");
  EXPECT_EQ(fmt("ab", "(@@@)"), "( ab)");
  EXPECT_EQ(fmt("1234567", "@@@-@@@@"), "123-4567");
  EXPECT_EQ(fmt("12345", "@@@-@@@@"), "  1-2345");
  EXPECT_EQ(fmt("12345", "&&&-&&&&"), "1-2345");
  EXPECT_EQ(fmt("12345", "!&&&-&&&&"), "123-45");
  EXPECT_EQ(fmt(123, "@@@@@"), "  123");
  EXPECT_EQ(fmt("x", "\"@\"@@"), "@ x");
}

TEST_F(FormatStrings, TheSecondSectionServesNullAndEmpty) {
  EXPECT_EQ(fmt("", "@;\\e\\m\\p\\t\\y"), "empty");
  EXPECT_EQ(fmt(Variant::null(), "@;\\n\\o\\n\\e"), "none");
  EXPECT_EQ(fmt("abc", "@;\\e\\m\\p\\t\\y"), "abc");
  EXPECT_EQ(fmt(Variant::null(), "@@"), "");
}

} // namespace
} // namespace kordel

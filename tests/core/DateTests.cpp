// VB's date serials: day count from 1899-12-30, the time as a fraction
// that counts forward from midnight also before day zero; DateSerial and
// TimeSerial roll-over; reading dates from text; CStr of dates.

#include "CoreFixtures.h"

#include "core/Error.h"
#include "core/VbDate.h"

namespace kordel {
namespace {

using test::dateTime;
using test::errorNumber;

class Dates : public test::RegionalTest {};

TEST_F(Dates, SerialsCountFromDayZero) {
  EXPECT_EQ(calendarDate(Date{0}), QDate(1899, 12, 30));
  EXPECT_EQ(calendarDate(Date{1}), QDate(1899, 12, 31));
  EXPECT_EQ(calendarDate(Date{2}), QDate(1900, 1, 1));
  EXPECT_EQ(calendarDate(Date{36526}), QDate(2000, 1, 1));
  EXPECT_EQ(calendarDate(Date{45000}), QDate(2023, 3, 15));
  // Before day zero the whole part counts back and the fraction forward.
  EXPECT_EQ(calendarDate(Date{-1.25}), QDate(1899, 12, 29));
  EXPECT_EQ(timeOfDay(Date{-1.25}), QTime(6, 0));
  EXPECT_EQ(calendarDate(Date{-1.75}), QDate(1899, 12, 29));
  EXPECT_EQ(timeOfDay(Date{-1.75}), QTime(18, 0));
  EXPECT_EQ(timeOfDay(Date{45000.5}), QTime(12, 0));
  EXPECT_EQ(dateFromQt(QDate(1899, 12, 29)).serial, -1.0);
  EXPECT_EQ(combineDateTime(Date{-1}, Date{0.25}).serial, -1.25);
  EXPECT_EQ(combineDateTime(Date{45000}, Date{0.25}).serial, 45000.25);
  EXPECT_EQ(toQDateTime(Date{-2.5}), QDateTime(QDate(1899, 12, 28), QTime(12, 0)));
}

TEST_F(Dates, TheLastSecondRoundsToTheNextDay) {
  EXPECT_EQ(calendarDate(Date{1.99999999999}), QDate(1900, 1, 1));
  EXPECT_EQ(timeOfDay(Date{1.99999999999}), QTime(0, 0));
  // 1899-12-29 23:59:59.999... is midnight of the day after, 1899-12-30.
  EXPECT_EQ(calendarDate(Date{-1.99999999999}), QDate(1899, 12, 30));
  EXPECT_EQ(calendarDate(Date{-2.99999999999}), QDate(1899, 12, 29));
}

TEST_F(Dates, DateSerialRollsOver) {
  EXPECT_EQ(dateFromParts(2023, 1, 5).serial, 44931.0);
  EXPECT_EQ(calendarDate(dateFromParts(2023, 13, 1)), QDate(2024, 1, 1));
  EXPECT_EQ(calendarDate(dateFromParts(2023, 0, 1)), QDate(2022, 12, 1));
  EXPECT_EQ(calendarDate(dateFromParts(2023, -1, 1)), QDate(2022, 11, 1));
  EXPECT_EQ(calendarDate(dateFromParts(2023, -12, 1)), QDate(2021, 12, 1));
  EXPECT_EQ(calendarDate(dateFromParts(2023, 25, 1)), QDate(2025, 1, 1));
  EXPECT_EQ(calendarDate(dateFromParts(2023, 3, 0)), QDate(2023, 2, 28));
  EXPECT_EQ(calendarDate(dateFromParts(2024, 3, 0)), QDate(2024, 2, 29));
  EXPECT_EQ(calendarDate(dateFromParts(2023, 1, 32)), QDate(2023, 2, 1));
  EXPECT_EQ(calendarDate(dateFromParts(2023, 1, -30)), QDate(2022, 12, 1));
  EXPECT_EQ(calendarDate(dateFromParts(5, 1, 1)), QDate(2005, 1, 1));
  EXPECT_EQ(calendarDate(dateFromParts(29, 1, 1)), QDate(2029, 1, 1));
  EXPECT_EQ(calendarDate(dateFromParts(30, 1, 1)), QDate(1930, 1, 1));
  EXPECT_EQ(calendarDate(dateFromParts(99, 12, 31)), QDate(1999, 12, 31));
  EXPECT_EQ(errorNumber([] { dateFromParts(10000, 1, 1); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { dateFromParts(9999, 12, 32); }), ErrorNumber::Overflow);
  EXPECT_EQ(calendarDate(dateFromParts(9999, 12, 31)), QDate(9999, 12, 31));
}

TEST_F(Dates, TimeSerialRollsOver) {
  EXPECT_DOUBLE_EQ(timeFromParts(18, 0, 0).serial, 0.75);
  EXPECT_EQ(timeOfDay(timeFromParts(0, 90, 0)), QTime(1, 30));
  EXPECT_EQ(timeOfDay(timeFromParts(1, -1, 0)), QTime(0, 59));
  EXPECT_EQ(timeOfDay(timeFromParts(0, 0, 3661)), QTime(1, 1, 1));
  EXPECT_DOUBLE_EQ(timeFromParts(25, 0, 0).serial, 1.0 + 1.0 / 24.0);
  // Six hours before midnight of day zero is 18:00 of the day before.
  EXPECT_DOUBLE_EQ(timeFromParts(-6, 0, 0).serial, -1.75);
}

TEST_F(Dates, ReadsIsoDatesAndTimes) {
  EXPECT_EQ(parseVbDate("2023-01-05")->serial, 44931.0);
  EXPECT_EQ(parseVbDate(" 2023-1-5 ")->serial, 44931.0);
  EXPECT_EQ(parseVbDate("2023/01/05")->serial, 44931.0);
  EXPECT_DOUBLE_EQ(parseVbDate("2023-03-15 18:00")->serial, 45000.75);
  EXPECT_DOUBLE_EQ(parseVbDate("2023-03-15T06:00:00")->serial, 45000.25);
  EXPECT_DOUBLE_EQ(parseVbDate("14:30")->serial, 14.5 / 24.0);
  EXPECT_DOUBLE_EQ(parseVbDate("14:30:36")->serial, (14 * 3600 + 30 * 60 + 36) / 86400.0);
  EXPECT_DOUBLE_EQ(parseVbDate("2:30 PM")->serial, 14.5 / 24.0);
  EXPECT_DOUBLE_EQ(parseVbDate("2:30pm")->serial, 14.5 / 24.0);
  EXPECT_DOUBLE_EQ(parseVbDate("12:00 AM")->serial, 0.0);
  EXPECT_DOUBLE_EQ(parseVbDate("12:15 PM")->serial, 12.25 / 24.0);
  EXPECT_FALSE(parseVbDate("abc"));
  EXPECT_FALSE(parseVbDate(""));
  EXPECT_FALSE(parseVbDate("2023-02-30"));
  EXPECT_FALSE(parseVbDate("2023-13-01"));
  EXPECT_FALSE(parseVbDate("25:00"));
  EXPECT_FALSE(parseVbDate("12"));
}

TEST_F(Dates, ReadsMonthNames) {
  EXPECT_EQ(parseVbDate("January 5, 2023")->serial, 44931.0);
  EXPECT_EQ(parseVbDate("5 January 2023")->serial, 44931.0);
  EXPECT_EQ(parseVbDate("5-Jan-23")->serial, 44931.0);
  EXPECT_EQ(parseVbDate("Jan 5 2023")->serial, 44931.0);
  EXPECT_EQ(calendarDate(*parseVbDate("15 OCT 2023")), QDate(2023, 10, 15));
  EXPECT_EQ(calendarDate(*parseVbDate("AUGUST 1, 2023")), QDate(2023, 8, 1));
  EXPECT_DOUBLE_EQ(parseVbDate("January 5, 2023 6:00 PM")->serial, 44931.75);
  EXPECT_FALSE(parseVbDate("5 Smarch 2023"));
}

TEST_F(Dates, ReadsTheRegionalOrder) {
  useLocale("en_US");
  EXPECT_EQ(calendarDate(*parseVbDate("1/5/2023")), QDate(2023, 1, 5));
  EXPECT_EQ(calendarDate(*parseVbDate("12/31/99")), QDate(1999, 12, 31));
  // A month of 13 cannot be: VB reads the other way round.
  EXPECT_EQ(calendarDate(*parseVbDate("13/1/2023")), QDate(2023, 1, 13));
  EXPECT_EQ(calendarDate(*parseVbDate("2023-01-05")), QDate(2023, 1, 5));

  useLocale("de_DE");
  EXPECT_EQ(calendarDate(*parseVbDate("05.01.2023")), QDate(2023, 1, 5));
  EXPECT_EQ(calendarDate(*parseVbDate("5.1.2023 14:30")), QDate(2023, 1, 5));
  EXPECT_EQ(calendarDate(*parseVbDate("5. Januar 2023")), QDate(2023, 1, 5));

  useLocale("sv_SE");
  EXPECT_EQ(calendarDate(*parseVbDate("2023-01-05")), QDate(2023, 1, 5));
  EXPECT_EQ(calendarDate(*parseVbDate("5 januari 2023")), QDate(2023, 1, 5));
  EXPECT_EQ(calendarDate(*parseVbDate("5 jan. 2023")), QDate(2023, 1, 5));
}

TEST_F(Dates, CStrShowsDateTimeOrBoth) {
  EXPECT_EQ(Variant(Date{44931}).toString(), QString("2023-01-05"));
  EXPECT_EQ(Variant(Date{44931.75}).toString(), QString("2023-01-05 18:00:00"));
  EXPECT_EQ(Variant(Date{0.75}).toString(), QString("18:00:00"));
  EXPECT_EQ(Variant(dateTime(2023, 1, 5, 9, 5, 7)).toString(), QString("2023-01-05 09:05:07"));
  EXPECT_EQ(Variant(Date{-1.25}).toString(), QString("1899-12-29 06:00:00"));
  EXPECT_EQ(Variant(Date{1}).toString(), QString("1899-12-31"));
  // Day zero has no date part: VB shows it as a time, midnight included.
  EXPECT_EQ(Variant(Date{0}).toString(), QString("00:00:00"));

  useLocale("en_US");
  EXPECT_EQ(Variant(Date{44931}).toString(), QString("1/5/2023"));
  EXPECT_EQ(Variant(Date{44931.75}).toString(), QString("1/5/2023 6:00:00 PM"));
  EXPECT_EQ(Variant(Date{0.25}).toString(), QString("6:00:00 AM"));

  useLocale("sv_SE");
  EXPECT_EQ(Variant(dateTime(2023, 1, 5, 14, 30)).toString(), QString("2023-01-05 14:30:00"));
  EXPECT_EQ(Variant("2023-01-05 14:30").toDate().serial, dateTime(2023, 1, 5, 14, 30).serial);
}

TEST_F(Dates, CStrAndCDateRoundTrip) {
  for (const char *locale : {"C", "en_US", "de_DE", "sv_SE"}) {
    useLocale(locale);
    for (const Date value : {Date{44931}, dateTime(2023, 12, 31, 23, 59, 59), Date{0.5}, dateTime(1950, 6, 1, 7)}) {
      const QString text = Variant(value).toString();
      EXPECT_DOUBLE_EQ(Variant(text).toDate().serial, value.serial) << locale << " " << text.toStdString();
    }
  }
}

TEST_F(Dates, RangeIsTheYears100To9999) {
  EXPECT_EQ(errorNumber([] { checkDateRange(-657434.0); }), 0);
  EXPECT_EQ(errorNumber([] { checkDateRange(2958465.99); }), 0);
  EXPECT_EQ(errorNumber([] { checkDateRange(-657435.0); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { checkDateRange(2958466.0); }), ErrorNumber::Overflow);
  EXPECT_EQ(calendarDate(Date{-657434}), QDate(100, 1, 1));
  EXPECT_EQ(calendarDate(Date{2958465}), QDate(9999, 12, 31));
}

} // namespace
} // namespace kordel

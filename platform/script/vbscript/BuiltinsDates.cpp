// The date functions of the library, on core's date serials.

#include "core/Error.h"
#include "core/Format.h"
#include "core/Regional.h"
#include "core/VbDate.h"
#include "script/vbscript/Builtins.h"

#include <QDateTime>

#include <cmath>
#include <limits>

namespace kordel::script::vb {

namespace {

[[noreturn]] void invalidCall() { raiseError(ErrorNumber::InvalidCall); }

// A date as seconds on a straight line, so that date arithmetic does not
// need to mind the sign rule of serials before 1899-12-30.
std::int64_t secondsOf(Date value) {
  const double whole = std::trunc(value.serial);
  const double fraction = std::fabs(value.serial - whole);
  return std::int64_t(whole) * 86400 + std::llround(fraction * 86400.0);
}

std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
  std::int64_t q = a / b;
  if ((a % b != 0) && ((a < 0) != (b < 0)))
    --q;
  return q;
}

Date dateOfSeconds(std::int64_t seconds) {
  const std::int64_t day = floorDiv(seconds, 86400);
  const std::int64_t rest = seconds - day * 86400;
  const Date result = combineDateTime(Date{double(day)}, Date{double(rest) / 86400.0});
  checkDateRange(result.serial);
  return result;
}

Date timePart(Date value) { return Date{std::fabs(value.serial - std::trunc(value.serial))}; }

int weekdayArg(const BuiltinArgs &a, int index) {
  const int day = intArg(a, index, 1);
  if (day < 0 || day > 7)
    invalidCall();
  return day;
}

int weekOfYearArg(const BuiltinArgs &a, int index) {
  const int week = intArg(a, index, 1);
  if (week < 0 || week > 3)
    invalidCall();
  return week;
}

// The interval names of DateAdd, DateDiff and DatePart.
enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval intervalArg(const Variant &value) {
  const QString name = value.toString().toLower();
  if (name == QLatin1String("yyyy"))
    return Interval::Year;
  if (name == QLatin1String("q"))
    return Interval::Quarter;
  if (name == QLatin1String("m"))
    return Interval::Month;
  if (name == QLatin1String("y"))
    return Interval::DayOfYear;
  if (name == QLatin1String("d"))
    return Interval::Day;
  if (name == QLatin1String("w"))
    return Interval::Weekday;
  if (name == QLatin1String("ww"))
    return Interval::Week;
  if (name == QLatin1String("h"))
    return Interval::Hour;
  if (name == QLatin1String("n"))
    return Interval::Minute;
  if (name == QLatin1String("s"))
    return Interval::Second;
  invalidCall();
}

Variant fnNow(BuiltinArgs &) { return Variant(dateFromQt(QDateTime::currentDateTime())); }
Variant fnDate(BuiltinArgs &) { return Variant(dateFromQt(QDate::currentDate())); }
Variant fnTime(BuiltinArgs &) { return Variant(timePart(dateFromQt(QDateTime::currentDateTime()))); }

Variant fnTimer(BuiltinArgs &) { return Variant(float(QTime::currentTime().msecsSinceStartOfDay()) / 1000.0f); }

template <class Part> Variant datePart(const Variant &value, Part part) {
  if (value.isNull())
    return Variant::null();
  return Variant(std::int16_t(part(value.toDate())));
}

Variant fnYear(BuiltinArgs &a) {
  return datePart(a[0], [](Date d) { return calendarDate(d).year(); });
}
Variant fnMonth(BuiltinArgs &a) {
  return datePart(a[0], [](Date d) { return calendarDate(d).month(); });
}
Variant fnDay(BuiltinArgs &a) {
  return datePart(a[0], [](Date d) { return calendarDate(d).day(); });
}
Variant fnHour(BuiltinArgs &a) {
  return datePart(a[0], [](Date d) { return timeOfDay(d).hour(); });
}
Variant fnMinute(BuiltinArgs &a) {
  return datePart(a[0], [](Date d) { return timeOfDay(d).minute(); });
}
Variant fnSecond(BuiltinArgs &a) {
  return datePart(a[0], [](Date d) { return timeOfDay(d).second(); });
}

Variant fnWeekday(BuiltinArgs &a) {
  const int firstDay = weekdayArg(a, 1);
  return datePart(a[0], [firstDay](Date d) { return vbWeekday(d, firstDay); });
}

Variant fnWeekdayName(BuiltinArgs &a) {
  const int n = intArg(a, 0, 1);
  if (n < 1 || n > 7)
    invalidCall();
  const bool abbreviate = a.has(1) && a[1].toBool();
  int firstDay = intArg(a, 2, 0);
  if (firstDay < 0 || firstDay > 7)
    invalidCall();
  if (firstDay == 0) {
    // The system's first day: 2023-01-01 is a Sunday; counted from the
    // system's start of the week it is day s, so the week starts s - 1
    // days before Sunday.
    const int sunday = vbWeekday(dateFromParts(2023, 1, 1), 0);
    firstDay = (7 - (sunday - 1)) % 7 + 1;
  }
  const int sundayBased = (firstDay - 1 + n - 1) % 7 + 1; // 1 Sunday ... 7 Saturday
  const int qtDay = (sundayBased + 5) % 7 + 1;            // 1 Monday ... 7 Sunday
  return Variant(regional().locale.dayName(qtDay, abbreviate ? QLocale::ShortFormat : QLocale::LongFormat));
}

Variant fnMonthName(BuiltinArgs &a) {
  const int n = intArg(a, 0, 1);
  if (n < 1 || n > 12)
    invalidCall();
  const bool abbreviate = a.has(1) && a[1].toBool();
  return Variant(regional().locale.monthName(n, abbreviate ? QLocale::ShortFormat : QLocale::LongFormat));
}

Variant fnDateAdd(BuiltinArgs &a) {
  const Interval interval = intervalArg(a[0]);
  requireNotNull(a[1]);
  if (a[2].isNull())
    return Variant::null();
  const std::int32_t number = a[1].toLong();
  const Date start = a[2].toDate();
  auto addMonths = [&](int months) {
    const QDate day = calendarDate(start).addMonths(months);
    if (!day.isValid())
      invalidCall();
    const Date result = combineDateTime(dateFromQt(day), timePart(start));
    checkDateRange(result.serial);
    return Variant(result);
  };
  try {
    switch (interval) {
    case Interval::Year: return addMonths(number * 12);
    case Interval::Quarter: return addMonths(number * 3);
    case Interval::Month: return addMonths(number);
    case Interval::DayOfYear:
    case Interval::Day:
    case Interval::Weekday: return Variant(dateOfSeconds(secondsOf(start) + std::int64_t(number) * 86400));
    case Interval::Week: return Variant(dateOfSeconds(secondsOf(start) + std::int64_t(number) * 7 * 86400));
    case Interval::Hour: return Variant(dateOfSeconds(secondsOf(start) + std::int64_t(number) * 3600));
    case Interval::Minute: return Variant(dateOfSeconds(secondsOf(start) + std::int64_t(number) * 60));
    case Interval::Second: return Variant(dateOfSeconds(secondsOf(start) + std::int64_t(number)));
    }
  } catch (const Error &error) {
    if (error.number() == ErrorNumber::Overflow)
      invalidCall(); // a result outside the calendar
    throw;
  }
  invalidCall();
}

// The first day of the week that holds a day, counted in days.
std::int64_t weekStart(Date value, int firstDay) {
  const std::int64_t day = floorDiv(secondsOf(value), 86400);
  return day - (vbWeekday(value, firstDay) - 1);
}

Variant longResult(std::int64_t value) {
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
    raiseError(ErrorNumber::Overflow);
  return Variant(int(value));
}

Variant fnDateDiff(BuiltinArgs &a) {
  const Interval interval = intervalArg(a[0]);
  const int firstDay = weekdayArg(a, 3);
  weekOfYearArg(a, 4);
  if (a[1].isNull() || a[2].isNull())
    return Variant::null();
  const Date from = a[1].toDate(), to = a[2].toDate();
  const QDate d1 = calendarDate(from), d2 = calendarDate(to);
  const std::int64_t s1 = secondsOf(from), s2 = secondsOf(to);
  switch (interval) {
  case Interval::Year: return longResult(d2.year() - d1.year());
  case Interval::Quarter:
    return longResult((d2.year() * 4 + (d2.month() - 1) / 3) - (d1.year() * 4 + (d1.month() - 1) / 3));
  case Interval::Month: return longResult((d2.year() * 12 + d2.month()) - (d1.year() * 12 + d1.month()));
  case Interval::DayOfYear:
  case Interval::Day: return longResult(floorDiv(s2, 86400) - floorDiv(s1, 86400));
  case Interval::Weekday: return longResult((floorDiv(s2, 86400) - floorDiv(s1, 86400)) / 7);
  case Interval::Week: return longResult((weekStart(to, firstDay) - weekStart(from, firstDay)) / 7);
  case Interval::Hour: return longResult(floorDiv(s2, 3600) - floorDiv(s1, 3600));
  case Interval::Minute: return longResult(floorDiv(s2, 60) - floorDiv(s1, 60));
  case Interval::Second: return longResult(s2 - s1);
  }
  invalidCall();
}

Variant fnDatePart(BuiltinArgs &a) {
  const Interval interval = intervalArg(a[0]);
  const int firstDay = weekdayArg(a, 2);
  const int firstWeek = weekOfYearArg(a, 3);
  if (a[1].isNull())
    return Variant::null();
  const Date value = a[1].toDate();
  const QDate day = calendarDate(value);
  const QTime time = timeOfDay(value);
  int part = 0;
  switch (interval) {
  case Interval::Year: part = day.year(); break;
  case Interval::Quarter: part = (day.month() - 1) / 3 + 1; break;
  case Interval::Month: part = day.month(); break;
  case Interval::DayOfYear: part = day.dayOfYear(); break;
  case Interval::Day: part = day.day(); break;
  case Interval::Weekday: part = vbWeekday(value, firstDay); break;
  case Interval::Week: part = vbWeekOfYear(value, firstDay, firstWeek); break;
  case Interval::Hour: part = time.hour(); break;
  case Interval::Minute: part = time.minute(); break;
  case Interval::Second: part = time.second(); break;
  }
  return Variant(std::int16_t(part));
}

// A date outside the years 100 to 9999 is an invalid argument here, not the
// overflow of a conversion: the parts themselves were fine Integers.
Variant fnDateSerial(BuiltinArgs &a) {
  for (int i = 0; i < 3; ++i)
    requireNotNull(a[i]);
  const std::int16_t year = a[0].toInteger(), month = a[1].toInteger(), day = a[2].toInteger();
  try {
    return Variant(dateFromParts(year, month, day));
  } catch (const Error &error) {
    if (error.number() != ErrorNumber::Overflow)
      throw;
    raiseError(ErrorNumber::InvalidCall);
  }
}

Variant fnTimeSerial(BuiltinArgs &a) {
  for (int i = 0; i < 3; ++i)
    requireNotNull(a[i]);
  return Variant(timeFromParts(a[0].toInteger(), a[1].toInteger(), a[2].toInteger()));
}

Variant fnDateValue(BuiltinArgs &a) {
  if (a[0].isNull())
    return Variant::null();
  return Variant(Date{std::trunc(a[0].toDate().serial)});
}

Variant fnTimeValue(BuiltinArgs &a) {
  if (a[0].isNull())
    return Variant::null();
  return Variant(timePart(a[0].toDate()));
}

constexpr BuiltinDef kDateBuiltins[] = {
    {"Now", fnNow, 0, 0},
    {"Date", fnDate, 0, 0},
    {"Time", fnTime, 0, 0},
    {"Timer", fnTimer, 0, 0},
    {"Year", fnYear, 1, 1},
    {"Month", fnMonth, 1, 1},
    {"Day", fnDay, 1, 1},
    {"Hour", fnHour, 1, 1},
    {"Minute", fnMinute, 1, 1},
    {"Second", fnSecond, 1, 1},
    {"Weekday", fnWeekday, 1, 2},
    {"WeekdayName", fnWeekdayName, 1, 3},
    {"MonthName", fnMonthName, 1, 2},
    {"DateAdd", fnDateAdd, 3, 3},
    {"DateDiff", fnDateDiff, 3, 5},
    {"DatePart", fnDatePart, 2, 4},
    {"DateSerial", fnDateSerial, 3, 3},
    {"TimeSerial", fnTimeSerial, 3, 3},
    {"DateValue", fnDateValue, 1, 1},
    {"TimeValue", fnTimeValue, 1, 1},
};

} // namespace

std::span<const BuiltinDef> dateBuiltins() { return kDateBuiltins; }

} // namespace kordel::script::vb

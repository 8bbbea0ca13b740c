#include "core/FormatParts.h"

#include "core/Error.h"
#include "core/Format.h"
#include "core/Regional.h"
#include "core/VbDate.h"

#include <cmath>
#include <vector>

namespace kordel {

namespace {

// VB's vbUseSystem: the regional first day of the week, Sunday for the C
// locale. Qt numbers days from Monday = 1 to Sunday = 7, VB from Sunday = 1.
int systemFirstDay() {
  const QLocale &locale = regional().locale;
  if (locale.language() == QLocale::C)
    return 1;
  return int(locale.firstDayOfWeek()) % 7 + 1;
}

// VB's vbUseSystem for the first week. Qt knows no first-week rule; regions
// whose weeks start on Monday number them as ISO 8601 does (the first week
// with four days), the others count from the week of 1 January.
int systemFirstWeek() {
  if (regional().locale.language() == QLocale::C)
    return 1;
  return systemFirstDay() == 2 ? 2 : 1;
}

int resolveFirstDay(int firstDayOfWeek) {
  if (firstDayOfWeek < 0 || firstDayOfWeek > 7)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Format"));
  return firstDayOfWeek == 0 ? systemFirstDay() : firstDayOfWeek;
}

int weekdayOf(const QDate &day, int firstDay) {
  const int sundayBased = day.dayOfWeek() % 7 + 1; // Sunday 1 ... Saturday 7
  return (sundayBased - firstDay + 7) % 7 + 1;
}

// The first day of the first week of a year.
QDate firstWeekStart(int year, int firstDay, int firstWeek) {
  auto weekStart = [&](const QDate &day) { return day.addDays(-(weekdayOf(day, firstDay) - 1)); };
  const QDate january1(year, 1, 1);
  switch (firstWeek) {
  case 2: return weekStart(QDate(year, 1, 4)); // the week holding 4 January has four days of the year
  case 3: {
    const QDate start = weekStart(january1);
    return start == january1 ? start : start.addDays(7);
  }
  default: return weekStart(january1);
  }
}

} // namespace

int vbWeekday(Date value, int firstDayOfWeek) {
  return weekdayOf(calendarDate(value), resolveFirstDay(firstDayOfWeek));
}

int vbWeekOfYear(Date value, int firstDayOfWeek, int firstWeekOfYear) {
  if (firstWeekOfYear < 0 || firstWeekOfYear > 3)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Format"));
  const int firstDay = resolveFirstDay(firstDayOfWeek);
  const int firstWeek = firstWeekOfYear == 0 ? systemFirstWeek() : firstWeekOfYear;
  const QDate day = calendarDate(value);
  QDate start = firstWeekStart(day.year(), firstDay, firstWeek);
  if (day < start) {
    // Days before the first week belong to the last week of the year before.
    start = firstWeekStart(day.year() - 1, firstDay, firstWeek);
  } else if (firstWeek == 2 && day >= firstWeekStart(day.year() + 1, firstDay, firstWeek)) {
    return 1; // late December days in the next year's first week
  }
  return int(start.daysTo(day) / 7) + 1;
}

namespace formatting {

namespace {

enum class Kind {
  Literal,
  General,        // c
  Day,            // d
  Day2,           // dd
  DayShortName,   // ddd
  DayLongName,    // dddd
  ShortDate,      // ddddd
  LongDate,       // dddddd
  Weekday,        // w
  Week,           // ww
  Month,          // m
  Month2,         // mm
  MonthShortName, // mmm
  MonthLongName,  // mmmm
  Quarter,        // q
  DayOfYear,      // y
  Year2,          // yy
  Year4,          // yyyy
  Hour,           // h
  Hour2,          // hh
  Minute,         // n, or m after h
  Minute2,        // nn, or mm after h
  Second,         // s
  Second2,        // ss
  LongTime,       // ttttt
  AmPm,           // AM/PM am/pm A/P a/p: text holds the spelling
  RegionalAmPm,   // AMPM
  DateSeparator,  // /
  TimeSeparator,  // :
};

struct Token {
  Kind kind;
  QString text;
};

qsizetype runLength(const QString &pattern, qsizetype i) {
  const QChar c = pattern[i].toLower();
  qsizetype n = 1;
  while (i + n < pattern.size() && pattern[i + n].toLower() == c)
    ++n;
  return n;
}

bool startsWithAt(const QString &pattern, qsizetype i, const char *word) {
  return QStringView(pattern).mid(i).startsWith(QLatin1String(word), Qt::CaseInsensitive);
}

std::vector<Token> tokenize(const QString &pattern) {
  std::vector<Token> tokens;
  for (qsizetype i = 0; i < pattern.size(); ++i) {
    QString literal;
    if (readLiteral(pattern, i, literal)) {
      tokens.push_back({Kind::Literal, literal});
      continue;
    }
    const QChar c = pattern[i];
    const qsizetype run = runLength(pattern, i);
    auto take = [&](Kind kind, qsizetype length) {
      tokens.push_back({kind, {}});
      i += length - 1;
    };
    switch (c.toLower().unicode()) {
    case u'c': take(Kind::General, 1); break;
    case u'd': {
      static constexpr Kind days[] = {Kind::Day,         Kind::Day2,      Kind::DayShortName,
                                      Kind::DayLongName, Kind::ShortDate, Kind::LongDate};
      const qsizetype n = std::min<qsizetype>(run, 6);
      take(days[n - 1], n);
      break;
    }
    case u'w': take(run >= 2 ? Kind::Week : Kind::Weekday, std::min<qsizetype>(run, 2)); break;
    case u'm': {
      static constexpr Kind months[] = {Kind::Month, Kind::Month2, Kind::MonthShortName, Kind::MonthLongName};
      const qsizetype n = std::min<qsizetype>(run, 4);
      take(months[n - 1], n);
      break;
    }
    case u'q': take(Kind::Quarter, 1); break;
    case u'y':
      if (run >= 4)
        take(Kind::Year4, 4);
      else if (run >= 2)
        take(Kind::Year2, 2);
      else
        take(Kind::DayOfYear, 1);
      break;
    case u'h': take(run >= 2 ? Kind::Hour2 : Kind::Hour, std::min<qsizetype>(run, 2)); break;
    case u'n': take(run >= 2 ? Kind::Minute2 : Kind::Minute, std::min<qsizetype>(run, 2)); break;
    case u's': take(run >= 2 ? Kind::Second2 : Kind::Second, std::min<qsizetype>(run, 2)); break;
    case u't':
      if (run >= 5)
        take(Kind::LongTime, 5);
      else
        tokens.push_back({Kind::Literal, QString(c)});
      break;
    case u'a':
      if (startsWithAt(pattern, i, "am/pm")) {
        tokens.push_back({Kind::AmPm, pattern.mid(i, 5)});
        i += 4;
      } else if (startsWithAt(pattern, i, "ampm")) {
        take(Kind::RegionalAmPm, 4);
      } else if (startsWithAt(pattern, i, "a/p")) {
        tokens.push_back({Kind::AmPm, pattern.mid(i, 3)});
        i += 2;
      } else {
        tokens.push_back({Kind::Literal, QString(c)});
      }
      break;
    case u'/': take(Kind::DateSeparator, 1); break;
    case u':': take(Kind::TimeSeparator, 1); break;
    default: tokens.push_back({Kind::Literal, QString(c)});
    }
  }
  // "m" and "mm" right after an hour mean minutes; literals and separators
  // may stand between them ("hh:mm").
  bool afterHour = false;
  for (Token &t : tokens) {
    switch (t.kind) {
    case Kind::Literal:
    case Kind::DateSeparator:
    case Kind::TimeSeparator: break;
    case Kind::Hour:
    case Kind::Hour2: afterHour = true; break;
    case Kind::Month:
    case Kind::Month2:
      if (afterHour)
        t.kind = t.kind == Kind::Month ? Kind::Minute : Kind::Minute2;
      afterHour = false;
      break;
    default: afterHour = false;
    }
  }
  return tokens;
}

// The regional separator of a pattern: its first character that is no
// letter, digit, blank or quoted text ("-" of "yyyy-mm-dd", "." of
// "dd.mm.yyyy").
QString separatorOf(const QString &pattern, QChar fallback) {
  for (qsizetype i = 0; i < pattern.size(); ++i) {
    QString literal;
    if (readLiteral(pattern, i, literal))
      continue;
    const QChar c = pattern[i];
    if (!c.isLetterOrNumber() && !c.isSpace())
      return QString(c);
  }
  return QString(fallback);
}

QString twoDigits(int value) { return QStringLiteral("%1").arg(value, 2, 10, QChar(u'0')); }

class DateRenderer {
public:
  DateRenderer(Date value, int firstDay, int firstWeek)
      : value_(value), day_(calendarDate(value)), time_(timeOfDay(value)), firstDay_(firstDay), firstWeek_(firstWeek) {}

  QString render(const QString &pattern, int depth = 0) const {
    const std::vector<Token> tokens = tokenize(pattern);
    bool twelveHours = false;
    for (const Token &t : tokens)
      twelveHours = twelveHours || t.kind == Kind::AmPm || t.kind == Kind::RegionalAmPm;
    QString out;
    for (const Token &t : tokens)
      out += text(t, twelveHours, depth);
    return out;
  }

private:
  // The regional patterns are themselves VB patterns; one level of them is
  // enough, and a regional pattern naming another one shows nothing for it.
  QString regionalPattern(const QString &pattern, int depth) const {
    return depth > 0 ? QString() : render(pattern, depth + 1);
  }

  QString general(int depth) const {
    const RegionalSettings &reg = regional();
    const bool hasDate = std::trunc(value_.serial) != 0;
    const bool hasTime = time_.msecsSinceStartOfDay() != 0;
    // Day zero shows only its time, midnight of any other day only its date.
    if (!hasDate)
      return regionalPattern(reg.longTime, depth);
    if (!hasTime)
      return regionalPattern(reg.shortDate, depth);
    return regionalPattern(reg.shortDate + u' ' + reg.longTime, depth);
  }

  QString text(const Token &t, bool twelveHours, int depth) const {
    const RegionalSettings &reg = regional();
    const QLocale &locale = reg.locale;
    const int hour = time_.hour();
    const int shownHour = twelveHours ? (hour % 12 == 0 ? 12 : hour % 12) : hour;
    switch (t.kind) {
    case Kind::Literal: return t.text;
    case Kind::General: return general(depth);
    case Kind::Day: return QString::number(day_.day());
    case Kind::Day2: return twoDigits(day_.day());
    case Kind::DayShortName: return locale.dayName(day_.dayOfWeek(), QLocale::ShortFormat);
    case Kind::DayLongName: return locale.dayName(day_.dayOfWeek(), QLocale::LongFormat);
    case Kind::ShortDate: return regionalPattern(reg.shortDate, depth);
    case Kind::LongDate: return regionalPattern(reg.longDate, depth);
    case Kind::Weekday: return QString::number(weekdayOf(day_, firstDay_));
    case Kind::Week: return QString::number(vbWeekOfYear(value_, firstDay_, firstWeek_));
    case Kind::Month: return QString::number(day_.month());
    case Kind::Month2: return twoDigits(day_.month());
    case Kind::MonthShortName: return locale.monthName(day_.month(), QLocale::ShortFormat);
    case Kind::MonthLongName: return locale.monthName(day_.month(), QLocale::LongFormat);
    case Kind::Quarter: return QString::number((day_.month() - 1) / 3 + 1);
    case Kind::DayOfYear: return QString::number(day_.dayOfYear());
    case Kind::Year2: return twoDigits(day_.year() % 100);
    case Kind::Year4: return QString::number(day_.year());
    case Kind::Hour: return QString::number(shownHour);
    case Kind::Hour2: return twoDigits(shownHour);
    case Kind::Minute: return QString::number(time_.minute());
    case Kind::Minute2: return twoDigits(time_.minute());
    case Kind::Second: return QString::number(time_.second());
    case Kind::Second2: return twoDigits(time_.second());
    case Kind::LongTime: return regionalPattern(reg.longTime, depth);
    case Kind::AmPm: {
      // The spelling of the format itself: "AM/PM" gives "PM", "a/p" gives "p".
      const qsizetype slash = t.text.indexOf(u'/');
      return hour < 12 ? t.text.left(slash) : t.text.mid(slash + 1);
    }
    case Kind::RegionalAmPm: return hour < 12 ? reg.amDesignator : reg.pmDesignator;
    case Kind::DateSeparator: return separatorOf(reg.shortDate, u'/');
    case Kind::TimeSeparator: return separatorOf(reg.longTime, u':');
    }
    return {};
  }

  Date value_;
  QDate day_;
  QTime time_;
  int firstDay_;
  int firstWeek_;
};

} // namespace

bool isDatePattern(const QString &section) {
  for (const Token &t : tokenize(section)) {
    if (t.kind != Kind::Literal && t.kind != Kind::DateSeparator && t.kind != Kind::TimeSeparator)
      return true;
  }
  return false;
}

std::optional<QString> namedDatePattern(const QString &name) {
  const RegionalSettings &reg = regional();
  auto is = [&](const char *named) { return name.compare(QLatin1String(named), Qt::CaseInsensitive) == 0; };
  if (is("General Date"))
    return QStringLiteral("c");
  if (is("Long Date"))
    return reg.longDate;
  if (is("Medium Date"))
    return QStringLiteral("dd-mmm-yy");
  if (is("Short Date"))
    return reg.shortDate;
  if (is("Long Time"))
    return reg.longTime;
  if (is("Medium Time"))
    return QStringLiteral("hh:nn AM/PM");
  if (is("Short Time"))
    return QStringLiteral("hh:nn"); // always 24 hours, whatever the regional short time
  return std::nullopt;
}

QString formatDate(Date value, const QString &pattern, int firstDayOfWeek, int firstWeekOfYear) {
  const int firstDay = resolveFirstDay(firstDayOfWeek);
  const int firstWeek = firstWeekOfYear == 0 ? systemFirstWeek() : firstWeekOfYear;
  return DateRenderer(value, firstDay, firstWeek).render(pattern);
}

} // namespace formatting

} // namespace kordel

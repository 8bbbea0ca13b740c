#include "core/VbDate.h"

#include "core/Error.h"
#include "core/Format.h"
#include "core/Regional.h"

#include <QRegularExpression>

#include <cmath>

namespace kordel {

namespace {

const QDate kEpoch(1899, 12, 30);
constexpr double kMinSerial = -657434.0; // 0100-01-01

} // namespace

void checkDateRange(double serial) {
  if (!(serial >= kMinSerial && serial < 2958466.0))
    raiseError(ErrorNumber::Overflow);
}

Date dateFromParts(int year, int month, int day) {
  // Years 0-29 mean 2000-2029 and 30-99 mean 1930-1999, as VB reads them.
  if (year >= 0 && year < 30)
    year += 2000;
  else if (year >= 30 && year < 100)
    year += 1900;
  const int monthIndex = month - 1;
  int yearShift = monthIndex >= 0 ? monthIndex / 12 : -((11 - monthIndex) / 12);
  year += yearShift;
  month = monthIndex - yearShift * 12 + 1;
  const QDate first(year, month, 1);
  if (!first.isValid())
    raiseError(ErrorNumber::Overflow);
  const double serial = double(kEpoch.daysTo(first)) + double(day - 1);
  checkDateRange(serial);
  return Date{serial};
}

Date timeFromParts(int hours, int minutes, int seconds) {
  const double total = double(hours) * 3600.0 + double(minutes) * 60.0 + double(seconds);
  const double days = total / 86400.0;
  // A negative total counts back from midnight of day zero.
  if (days >= 0)
    return Date{days};
  const double whole = std::floor(days);
  const double fraction = days - whole;
  return combineDateTime(Date{whole}, Date{fraction});
}

Date combineDateTime(Date day, Date time) {
  const double whole = std::trunc(day.serial);
  const double fraction = std::fabs(time.serial - std::trunc(time.serial));
  return Date{whole >= 0 ? whole + fraction : whole - fraction};
}

Date dateFromQt(const QDate &value) { return Date{double(kEpoch.daysTo(value))}; }

Date dateFromQt(const QDateTime &value) {
  const Date day = dateFromQt(value.date());
  const QTime t = value.time();
  const double fraction = (t.msecsSinceStartOfDay() / 1000) / 86400.0;
  return combineDateTime(day, Date{fraction});
}

QDate calendarDate(Date value) {
  // Round to the second first, so 23:59:59.9999 does not fall to the wrong
  // day. The time counts forward from midnight also before day zero, so a
  // time that rounds up to midnight is always the next calendar day.
  double whole = std::trunc(value.serial);
  double fraction = std::fabs(value.serial - whole);
  if (std::llround(fraction * 86400.0) >= 86400)
    whole += 1;
  return kEpoch.addDays(qint64(whole));
}

QTime timeOfDay(Date value) {
  const double fraction = std::fabs(value.serial - std::trunc(value.serial));
  const qint64 seconds = std::llround(fraction * 86400.0) % 86400;
  return QTime(0, 0).addSecs(int(seconds));
}

QDateTime toQDateTime(Date value) { return QDateTime(calendarDate(value), timeOfDay(value)); }

namespace {

int monthFromName(const QString &word) {
  const QLocale &locale = regional().locale;
  const QLocale english(QLocale::English);
  for (const QLocale *l : {&locale, &english}) {
    for (int m = 1; m <= 12; ++m) {
      if (word.compare(l->monthName(m, QLocale::LongFormat), Qt::CaseInsensitive) == 0 ||
          word.compare(l->monthName(m, QLocale::ShortFormat).remove(u'.'), Qt::CaseInsensitive) == 0)
        return m;
    }
  }
  return 0;
}

// The order of day, month and year in the regional short date.
QString shortDateOrder() {
  const QString &pattern = regional().shortDate;
  QString order;
  for (QChar c : pattern) {
    const QChar lower = c.toLower();
    if ((lower == u'd' || lower == u'm' || lower == u'y') && !order.contains(lower))
      order += lower;
  }
  return order.size() == 3 ? order : QStringLiteral("ymd");
}

std::optional<Date> parseTimePart(const QString &text) {
  static const QRegularExpression timeRe(
      QStringLiteral("^(\\d{1,2})(?::(\\d{1,2}))?(?::(\\d{1,2}))?\\s*([AaPp][Mm]?)?$"));
  const auto m = timeRe.match(text.trimmed());
  if (!m.hasMatch())
    return std::nullopt;
  if (m.captured(2).isEmpty() && m.captured(4).isEmpty())
    return std::nullopt; // a bare number is no time
  int h = m.captured(1).toInt();
  const int n = m.captured(2).isEmpty() ? 0 : m.captured(2).toInt();
  const int s = m.captured(3).isEmpty() ? 0 : m.captured(3).toInt();
  const QString ampm = m.captured(4).toUpper();
  if (!ampm.isEmpty()) {
    if (h < 1 || h > 12)
      return std::nullopt;
    if (ampm.startsWith(u'P') && h != 12)
      h += 12;
    if (ampm.startsWith(u'A') && h == 12)
      h = 0;
  }
  if (h > 23 || n > 59 || s > 59)
    return std::nullopt;
  return Date{(h * 3600 + n * 60 + s) / 86400.0};
}

std::optional<Date> makeDay(int y, int m, int d, bool yearGiven) {
  if (!yearGiven)
    y = QDate::currentDate().year();
  else if (y >= 0 && y < 30)
    y += 2000;
  else if (y >= 30 && y < 100)
    y += 1900;
  const QDate day(y, m, d);
  if (!day.isValid() || y < 100 || y > 9999)
    return std::nullopt;
  return dateFromQt(day);
}

std::optional<Date> parseDatePart(const QString &text) {
  static const QRegularExpression numericRe(QStringLiteral("^(\\d{1,4})[-/.](\\d{1,2})(?:[-/.](\\d{1,4}))?$"));
  static const QRegularExpression namedRe(
      QStringLiteral("^(?:(\\d{1,2})[ .-]*([^\\d\\s,.-]+)\\.?[ ,-]*(\\d{1,4})?|([^\\d\\s,.-]+)\\.?[ -]*(\\d{1,2}),?[ "
                     "-]*(\\d{1,4})?)$"));
  const QString t = text.trimmed();
  if (auto m = numericRe.match(t); m.hasMatch()) {
    const QString a = m.captured(1), b = m.captured(2), c = m.captured(3);
    if (a.size() > 2) // year first, as ISO writes it
      return c.isEmpty() ? std::nullopt : makeDay(a.toInt(), b.toInt(), c.toInt(), true);
    const QString order = shortDateOrder();
    if (c.isEmpty()) {
      // Two numbers: day and month in regional order, this year.
      const bool dayFirst = order.indexOf(u'd') < order.indexOf(u'm');
      return dayFirst ? makeDay(0, b.toInt(), a.toInt(), false) : makeDay(0, a.toInt(), b.toInt(), false);
    }
    int parts[3] = {a.toInt(), b.toInt(), c.toInt()};
    int y = 0, mo = 0, d = 0;
    for (int i = 0; i < 3; ++i) {
      const QChar which = order[i];
      (which == u'y' ? y : which == u'm' ? mo : d) = parts[i];
    }
    if (auto r = makeDay(y, mo, d, true))
      return r;
    // VB tries the other readings when the regional one is impossible.
    if (auto r = makeDay(parts[2], parts[0], parts[1], true))
      return r;
    return makeDay(parts[2], parts[1], parts[0], true);
  }
  if (auto m = namedRe.match(t); m.hasMatch()) {
    if (!m.captured(1).isEmpty()) {
      const int month = monthFromName(m.captured(2));
      if (month == 0)
        return std::nullopt;
      return makeDay(m.captured(3).toInt(), month, m.captured(1).toInt(), !m.captured(3).isEmpty());
    }
    const int month = monthFromName(m.captured(4));
    if (month == 0)
      return std::nullopt;
    return makeDay(m.captured(6).toInt(), month, m.captured(5).toInt(), !m.captured(6).isEmpty());
  }
  return std::nullopt;
}

} // namespace

std::optional<Date> parseVbDate(const QString &input) {
  QString text = input.trimmed();
  if (text.isEmpty())
    return std::nullopt;
  // ISO's "T" between date and time; only there, not in "OCT" or "AUGUST".
  static const QRegularExpression isoSeparator(QStringLiteral("(\\d)T(\\d)"));
  text.replace(isoSeparator, QStringLiteral("\\1 \\2"));
  if (auto time = parseTimePart(text))
    return time;
  if (auto day = parseDatePart(text))
    return day;
  // A date followed by a time: try each blank as the split point.
  for (qsizetype i = text.size() - 1; i > 0; --i) {
    if (text[i] != u' ')
      continue;
    const auto day = parseDatePart(text.left(i));
    if (!day)
      continue;
    const auto time = parseTimePart(text.mid(i + 1));
    if (!time)
      continue;
    return combineDateTime(*day, *time);
  }
  return std::nullopt;
}

// Day zero shows only its time, midnight included, as VB shows an unset
// Date; any other day shows its time unless that is midnight.
QString vbDateText(Date value) { return formatValue(Variant(value), QStringLiteral("General Date")); }

} // namespace kordel

#pragma once

#include "core/Variant.h"

#include <QDate>
#include <QDateTime>
#include <QTime>

#include <optional>

namespace kordel {

// VB's dates: a day count from 1899-12-30 with the time as fraction. The
// valid range is the years 100 to 9999, as in VB; outside it raises 6.

// The date of a year, month and day; months and days out of range roll
// over as DateSerial's do (month 13 is January of the next year).
Date dateFromParts(int year, int month, int day);
// A time of day as a fraction; hours, minutes and seconds roll over as
// TimeSerial's do.
Date timeFromParts(int hours, int minutes, int seconds);
// A date and a time of day joined, minding the sign rule before 1899-12-30.
Date combineDateTime(Date day, Date timeOfDay);

Date dateFromQt(const QDateTime &value);
Date dateFromQt(const QDate &value);
// The calendar day and the time of day of a date, to the second.
QDate calendarDate(Date value);
QTime timeOfDay(Date value);
QDateTime toQDateTime(Date value);

// Raises 6 unless the serial lies within the years 100 to 9999.
void checkDateRange(double serial);

// Reads a date the way CDate reads a string: ISO dates and times, the
// regional short date order, month names, times with AM/PM. Nothing when
// the text is no date.
std::optional<Date> parseVbDate(const QString &text);

// CStr of a date: the short date, the long time, or both; a date without
// time shows no time and a time on day zero shows no date.
QString vbDateText(Date value);

} // namespace kordel

#pragma once

#include "core/Variant.h"

#include <QString>

#include <optional>

namespace kordel {

// VB's Format(expression, format, firstDayOfWeek, firstWeekOfYear).
//
// Numbers: the named formats ("General Number", "Currency", "Fixed",
// "Standard", "Percent", "Scientific", "Yes/No", "True/False", "On/Off")
// and user formats with up to four sections (positive;negative;zero;null),
// placeholders 0 and #, the decimal point, thousands grouping and scaling
// commas, %, E+ E- e+ e-, quoted and backslash-escaped literals.
// Dates: the named formats ("General Date", "Long Date", "Medium Date",
// "Short Date", "Long Time", "Medium Time", "Short Time") and user formats
// with c d dd ddd dddd ddddd dddddd w ww m mm mmm mmmm q y yy yyyy h hh n nn
// s ss ttttt AM/PM am/pm A/P a/p AMPM, / and :.
// Strings: @ & < > !.
// Separators, names and named formats come from the regional settings.
//
// firstDayOfWeek: 0 system, 1 Sunday ... 7 Saturday (VB's vbSunday...).
// firstWeekOfYear: 0 system, 1 the week of 1 January, 2 the first week of
// four days, 3 the first full week.
QString formatValue(const Variant &value, const QString &format = {}, int firstDayOfWeek = 1, int firstWeekOfYear = 1);

// The date a text shows in a date format (a named one such as "Short Date"
// or a user format of date tokens), read as Format reads it; nothing for
// another format, or for a value that is no text or no date.
std::optional<Date> textDateInFormat(const Variant &value, const QString &format);

// The day of the week of a date, 1 to 7, counted from firstDayOfWeek
// (VB's Weekday), and the week of the year (DatePart "ww").
int vbWeekday(Date value, int firstDayOfWeek = 1);
int vbWeekOfYear(Date value, int firstDayOfWeek = 1, int firstWeekOfYear = 1);

} // namespace kordel

#pragma once

// The pieces of formatValue (Format.h), shared by its three halves:
// Format.cpp picks the kind of format and formats strings, FormatNumber.cpp
// formats numbers and FormatDate.cpp dates. Not for use outside them.

#include "core/Variant.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace kordel::formatting {

// Reads a literal at position i of a format: a text in double quotes or a
// character after a backslash. Appends it to out, leaves i on its last
// character and returns true; returns false when no literal starts at i.
bool readLiteral(const QString &format, qsizetype &i, QString &out);

// Numbers. The number is a Variant of a numeric type (Integer, Long, Byte,
// Single, Double or Currency).
bool isNumberPattern(const QString &section);
// The named number formats; nothing when the name is none of them.
std::optional<QString> formatNamedNumber(const Variant &number, const QString &name);
// User number formats: positive;negative;zero;null sections.
QString formatNumber(const Variant &number, const QStringList &sections);
// The text of Null: the fourth section when there is one, else "".
QString formatNullNumber(const QStringList &sections);

// Dates.
bool isDatePattern(const QString &section);
// The pattern of a named date format ("General Date" is "c"); nothing
// when the name is none of them.
std::optional<QString> namedDatePattern(const QString &name);
QString formatDate(Date value, const QString &pattern, int firstDayOfWeek, int firstWeekOfYear);

} // namespace kordel::formatting

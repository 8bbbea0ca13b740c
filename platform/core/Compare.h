#pragma once

#include "core/Variant.h"

#include <optional>

namespace kordel {

// VB's Option Compare: binary compares code units, text ignores case.
enum class CompareMode { Binary = 0, Text = 1 };

// Compares two strings as StrComp does: -1, 0 or 1.
int compareStrings(const QString &a, const QString &b, CompareMode mode);

// VB's comparison of two values for =, <>, <, >, <=, >=: -1, 0 or 1, or
// nothing when either side is Null (the comparison is then Null).
// Numbers (with Boolean, Date, Currency and Empty) compare as numbers and
// strings as strings; a number is less than any string; Empty against a
// string counts as "". Objects compare by their default value. Arrays raise 13.
std::optional<int> compareValues(const Variant &a, const Variant &b, CompareMode mode = CompareMode::Binary);

} // namespace kordel

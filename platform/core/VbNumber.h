#pragma once

#include <QString>

#include <optional>

namespace kordel {

// Rounds to the nearest integer, halves to the even neighbour, as VB's
// CInt, CLng and Round do.
double roundHalfEven(double value);
// Rounds to a number of decimals with halves to even.
double roundHalfEven(double value, int decimals);

// Reads a number the way VB's conversions read a string: blanks around it,
// a sign, group separators, the regional decimal separator, an exponent,
// "&H" and "&O" prefixes, a currency symbol, parentheses for negatives.
// Nothing when the text is no number.
std::optional<double> parseVbNumber(const QString &text);

// The text CStr gives for a number with the given significant digits (15
// for Double, 7 for Single): no trailing zeros, the regional decimal
// separator, and an exponent ("1E+20", "1.5E-07") outside the fixed range.
QString vbNumberText(double value, int significantDigits);

} // namespace kordel

#pragma once

#include <QString>

#include <optional>

namespace kordel::engine::xls {

// The number a text plainly shows, for a cell that holds a number rather
// than text: digits with an optional leading minus, optional thousands
// commas in groups of three and an optional decimal point, as in "42",
// "-3.5" or "1,234.50"; white space around it is allowed. Anything else
// stays text: dates, phone numbers, "+5", "=1+2", numbers with leading
// zeros such as "007" (the zeros would be lost) and numbers with more
// digits than a double keeps.
std::optional<double> plainNumber(const QString &text);

} // namespace kordel::engine::xls

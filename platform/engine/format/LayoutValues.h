#pragma once

// The text forms of the values in a layout file: numbers, booleans and
// colours as the writer spells them and the reader accepts them.

#include <QColor>
#include <QString>

#include <optional>

namespace kordel::engine::layoutformat {

// The shortest text that reads back as the same value ("1440", "0.1",
// "1e+20"). Non-finite values have no text in a layout.
QString numberText(float value);
QString numberText(double value);

// A finite number in C notation, with nothing around it; nothing for any
// other text, and for floats beyond the range of float.
std::optional<float> parseFloat(const QString &text);
std::optional<double> parseDouble(const QString &text);
// A whole number such as "-12", nothing else.
std::optional<int> parseInteger(const QString &text);

// "1" and "0".
QString booleanText(bool value);
std::optional<bool> parseBoolean(const QString &text);

// "#rrggbb", lower case when written, either case when read.
QString colorText(const QColor &color);
std::optional<QColor> parseColor(const QString &text);

} // namespace kordel::engine::layoutformat

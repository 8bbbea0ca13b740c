#include "engine/format/LayoutValues.h"

#include <charconv>
#include <cmath>
#include <type_traits>

namespace kordel::engine::layoutformat {

namespace {

// std::to_chars without a format gives the shortest text that reads back
// as the same value, in plain or exponent form, whichever is shorter.
template <class Number> QString shortestText(Number value) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return QString::fromLatin1(buffer, result.ptr - buffer);
}

template <class Number> std::optional<Number> parseNumber(const QString &text) {
  const QByteArray latin1 = text.toLatin1();
  Number value{};
  const char *end = latin1.constData() + latin1.size();
  const auto result = std::from_chars(latin1.constData(), end, value);
  if (latin1.isEmpty() || result.ec != std::errc() || result.ptr != end)
    return std::nullopt;
  if constexpr (std::is_floating_point_v<Number>)
    if (!std::isfinite(value))
      return std::nullopt;
  return value;
}

} // namespace

QString numberText(float value) { return shortestText(value); }
QString numberText(double value) { return shortestText(value); }

std::optional<float> parseFloat(const QString &text) { return parseNumber<float>(text); }
std::optional<double> parseDouble(const QString &text) { return parseNumber<double>(text); }
std::optional<int> parseInteger(const QString &text) { return parseNumber<int>(text); }

QString booleanText(bool value) { return value ? QStringLiteral("1") : QStringLiteral("0"); }

std::optional<bool> parseBoolean(const QString &text) {
  if (text == u"1")
    return true;
  if (text == u"0")
    return false;
  return std::nullopt;
}

QString colorText(const QColor &color) { return color.name(QColor::HexRgb); }

std::optional<QColor> parseColor(const QString &text) {
  if (text.size() != 7 || text.at(0) != u'#')
    return std::nullopt;
  for (qsizetype i = 1; i < text.size(); ++i) {
    const char16_t c = text.at(i).unicode();
    if (!((c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F')))
      return std::nullopt;
  }
  return QColor(QRgb(text.mid(1).toUInt(nullptr, 16)));
}

} // namespace kordel::engine::layoutformat

#include "engine/export/xls/CellValue.h"

#include <QLocale>
#include <QRegularExpression>

namespace kordel::engine::xls {

namespace {

// More significant digits than this do not survive the trip through a double.
constexpr int kMaxSignificantDigits = 15;

} // namespace

std::optional<double> plainNumber(const QString &text) {
  static const QRegularExpression number(QStringLiteral(R"(^-?(?:[0-9]{1,3}(?:,[0-9]{3})+|[0-9]+)(?:\.[0-9]+)?$)"));
  const QString trimmed = text.trimmed();
  if (!number.match(trimmed).hasMatch())
    return std::nullopt;
  QString digits = trimmed;
  digits.remove(QLatin1Char(','));
  const qsizetype integerStart = digits.startsWith(QLatin1Char('-')) ? 1 : 0;
  const qsizetype point = digits.indexOf(QLatin1Char('.'));
  const qsizetype integerDigits = (point < 0 ? digits.size() : point) - integerStart;
  if (integerDigits > 1 && digits[integerStart] == QLatin1Char('0'))
    return std::nullopt;

  QString significant = digits.mid(integerStart);
  significant.remove(QLatin1Char('.'));
  while (significant.startsWith(QLatin1Char('0')))
    significant.remove(0, 1);
  while (significant.endsWith(QLatin1Char('0')))
    significant.chop(1);
  if (significant.size() > kMaxSignificantDigits)
    return std::nullopt;

  bool ok = false;
  const double value = QLocale::c().toDouble(digits, &ok);
  if (!ok)
    return std::nullopt;
  return value;
}

} // namespace kordel::engine::xls

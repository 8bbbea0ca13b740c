#include "core/VbNumber.h"

#include "core/Regional.h"

#include <cmath>
#include <cstdio>

namespace kordel {

double roundHalfEven(double value) {
  if (!std::isfinite(value))
    return value;
  const double floorValue = std::floor(value);
  const double diff = value - floorValue;
  if (diff > 0.5)
    return floorValue + 1.0;
  if (diff < 0.5)
    return floorValue;
  return std::fmod(floorValue, 2.0) == 0.0 ? floorValue : floorValue + 1.0;
}

double roundHalfEven(double value, int decimals) {
  if (decimals <= 0)
    return roundHalfEven(value);
  // Work on the shortest decimal text of the value, so that 2.675 (stored
  // as 2.67499999...) rounds as the user wrote it.
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.15g", value);
  const double exact = std::strtod(buffer, nullptr);
  const double scale = std::pow(10.0, decimals);
  const double scaled = exact * scale;
  std::snprintf(buffer, sizeof buffer, "%.15g", scaled);
  return roundHalfEven(std::strtod(buffer, nullptr)) / scale;
}

namespace {

bool parseRadix(QStringView digits, int radix, double &out) {
  if (digits.isEmpty() || digits.size() > (radix == 16 ? 8 : 11))
    return false;
  bool ok = false;
  const qulonglong raw = digits.toULongLong(&ok, radix);
  if (!ok || raw > 0xFFFFFFFFull)
    return false;
  // &H literals are 16-bit when they fit four digits, else 32-bit, and
  // both wrap to negative as VB's do.
  if (radix == 16 && digits.size() <= 4)
    out = double(std::int16_t(std::uint16_t(raw)));
  else
    out = double(std::int32_t(std::uint32_t(raw)));
  return true;
}

// Removes the currency symbol from either end of a number text.
void stripCurrencySymbol(QString &text, const QString &symbol) {
  if (symbol.isEmpty())
    return;
  if (text.startsWith(symbol))
    text = text.mid(symbol.size()).trimmed();
  else if (text.endsWith(symbol))
    text = text.chopped(symbol.size()).trimmed();
}

} // namespace

std::optional<double> parseVbNumber(const QString &input) {
  const RegionalSettings &reg = regional();
  QString text = input.trimmed();
  if (text.isEmpty())
    return std::nullopt;

  if (text.size() > 2 && text[0] == u'&') {
    const QChar kind = text[1].toUpper();
    double value = 0;
    if (kind == u'H' && parseRadix(QStringView(text).mid(2), 16, value))
      return value;
    if (kind == u'O' && parseRadix(QStringView(text).mid(2), 8, value))
      return value;
    return std::nullopt;
  }

  bool negative = false;
  if (text.startsWith(u'(') && text.endsWith(u')')) {
    negative = true;
    text = text.mid(1, text.size() - 2).trimmed();
  }
  stripCurrencySymbol(text, reg.currencySymbol);
  if (!text.isEmpty() && (text[0] == u'+' || text[0] == u'-')) {
    negative = negative != (text[0] == u'-');
    text = text.mid(1).trimmed();
    stripCurrencySymbol(text, reg.currencySymbol); // "-$12.50", as Format's "Currency" writes it
  }
  if (!text.isEmpty() && (text.back() == u'+' || text.back() == u'-')) {
    negative = negative != (text.back() == u'-');
    text.chop(1);
  }

  // Build a C-locale number text: digits, one '.', an exponent.
  QByteArray plain;
  plain.reserve(text.size());
  bool seenDigit = false;
  bool seenDecimal = false;
  bool seenExponent = false;
  const bool groupIsBlank =
      reg.groupSeparator.isSpace() || reg.groupSeparator == QChar(0xA0) || reg.groupSeparator == QChar(0x202F);
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar c = text[i];
    if (c.isDigit() && c.unicode() < 128) {
      plain += char(c.unicode());
      seenDigit = true;
    } else if (c == reg.decimalSeparator && !seenDecimal && !seenExponent) {
      plain += '.';
      seenDecimal = true;
    } else if ((c == reg.groupSeparator || (groupIsBlank && (c == u' ' || c == QChar(0xA0) || c == QChar(0x202F)))) &&
               seenDigit && !seenDecimal && !seenExponent) {
      continue;
    } else if ((c == u'e' || c == u'E' || c == u'd' || c == u'D') && seenDigit && !seenExponent) {
      plain += 'e';
      seenExponent = true;
      if (i + 1 < text.size() && (text[i + 1] == u'+' || text[i + 1] == u'-')) {
        plain += char(text[i + 1].unicode());
        ++i;
      }
      if (i + 1 >= text.size() || !text[i + 1].isDigit())
        return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  if (!seenDigit)
    return std::nullopt;
  char *end = nullptr;
  const double value = std::strtod(plain.constData(), &end);
  if (end != plain.constData() + plain.size())
    return std::nullopt;
  return negative ? -value : value;
}

QString vbNumberText(double value, int significantDigits) {
  if (value == 0.0)
    return QStringLiteral("0");
  if (std::isnan(value))
    return QStringLiteral("NaN");
  if (std::isinf(value))
    return value > 0 ? QStringLiteral("Infinity") : QStringLiteral("-Infinity");

  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*e", significantDigits - 1, value);
  // buffer: [-]d.ddddde[+-]xx
  QByteArray text(buffer);
  const qsizetype ePos = text.indexOf('e');
  const int exponent = text.mid(ePos + 1).toInt();
  QByteArray mantissa = text.left(ePos);
  const bool negative = mantissa.startsWith('-');
  if (negative)
    mantissa.remove(0, 1);
  mantissa.remove(1, 1); // the '.'
  while (mantissa.size() > 1 && mantissa.endsWith('0'))
    mantissa.chop(1);

  const QChar point = regional().decimalSeparator;
  QString out;
  if (exponent >= significantDigits || exponent < -5) {
    out = QString::fromLatin1(mantissa.left(1));
    if (mantissa.size() > 1) {
      out += point;
      out += QString::fromLatin1(mantissa.mid(1));
    }
    out += exponent < 0 ? QStringLiteral("E-") : QStringLiteral("E+");
    out += QStringLiteral("%1").arg(std::abs(exponent), 2, 10, QChar(u'0'));
  } else if (exponent < 0) {
    out = QStringLiteral("0");
    out += point;
    out += QString(-exponent - 1, u'0');
    out += QString::fromLatin1(mantissa);
  } else {
    const qsizetype intDigits = exponent + 1;
    if (mantissa.size() <= intDigits) {
      out = QString::fromLatin1(mantissa) + QString(intDigits - mantissa.size(), u'0');
    } else {
      out = QString::fromLatin1(mantissa.left(intDigits));
      out += point;
      out += QString::fromLatin1(mantissa.mid(intDigits));
    }
  }
  return negative ? u'-' + out : out;
}

} // namespace kordel

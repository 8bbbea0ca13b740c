#include "core/FormatParts.h"

#include "core/Regional.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace kordel::formatting {

namespace {

// A number as its decimal digits. Format rounds on the decimal text of the
// value (15 significant digits of a Double, 7 of a Single, all of a Long or
// a Currency), halves away from zero, so Format(0.125, "0.00") is "0.13"
// although 0.125 * 100 is no exact half in binary.
struct DecimalDigits {
  bool negative = false;
  std::string digits; // significant digits, no leading or trailing zeros; empty for zero
  int point = 0;      // how many digits stand before the decimal point; may be < 0 or > digits.size()

  bool isZero() const { return digits.empty(); }

  void normalize() {
    std::size_t lead = 0;
    while (lead < digits.size() && digits[lead] == '0')
      ++lead;
    digits.erase(0, lead);
    point -= int(lead);
    while (!digits.empty() && digits.back() == '0')
      digits.pop_back();
    if (digits.empty())
      point = 0;
  }

  void scale(int powerOfTen) {
    if (!isZero())
      point += powerOfTen;
  }

  void roundToDecimals(int decimals) {
    if (isZero())
      return;
    const long keep = long(point) + decimals;
    if (keep >= long(digits.size()))
      return;
    if (keep < 0) {
      digits.clear();
      point = 0;
      return;
    }
    const bool up = digits[std::size_t(keep)] >= '5';
    digits.resize(std::size_t(keep));
    if (up) {
      long i = keep - 1;
      while (i >= 0 && digits[std::size_t(i)] == '9')
        digits[std::size_t(i--)] = '0';
      if (i < 0) {
        digits.insert(digits.begin(), '1');
        ++point;
      } else {
        ++digits[std::size_t(i)];
      }
    }
    normalize();
  }

  // The digits before the decimal point, "" when there are none.
  QString integerDigits() const {
    if (point <= 0)
      return {};
    QString out = QString::fromLatin1(digits.substr(0, std::min<std::size_t>(std::size_t(point), digits.size())));
    return out.leftJustified(point, u'0');
  }

  // The first count digits after the decimal point.
  QString fractionDigits(int count) const {
    QString out;
    for (int i = 0; i < count; ++i) {
      const long at = long(point) + i;
      out += at >= 0 && at < long(digits.size()) ? QChar::fromLatin1(digits[std::size_t(at)]) : QChar(u'0');
    }
    return out;
  }
};

DecimalDigits fromInteger(std::int64_t value, int decimals = 0) {
  DecimalDigits d;
  d.negative = value < 0;
  // The magnitude as unsigned, so that the most negative Currency has one.
  const std::uint64_t magnitude = d.negative ? 0 - std::uint64_t(value) : std::uint64_t(value);
  d.digits = std::to_string(magnitude);
  d.point = int(d.digits.size()) - decimals;
  d.normalize();
  return d;
}

DecimalDigits fromDouble(double value, int significantDigits) {
  DecimalDigits d;
  if (value == 0.0)
    return d;
  d.negative = value < 0;
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*e", significantDigits - 1, std::fabs(value));
  // buffer: d.ddddde[+-]xx
  const std::string text(buffer);
  const std::size_t e = text.find('e');
  d.digits = text.substr(0, 1) + text.substr(2, e - 2);
  d.point = std::stoi(text.substr(e + 1)) + 1;
  d.normalize();
  return d;
}

DecimalDigits decimalOf(const Variant &number) {
  using VT = Variant::Type;
  switch (number.type()) {
  case VT::Integer: return fromInteger(number.rawInteger());
  case VT::Long: return fromInteger(number.rawLong());
  case VT::Byte: return fromInteger(number.rawByte());
  case VT::Currency: return fromInteger(number.rawCurrency().scaled, 4);
  case VT::Single: return fromDouble(number.rawSingle(), 7);
  default: return fromDouble(number.toDouble(), 15);
  }
}

// ---- the tokens of a number section ----

enum class Kind { Zero, Hash, Point, Comma, Percent, Exponent, Literal };

struct Token {
  Kind kind;
  QString text;          // the literal, or "E"/"e" of an exponent
  bool plusSign = false; // E+ shows the sign of positive exponents too
};

bool isPlaceholder(const Token &t) { return t.kind == Kind::Zero || t.kind == Kind::Hash; }

std::vector<Token> tokenize(const QString &section) {
  std::vector<Token> tokens;
  bool seenPlaceholder = false, seenPoint = false, seenExponent = false;
  for (qsizetype i = 0; i < section.size(); ++i) {
    QString literal;
    if (readLiteral(section, i, literal)) {
      tokens.push_back({Kind::Literal, literal});
      continue;
    }
    const QChar c = section[i];
    if (c == u'0' || c == u'#') {
      tokens.push_back({c == u'0' ? Kind::Zero : Kind::Hash, {}});
      seenPlaceholder = true;
    } else if (c == u'.' && !seenPoint && !seenExponent) {
      tokens.push_back({Kind::Point, {}});
      seenPoint = true;
    } else if (c == u',' && !seenExponent) {
      tokens.push_back({Kind::Comma, {}});
    } else if (c == u'%') {
      tokens.push_back({Kind::Percent, {}});
    } else if ((c == u'E' || c == u'e') && seenPlaceholder && !seenExponent && i + 1 < section.size() &&
               (section[i + 1] == u'+' || section[i + 1] == u'-')) {
      tokens.push_back({Kind::Exponent, QString(c), section[i + 1] == u'+'});
      seenExponent = true;
      ++i;
    } else {
      tokens.push_back({Kind::Literal, QString(c)});
    }
  }
  return tokens;
}

// Where the parts of a section lie, and what its commas mean.
struct Layout {
  std::vector<Token> tokens;
  qsizetype integerEnd = 0;  // tokens before it form the integer part
  qsizetype mantissaEnd = 0; // tokens from integerEnd to it, the point and the fraction
  bool hasPoint = false;
  int integerPlaceholders = 0;
  int fractionPlaceholders = 0;
  int exponentZeros = 0;
  qsizetype firstIntegerPlaceholder = -1;
  bool grouping = false;
  int scalingCommas = 0;
  int percents = 0;
  std::vector<bool> commaIsLiteral; // per token: a comma before any placeholder stays as text
};

Layout analyze(const QString &section) {
  Layout l;
  l.tokens = tokenize(section);
  const qsizetype n = qsizetype(l.tokens.size());
  l.mantissaEnd = n;
  for (qsizetype i = 0; i < n; ++i) {
    if (l.tokens[i].kind == Kind::Exponent) {
      l.mantissaEnd = i;
      break;
    }
  }
  l.integerEnd = l.mantissaEnd;
  for (qsizetype i = 0; i < l.mantissaEnd; ++i) {
    if (l.tokens[i].kind == Kind::Point) {
      l.integerEnd = i;
      l.hasPoint = true;
      break;
    }
  }
  qsizetype lastIntegerPlaceholder = -1;
  for (qsizetype i = 0; i < l.integerEnd; ++i) {
    if (isPlaceholder(l.tokens[i])) {
      if (l.firstIntegerPlaceholder < 0)
        l.firstIntegerPlaceholder = i;
      lastIntegerPlaceholder = i;
      ++l.integerPlaceholders;
    }
  }
  l.commaIsLiteral.assign(std::size_t(n), false);
  // A comma between digit placeholders groups thousands; commas after the
  // last one (before the decimal point) divide by a thousand each.
  for (qsizetype i = 0; i < l.integerEnd; ++i) {
    if (l.tokens[i].kind != Kind::Comma)
      continue;
    if (l.firstIntegerPlaceholder < 0 || i < l.firstIntegerPlaceholder)
      l.commaIsLiteral[std::size_t(i)] = true;
    else if (i < lastIntegerPlaceholder)
      l.grouping = true;
    else
      ++l.scalingCommas;
  }
  for (qsizetype i = 0; i < n; ++i) {
    const Token &t = l.tokens[i];
    if (t.kind == Kind::Percent)
      ++l.percents;
    else if (isPlaceholder(t) && i > l.integerEnd && i < l.mantissaEnd)
      ++l.fractionPlaceholders;
    else if (t.kind == Kind::Zero && i > l.mantissaEnd)
      ++l.exponentZeros;
  }
  return l;
}

QString tokenText(const Token &t) { return t.kind == Kind::Percent ? QStringLiteral("%") : t.text; }

// The integer part, laid out from the right: each placeholder takes one
// digit, the leftmost takes all that remain, "0" pads and "#" does not.
QString renderInteger(const Layout &l, const QString &digits) {
  const RegionalSettings &reg = regional();
  QString out;
  qsizetype remaining = digits.size();
  int emitted = 0;
  auto put = [&](QChar digit) {
    if (l.grouping && emitted > 0 && emitted % 3 == 0)
      out.prepend(reg.groupSeparator);
    out.prepend(digit);
    ++emitted;
  };
  if (l.integerPlaceholders == 0 && l.fractionPlaceholders > 0) {
    // Only a fraction is laid out (".00"): the integer digits still show.
    for (qsizetype i = digits.size() - 1; i >= 0; --i)
      put(digits[i]);
  }
  for (qsizetype i = l.integerEnd - 1; i >= 0; --i) {
    const Token &t = l.tokens[i];
    if (isPlaceholder(t)) {
      if (i == l.firstIntegerPlaceholder) {
        const bool any = remaining > 0;
        while (remaining > 0)
          put(digits[--remaining]);
        if (!any && t.kind == Kind::Zero)
          put(u'0');
      } else if (remaining > 0) {
        put(digits[--remaining]);
      } else if (t.kind == Kind::Zero) {
        put(u'0');
      }
    } else if (t.kind == Kind::Comma) {
      if (l.commaIsLiteral[std::size_t(i)])
        out.prepend(u',');
    } else {
      out.prepend(tokenText(t));
    }
  }
  return out;
}

// The fraction, from the left: "0" always shows its digit, "#" only up to
// the last digit that is not zero.
QString renderFraction(const Layout &l, const QString &digits) {
  QString out;
  const qsizetype lastSignificant = [&] {
    qsizetype i = digits.size() - 1;
    while (i >= 0 && digits[i] == u'0')
      --i;
    return i;
  }();
  qsizetype k = 0;
  for (qsizetype i = l.integerEnd + 1; i < l.mantissaEnd; ++i) {
    const Token &t = l.tokens[i];
    if (isPlaceholder(t)) {
      if (t.kind == Kind::Zero || k <= lastSignificant)
        out += digits[k];
      ++k;
    } else if (t.kind != Kind::Comma) {
      out += tokenText(t);
    }
  }
  return out;
}

QString renderExponent(const Layout &l, int exponent) {
  if (l.mantissaEnd >= qsizetype(l.tokens.size()))
    return {};
  const Token &e = l.tokens[std::size_t(l.mantissaEnd)];
  QString out = e.text;
  if (exponent < 0)
    out += u'-';
  else if (e.plusSign)
    out += u'+';
  const QString digits = QString::number(std::abs(exponent)).rightJustified(l.exponentZeros, u'0');
  bool placed = false;
  for (std::size_t i = std::size_t(l.mantissaEnd) + 1; i < l.tokens.size(); ++i) {
    const Token &t = l.tokens[i];
    if (isPlaceholder(t)) {
      if (!placed)
        out += digits;
      placed = true;
    } else {
      out += tokenText(t);
    }
  }
  if (!placed)
    out += digits;
  return out;
}

// One section applied to the magnitude of a number.
QString renderSection(const QString &section, DecimalDigits value) {
  const Layout l = analyze(section);
  const bool anyPlaceholder = l.integerPlaceholders + l.fractionPlaceholders > 0;
  value.scale(2 * l.percents - 3 * l.scalingCommas);
  int exponent = 0;
  const bool scientific = l.mantissaEnd < qsizetype(l.tokens.size());
  if (scientific && !value.isZero()) {
    // As many integer digits as the mantissa has integer placeholders.
    const int integerDigits = std::max(1, l.integerPlaceholders);
    value.roundToDecimals(integerDigits + l.fractionPlaceholders - value.point);
    exponent = value.point - integerDigits;
    value.point = integerDigits;
  } else {
    value.roundToDecimals(l.fractionPlaceholders);
  }
  QString out = renderInteger(l, anyPlaceholder ? value.integerDigits() : QString());
  if (l.hasPoint) {
    out += regional().decimalSeparator;
    out += renderFraction(l, value.fractionDigits(l.fractionPlaceholders));
  }
  if (scientific)
    out += renderExponent(l, exponent);
  return out;
}

// A named number format as a user format on the regional settings.
QString currencySection() {
  const RegionalSettings &reg = regional();
  QString number = QStringLiteral("#,##0");
  if (reg.currencyDigits > 0)
    number += u'.' + QString(reg.currencyDigits, u'0');
  QString symbol; // each character escaped, so that no symbol reads as a placeholder
  for (const QChar c : reg.currencySymbol)
    symbol += u'\\' + QString(c);
  const QString space = reg.currencySpace ? QStringLiteral(" ") : QString();
  return reg.currencySymbolFirst ? symbol + space + number : number + space + symbol;
}

} // namespace

bool isNumberPattern(const QString &section) {
  for (const Token &t : tokenize(section)) {
    if (isPlaceholder(t))
      return true;
  }
  return false;
}

std::optional<QString> formatNamedNumber(const Variant &number, const QString &name) {
  auto is = [&](const char *named) { return name.compare(QLatin1String(named), Qt::CaseInsensitive) == 0; };
  if (is("General Number"))
    return number.toString();
  if (is("Currency"))
    return formatNumber(number, {currencySection()});
  if (is("Fixed"))
    return formatNumber(number, {QStringLiteral("0.00")});
  if (is("Standard"))
    return formatNumber(number, {QStringLiteral("#,##0.00")});
  if (is("Percent"))
    return formatNumber(number, {QStringLiteral("0.00%")});
  if (is("Scientific"))
    return formatNumber(number, {QStringLiteral("0.00E+00")});
  const bool zero = decimalOf(number).isZero();
  if (is("Yes/No"))
    return zero ? QStringLiteral("No") : QStringLiteral("Yes");
  if (is("True/False"))
    return zero ? QStringLiteral("False") : QStringLiteral("True");
  if (is("On/Off"))
    return zero ? QStringLiteral("Off") : QStringLiteral("On");
  return std::nullopt;
}

QString formatNumber(const Variant &number, const QStringList &sections) {
  if (number.type() == Variant::Type::Double && !std::isfinite(number.rawDouble()))
    return number.toString();
  DecimalDigits value = decimalOf(number);
  // The section follows the value before rounding: -0.001 takes the
  // negative section, and with one section shows as "-0.00", as VB does.
  const bool negative = value.negative && !value.isZero();
  QString section = sections.value(0);
  bool minus = negative;
  if (negative && sections.size() > 1 && !sections[1].isEmpty()) {
    section = sections[1];
    minus = false;
  } else if (value.isZero() && sections.size() > 2 && !sections[2].isEmpty()) {
    section = sections[2];
  }
  value.negative = false;
  const QString text = renderSection(section, value);
  return minus ? u'-' + text : text;
}

QString formatNullNumber(const QStringList &sections) {
  if (sections.size() < 4)
    return {};
  return renderSection(sections[3], DecimalDigits{});
}

} // namespace kordel::formatting

// FormatNumber, FormatCurrency, FormatPercent, FormatDateTime and Format:
// the first three build a format pattern and hand it to core's Format, so
// that rounding, grouping and separators follow one implementation.

#include "core/Error.h"
#include "core/Format.h"
#include "core/Regional.h"
#include "core/VbDate.h"
#include "script/vbscript/Builtins.h"

namespace kordel::script::vb {

namespace {

constexpr int kUseDefault = -2;

[[noreturn]] void invalidCall() { raiseError(ErrorNumber::InvalidCall); }

// A tristate argument: True, False or vbUseDefault.
bool tristateArg(const BuiltinArgs &a, int index, bool fallback) {
  if (!a.has(index))
    return fallback;
  requireNotNull(a[index]);
  const int value = a[index].toLong();
  if (value == kUseDefault)
    return fallback;
  return value != 0;
}

int digitsArg(const BuiltinArgs &a, int index, int fallback) {
  const int digits = intArg(a, index, -1);
  if (digits < -1 || digits > 255)
    invalidCall();
  return digits == -1 ? fallback : digits;
}

// The pattern of a number with a number of decimals: "#,##0.00".
QString numberPattern(int digits, bool leadingDigit, bool group) {
  QString pattern = group ? (leadingDigit ? QStringLiteral("#,##0") : QStringLiteral("#,###"))
                          : (leadingDigit ? QStringLiteral("0") : QStringLiteral("#"));
  if (digits > 0)
    pattern += u'.' + QString(digits, u'0');
  return pattern;
}

QString quoted(const QString &literal) { return u'"' + literal + u'"'; }

// Positive and negative sections; the negative in parentheses or with a
// leading minus.
QString withNegative(const QString &positive, bool parentheses) {
  if (!parentheses)
    return positive + u';' + u'-' + positive;
  return positive + QStringLiteral(";(") + positive + u')';
}

double numberArg(const Variant &value) {
  requireNotNull(value);
  return value.toDouble();
}

Variant fnFormatNumber(BuiltinArgs &a) {
  const double value = numberArg(a[0]);
  const int digits = digitsArg(a, 1, 2);
  const QString pattern = numberPattern(digits, tristateArg(a, 2, true), tristateArg(a, 4, true));
  return Variant(formatValue(Variant(value), withNegative(pattern, tristateArg(a, 3, false))));
}

Variant fnFormatPercent(BuiltinArgs &a) {
  const double value = numberArg(a[0]);
  const int digits = digitsArg(a, 1, 2);
  const QString pattern = numberPattern(digits, tristateArg(a, 2, true), tristateArg(a, 4, true)) + u'%';
  return Variant(formatValue(Variant(value), withNegative(pattern, tristateArg(a, 3, false))));
}

Variant fnFormatCurrency(BuiltinArgs &a) {
  const RegionalSettings &reg = regional();
  const double value = numberArg(a[0]);
  const int digits = digitsArg(a, 1, reg.currencyDigits);
  const QString number = numberPattern(digits, tristateArg(a, 2, true), tristateArg(a, 4, true));
  const QString space = reg.currencySpace ? QStringLiteral(" ") : QString();
  const QString pattern = reg.currencySymbolFirst ? quoted(reg.currencySymbol + space) + number
                                                  : number + quoted(space + reg.currencySymbol);
  // Where the symbol leads, negative amounts show in parentheses by default.
  return Variant(formatValue(Variant(value), withNegative(pattern, tristateArg(a, 3, reg.currencySymbolFirst))));
}

Variant fnFormatDateTime(BuiltinArgs &a) {
  requireNotNull(a[0]);
  const Date value = a[0].toDate();
  const RegionalSettings &reg = regional();
  switch (intArg(a, 1, 0)) {
  case 0: return Variant(vbDateText(value));
  case 1: return Variant(formatValue(Variant(value), reg.longDate));
  case 2: return Variant(formatValue(Variant(value), reg.shortDate));
  case 3: return Variant(formatValue(Variant(value), reg.longTime));
  case 4: return Variant(formatValue(Variant(value), QStringLiteral("hh:nn")));
  default: invalidCall();
  }
}

Variant fnFormat(BuiltinArgs &a) {
  const QString pattern = a.has(1) ? a[1].toString() : QString();
  return Variant(formatValue(a[0], pattern, intArg(a, 2, 1), intArg(a, 3, 1)));
}

constexpr BuiltinDef kFormatBuiltins[] = {
    {"FormatNumber", fnFormatNumber, 1, 5},
    {"FormatCurrency", fnFormatCurrency, 1, 5},
    {"FormatPercent", fnFormatPercent, 1, 5},
    {"FormatDateTime", fnFormatDateTime, 1, 2},
    {"Format", fnFormat, 1, 4},
};

} // namespace

std::span<const BuiltinDef> formatBuiltins() { return kFormatBuiltins; }

} // namespace kordel::script::vb

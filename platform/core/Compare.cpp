#include "core/Compare.h"

#include "core/Error.h"
#include "core/Object.h"

namespace kordel {

int compareStrings(const QString &a, const QString &b, CompareMode mode) {
  const int result = mode == CompareMode::Text ? QString::compare(a, b, Qt::CaseInsensitive)
                                               : QString::compare(a, b, Qt::CaseSensitive);
  return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

namespace {

int compareNumbers(const Variant &a, const Variant &b) {
  using VT = Variant::Type;
  if (a.type() == VT::Currency && b.type() == VT::Currency) {
    const auto x = a.rawCurrency().scaled, y = b.rawCurrency().scaled;
    return x < y ? -1 : (x > y ? 1 : 0);
  }
  const double x = a.toDouble(), y = b.toDouble();
  return x < y ? -1 : (x > y ? 1 : 0);
}

} // namespace

std::optional<int> compareValues(const Variant &left, const Variant &right, CompareMode mode) {
  const Variant a = plainValue(left);
  const Variant b = plainValue(right);
  if (a.isNull() || b.isNull())
    return std::nullopt;
  if (a.isArray() || b.isArray() || a.isByteArray() || b.isByteArray())
    raiseError(ErrorNumber::TypeMismatch);
  const bool aString = a.isString(), bString = b.isString();
  if (aString && bString)
    return compareStrings(a.rawString(), b.rawString(), mode);
  if (aString || bString) {
    const Variant &other = aString ? b : a;
    if (other.isEmpty())
      return compareStrings(a.toText(), b.toText(), mode);
    return aString ? 1 : -1; // a number is less than a string
  }
  return compareNumbers(a, b);
}

} // namespace kordel

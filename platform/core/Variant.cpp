#include "core/Variant.h"

#include "core/Error.h"
#include "core/Object.h"
#include "core/Regional.h"
#include "core/VbDate.h"
#include "core/VbNumber.h"

#include <cmath>
#include <limits>

namespace kordel {

namespace {

using VT = Variant::Type;

[[noreturn]] void typeMismatch() { raiseError(ErrorNumber::TypeMismatch); }
[[noreturn]] void overflow() { raiseError(ErrorNumber::Overflow); }
[[noreturn]] void nullUse() { raiseError(ErrorNumber::InvalidUseOfNull); }

double numberFromString(const QString &text) {
  // Only numbers: a date string does not convert to a number (CDbl("2023-01-05") is 13).
  if (auto number = parseVbNumber(text))
    return *number;
  typeMismatch();
}

// CStr of a Currency: its exact digits, without trailing zeros. Going
// through a double would show binary noise ("0.1000000000000000056").
QString currencyText(Currency value) {
  const bool negative = value.scaled < 0;
  const std::uint64_t magnitude = negative ? 0 - std::uint64_t(value.scaled) : std::uint64_t(value.scaled);
  QString text = QString::number(magnitude / std::uint64_t(Currency::kScale));
  if (const std::uint64_t fraction = magnitude % std::uint64_t(Currency::kScale)) {
    QString digits = QStringLiteral("%1").arg(fraction, 4, 10, QChar(u'0'));
    while (digits.endsWith(u'0'))
      digits.chop(1);
    text += regional().decimalSeparator + digits;
  }
  return negative ? u'-' + text : text;
}

double checkedRound(double value, double min, double max) {
  if (!std::isfinite(value))
    overflow();
  const double rounded = roundHalfEven(value);
  if (rounded < min || rounded > max)
    overflow();
  return rounded;
}

} // namespace

Currency Currency::fromDouble(double value) {
  const double scaled = roundHalfEven(value * double(kScale));
  // Currency's range is +/-922,337,203,685,477.5807.
  if (!std::isfinite(scaled) || scaled >= 9.2233720368547758e18 || scaled < -9.2233720368547758e18)
    overflow();
  return Currency{std::int64_t(scaled)};
}

Variant::Variant(VariantArray array) : value_(std::make_shared<VariantArray>(std::move(array))) {}

Variant Variant::null() { return Variant(NullTag{}); }

Variant::Type Variant::type() const {
  switch (value_.index()) {
  case 0: return VT::Empty;
  case 1: return VT::Null;
  case 2: return VT::Boolean;
  case 3: return VT::Integer;
  case 4: return VT::Long;
  case 5: return VT::Byte;
  case 6: return VT::Single;
  case 7: return VT::Double;
  case 8: return VT::Currency;
  case 9: return VT::Date;
  case 10: return VT::String;
  case 11: return VT::Object;
  case 12: return VT::Array;
  default: return VT::ByteArray;
  }
}

QString Variant::typeName() const {
  switch (type()) {
  case VT::Empty: return QStringLiteral("Empty");
  case VT::Null: return QStringLiteral("Null");
  case VT::Boolean: return QStringLiteral("Boolean");
  case VT::Integer: return QStringLiteral("Integer");
  case VT::Long: return QStringLiteral("Long");
  case VT::Byte: return QStringLiteral("Byte");
  case VT::Single: return QStringLiteral("Single");
  case VT::Double: return QStringLiteral("Double");
  case VT::Currency: return QStringLiteral("Currency");
  case VT::Date: return QStringLiteral("Date");
  case VT::String: return QStringLiteral("String");
  case VT::Object: return rawObject() ? rawObject()->typeName() : QStringLiteral("Nothing");
  case VT::Array: return QStringLiteral("Variant()");
  case VT::ByteArray: return QStringLiteral("Byte()");
  }
  return QStringLiteral("Unknown");
}

bool Variant::isNothing() const { return isObject() && !rawObject(); }

bool Variant::isNumber() const {
  switch (type()) {
  case VT::Empty:
  case VT::Boolean:
  case VT::Integer:
  case VT::Long:
  case VT::Byte:
  case VT::Single:
  case VT::Double:
  case VT::Currency:
  case VT::Date: return true;
  default: return false;
  }
}

bool Variant::isNumeric() const {
  if (type() == VT::Date)
    return false; // IsNumeric(Now) is False in VB
  if (isNumber())
    return true;
  if (isString())
    return parseVbNumber(rawString()).has_value();
  return false;
}

bool Variant::isDate() const {
  if (type() == VT::Date)
    return true;
  if (isString())
    return parseVbDate(rawString()).has_value();
  return false;
}

double Variant::toDouble() const {
  switch (type()) {
  case VT::Empty: return 0.0;
  case VT::Null: nullUse();
  case VT::Boolean: return rawBool() ? -1.0 : 0.0;
  case VT::Integer: return rawInteger();
  case VT::Long: return rawLong();
  case VT::Byte: return rawByte();
  case VT::Single: return rawSingle();
  case VT::Double: return rawDouble();
  case VT::Currency: return rawCurrency().toDouble();
  case VT::Date: return rawDate().serial;
  case VT::String: return numberFromString(rawString());
  case VT::Object: return plainValue(*this).toDouble();
  default: typeMismatch();
  }
}

bool Variant::toBool() const {
  switch (type()) {
  case VT::Boolean: return rawBool();
  case VT::Null: nullUse();
  case VT::String: {
    const QString text = rawString().trimmed();
    if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
      return true;
    if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
      return false;
    if (auto number = parseVbNumber(text))
      return *number != 0.0;
    typeMismatch();
  }
  case VT::Object: return plainValue(*this).toBool();
  default: return toDouble() != 0.0;
  }
}

std::uint8_t Variant::toByte() const {
  if (type() == VT::Byte)
    return rawByte();
  return std::uint8_t(checkedRound(toDouble(), 0, 255));
}

std::int16_t Variant::toInteger() const {
  switch (type()) {
  case VT::Integer: return rawInteger();
  case VT::Boolean: return rawBool() ? -1 : 0;
  case VT::Byte: return rawByte();
  default: return std::int16_t(checkedRound(toDouble(), -32768.0, 32767.0));
  }
}

std::int32_t Variant::toLong() const {
  switch (type()) {
  case VT::Long: return rawLong();
  case VT::Integer: return rawInteger();
  case VT::Boolean: return rawBool() ? -1 : 0;
  case VT::Byte: return rawByte();
  case VT::Currency: {
    // Round on the exact fixed-point value rather than through a double.
    const std::int64_t scaled = rawCurrency().scaled;
    std::int64_t whole = scaled / Currency::kScale;
    const std::int64_t rest = scaled % Currency::kScale;
    if (rest > 5000 || (rest == 5000 && (whole & 1)))
      ++whole;
    else if (rest < -5000 || (rest == -5000 && (whole & 1)))
      --whole;
    if (whole < std::numeric_limits<std::int32_t>::min() || whole > std::numeric_limits<std::int32_t>::max())
      overflow();
    return std::int32_t(whole);
  }
  default: return std::int32_t(checkedRound(toDouble(), -2147483648.0, 2147483647.0));
  }
}

float Variant::toSingle() const {
  if (type() == VT::Single)
    return rawSingle();
  const double value = toDouble();
  if (std::isfinite(value) && std::fabs(value) > double(std::numeric_limits<float>::max()))
    overflow();
  return float(value);
}

Currency Variant::toCurrency() const {
  if (type() == VT::Currency)
    return rawCurrency();
  return Currency::fromDouble(toDouble());
}

Date Variant::toDate() const {
  switch (type()) {
  case VT::Date: return rawDate();
  case VT::Null: nullUse();
  case VT::String: {
    if (auto date = parseVbDate(rawString()))
      return *date;
    if (auto number = parseVbNumber(rawString())) {
      checkDateRange(*number);
      return Date{*number};
    }
    typeMismatch();
  }
  case VT::Object: return plainValue(*this).toDate();
  default: {
    const double serial = toDouble();
    checkDateRange(serial);
    return Date{serial};
  }
  }
}

QString Variant::toString() const {
  switch (type()) {
  case VT::Empty: return QStringLiteral("");
  case VT::Null: nullUse();
  case VT::Boolean: return rawBool() ? QStringLiteral("True") : QStringLiteral("False");
  case VT::Integer: return QString::number(rawInteger());
  case VT::Long: return QString::number(rawLong());
  case VT::Byte: return QString::number(rawByte());
  case VT::Single: return vbNumberText(rawSingle(), 7);
  case VT::Double: return vbNumberText(rawDouble(), 15);
  case VT::Currency: return currencyText(rawCurrency());
  case VT::Date: return vbDateText(rawDate());
  case VT::String: return rawString();
  case VT::Object: return plainValue(*this).toString();
  case VT::ByteArray: {
    const QByteArray &bytes = rawBytes();
    return QString(reinterpret_cast<const QChar *>(bytes.constData()), bytes.size() / 2);
  }
  default: typeMismatch();
  }
}

ObjectRef Variant::toObject() const {
  if (!isObject())
    raiseError(ErrorNumber::ObjectRequired);
  return rawObject();
}

QByteArray Variant::toBytes() const {
  if (isByteArray())
    return rawBytes();
  if (isString()) {
    const QString &text = rawString();
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
  }
  if (isArray()) {
    QByteArray bytes;
    for (const Variant &element : array().elements())
      bytes.append(char(element.toByte()));
    return bytes;
  }
  typeMismatch();
}

QString Variant::toText() const {
  if (isNull() || isEmpty())
    return QString();
  try {
    return toString();
  } catch (const Error &) {
    return QString(); // a value without a text form reads as empty here
  }
}

double Variant::toNumberOr(double fallback) const {
  if (isNull())
    return fallback;
  try {
    return toDouble();
  } catch (const Error &) {
    return fallback; // the caller asked for a fallback instead of an error
  }
}

const VariantArray &Variant::array() const {
  if (value_.index() != 12)
    typeMismatch();
  return *std::get<std::shared_ptr<VariantArray>>(value_);
}

VariantArray &Variant::mutableArray() {
  if (value_.index() != 12)
    typeMismatch();
  auto &shared = std::get<std::shared_ptr<VariantArray>>(value_);
  if (shared.use_count() > 1)
    shared = std::make_shared<VariantArray>(*shared);
  return *shared;
}

bool operator==(const Variant &a, const Variant &b) {
  if (a.value_.index() != b.value_.index())
    return false;
  if (a.value_.index() == 12) {
    const VariantArray &x = a.array();
    const VariantArray &y = b.array();
    if (x.dimensions() != y.dimensions())
      return false;
    for (int d = 1; d <= x.dimensions(); ++d) {
      if (x.lowerBound(d) != y.lowerBound(d) || x.upperBound(d) != y.upperBound(d))
        return false;
    }
    return x.elements() == y.elements();
  }
  return a.value_ == b.value_;
}

// ---- VariantArray ----

VariantArray::VariantArray(std::vector<Bounds> bounds) { redim(std::move(bounds), false); }

VariantArray VariantArray::fromValues(std::vector<Variant> values) {
  VariantArray array;
  array.bounds_ = {Bounds{0, std::int32_t(values.size()) - 1}};
  array.data_ = std::move(values);
  return array;
}

std::int32_t VariantArray::lowerBound(int dimension) const {
  if (dimension < 1 || dimension > dimensions())
    raiseError(ErrorNumber::SubscriptOutOfRange);
  return bounds_[dimension - 1].lower;
}

std::int32_t VariantArray::upperBound(int dimension) const {
  if (dimension < 1 || dimension > dimensions())
    raiseError(ErrorNumber::SubscriptOutOfRange);
  return bounds_[dimension - 1].upper;
}

std::size_t VariantArray::offset(const std::vector<std::int32_t> &subscripts) const {
  if (subscripts.size() != bounds_.size())
    raiseError(ErrorNumber::SubscriptOutOfRange);
  std::size_t offset = 0;
  std::size_t stride = 1;
  for (std::size_t d = 0; d < bounds_.size(); ++d) {
    const Bounds &b = bounds_[d];
    if (subscripts[d] < b.lower || subscripts[d] > b.upper)
      raiseError(ErrorNumber::SubscriptOutOfRange);
    offset += std::size_t(subscripts[d] - b.lower) * stride;
    stride *= std::size_t(b.size());
  }
  return offset;
}

Variant &VariantArray::at(const std::vector<std::int32_t> &subscripts) { return data_[offset(subscripts)]; }

const Variant &VariantArray::at(const std::vector<std::int32_t> &subscripts) const { return data_[offset(subscripts)]; }

void VariantArray::redim(std::vector<Bounds> bounds, bool preserve) {
  if (fixed_)
    raiseError(ErrorNumber::ArrayFixedOrLocked);
  std::size_t total = 1;
  for (const Bounds &b : bounds) {
    if (b.upper < b.lower - 1)
      raiseError(ErrorNumber::SubscriptOutOfRange);
    total *= std::size_t(b.size());
  }
  if (bounds.empty())
    total = 0;
  if (!preserve || bounds_.empty()) {
    bounds_ = std::move(bounds);
    data_.assign(total, Variant());
    return;
  }
  if (bounds.size() != bounds_.size())
    raiseError(ErrorNumber::SubscriptOutOfRange);
  for (std::size_t d = 0; d + 1 < bounds.size(); ++d) {
    if (bounds[d].lower != bounds_[d].lower || bounds[d].upper != bounds_[d].upper)
      raiseError(ErrorNumber::SubscriptOutOfRange);
  }
  if (bounds.back().lower != bounds_.back().lower)
    raiseError(ErrorNumber::SubscriptOutOfRange);
  // Column-major storage: only the last dimension changes, so the elements
  // that stay keep their offsets and the data only grows or shrinks at the end.
  bounds_ = std::move(bounds);
  data_.resize(total);
}

} // namespace kordel

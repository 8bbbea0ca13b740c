#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

namespace kordel {

class Object;
class VariantArray;
using ObjectRef = std::shared_ptr<Object>;

// Currency: a fixed-point number with four decimals, kept as an integer
// count of ten-thousandths, the range of VB's Currency.
struct Currency {
  std::int64_t scaled = 0;

  static constexpr std::int64_t kScale = 10000;
  static Currency fromDouble(double value); // rounds halves to even; overflow raises 6
  double toDouble() const { return double(scaled) / double(kScale); }
  friend bool operator==(Currency a, Currency b) { return a.scaled == b.scaled; }
};

// Date: VB's day count from 1899-12-30, with the time of day as fraction.
// Before that day the fraction still counts forward from midnight, so -1.25
// is 1899-12-29 06:00.
struct Date {
  double serial = 0.0;
  friend bool operator==(Date a, Date b) { return a.serial == b.serial; }
};

// The one dynamic value of the system, with VB's types and conversions.
// Arrays are values: copying a Variant copies its array, lazily (the copy
// shares the elements until one side writes).
class Variant {
public:
  // The type codes are VB's VarType numbers.
  enum class Type : std::uint16_t {
    Empty = 0,
    Null = 1,
    Integer = 2,
    Long = 3,
    Single = 4,
    Double = 5,
    Currency = 6,
    Date = 7,
    String = 8,
    Object = 9,
    Boolean = 11,
    Byte = 17,
    Array = 8192 + 12, // array of Variant
    ByteArray = 8192 + 17,
  };

  Variant() = default;
  Variant(bool value) : value_(value) {}
  Variant(std::int16_t value) : value_(value) {}
  Variant(int value) : value_(std::int32_t(value)) {}
  Variant(std::uint8_t value) : value_(value) {}
  Variant(float value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(Currency value) : value_(value) {}
  Variant(Date value) : value_(value) {}
  Variant(QString value) : value_(std::move(value)) {}
  Variant(const char *utf8) : value_(QString::fromUtf8(utf8)) {}
  Variant(ObjectRef object) : value_(std::move(object)) {}
  template <class T>
  Variant(std::shared_ptr<T> object) : value_(ObjectRef(std::move(object))) {}
  Variant(VariantArray array);
  Variant(QByteArray bytes) : value_(std::move(bytes)) {}

  static Variant null();
  static Variant nothing() { return Variant(ObjectRef()); }

  Type type() const;
  // VarType as a script sees it: the type code, with 8192 added for arrays.
  int varType() const { return int(type()); }
  // TypeName as a script sees it ("Long", "String", "Nothing", "Variant()", ...).
  QString typeName() const;

  bool isEmpty() const { return value_.index() == 0; }
  bool isNull() const { return value_.index() == 1; }
  bool isObject() const { return type() == Type::Object; }
  bool isNothing() const; // an Object with no target
  bool isArray() const { return type() == Type::Array; }
  bool isByteArray() const { return type() == Type::ByteArray; }
  bool isString() const { return type() == Type::String; }
  // Numbers, Boolean and Empty: what VB's arithmetic takes without parsing.
  bool isNumber() const;
  // IsNumeric: a number, Empty, or a string that parses as a number.
  bool isNumeric() const;
  // IsDate: a Date, or a string that parses as a date.
  bool isDate() const;

  // VB's conversion functions. Each raises 13 when the value cannot be
  // converted, 6 when it does not fit and 94 on Null.
  bool toBool() const;               // CBool
  std::uint8_t toByte() const;       // CByte
  std::int16_t toInteger() const;    // CInt, halves to even
  std::int32_t toLong() const;       // CLng, halves to even
  float toSingle() const;            // CSng
  double toDouble() const;           // CDbl
  Currency toCurrency() const;       // CCur
  Date toDate() const;               // CDate
  QString toString() const;          // CStr
  ObjectRef toObject() const;        // 424 unless an Object (Nothing passes)
  QByteArray toBytes() const;        // a byte array, or a String's UTF-16 bytes

  // Lenient reads for code that wants a value whatever happens: Null and
  // Empty give "" and the conversion errors give the fallback.
  QString toText() const;
  double toNumberOr(double fallback) const;

  // The array inside (raises 13 for a non-array). The writable form
  // detaches a shared copy first.
  const VariantArray &array() const;
  VariantArray &mutableArray();

  // Raw access for code that switches on type().
  bool rawBool() const { return std::get<bool>(value_); }
  std::int16_t rawInteger() const { return std::get<std::int16_t>(value_); }
  std::int32_t rawLong() const { return std::get<std::int32_t>(value_); }
  std::uint8_t rawByte() const { return std::get<std::uint8_t>(value_); }
  float rawSingle() const { return std::get<float>(value_); }
  double rawDouble() const { return std::get<double>(value_); }
  Currency rawCurrency() const { return std::get<Currency>(value_); }
  Date rawDate() const { return std::get<Date>(value_); }
  const QString &rawString() const { return std::get<QString>(value_); }
  const ObjectRef &rawObject() const { return std::get<ObjectRef>(value_); }
  const QByteArray &rawBytes() const { return std::get<QByteArray>(value_); }

  // Same type and same value; objects by identity. For containers and
  // tests, not VB's "=" (see compareValues in Compare.h).
  friend bool operator==(const Variant &a, const Variant &b);

private:
  struct NullTag {
    friend bool operator==(NullTag, NullTag) { return true; }
  };
  explicit Variant(NullTag tag) : value_(tag) {}

  std::variant<std::monostate, NullTag, bool, std::int16_t, std::int32_t, std::uint8_t, float, double,
               Currency, Date, QString, ObjectRef, std::shared_ptr<VariantArray>, QByteArray>
      value_;
};

using Args = std::vector<Variant>;

// A VB array: one or more dimensions, each with its own lower and upper
// bound, elements kept in column-major order as VB keeps them.
class VariantArray {
public:
  struct Bounds {
    std::int32_t lower = 0;
    std::int32_t upper = -1;
    std::int32_t size() const { return upper - lower + 1; }
  };

  VariantArray() = default;
  explicit VariantArray(std::vector<Bounds> bounds);
  // A one-dimensional array from 0 holding the given values.
  static VariantArray fromValues(std::vector<Variant> values);

  int dimensions() const { return int(bounds_.size()); }
  // LBound and UBound; dimension counts from 1 and raises 9 out of range.
  std::int32_t lowerBound(int dimension = 1) const;
  std::int32_t upperBound(int dimension = 1) const;
  const std::vector<Bounds> &bounds() const { return bounds_; }

  std::size_t size() const { return data_.size(); }
  bool fixed() const { return fixed_; }
  void setFixed(bool fixed) { fixed_ = fixed; }

  // Elements by subscripts, one per dimension; raises 9 out of range.
  Variant &at(const std::vector<std::int32_t> &subscripts);
  const Variant &at(const std::vector<std::int32_t> &subscripts) const;
  Variant &at(std::int32_t index) { return at(std::vector<std::int32_t>{index}); }
  const Variant &at(std::int32_t index) const { return at(std::vector<std::int32_t>{index}); }

  // All elements in storage order, as For Each walks them.
  const std::vector<Variant> &elements() const { return data_; }
  std::vector<Variant> &elements() { return data_; }

  // ReDim: new bounds; with preserve only the last dimension may change
  // and the elements that fit stay, else all elements are Empty.
  void redim(std::vector<Bounds> bounds, bool preserve);

private:
  std::size_t offset(const std::vector<std::int32_t> &subscripts) const;

  std::vector<Bounds> bounds_;
  std::vector<Variant> data_;
  bool fixed_ = false;
};

} // namespace kordel

#include "script/vbscript/Operators.h"

#include "core/Compare.h"
#include "core/Error.h"
#include "core/Object.h"
#include "core/VbDate.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace kordel::script::vb {

namespace {

using VT = Variant::Type;

// The numeric kinds of arithmetic, ordered where an order means widening.
enum class Kind { Byte, Integer, Long, Single, Double, Currency, Date };

[[noreturn]] void typeMismatch() { raiseError(ErrorNumber::TypeMismatch); }

Kind kindOf(const Variant &v) {
  switch (v.type()) {
  case VT::Byte: return Kind::Byte;
  case VT::Empty:
  case VT::Boolean:
  case VT::Integer: return Kind::Integer;
  case VT::Long: return Kind::Long;
  case VT::Single: return Kind::Single;
  case VT::Double:
  case VT::String: return Kind::Double;
  case VT::Currency: return Kind::Currency;
  case VT::Date: return Kind::Date;
  default: typeMismatch();
  }
}

std::int64_t integerOf(const Variant &v) {
  switch (v.type()) {
  case VT::Empty: return 0;
  case VT::Boolean: return v.rawBool() ? -1 : 0;
  case VT::Byte: return v.rawByte();
  case VT::Integer: return v.rawInteger();
  case VT::Long: return v.rawLong();
  default: return std::int64_t(v.toDouble());
  }
}

// An integer result in the narrowest type from `kind` upwards that holds it.
Variant fitInteger(std::int64_t value, Kind kind) {
  if (kind == Kind::Byte && value >= 0 && value <= 255)
    return Variant(std::uint8_t(value));
  if (kind <= Kind::Integer && value >= -32768 && value <= 32767)
    return Variant(std::int16_t(value));
  if (value >= std::numeric_limits<std::int32_t>::min() && value <= std::numeric_limits<std::int32_t>::max())
    return Variant(int(value));
  return Variant(double(value));
}

Variant fitSingle(double value) {
  if (std::isfinite(value) && std::fabs(value) > double(std::numeric_limits<float>::max()))
    return Variant(value);
  return Variant(float(value));
}

Variant checkedDouble(double value) {
  if (!std::isfinite(value))
    raiseError(ErrorNumber::Overflow);
  return Variant(value);
}

Variant dateResult(double serial) {
  checkDateRange(serial);
  return Variant(Date{serial});
}

Currency currencySum(Currency a, Currency b, bool subtract) {
  std::int64_t result = 0;
  const bool overflow = subtract ? __builtin_sub_overflow(a.scaled, b.scaled, &result)
                                 : __builtin_add_overflow(a.scaled, b.scaled, &result);
  if (overflow)
    raiseError(ErrorNumber::Overflow);
  return Currency{result};
}

Variant arithmetic(BinaryOp op, const Variant &a, const Variant &b) {
  const Kind ka = kindOf(a), kb = kindOf(b);
  Kind kind;
  if (ka == Kind::Date || kb == Kind::Date) {
    if (op == BinaryOp::Multiply || (op == BinaryOp::Subtract && ka == Kind::Date && kb == Kind::Date))
      kind = Kind::Double;
    else
      kind = Kind::Date;
  } else if (ka == Kind::Currency || kb == Kind::Currency) {
    kind = Kind::Currency;
  } else if (ka == Kind::Double || kb == Kind::Double) {
    kind = Kind::Double;
  } else if (ka == Kind::Single || kb == Kind::Single) {
    kind = (ka == Kind::Long || kb == Kind::Long) ? Kind::Double : Kind::Single;
  } else {
    kind = std::max(ka, kb);
  }

  switch (kind) {
  case Kind::Byte:
  case Kind::Integer:
  case Kind::Long: {
    const std::int64_t x = integerOf(a), y = integerOf(b);
    const std::int64_t r = op == BinaryOp::Add ? x + y : op == BinaryOp::Subtract ? x - y : x * y;
    return fitInteger(r, kind);
  }
  case Kind::Currency: {
    if (op != BinaryOp::Multiply)
      return Variant(currencySum(a.toCurrency(), b.toCurrency(), op == BinaryOp::Subtract));
    return Variant(Currency::fromDouble(a.toDouble() * b.toDouble()));
  }
  default: break;
  }
  const double x = a.toDouble(), y = b.toDouble();
  const double r = op == BinaryOp::Add ? x + y : op == BinaryOp::Subtract ? x - y : x * y;
  if (kind == Kind::Date)
    return dateResult(r);
  if (kind == Kind::Single)
    return fitSingle(r);
  return checkedDouble(r);
}

Variant divide(const Variant &a, const Variant &b) {
  const double x = a.toDouble(), y = b.toDouble();
  if (y == 0.0)
    raiseError(x == 0.0 ? ErrorNumber::Overflow : ErrorNumber::DivisionByZero);
  return checkedDouble(x / y);
}

bool isNarrowInteger(const Variant &v) {
  const VT t = v.type();
  return t == VT::Empty || t == VT::Boolean || t == VT::Byte || t == VT::Integer;
}

// \ and Mod: both sides rounded to whole numbers first.
Variant integerDivision(BinaryOp op, const Variant &a, const Variant &b) {
  const std::int32_t x = a.toLong(), y = b.toLong();
  if (y == 0)
    raiseError(ErrorNumber::DivisionByZero);
  const std::int64_t r = op == BinaryOp::Mod ? std::int64_t(x) % y : std::int64_t(x) / y;
  if (a.type() == VT::Byte && b.type() == VT::Byte)
    return Variant(std::uint8_t(r));
  if (isNarrowInteger(a) && isNarrowInteger(b))
    return fitInteger(r, Kind::Integer);
  if (r > std::numeric_limits<std::int32_t>::max())
    raiseError(ErrorNumber::Overflow);
  return Variant(int(r));
}

Variant power(const Variant &a, const Variant &b) {
  const double x = a.toDouble(), y = b.toDouble();
  if (x == 0.0 && y < 0.0)
    raiseError(ErrorNumber::DivisionByZero);
  if (x < 0.0 && y != std::trunc(y))
    raiseError(ErrorNumber::InvalidCall);
  return checkedDouble(std::pow(x, y));
}

bool isArrayValue(const Variant &v) { return v.isArray() || v.isByteArray(); }

Variant concatenate(const Variant &a, const Variant &b, qsizetype maxLength) {
  ConcatChain chain(maxLength);
  chain.addPair(a, b);
  return chain.result();
}

// ---- logic ----

// The operand of a logical operator: Boolean stays Boolean, small integers
// stay Integer (Byte when both are Byte), the rest becomes Long.
enum class LogicKind { Boolean, Byte, Integer, Long };

LogicKind logicKind(const Variant &v) {
  switch (v.type()) {
  case VT::Boolean: return LogicKind::Boolean;
  case VT::Byte: return LogicKind::Byte;
  case VT::Empty:
  case VT::Integer: return LogicKind::Integer;
  default: return LogicKind::Long;
  }
}

std::int32_t logicBits(const Variant &v) {
  if (v.type() == VT::Boolean)
    return v.rawBool() ? -1 : 0;
  if (v.type() == VT::String) {
    const QString text = v.rawString().trimmed();
    if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
      return -1;
    if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
      return 0;
  }
  return v.toLong();
}

Variant logicResult(std::int32_t bits, LogicKind a, LogicKind b) {
  if (a == LogicKind::Boolean && b == LogicKind::Boolean)
    return Variant(bits != 0);
  if (a == LogicKind::Byte && b == LogicKind::Byte)
    return Variant(std::uint8_t(bits));
  const auto widest =
      std::max(a == LogicKind::Boolean ? LogicKind::Integer : a, b == LogicKind::Boolean ? LogicKind::Integer : b);
  if (widest <= LogicKind::Integer)
    return Variant(std::int16_t(bits));
  return Variant(int(bits));
}

Variant logical(BinaryOp op, const Variant &a, const Variant &b) {
  const bool nullA = a.isNull(), nullB = b.isNull();
  if (nullA || nullB) {
    // Three-valued logic: Null is "unknown".
    if (nullA && nullB)
      return Variant::null();
    const Variant &known = nullA ? b : a;
    const std::int32_t bits = logicBits(known);
    switch (op) {
    case BinaryOp::And:
      if (bits == 0)
        return known.type() == VT::Boolean ? Variant(false) : logicResult(0, logicKind(known), logicKind(known));
      return Variant::null();
    case BinaryOp::Or:
      if (bits == -1)
        return known.type() == VT::Boolean ? Variant(true) : logicResult(-1, logicKind(known), logicKind(known));
      return Variant::null();
    case BinaryOp::Imp:
      if (nullA) // Null Imp x: true when x is all ones
        return bits == -1 ? logicResult(-1, logicKind(known), logicKind(known)) : Variant::null();
      return bits == 0 ? logicResult(-1, logicKind(known), logicKind(known)) : Variant::null(); // x Imp Null
    default: return Variant::null();
    }
  }
  const std::int32_t x = logicBits(a), y = logicBits(b);
  std::int32_t r = 0;
  switch (op) {
  case BinaryOp::And: r = x & y; break;
  case BinaryOp::Or: r = x | y; break;
  case BinaryOp::Xor: r = x ^ y; break;
  case BinaryOp::Eqv: r = ~(x ^ y); break;
  case BinaryOp::Imp: r = ~x | y; break;
  default: break;
  }
  return logicResult(r, logicKind(a), logicKind(b));
}

Variant comparison(BinaryOp op, const Variant &a, const Variant &b) {
  const std::optional<int> order = compareValues(a, b, CompareMode::Binary);
  if (!order)
    return Variant::null();
  const int c = *order;
  switch (op) {
  case BinaryOp::Equal: return Variant(c == 0);
  case BinaryOp::NotEqual: return Variant(c != 0);
  case BinaryOp::Less: return Variant(c < 0);
  case BinaryOp::Greater: return Variant(c > 0);
  case BinaryOp::LessEqual: return Variant(c <= 0);
  default: return Variant(c >= 0);
  }
}

Variant identity(const Variant &a, const Variant &b) {
  if (!a.isObject() || !b.isObject())
    raiseError(ErrorNumber::ObjectRequired);
  return Variant(a.rawObject() == b.rawObject());
}

// The operators of the fast path on two numbers of one kind; make gives
// the result of arithmetic its type. Nothing for the other operators.
template <class Number, class Make>
std::optional<Variant> fastOperation(BinaryOp op, Number x, Number y, const Make &make) {
  switch (op) {
  case BinaryOp::Add: return make(x + y);
  case BinaryOp::Subtract: return make(x - y);
  case BinaryOp::Multiply: return make(x * y);
  case BinaryOp::Equal: return Variant(x == y);
  case BinaryOp::NotEqual: return Variant(x != y);
  case BinaryOp::Less: return Variant(x < y);
  case BinaryOp::Greater: return Variant(x > y);
  case BinaryOp::LessEqual: return Variant(x <= y);
  case BinaryOp::GreaterEqual: return Variant(x >= y);
  default: return std::nullopt;
  }
}

// Integers and Doubles met on both sides, the common case of report
// scripts: the result without the general dispatch. Nothing when the case
// needs the general rules.
std::optional<Variant> fastNumeric(BinaryOp op, const Variant &left, const Variant &right) {
  const VT lt = left.type(), rt = right.type();
  const bool leftInt = lt == VT::Integer || lt == VT::Long;
  const bool rightInt = rt == VT::Integer || rt == VT::Long;
  const auto integer = [](const Variant &v, VT t) -> std::int64_t {
    return t == VT::Integer ? v.rawInteger() : v.rawLong();
  };
  if (leftInt && rightInt) {
    const Kind kind = (lt == VT::Long || rt == VT::Long) ? Kind::Long : Kind::Integer;
    return fastOperation(op, integer(left, lt), integer(right, rt),
                         [kind](std::int64_t result) { return fitInteger(result, kind); });
  }
  const bool leftReal = leftInt || lt == VT::Double;
  const bool rightReal = rightInt || rt == VT::Double;
  if (leftReal && rightReal) {
    const double x = lt == VT::Double ? left.rawDouble() : double(integer(left, lt));
    const double y = rt == VT::Double ? right.rawDouble() : double(integer(right, rt));
    return fastOperation(op, x, y, checkedDouble);
  }
  return std::nullopt;
}

} // namespace

Variant binaryOperation(BinaryOp op, const Variant &left, const Variant &right, qsizetype maxStringLength) {
  if (std::optional<Variant> fast = fastNumeric(op, left, right))
    return std::move(*fast);
  if (op == BinaryOp::Is)
    return identity(left, right);
  if (left.isObject() || right.isObject())
    return binaryOperation(op, plainValue(left), plainValue(right), maxStringLength);
  if (isArrayValue(left) || isArrayValue(right))
    typeMismatch();
  switch (op) {
  case BinaryOp::Concat: return concatenate(left, right, maxStringLength);
  case BinaryOp::Equal:
  case BinaryOp::NotEqual:
  case BinaryOp::Less:
  case BinaryOp::Greater:
  case BinaryOp::LessEqual:
  case BinaryOp::GreaterEqual: return comparison(op, left, right);
  case BinaryOp::And:
  case BinaryOp::Or:
  case BinaryOp::Xor:
  case BinaryOp::Eqv:
  case BinaryOp::Imp: return logical(op, left, right);
  default: break;
  }
  if (left.isNull() || right.isNull())
    return Variant::null();
  switch (op) {
  case BinaryOp::Add:
    if (left.isString() && right.isString())
      return concatenate(left, right, maxStringLength);
    if (left.isString() && right.isEmpty())
      return left;
    if (right.isString() && left.isEmpty())
      return right;
    return arithmetic(op, left, right);
  case BinaryOp::Subtract:
  case BinaryOp::Multiply: return arithmetic(op, left, right);
  case BinaryOp::Divide: return divide(left, right);
  case BinaryOp::IntDivide:
  case BinaryOp::Mod: return integerDivision(op, left, right);
  case BinaryOp::Power: return power(left, right);
  default: typeMismatch();
  }
}

Variant unaryOperation(UnaryOp op, const Variant &operand) {
  if (operand.isObject())
    return unaryOperation(op, plainValue(operand));
  if (operand.isNull())
    return Variant::null();
  if (isArrayValue(operand))
    typeMismatch();
  if (op == UnaryOp::Plus)
    return operand.isEmpty() ? Variant(std::int16_t(0)) : operand;
  if (op == UnaryOp::Not) {
    switch (operand.type()) {
    case VT::Boolean: return Variant(!operand.rawBool());
    case VT::Byte: return Variant(std::uint8_t(~operand.rawByte()));
    case VT::Empty: return Variant(std::int16_t(-1));
    case VT::Integer: return Variant(std::int16_t(~operand.rawInteger()));
    default: return Variant(int(~logicBits(operand)));
    }
  }
  switch (operand.type()) {
  case VT::Empty: return Variant(std::int16_t(0));
  case VT::Boolean:
  case VT::Byte:
  case VT::Integer:
  case VT::Long:
    return fitInteger(-integerOf(operand), kindOf(operand) == Kind::Byte ? Kind::Integer : kindOf(operand));
  case VT::Single: return Variant(-operand.rawSingle());
  case VT::Currency: {
    if (operand.rawCurrency().scaled == std::numeric_limits<std::int64_t>::min())
      raiseError(ErrorNumber::Overflow);
    return Variant(Currency{-operand.rawCurrency().scaled});
  }
  case VT::Date: return dateResult(-operand.rawDate().serial);
  default: return Variant(-operand.toDouble());
  }
}

void ConcatChain::addPair(const Variant &left, const Variant &right) {
  if (left.isObject() || right.isObject()) {
    addPair(plainValue(left), plainValue(right));
    return;
  }
  if (isArrayValue(left) || isArrayValue(right))
    typeMismatch();
  append(left);
  append(right);
}

void ConcatChain::add(const Variant &value) {
  if (value.isObject())
    append(plainValue(value));
  else
    append(value);
}

int stringTooLongError(qsizetype length) {
  constexpr qsizetype kLongestVbString = qsizetype(1) << 30; // characters
  return length > kLongestVbString ? ErrorNumber::OutOfStringSpace : ErrorNumber::OutOfMemory;
}

void ConcatChain::append(const Variant &plain) {
  QString piece;
  switch (plain.type()) {
  case VT::Null: return; // adds nothing
  case VT::String: piece = plain.rawString(); break;
  case VT::Array:
  case VT::ByteArray: typeMismatch();
  default: piece = plain.toString(); break;
  }
  if (length_ + piece.size() > maxLength_)
    raiseError(stringTooLongError(length_ + piece.size()));
  length_ += piece.size();
  pieces_.append(std::move(piece));
}

Variant ConcatChain::result() {
  if (pieces_.isEmpty())
    return Variant::null();
  if (pieces_.size() == 1)
    return Variant(std::move(pieces_.front()));
  QString text(length_, Qt::Uninitialized);
  QChar *out = text.data();
  for (const QString &piece : pieces_)
    out = std::copy(piece.cbegin(), piece.cend(), out);
  return Variant(std::move(text));
}

bool isTrue(const Variant &value) {
  switch (value.type()) {
  case VT::Boolean: return value.rawBool();
  case VT::Null:
  case VT::Empty: return false;
  case VT::Integer: return value.rawInteger() != 0;
  case VT::Long: return value.rawLong() != 0;
  case VT::Object: return isTrue(plainValue(value));
  default: return value.toBool();
  }
}

} // namespace kordel::script::vb

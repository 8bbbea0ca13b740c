// The math functions of the library.

#include "core/Error.h"
#include "core/VbNumber.h"
#include "script/vbscript/Builtins.h"
#include "script/vbscript/Interpreter.h"

#include <cmath>
#include <limits>

namespace kordel::script::vb {

namespace {

using VT = Variant::Type;

[[noreturn]] void invalidCall() { raiseError(ErrorNumber::InvalidCall); }

Variant checked(double value) {
  if (!std::isfinite(value))
    raiseError(ErrorNumber::Overflow);
  return Variant(value);
}

// Applies a rounding to a value, keeping its type where VB keeps it.
template <class Round> Variant rounded(const Variant &value, Round round) {
  switch (value.type()) {
  case VT::Null: return Variant::null();
  case VT::Empty: return Variant(std::int16_t(0));
  case VT::Boolean: return Variant(value.toInteger());
  case VT::Byte:
  case VT::Integer:
  case VT::Long: return value;
  case VT::Single: return Variant(float(round(double(value.rawSingle()))));
  case VT::Currency: return Variant(Currency::fromDouble(round(value.rawCurrency().toDouble())));
  case VT::Date: return Variant(Date{round(value.rawDate().serial)});
  default: return Variant(round(value.toDouble()));
  }
}

Variant fnAbs(BuiltinArgs &a) {
  const Variant &v = a[0];
  switch (v.type()) {
  case VT::Null: return Variant::null();
  case VT::Empty: return Variant(std::int16_t(0));
  case VT::Boolean:
  case VT::Integer: {
    const int x = std::abs(int(v.toInteger()));
    return x > 32767 ? Variant(x) : Variant(std::int16_t(x));
  }
  case VT::Byte: return v;
  case VT::Long:
    if (v.rawLong() == std::numeric_limits<std::int32_t>::min())
      return Variant(2147483648.0);
    return Variant(int(std::abs(v.rawLong())));
  case VT::Single: return Variant(std::fabs(v.rawSingle()));
  case VT::Currency: return Variant(Currency{std::abs(v.rawCurrency().scaled)});
  default: return Variant(std::fabs(v.toDouble()));
  }
}

Variant fnInt(BuiltinArgs &a) {
  return rounded(a[0], [](double x) { return std::floor(x); });
}
Variant fnFix(BuiltinArgs &a) {
  return rounded(a[0], [](double x) { return std::trunc(x); });
}

Variant fnRound(BuiltinArgs &a) {
  const int decimals = intArg(a, 1, 0);
  if (decimals < 0)
    invalidCall();
  return rounded(a[0], [decimals](double x) { return roundHalfEven(x, decimals); });
}

Variant fnSgn(BuiltinArgs &a) {
  requireNotNull(a[0]);
  const double x = a[0].toDouble();
  return Variant(std::int16_t(x > 0 ? 1 : (x < 0 ? -1 : 0)));
}

Variant fnSqr(BuiltinArgs &a) {
  const double x = a[0].toDouble();
  if (x < 0)
    invalidCall();
  return Variant(std::sqrt(x));
}

Variant fnLog(BuiltinArgs &a) {
  const double x = a[0].toDouble();
  if (x <= 0)
    invalidCall();
  return Variant(std::log(x));
}

Variant fnExp(BuiltinArgs &a) { return checked(std::exp(a[0].toDouble())); }
Variant fnAtn(BuiltinArgs &a) { return Variant(std::atan(a[0].toDouble())); }
Variant fnCos(BuiltinArgs &a) { return Variant(std::cos(a[0].toDouble())); }
Variant fnSin(BuiltinArgs &a) { return Variant(std::sin(a[0].toDouble())); }
Variant fnTan(BuiltinArgs &a) { return checked(std::tan(a[0].toDouble())); }

Variant fnRnd(BuiltinArgs &a) { return Variant(a.interpreter.random(a.has(0) ? &a[0] : nullptr)); }

Variant fnRandomize(BuiltinArgs &a) {
  a.interpreter.randomize(a.has(0) ? &a[0] : nullptr);
  return Variant();
}

constexpr BuiltinDef kMathBuiltins[] = {
    {"Abs", fnAbs, 1, 1}, {"Int", fnInt, 1, 1},
    {"Fix", fnFix, 1, 1}, {"Round", fnRound, 1, 2},
    {"Sgn", fnSgn, 1, 1}, {"Sqr", fnSqr, 1, 1},
    {"Log", fnLog, 1, 1}, {"Exp", fnExp, 1, 1},
    {"Atn", fnAtn, 1, 1}, {"Cos", fnCos, 1, 1},
    {"Sin", fnSin, 1, 1}, {"Tan", fnTan, 1, 1},
    {"Rnd", fnRnd, 0, 1}, {"Randomize", fnRandomize, 0, 1},
};

} // namespace

std::span<const BuiltinDef> mathBuiltins() { return kMathBuiltins; }

} // namespace kordel::script::vb

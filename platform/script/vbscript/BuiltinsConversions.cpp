// Conversions and type tests of the library. The conversions themselves are
// those of core's Variant, which raise VB's errors.

#include "core/Error.h"
#include "core/Object.h"
#include "script/vbscript/Builtins.h"

namespace kordel::script::vb {

namespace {

Variant fnCStr(BuiltinArgs &a) { return Variant(a[0].toString()); }
Variant fnCInt(BuiltinArgs &a) { return Variant(a[0].toInteger()); }
Variant fnCLng(BuiltinArgs &a) { return Variant(int(a[0].toLong())); }
Variant fnCDbl(BuiltinArgs &a) { return Variant(a[0].toDouble()); }
Variant fnCSng(BuiltinArgs &a) { return Variant(a[0].toSingle()); }
Variant fnCCur(BuiltinArgs &a) { return Variant(a[0].toCurrency()); }
// The texts "#TRUE#" and "#FALSE#", as the native engine writes Booleans
// to files, convert as well.
Variant fnCBool(BuiltinArgs &a) {
  if (a[0].type() == Variant::Type::String) {
    const QString text = a[0].toString().trimmed();
    if (text.compare(QLatin1String("#TRUE#"), Qt::CaseInsensitive) == 0)
      return Variant(true);
    if (text.compare(QLatin1String("#FALSE#"), Qt::CaseInsensitive) == 0)
      return Variant(false);
  }
  return Variant(a[0].toBool());
}
Variant fnCDate(BuiltinArgs &a) { return Variant(a[0].toDate()); }
// True is all bits set: a Byte of 255.
Variant fnCByte(BuiltinArgs &a) {
  if (a[0].type() == Variant::Type::Boolean)
    return Variant(std::uint8_t(a[0].toBool() ? 255 : 0));
  return Variant(a[0].toByte());
}

// Hex and Oct: Integer-sized values show 16 bits, the rest 32.
QString radixText(const Variant &value, int radix) {
  using VT = Variant::Type;
  const VT type = value.type();
  if (type == VT::Integer || type == VT::Boolean || type == VT::Byte || type == VT::Empty)
    return QString::number(std::uint16_t(value.toInteger()), radix).toUpper();
  return QString::number(std::uint32_t(value.toLong()), radix).toUpper();
}

Variant fnHex(BuiltinArgs &a) { return a[0].isNull() ? Variant::null() : Variant(radixText(a[0], 16)); }
Variant fnOct(BuiltinArgs &a) { return a[0].isNull() ? Variant::null() : Variant(radixText(a[0], 8)); }

Variant fnIsEmpty(BuiltinArgs &a) { return Variant(a[0].isEmpty()); }
Variant fnIsNull(BuiltinArgs &a) { return Variant(a[0].isNull()); }
// An object is numeric when its default value is; Nothing and an object
// without a default member are not.
Variant fnIsNumeric(BuiltinArgs &a) {
  if (!a[0].isObject())
    return Variant(a[0].isNumeric());
  if (!a[0].rawObject())
    return Variant(false);
  try {
    return Variant(plainValue(a[0]).isNumeric());
  } catch (const Error &error) {
    if (error.number() != ErrorNumber::NoSuchMember)
      throw;
    return Variant(false);
  }
}
Variant fnIsDate(BuiltinArgs &a) { return Variant(a[0].isDate()); }
Variant fnIsObject(BuiltinArgs &a) { return Variant(a[0].isObject()); }
Variant fnIsArray(BuiltinArgs &a) { return Variant(a[0].isArray()); }
Variant fnTypeName(BuiltinArgs &a) { return Variant(a[0].typeName()); }
Variant fnVarType(BuiltinArgs &a) { return Variant(std::int16_t(a[0].varType())); }

constexpr BuiltinDef kConversionBuiltins[] = {
    {"CStr", fnCStr, 1, 1},       {"CInt", fnCInt, 1, 1},
    {"CLng", fnCLng, 1, 1},       {"CDbl", fnCDbl, 1, 1},
    {"CSng", fnCSng, 1, 1},       {"CCur", fnCCur, 1, 1},
    {"CBool", fnCBool, 1, 1},     {"CDate", fnCDate, 1, 1},
    {"CByte", fnCByte, 1, 1},     {"Hex", fnHex, 1, 1},
    {"Oct", fnOct, 1, 1},         {"IsEmpty", fnIsEmpty, 1, 1},
    {"IsNull", fnIsNull, 1, 1},   {"IsNumeric", fnIsNumeric, 1, 1},
    {"IsDate", fnIsDate, 1, 1},   {"IsObject", fnIsObject, 1, 1},
    {"IsArray", fnIsArray, 1, 1}, {"TypeName", fnTypeName, 1, 1},
    {"VarType", fnVarType, 1, 1},
};

} // namespace

std::span<const BuiltinDef> conversionBuiltins() { return kConversionBuiltins; }

} // namespace kordel::script::vb

#pragma once

#include "core/Variant.h"

#include <QString>

#include <cstdint>
#include <span>

namespace kordel::script::vb {

class Interpreter;
struct Frame;

constexpr int kMaxBuiltinArgs = 8;

// The arguments of one call of a library function. Slots past count are
// Empty; has(i) tells a given argument from one left out.
struct BuiltinArgs {
  Interpreter &interpreter;
  Frame &frame;
  const Variant *values;
  int count;
  std::uint32_t omitted; // bit i: argument i was left out, as in f(1, , 3)

  bool has(int i) const { return i < count && !(omitted & (1u << i)); }
  const Variant &operator[](int i) const { return values[i]; }
};

using BuiltinFn = Variant (*)(BuiltinArgs &args);

struct BuiltinDef {
  const char *name;
  BuiltinFn fn;
  std::int8_t minArgs;
  std::int8_t maxArgs;
};

// A library function or constant by lower-case name; nullptr when there is
// none.
const BuiltinDef *findBuiltin(const QString &folded);
const Variant *findBuiltinConstant(const QString &folded);

// The groups of the library, one per source file.
std::span<const BuiltinDef> stringBuiltins();
std::span<const BuiltinDef> conversionBuiltins();
std::span<const BuiltinDef> mathBuiltins();
std::span<const BuiltinDef> dateBuiltins();
std::span<const BuiltinDef> formatBuiltins();
std::span<const BuiltinDef> runtimeBuiltins();

// Helpers shared by the groups.
// Raises 94 when the value is Null.
void requireNotNull(const Variant &value);
// An optional numeric argument, or the fallback when left out.
int intArg(const BuiltinArgs &args, int index, int fallback);

} // namespace kordel::script::vb

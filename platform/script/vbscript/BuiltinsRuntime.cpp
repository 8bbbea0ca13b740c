// Arrays, objects, dialogs and code from strings.

#include "core/Error.h"
#include "script/vbscript/Builtins.h"
#include "script/vbscript/Interpreter.h"
#include "script/vbscript/VbErrors.h"

#include <algorithm>

namespace kordel::script::vb {

namespace {

Variant fnArray(BuiltinArgs &a) {
  a.interpreter.checkArraySize(std::size_t(a.count));
  return Variant(VariantArray::fromValues(std::vector<Variant>(a.values, a.values + a.count)));
}

const VariantArray &arrayArg(const Variant &value) {
  if (!value.isArray())
    raiseError(ErrorNumber::TypeMismatch);
  return value.array();
}

Variant fnLBound(BuiltinArgs &a) { return Variant(int(arrayArg(a[0]).lowerBound(intArg(a, 1, 1)))); }
Variant fnUBound(BuiltinArgs &a) { return Variant(int(arrayArg(a[0]).upperBound(intArg(a, 1, 1)))); }

[[noreturn]] void noUserInterface(const char *function) {
  raiseError(ErrorNumber::PermissionDenied, runtimeErrorSource(),
             QStringLiteral("No user interface is available for %1").arg(QLatin1String(function)));
}

Variant fnMsgBox(BuiltinArgs &a) {
  const auto &show = a.interpreter.ui().messageBox;
  if (!show)
    noUserInterface("MsgBox");
  const QString prompt = a[0].toString();
  const int buttons = intArg(a, 1, 0);
  const QString title = a.has(2) ? a[2].toString() : QString();
  return Variant(std::int16_t(show(prompt, buttons, title)));
}

Variant fnInputBox(BuiltinArgs &a) {
  const auto &ask = a.interpreter.ui().inputBox;
  if (!ask)
    noUserInterface("InputBox");
  const QString prompt = a[0].toString();
  const QString title = a.has(1) ? a[1].toString() : QString();
  const QString defaultText = a.has(2) ? a[2].toString() : QString();
  const std::optional<QString> answer = ask(prompt, title, defaultText);
  return answer ? Variant(*answer) : Variant(); // Cancel gives Empty
}

Variant fnCreateObject(BuiltinArgs &a) {
  const QString progId = a[0].toString();
  if (a.has(1) && !a[1].toString().isEmpty())
    raiseNamedError(ErrorNumber::CannotCreateObject, progId);
  return Variant(a.interpreter.createObject(progId));
}

Variant fnGetObject(BuiltinArgs &) {
  raiseError(ErrorNumber::CannotCreateObject, runtimeErrorSource(), QStringLiteral("GetObject is not available"));
}

Variant fnEval(BuiltinArgs &a) { return a.interpreter.evalString(a[0].toString(), a.frame); }

Variant fnExecute(BuiltinArgs &a) {
  a.interpreter.executeString(a[0].toString(), a.frame, false);
  return Variant();
}

Variant fnExecuteGlobal(BuiltinArgs &a) {
  a.interpreter.executeString(a[0].toString(), a.frame, true);
  return Variant();
}

Variant fnGetRef(BuiltinArgs &a) { return Variant(a.interpreter.procedureReference(a[0].toString())); }

Variant fnErr(BuiltinArgs &a) { return Variant(a.interpreter.errObject()); }

Variant fnRGB(BuiltinArgs &a) {
  int parts[3];
  for (int i = 0; i < 3; ++i) {
    requireNotNull(a[i]);
    const int value = a[i].toLong();
    if (value < 0)
      raiseError(ErrorNumber::InvalidCall);
    parts[i] = std::min(value, 255);
  }
  return Variant(parts[0] + parts[1] * 256 + parts[2] * 65536);
}

Variant fnScriptEngine(BuiltinArgs &) { return Variant(QStringLiteral("VBScript")); }
Variant fnScriptEngineMajorVersion(BuiltinArgs &) { return Variant(5); }
Variant fnScriptEngineMinorVersion(BuiltinArgs &) { return Variant(8); }
Variant fnScriptEngineBuildVersion(BuiltinArgs &) { return Variant(1); }

constexpr BuiltinDef kRuntimeBuiltins[] = {
    {"Array", fnArray, 0, -1},
    {"LBound", fnLBound, 1, 2},
    {"UBound", fnUBound, 1, 2},
    {"MsgBox", fnMsgBox, 1, 5},
    {"InputBox", fnInputBox, 1, 7},
    {"CreateObject", fnCreateObject, 1, 2},
    {"GetObject", fnGetObject, 0, 2},
    {"Eval", fnEval, 1, 1},
    {"Execute", fnExecute, 1, 1},
    {"ExecuteGlobal", fnExecuteGlobal, 1, 1},
    {"GetRef", fnGetRef, 1, 1},
    {"Err", fnErr, 0, 0},
    {"RGB", fnRGB, 3, 3},
    {"ScriptEngine", fnScriptEngine, 0, 0},
    {"ScriptEngineMajorVersion", fnScriptEngineMajorVersion, 0, 0},
    {"ScriptEngineMinorVersion", fnScriptEngineMinorVersion, 0, 0},
    {"ScriptEngineBuildVersion", fnScriptEngineBuildVersion, 0, 0},
};

} // namespace

std::span<const BuiltinDef> runtimeBuiltins() { return kRuntimeBuiltins; }

} // namespace kordel::script::vb

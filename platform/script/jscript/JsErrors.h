#pragma once

#include "script/ScriptEngine.h"
#include "script/ScriptErrors.h"

#include <QJSValue>
#include <QStringList>

namespace kordel::script::js {

// Error numbers of the JScript engine beyond the shared tables of
// core/Error.h and script/ScriptErrors.h.
namespace JsError {
constexpr int SyntaxError = 1002;         // any error found while compiling
constexpr int ObjectExpected = 5007;      // a TypeError of the engine
constexpr int UndefinedIdentifier = 5009; // a ReferenceError of the engine
constexpr int UncaughtException = 5022;   // any other value thrown and not caught
} // namespace JsError

QString runtimeErrorSource();
QString compileErrorSource();

// The error a script threw and did not catch, from errorInfo's record of it
// (see BridgeScript.cpp). When there is no record (the script's stack was
// spent, so even errorInfo could not run) the thrown value is read directly.
// trace is the stack trace that QJSEngine::evaluate reports, whose first
// entry gives the column of a syntax error; it is empty for calls.
ScriptError scriptErrorFrom(const QJSValue &info, const QJSValue &thrown, const QStringList &trace);

// The error of a spent time budget.
ScriptError timeoutError(int milliseconds);

} // namespace kordel::script::js

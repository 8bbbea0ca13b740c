#pragma once

#include "script/ScriptEngine.h"

#include <QJSValue>
#include <QStringList>

namespace kordel::script::js {

// Error numbers of the JScript engine beyond the shared table. The budget's
// two errors carry the numbers VBScript gives them, so that a host treats
// both languages alike.
namespace JsError {
constexpr int OutOfStackSpace = 28;       // recursion past the engine's stack
constexpr int SubNotDefined = 35;         // the host called a procedure that is not there
constexpr int ScriptTimeout = 1001;       // the time budget of an entry is spent
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

#include "script/jscript/JsErrors.h"

namespace kordel::script::js {

namespace {

struct TracePlace {
  int line = 0;
  int column = 0;
};

// An entry of QJSEngine's stack trace reads "function:line:column:file";
// the column is -1 except for errors of the compiler.
TracePlace placeOf(const QStringList &trace) {
  if (trace.isEmpty())
    return {};
  const QStringList parts = trace.first().split(u':');
  if (parts.size() < 3)
    return {};
  return {parts.at(1).toInt(), qMax(parts.at(2).toInt(), 0)};
}

int numberOfEngineError(const QString &name, const QString &description) {
  if (name == QLatin1String("SyntaxError"))
    return JsError::SyntaxError;
  if (name == QLatin1String("ReferenceError"))
    return JsError::UndefinedIdentifier;
  if (name == QLatin1String("TypeError"))
    return JsError::ObjectExpected;
  if (name == QLatin1String("RangeError") && description.startsWith(QLatin1String("Maximum call stack size exceeded")))
    return ScriptErrorNumber::OutOfStackSpace;
  return JsError::UncaughtException;
}

} // namespace

QString runtimeErrorSource() { return QStringLiteral("JScript runtime error"); }
QString compileErrorSource() { return QStringLiteral("JScript compilation error"); }

ScriptError scriptErrorFrom(const QJSValue &info, const QJSValue &thrown, const QStringList &trace) {
  const bool recorded = info.isObject() && !info.isError();
  const QJSValue &error = recorded ? info : thrown;
  const QJSValue numberValue = error.property(QStringLiteral("number"));
  int number = numberValue.isNumber() ? numberValue.toInt() : 0;
  const QJSValue descriptionValue = error.property(QStringLiteral("description"));
  QString description = descriptionValue.isString() ? descriptionValue.toString()
                        : thrown.isError()          ? thrown.property(QStringLiteral("message")).toString()
                                                    : thrown.toString();
  QString source = recorded ? info.property(QStringLiteral("source")).toString() : QString();
  // Only the compiler reports a column; whatever it found, nothing ran.
  const TracePlace place = placeOf(trace);
  const bool compileError = place.column > 0;
  if (compileError && number == 0)
    number = JsError::SyntaxError;
  if (number == 0) {
    const QString name = error.property(QStringLiteral("name")).toString();
    number = numberOfEngineError(name, description);
    if (number == ScriptErrorNumber::OutOfStackSpace)
      description = QStringLiteral("Out of stack space");
    if (number == JsError::UncaughtException && !thrown.isError())
      description = QStringLiteral("Exception thrown and not caught: %1").arg(description);
  }
  if (source.isEmpty())
    source = compileError ? compileErrorSource() : runtimeErrorSource();
  int line = error.property(recorded ? QStringLiteral("line") : QStringLiteral("lineNumber")).toInt();
  if (line <= 0)
    line = place.line;
  return ScriptError(Error(number, source, description), line, compileError ? place.column : 0, compileError);
}

ScriptError timeoutError(int milliseconds) {
  return ScriptError(Error(ScriptErrorNumber::Timeout, runtimeErrorSource(),
                           QStringLiteral("The script ran longer than it may (%1 ms)").arg(milliseconds)),
                     0, 0);
}

} // namespace kordel::script::js

#include "script/jscript/SyntaxCheck.h"

#include "script/jscript/JsErrors.h"

#include <QJSEngine>

#include <algorithm>

namespace kordel::script::js {

// The program is compiled in an engine of its own, behind a first statement
// that throws: the engine compiles the whole text before it runs anything,
// so a syntax error is found, and otherwise the throw ends the program
// before any of the text runs. The engine of the scripts sees nothing of
// it, not even the names a program declares before its first statement
// (functions, var, let and const). The guard stands on the first line, so
// lines stay the text's own and only the first line's columns move.
void checkProgramSyntax(const QString &code) {
  static const QString guard = QStringLiteral("throw null; ");
  QJSEngine compiler;
  QStringList trace;
  const QJSValue thrown = compiler.evaluate(guard + code, QString(), 1, &trace);
  if (thrown.isNull())
    return; // the guard threw: the text compiled
  const ScriptError error = scriptErrorFrom(QJSValue(), thrown, trace);
  const int column = error.line() == 1 ? std::max(error.column() - int(guard.size()), 1) : error.column();
  throw ScriptError(error, error.line(), column, true);
}

} // namespace kordel::script::js

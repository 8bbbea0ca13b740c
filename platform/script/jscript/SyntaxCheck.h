#pragma once

#include <QString>

namespace kordel::script::js {

// Compiles a program as JScriptEngine::addCode would and raises its compile
// error as a ScriptError with the text's own line and column; runs nothing.
void checkProgramSyntax(const QString &code);

} // namespace kordel::script::js

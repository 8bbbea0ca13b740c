#include "script/ScriptEngine.h"

#include "script/jscript/JScriptEngine.h"
#include "script/vbscript/VbScriptEngine.h"

namespace kordel::script {

ScriptError::ScriptError(const Error &error, int line, int column, bool compileError)
    : Error(error), line_(line), column_(column), compileError_(compileError) {}

void ScriptError::setPlace(int line, int column) {
  line_ = line;
  column_ = column;
}

ScriptEngine::~ScriptEngine() = default;

std::unique_ptr<ScriptEngine> createScriptEngine(const QString &language) {
  if (language.compare(QLatin1String("VBScript"), Qt::CaseInsensitive) == 0 ||
      language.compare(QLatin1String("VBS"), Qt::CaseInsensitive) == 0)
    return std::make_unique<vb::VbScriptEngine>();
  if (language.compare(QLatin1String("JScript"), Qt::CaseInsensitive) == 0)
    return std::make_unique<js::JScriptEngine>();
  raiseError(ErrorNumber::InvalidCall, QStringLiteral("ScriptEngine"),
             QStringLiteral("No script engine for the language '%1'").arg(language));
}

} // namespace kordel::script

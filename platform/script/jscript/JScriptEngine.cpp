#include "script/jscript/JScriptEngine.h"

#include "script/jscript/JsContext.h"
#include "script/jscript/JsErrors.h"
#include "script/jscript/JsObject.h"
#include "script/jscript/SyntaxCheck.h"

namespace kordel::script::js {

JScriptEngine::JScriptEngine() : context_(std::make_shared<JsContext>()) {}

JScriptEngine::~JScriptEngine() = default;

void JScriptEngine::addNamedItem(const QString &name, const ObjectRef &object, bool globalMembers) {
  context_->defineGlobal(name, object, globalMembers);
}

void JScriptEngine::addCode(const QString &code) { context_->runProgram(code); }

void JScriptEngine::checkSyntax(const QString &code) { checkProgramSyntax(code); }

bool JScriptEngine::hasProcedure(const QString &name) const { return context_->procedure(name).isCallable(); }

Variant JScriptEngine::call(const QString &name, Args &args) {
  const QJSValue procedure = context_->procedure(name);
  if (!procedure.isCallable())
    throw ScriptError(Error(ScriptErrorNumber::SubNotDefined, runtimeErrorSource(),
                            QStringLiteral("Sub or Function not defined: '%1'").arg(name)),
                      0, 0);
  Variant result = context_->callFunction(procedure, context_->global(), context_->toJsList(args));
  if (!result.isEmpty() && !args.empty())
    args.front() = result;
  return result;
}

Variant JScriptEngine::evaluate(const QString &expression) {
  const QJSValue compiled = context_->compiledExpression(expression);
  if (compiled.isCallable())
    return context_->callFunction(compiled, context_->global(), {});
  return context_->runProgram(expression);
}

ObjectRef JScriptEngine::codeObject() { return std::make_shared<JsObject>(context_, context_->global()); }

void JScriptEngine::setObjectFactory(ObjectFactory factory) { context_->setObjectFactory(std::move(factory)); }

void JScriptEngine::setUi(ScriptUi) {}

void JScriptEngine::setLayoutRights(std::shared_ptr<RunBudget> runBudget) {
  context_->setLayoutRights(std::move(runBudget));
}

void JScriptEngine::setBudget(const ScriptBudget &budget) { context_->setBudget(budget); }

void JScriptEngine::setDynamicCodeAllowed(bool allowed) { context_->setDynamicCodeAllowed(allowed); }

} // namespace kordel::script::js

#include "script/vbscript/VbScriptEngine.h"

#include "script/vbscript/Interpreter.h"

namespace kordel::script::vb {

VbScriptEngine::VbScriptEngine() : interpreter_(std::make_unique<Interpreter>()) {}

VbScriptEngine::~VbScriptEngine() = default;

void VbScriptEngine::addNamedItem(const QString &name, const ObjectRef &object, bool globalMembers) {
  interpreter_->addNamedItem(name, object, globalMembers);
}

void VbScriptEngine::addCode(const QString &code) { interpreter_->addCode(code); }

void VbScriptEngine::checkSyntax(const QString &code) { interpreter_->checkSyntax(code); }

bool VbScriptEngine::hasProcedure(const QString &name) const { return interpreter_->hasProcedure(name); }

Variant VbScriptEngine::call(const QString &name, Args &args) { return interpreter_->call(name, args); }

Variant VbScriptEngine::evaluate(const QString &expression) { return interpreter_->evaluate(expression); }

ObjectRef VbScriptEngine::codeObject() { return interpreter_->codeObject(); }

void VbScriptEngine::setObjectFactory(ObjectFactory factory) { interpreter_->setObjectFactory(std::move(factory)); }

void VbScriptEngine::setUi(ScriptUi ui) { interpreter_->setUi(std::move(ui)); }

void VbScriptEngine::setLayoutRights(std::shared_ptr<RunBudget> runBudget) {
  interpreter_->setLayoutRights(std::move(runBudget));
}

void VbScriptEngine::setBudget(const ScriptBudget &budget) { interpreter_->setBudget(budget); }

void VbScriptEngine::setDynamicCodeAllowed(bool allowed) { interpreter_->setDynamicCodeAllowed(allowed); }

} // namespace kordel::script::vb

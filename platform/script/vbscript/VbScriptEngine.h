#pragma once

#include "script/ScriptEngine.h"

#include <memory>

namespace kordel::script::vb {

class Interpreter;

// The script host interface over our VBScript interpreter.
class VbScriptEngine final : public ScriptEngine {
public:
  VbScriptEngine();
  ~VbScriptEngine() override;

  QString language() const override { return QStringLiteral("VBScript"); }
  void addNamedItem(const QString &name, const ObjectRef &object, bool globalMembers = false) override;
  void addCode(const QString &code) override;
  void checkSyntax(const QString &code) override;
  bool hasProcedure(const QString &name) const override;
  Variant call(const QString &name, Args &args) override;
  Variant evaluate(const QString &expression) override;
  ObjectRef codeObject() override;
  void setObjectFactory(ObjectFactory factory) override;
  void setUi(ScriptUi ui) override;
  void setBudget(const ScriptBudget &budget) override;
  void setDynamicCodeAllowed(bool allowed) override;
  void setLayoutRights(std::shared_ptr<RunBudget> runBudget) override;

private:
  std::unique_ptr<Interpreter> interpreter_;
};

} // namespace kordel::script::vb

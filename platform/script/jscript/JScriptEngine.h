#pragma once

#include "script/ScriptEngine.h"

#include <memory>

namespace kordel::script::js {

class JsContext;

// The script host interface over Qt's JavaScript engine.
//
// Host objects appear as objects of the script: obj.Name reads a property,
// obj.Name = v writes it, obj.Method(a) and obj(a) call (see
// BridgeScript.cpp). Enumerator, VBArray and ActiveXObject exist as in
// JScript; the engine has no other host objects: no file, network, timer,
// console or Qt objects, and no module imports.
//
// ByRef. JScript passes everything by value. A host that calls an event
// procedure with a ByRef argument gets the procedure's return value back in
// the first argument when the procedure returns something other than
// undefined: "function ActiveReport_FetchData(eof) { return true; }" ends
// the rows as "eof = True" does in VBScript.
//
// Named items with global members: the members of such an object are
// reachable as global names through the global object's prototype, so
// names the scripts declare themselves come first.
//
// Budget: the time limit (a statement limit becomes a time limit, the
// engine counting no statements) interrupts the script from a helper
// thread; recursion ends at the engine's own stack limit with error 28, and
// host-to-script re-entries count against recursionDepth.
//
// Stop: a host object that throws ScriptStop (WScript.Quit) interrupts the
// engine as the time limit does, so no try/catch of the script keeps it,
// and the entry leaves as that ScriptStop.
class JScriptEngine final : public ScriptEngine {
public:
  JScriptEngine();
  ~JScriptEngine() override;

  QString language() const override { return QStringLiteral("JScript"); }
  void addNamedItem(const QString &name, const ObjectRef &object, bool globalMembers = false) override;
  void addCode(const QString &code) override;
  void checkSyntax(const QString &code) override;
  bool hasProcedure(const QString &name) const override;
  Variant call(const QString &name, Args &args) override;
  // A trailing semicolon is allowed, as in "Extensions.Timestamp(\"yyyy\");".
  Variant evaluate(const QString &expression) override;
  ObjectRef codeObject() override;
  void setObjectFactory(ObjectFactory factory) override;
  // JScript has no MsgBox or InputBox; the engine has no use for them.
  void setUi(ScriptUi ui) override;
  void setBudget(const ScriptBudget &budget) override;
  void setLayoutRights(std::shared_ptr<RunBudget> runBudget) override;
  void setDynamicCodeAllowed(bool allowed) override;

private:
  std::shared_ptr<JsContext> context_;
};

} // namespace kordel::script::js

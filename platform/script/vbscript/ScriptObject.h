#pragma once

#include "core/Object.h"
#include "script/vbscript/Ast.h"

#include <memory>
#include <vector>

namespace kordel::script::vb {

class Interpreter;

// An instance of a Class of a script. Inside the interpreter its members
// are reached by index; from outside (the host, or a script of another
// engine) through the late-bound Object interface by name, where only
// Public members are visible. Class_Terminate runs when the last reference
// goes, as long as the engine that made the object still exists.
class ScriptObject final : public Object {
public:
  ScriptObject(std::shared_ptr<const ClassDef> classDef, Interpreter &owner);
  ~ScriptObject() override;

  QString typeName() const override { return classDef_->name; }
  Variant call(const QString &name, Args &args) override;
  void set(const QString &name, Args &args, const Variant &value) override;
  bool hasMember(const QString &name) const override;

  const ClassDef &classDef() const { return *classDef_; }
  std::vector<Variant> &fields() { return fields_; }
  // The engine that made the object, or nullptr once it is gone.
  Interpreter *owner() const;
  // Set once Class_Initialize has finished; only then does Terminate run.
  void markInitialized() { initialized_ = true; }

private:
  std::shared_ptr<const ClassDef> classDef_;
  std::vector<Variant> fields_;
  Interpreter *owner_;
  std::weak_ptr<void> ownerAlive_;
  bool initialized_ = false;
};

// The object as a ScriptObject made by the given engine, or nullptr.
ScriptObject *ownedScriptObject(Object &object, const Interpreter *owner);

} // namespace kordel::script::vb

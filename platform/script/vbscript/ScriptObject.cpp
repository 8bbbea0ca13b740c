#include "script/vbscript/ScriptObject.h"

#include "script/vbscript/Interpreter.h"

#include <typeinfo>

namespace kordel::script::vb {

namespace {

Interpreter &liveOwner(const ScriptObject &object) {
  Interpreter *owner = object.owner();
  if (!owner)
    raiseError(ErrorNumber::ObjectRequired, object.typeName(),
               QStringLiteral("The script engine that made this object has ended"));
  return *owner;
}

} // namespace

ScriptObject::ScriptObject(std::shared_ptr<const ClassDef> classDef, Interpreter &owner)
    : classDef_(std::move(classDef)), fields_(classDef_->fields.size()), owner_(&owner),
      ownerAlive_(owner.aliveToken()) {}

ScriptObject::~ScriptObject() {
  if (initialized_ && classDef_->terminate) {
    if (Interpreter *owner = this->owner())
      owner->terminate(*this);
  }
}

Interpreter *ScriptObject::owner() const { return ownerAlive_.expired() ? nullptr : owner_; }

Variant ScriptObject::call(const QString &name, Args &args) {
  return liveOwner(*this).callObjectMember(*this, name, args);
}

void ScriptObject::set(const QString &name, Args &args, const Variant &value) {
  liveOwner(*this).setObjectMember(*this, name, args, value);
}

bool ScriptObject::hasMember(const QString &name) const {
  const int index = classDef_->findMember(name.toLower());
  return index >= 0 && classDef_->members[std::size_t(index)].isPublic;
}

ScriptObject *ownedScriptObject(Object &object, const Interpreter *owner) {
  if (typeid(object) != typeid(ScriptObject))
    return nullptr;
  auto &scriptObject = static_cast<ScriptObject &>(object);
  return scriptObject.owner() == owner ? &scriptObject : nullptr;
}

} // namespace kordel::script::vb

// Variables and assignment: where a name's value lives, binding names at
// their first execution, and the targets of Let and Set.

#include "script/vbscript/ArrayAccess.h"
#include "script/vbscript/Interpreter.h"
#include "script/vbscript/ScriptObject.h"
#include "script/vbscript/VbErrors.h"

#include <typeinfo>

namespace kordel::script::vb {

Variant *Interpreter::variable(NameExpr &name, Frame &frame, bool forWrite) {
  switch (name.binding) {
  case Binding::Local: return frame.refs[name.index];
  case Binding::Field: return &frame.me->fields()[std::size_t(name.index)];
  case Binding::Global: {
    GlobalEntry &entry = globals_.at(name.index);
    return entry.kind == GlobalEntry::Kind::Variable ? &entry.value : nullptr;
  }
  case Binding::Unresolved:
    if (bindLate(name, frame, forWrite))
      return variable(name, frame, forWrite);
    return nullptr;
  default: return nullptr;
  }
}

// Binds a name no declaration covered when the block was compiled: a global
// added since, a member of a named item, or else an undeclared variable
// (a local of the procedure, or a new global when written at global level).
bool Interpreter::bindLate(NameExpr &name, Frame &frame, bool forWrite) {
  const int global = globals_.find(name.folded);
  if (global >= 0) {
    name.binding = Binding::Global;
    name.index = global;
    return true;
  }
  for (int item : globals_.globalMemberItems()) {
    const Variant &object = globals_.at(item).value;
    if (object.isObject() && object.rawObject() && object.rawObject()->hasMember(name.name)) {
      name.binding = Binding::ItemMember;
      name.index = item;
      return true;
    }
  }
  if (name.optionExplicit)
    raiseNamedError(VbError::VariableUndefined, name.name);
  if (name.implicitSlot >= 0) {
    name.binding = Binding::Local;
    name.index = name.implicitSlot;
    name.undeclared = true;
    return true;
  }
  if (!forWrite)
    return false;
  name.binding = Binding::Global;
  name.index = globals_.add(name.name, GlobalEntry::Kind::Variable);
  globals_.at(name.index).undeclared = true;
  return true;
}

// A call of a name that nothing declares and that holds no value calls no
// procedure: natively a type mismatch that names it. Reading such a name
// gives Empty instead.
void Interpreter::checkUndeclaredCall(NameExpr &name, Frame &frame) {
  if (name.binding == Binding::Unresolved && !bindLate(name, frame, false))
    raiseNamedError(ErrorNumber::TypeMismatch, name.name);
  bool undeclared = name.undeclared;
  const Variant *value = nullptr;
  if (name.binding == Binding::Local) {
    value = frame.refs[name.index];
  } else if (name.binding == Binding::Global) {
    const GlobalEntry &entry = globals_.at(name.index);
    undeclared = entry.kind == GlobalEntry::Kind::Variable && entry.undeclared;
    value = &entry.value;
  }
  if (undeclared && value->isEmpty())
    raiseNamedError(ErrorNumber::TypeMismatch, name.name);
}

void Interpreter::subscripts(std::vector<ExprPtr> &args, Frame &frame, std::int32_t *out) {
  const int count = subscriptCount(args);
  for (int i = 0; i < count; ++i)
    out[i] = eval(*args[std::size_t(i)], frame).toLong();
}

// The variable or array element an expression names, for writing; nullptr
// when it names something else.
Variant *Interpreter::storage(Expr &expr, Frame &frame) {
  if (expr.kind == ExprKind::Name)
    return variable(static_cast<NameExpr &>(expr), frame, true);
  if (expr.kind != ExprKind::Call)
    return nullptr;
  auto &call = static_cast<CallExpr &>(expr);
  Variant *holder = storage(*call.callee, frame);
  if (!holder || !holder->isArray())
    return nullptr;
  std::int32_t at[kMaxDimensions];
  const int count = subscriptCount(call.args);
  subscripts(call.args, frame, at);
  VariantArray &array = holder->mutableArray();
  return &array.elements()[elementOffset(array, at, count)];
}

void Interpreter::assignElement(Variant &array, std::vector<ExprPtr> &args, Variant &&value, Frame &frame) {
  std::int32_t at[kMaxDimensions];
  const int count = subscriptCount(args);
  subscripts(args, frame, at);
  VariantArray &elements = array.mutableArray();
  elements.elements()[elementOffset(elements, at, count)] = std::move(value);
}

void Interpreter::assign(Expr &target, Variant &&value, bool isSet, Frame &frame) {
  switch (target.kind) {
  case ExprKind::Name: assignName(static_cast<NameExpr &>(target), std::move(value), isSet, frame); return;
  case ExprKind::Member: {
    auto &member = static_cast<MemberExpr &>(target);
    const Variant holder = objectOf(member, frame);
    if (!holder.isObject() || !holder.rawObject())
      raiseNamedError(ErrorNumber::ObjectRequired, member.name);
    Object &object = *holder.rawObject();
    if (ScriptObject *own = ownedScriptObject(object, this))
      assignMember(*own, scriptMember(*own, member, frame), nullptr, std::move(value), isSet, frame);
    else
      setHost(object, member.name, nullptr, value, frame);
    return;
  }
  case ExprKind::Call: break;
  default: raiseIllegalAssignment(QString());
  }

  auto &call = static_cast<CallExpr &>(target);
  Expr &callee = *call.callee;
  if (callee.kind == ExprKind::Member) {
    auto &member = static_cast<MemberExpr &>(callee);
    const Variant holder = objectOf(member, frame);
    if (!holder.isObject() || !holder.rawObject())
      raiseNamedError(ErrorNumber::ObjectRequired, member.name);
    Object &object = *holder.rawObject();
    if (ScriptObject *own = ownedScriptObject(object, this))
      assignMember(*own, scriptMember(*own, member, frame), &call.args, std::move(value), isSet, frame);
    else
      setHost(object, member.name, &call.args, value, frame);
    return;
  }
  if (callee.kind == ExprKind::Name) {
    auto &name = static_cast<NameExpr &>(callee);
    if (name.binding == Binding::ClassMember) {
      assignMember(*frame.me, name.index, &call.args, std::move(value), isSet, frame);
      return;
    }
    if (name.binding == Binding::ItemMember) {
      const Variant item = globals_.at(name.index).value;
      setHost(*item.rawObject(), name.name, &call.args, value, frame);
      return;
    }
    // f(x) = v assigns to nothing when f is a procedure or a library function.
    if (name.binding == Binding::Builtin ||
        (name.binding == Binding::Global && globals_.at(name.index).kind == GlobalEntry::Kind::Procedure))
      raiseIllegalAssignment(name.name);
  }
  // An array element, or the default member of an object: a(i) = v, d(k) = v.
  Variant *holder = storage(callee, frame);
  if (holder && holder->isArray()) {
    assignElement(*holder, call.args, std::move(value), frame);
    return;
  }
  const Variant object = holder ? *holder : eval(callee, frame);
  if (!object.isObject())
    raiseError(ErrorNumber::TypeMismatch);
  if (!object.rawObject())
    raiseError(ErrorNumber::ObjectNotSet);
  if (ScriptObject *own = ownedScriptObject(*object.rawObject(), this)) {
    const int member = own->classDef().defaultMember;
    if (member < 0)
      raiseNoSuchMember(own->classDef().name);
    assignMember(*own, member, &call.args, std::move(value), isSet, frame);
    return;
  }
  setHost(*object.rawObject(), QString(), &call.args, value, frame);
}

void Interpreter::assignName(NameExpr &name, Variant &&value, bool isSet, Frame &frame) {
  switch (name.binding) {
  case Binding::Local: *frame.refs[name.index] = std::move(value); return;
  case Binding::Field: frame.me->fields()[std::size_t(name.index)] = std::move(value); return;
  case Binding::Global: {
    GlobalEntry &entry = globals_.at(name.index);
    if (entry.kind != GlobalEntry::Kind::Variable)
      raiseIllegalAssignment(name.name);
    entry.value = std::move(value);
    return;
  }
  case Binding::ClassMember: assignMember(*frame.me, name.index, nullptr, std::move(value), isSet, frame); return;
  case Binding::ItemMember: {
    const Variant item = globals_.at(name.index).value;
    setHost(*item.rawObject(), name.name, nullptr, value, frame);
    return;
  }
  case Binding::Unresolved:
    bindLate(name, frame, true);
    assignName(name, std::move(value), isSet, frame);
    return;
  case Binding::Constant:
  case Binding::Builtin: raiseIllegalAssignment(name.name);
  }
}

void Interpreter::assignMember(ScriptObject &object, int index, std::vector<ExprPtr> *args, Variant &&value, bool isSet,
                               Frame &frame) {
  const ClassDef::Member &member = object.classDef().members[std::size_t(index)];
  switch (member.kind) {
  case ClassDef::MemberKind::Field: {
    Variant &field = object.fields()[std::size_t(member.field)];
    if (!args || args->empty()) {
      field = std::move(value);
      return;
    }
    if (field.isArray()) {
      assignElement(field, *args, std::move(value), frame);
      return;
    }
    if (field.isObject() && field.rawObject()) {
      const ObjectRef target = field.rawObject();
      setHost(*target, QString(), args, value, frame);
      return;
    }
    raiseError(ErrorNumber::TypeMismatch);
  }
  case ClassDef::MemberKind::Property: {
    const Procedure *setter = isSet ? (member.set ? member.set : member.let) : (member.let ? member.let : member.set);
    if (!setter)
      raiseNoSuchMember(member.name);
    invoke(*setter, &object, args, frame, &value);
    return;
  }
  case ClassDef::MemberKind::Method: raiseIllegalAssignment(member.name);
  }
}

} // namespace kordel::script::vb

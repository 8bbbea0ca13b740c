// Expressions: names, member access, calls and indexing, operators.

#include "script/vbscript/ArrayAccess.h"
#include "script/vbscript/Interpreter.h"
#include "script/vbscript/Operators.h"
#include "script/vbscript/RegExpObject.h"
#include "script/vbscript/ScriptObject.h"
#include "script/vbscript/VbErrors.h"

#include <algorithm>
#include <typeinfo>

namespace kordel::script::vb {

Variant Interpreter::eval(Expr &e, Frame &frame) {
  switch (e.kind) {
  case ExprKind::Literal: return static_cast<LiteralExpr &>(e).value;
  case ExprKind::Name: return evalName(static_cast<NameExpr &>(e), frame);
  case ExprKind::Member: return memberAccess(static_cast<MemberExpr &>(e), nullptr, frame);
  case ExprKind::Call: return evalCall(static_cast<CallExpr &>(e), frame);
  case ExprKind::Unary: {
    auto &unary = static_cast<UnaryExpr &>(e);
    return unaryOperation(unary.op, eval(*unary.operand, frame));
  }
  case ExprKind::Binary: {
    auto &binary = static_cast<BinaryExpr &>(e);
    if (binary.op == BinaryOp::Concat)
      return evalConcat(binary, frame);
    Operands operands;
    evalOperands(*binary.left, *binary.right, frame, operands);
    return binaryOperation(binary.op, *operands.left, *operands.right, budget_.maxStringLength);
  }
  case ExprKind::New: return evalNew(static_cast<NewExpr &>(e));
  case ExprKind::Me: {
    ObjectRef self = frame.me ? frame.me->weak_from_this().lock() : nullptr;
    if (!self)
      raiseNamedError(ErrorNumber::ObjectRequired, QStringLiteral("Me"));
    return Variant(std::move(self));
  }
  case ExprKind::Paren: return eval(*static_cast<ParenExpr &>(e).inner, frame);
  }
  return Variant();
}

// Literals, variables and constants are read where they lie. The left side
// may be read in place only when the right side runs no code that could
// change it.
void Interpreter::evalOperands(Expr &left, Expr &right, Frame &frame, Operands &out) {
  out.right = storedValue(right, frame);
  out.left = out.right ? storedValue(left, frame) : nullptr;
  if (!out.left) {
    out.leftCopy = eval(left, frame);
    out.left = &out.leftCopy;
  }
  if (!out.right) {
    out.rightCopy = eval(right, frame);
    out.right = &out.rightCopy;
  }
}

// a & b & c ...: the chain of & goes into one string. The operands are
// evaluated and joined in the order, and with the errors, of joining them
// two at a time.
Variant Interpreter::evalConcat(BinaryExpr &chain, Frame &frame) {
  constexpr int kMaxOperands = 32; // a longer chain joins its left part on its own
  Expr *operands[kMaxOperands];
  int count = 0;
  Expr *rest = &chain;
  while (count < kMaxOperands - 1 && rest->kind == ExprKind::Binary &&
         static_cast<BinaryExpr *>(rest)->op == BinaryOp::Concat) {
    auto *link = static_cast<BinaryExpr *>(rest);
    operands[count++] = link->right.get();
    rest = link->left.get();
  }
  operands[count++] = rest;
  std::reverse(operands, operands + count);

  ConcatChain joined(budget_.maxStringLength);
  {
    Operands first;
    evalOperands(*operands[0], *operands[1], frame, first);
    joined.addPair(*first.left, *first.right);
  }
  for (int i = 2; i < count; ++i) {
    if (const Variant *stored = storedValue(*operands[i], frame))
      joined.add(*stored);
    else
      joined.add(eval(*operands[i], frame));
  }
  return joined.result();
}

const Variant *Interpreter::storedValue(Expr &e, Frame &frame) {
  if (e.kind == ExprKind::Literal)
    return &static_cast<LiteralExpr &>(e).value;
  if (e.kind != ExprKind::Name)
    return nullptr;
  auto &name = static_cast<NameExpr &>(e);
  switch (name.binding) {
  case Binding::Local: return frame.refs[name.index];
  case Binding::Constant: return &name.constant;
  case Binding::Field: return &frame.me->fields()[std::size_t(name.index)];
  case Binding::Global: {
    const GlobalEntry &entry = globals_.at(name.index);
    return entry.kind == GlobalEntry::Kind::Variable || entry.kind == GlobalEntry::Kind::Constant ? &entry.value
                                                                                                  : nullptr;
  }
  default: return nullptr;
  }
}

Variant Interpreter::evalName(NameExpr &name, Frame &frame) {
  switch (name.binding) {
  case Binding::Local: return *frame.refs[name.index];
  case Binding::Constant: return name.constant;
  case Binding::Field: return frame.me->fields()[std::size_t(name.index)];
  case Binding::Global: return globalValue(name.index, nullptr, name, frame);
  case Binding::ClassMember: return memberCall(*frame.me, name.index, nullptr, frame);
  case Binding::ItemMember: {
    const Variant item = globals_.at(name.index).value;
    return callHost(*item.rawObject(), name.name, nullptr, frame);
  }
  case Binding::Builtin: return callBuiltin(*name.builtin, nullptr, frame);
  case Binding::Unresolved:
    if (bindLate(name, frame, false))
      return evalName(name, frame);
    return Variant(); // an undeclared variable reads as Empty
  }
  return Variant();
}

Variant Interpreter::globalValue(int index, std::vector<ExprPtr> *args, NameExpr &name, Frame &frame) {
  GlobalEntry &entry = globals_.at(index);
  switch (entry.kind) {
  case GlobalEntry::Kind::Variable:
  case GlobalEntry::Kind::Constant:
  case GlobalEntry::Kind::NamedItem:
    if (!args)
      return entry.value;
    if (entry.undeclared && entry.value.isEmpty())
      raiseNamedError(ErrorNumber::TypeMismatch, name.name);
    return callValue(entry.value, args, frame);
  case GlobalEntry::Kind::Procedure: return invoke(*entry.procedure, nullptr, args, frame);
  case GlobalEntry::Kind::Class: break;
  }
  raiseNamedError(ErrorNumber::TypeMismatch, name.name);
}

Variant Interpreter::evalCall(CallExpr &call, Frame &frame) {
  Expr &callee = *call.callee;
  if (callee.kind == ExprKind::Member)
    return memberAccess(static_cast<MemberExpr &>(callee), &call.args, frame);
  if (callee.kind != ExprKind::Name)
    return callValue(eval(callee, frame), &call.args, frame);

  auto &name = static_cast<NameExpr &>(callee);
  switch (name.binding) {
  case Binding::Local:
    if (name.undeclared)
      checkUndeclaredCall(name, frame);
    return callValue(*frame.refs[name.index], &call.args, frame);
  case Binding::Field: return callValue(frame.me->fields()[std::size_t(name.index)], &call.args, frame);
  case Binding::Constant: return callValue(name.constant, &call.args, frame);
  case Binding::Global: return globalValue(name.index, &call.args, name, frame);
  case Binding::ClassMember: return memberCall(*frame.me, name.index, &call.args, frame);
  case Binding::ItemMember: {
    const Variant item = globals_.at(name.index).value;
    return callHost(*item.rawObject(), name.name, &call.args, frame);
  }
  case Binding::Builtin: return callBuiltin(*name.builtin, &call.args, frame);
  case Binding::Unresolved:
    if (bindLate(name, frame, false))
      return evalCall(call, frame);
    raiseNamedError(ErrorNumber::TypeMismatch, name.name);
  }
  return Variant();
}

// callee(args) once the callee is a value: an array element, or the default
// member of an object.
Variant Interpreter::callValue(const Variant &callee, std::vector<ExprPtr> *args, Frame &frame) {
  if (callee.isArray()) {
    if (!args || args->empty())
      return callee;
    std::int32_t at[kMaxDimensions];
    const int count = subscriptCount(*args);
    subscripts(*args, frame, at);
    const VariantArray &array = callee.array();
    return array.elements()[elementOffset(array, at, count)];
  }
  if (callee.isObject()) {
    const ObjectRef object = callee.rawObject(); // alive for the call, whatever the arguments do
    if (!object)
      raiseError(ErrorNumber::ObjectNotSet);
    if (ScriptObject *own = ownedScriptObject(*object, this)) {
      const int member = own->classDef().defaultMember;
      if (member < 0)
        raiseNoSuchMember(own->classDef().name);
      return memberCall(*own, member, args, frame);
    }
    return callHost(*object, QString(), args, frame);
  }
  if (!args || args->empty())
    return callee;
  raiseError(ErrorNumber::TypeMismatch);
}

Variant Interpreter::objectOf(MemberExpr &member, Frame &frame) {
  if (member.object)
    return eval(*member.object, frame);
  if (member.withSlot < 0)
    raiseNamedError(VbError::UnqualifiedReference, member.name);
  return *frame.refs[member.withSlot];
}

int Interpreter::scriptMember(ScriptObject &object, MemberExpr &member, const Frame &frame) {
  const ClassDef *classDef = &object.classDef();
  if (member.cachedClass != classDef) {
    member.cachedMember = classDef->findMember(member.name.toLower());
    member.cachedClass = classDef;
  }
  const int index = member.cachedMember;
  if (index < 0)
    raiseNoSuchMember(member.name);
  // Private members are reachable only from code of the same class.
  if (!classDef->members[std::size_t(index)].isPublic && !(frame.me && &frame.me->classDef() == classDef))
    raiseNoSuchMember(member.name);
  return index;
}

Variant Interpreter::memberAccess(MemberExpr &member, std::vector<ExprPtr> *args, Frame &frame) {
  const Variant holder = objectOf(member, frame);
  if (!holder.isObject() || !holder.rawObject())
    raiseNamedError(ErrorNumber::ObjectRequired, member.name);
  Object &object = *holder.rawObject();
  if (ScriptObject *own = ownedScriptObject(object, this))
    return memberCall(*own, scriptMember(*own, member, frame), args, frame);
  return callHost(object, member.name, args, frame);
}

Variant Interpreter::memberCall(ScriptObject &object, int index, std::vector<ExprPtr> *args, Frame &frame) {
  const ClassDef::Member &member = object.classDef().members[std::size_t(index)];
  switch (member.kind) {
  case ClassDef::MemberKind::Field: {
    const Variant &field = object.fields()[std::size_t(member.field)];
    if (!args || args->empty())
      return field;
    return callValue(field, args, frame);
  }
  case ClassDef::MemberKind::Method: return invoke(*member.method, &object, args, frame);
  case ClassDef::MemberKind::Property:
    if (!member.get)
      raiseNoSuchMember(member.name);
    return invoke(*member.get, &object, args, frame);
  }
  return Variant();
}

Variant Interpreter::evalNew(NewExpr &expr) {
  const int index = globals_.find(expr.folded);
  if (index < 0 || globals_.at(index).kind != GlobalEntry::Kind::Class) {
    // RegExp is the one class the language brings; a script's own class
    // of that name comes first.
    if (expr.folded == QLatin1String("regexp"))
      return Variant(std::make_shared<RegExpObject>());
    raiseNamedError(VbError::ClassNotDefined, expr.className);
  }
  const std::shared_ptr<ClassDef> classDef = globals_.at(index).classDef;
  auto object = std::make_shared<ScriptObject>(classDef, *this);
  for (std::size_t i = 0; i < classDef->fields.size(); ++i) {
    const VarDecl &field = classDef->fields[i];
    if (field.isFixedArray()) {
      std::vector<VariantArray::Bounds> bounds;
      std::size_t total = 1;
      for (std::int32_t upper : field.bounds) {
        bounds.push_back({0, upper});
        total *= std::size_t(upper + 1);
      }
      checkArraySize(total);
      VariantArray array(std::move(bounds));
      array.setFixed(true);
      object->fields()[i] = Variant(std::move(array));
    }
  }
  if (classDef->initialize)
    invokeWithValues(*classDef->initialize, object.get(), nullptr, 0);
  object->markInitialized();
  return Variant(ObjectRef(std::move(object)));
}

} // namespace kordel::script::vb

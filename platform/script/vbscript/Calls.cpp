// Calls: script procedures with their frames and ByRef parameters, host
// objects through late binding, and the library.

#include "script/vbscript/ArrayAccess.h"
#include "script/vbscript/Builtins.h"
#include "script/vbscript/EntryGuard.h"
#include "script/vbscript/Interpreter.h"
#include "script/vbscript/ScriptObject.h"
#include "script/vbscript/VbErrors.h"

namespace kordel::script::vb {

namespace {

[[noreturn]] void wrongArgumentCount(const QString &name) { raiseNamedError(ErrorNumber::WrongArgumentCount, name); }

// Gives a frame's slots back however the call ends.
struct FrameRelease {
  SlotStack &stack;
  SlotStack::Mark mark;
  ~FrameRelease() { stack.pop(mark); }
};

} // namespace

// An array element passed ByRef: copied in, and written back on return.
struct Interpreter::CopyBack {
  Variant *array;
  int slot;
  int count;
  std::int32_t subscripts[kMaxDimensions];
};

// A pooled argument list for a host call; nested calls take the next one.
struct Interpreter::ArgsLease {
  explicit ArgsLease(Interpreter &interpreter) : interpreter(interpreter), args(take(interpreter)) {}
  ~ArgsLease() {
    args.clear();
    --interpreter.hostArgsDepth_;
  }
  static Args &take(Interpreter &interpreter) {
    if (interpreter.hostArgsDepth_ == interpreter.hostArgs_.size())
      interpreter.hostArgs_.emplace_back();
    return interpreter.hostArgs_[interpreter.hostArgsDepth_++];
  }
  Interpreter &interpreter;
  Args &args;
};

// The argument slots of a library call, from a pool whose slots stay Empty
// between calls, so that a call makes no Variants beyond its arguments.
// Nested calls take the next slots.
struct Interpreter::BuiltinSlots {
  BuiltinSlots(Interpreter &interpreter, int used) : interpreter(interpreter), values(take(interpreter)), used(used) {}
  ~BuiltinSlots() {
    for (int i = 0; i < used; ++i)
      values[i] = Variant();
    --interpreter.builtinSlotsDepth_;
  }
  static Variant *take(Interpreter &interpreter) {
    if (interpreter.builtinSlotsDepth_ == interpreter.builtinSlots_.size())
      interpreter.builtinSlots_.emplace_back();
    return interpreter.builtinSlots_[interpreter.builtinSlotsDepth_++].data();
  }
  Interpreter &interpreter;
  Variant *values;
  int used;
};

Variant Interpreter::invoke(const Procedure &procedure, ScriptObject *me, std::vector<ExprPtr> *args, Frame &caller,
                            const Variant *assigned) {
  const int given = args ? int(args->size()) : 0;
  if (given + (assigned ? 1 : 0) != int(procedure.params.size()))
    wrongArgumentCount(procedure.name);

  FrameRelease release{slots_, slots_.mark()};
  Frame frame;
  frame.procedure = &procedure;
  frame.me = me;
  frame.refs = slots_.push(procedure.slotCount);
  std::vector<CopyBack> copyBacks;

  for (int i = 0; i < given; ++i) {
    Expr *arg = (*args)[std::size_t(i)].get();
    if (!arg)
      continue; // left out: the parameter starts Empty
    if (procedure.params[std::size_t(i)].byRef) {
      if (arg->kind == ExprKind::Name) {
        if (Variant *target = variable(static_cast<NameExpr &>(*arg), caller, true)) {
          frame.refs[i] = target;
          continue;
        }
      } else if (arg->kind == ExprKind::Call) {
        auto &call = static_cast<CallExpr &>(*arg);
        if (call.callee->kind == ExprKind::Name && !call.args.empty()) {
          auto &name = static_cast<NameExpr &>(*call.callee);
          Variant *array = variable(name, caller, false);
          if (array && array->isArray()) {
            CopyBack copy;
            copy.array = array;
            copy.slot = i;
            copy.count = subscriptCount(call.args);
            subscripts(call.args, caller, copy.subscripts);
            *frame.refs[i] = array->array().elements()[elementOffset(array->array(), copy.subscripts, copy.count)];
            copyBacks.push_back(copy);
            continue;
          }
        }
      }
    }
    *frame.refs[i] = eval(*arg, caller);
  }
  if (assigned)
    *frame.refs[given] = *assigned;

  Variant result = runFrame(procedure, frame);
  for (const CopyBack &copy : copyBacks) {
    if (!copy.array->isArray())
      continue; // the callee turned the array into something else
    VariantArray &array = copy.array->mutableArray();
    const std::vector<VariantArray::Bounds> &bounds = array.bounds();
    bool inside = std::size_t(copy.count) == bounds.size();
    for (int d = 0; inside && d < copy.count; ++d)
      inside = copy.subscripts[d] >= bounds[std::size_t(d)].lower && copy.subscripts[d] <= bounds[std::size_t(d)].upper;
    if (inside)
      array.elements()[elementOffset(array, copy.subscripts, copy.count)] = std::move(*frame.refs[copy.slot]);
  }
  return result;
}

Variant Interpreter::invokeWithValues(const Procedure &procedure, ScriptObject *me, Variant *args, int count) {
  if (count != int(procedure.params.size()))
    wrongArgumentCount(procedure.name);
  FrameRelease release{slots_, slots_.mark()};
  Frame frame;
  frame.procedure = &procedure;
  frame.me = me;
  frame.refs = slots_.push(procedure.slotCount);
  for (int i = 0; i < count; ++i) {
    if (procedure.params[std::size_t(i)].byRef)
      frame.refs[i] = &args[i];
    else
      *frame.refs[i] = args[i];
  }
  return runFrame(procedure, frame);
}

Variant Interpreter::runFrame(const Procedure &procedure, Frame &frame) {
  enterCall();
  struct Leave {
    int &depth;
    ~Leave() { --depth; }
  } leave{callDepth_};
  initFixedArrays(procedure.fixedArrays, frame.refs);
  execBlock(procedure.body, frame);
  if (procedure.returnSlot >= 0)
    return std::move(*frame.refs[procedure.returnSlot]);
  return Variant();
}

Variant Interpreter::callHost(Object &object, const QString &name, std::vector<ExprPtr> *args, Frame &frame) {
  ArgsLease lease(*this);
  Args &values = lease.args;
  if (args) {
    for (ExprPtr &arg : *args)
      values.push_back(arg ? eval(*arg, frame) : Variant());
  }
  Variant result = object.call(name, values);
  // The host receives arguments by reference: what it changed in a plain
  // variable goes back into that variable.
  if (args) {
    for (std::size_t i = 0; i < args->size() && i < values.size(); ++i) {
      Expr *arg = (*args)[i].get();
      if (arg && arg->kind == ExprKind::Name) {
        if (Variant *target = variable(static_cast<NameExpr &>(*arg), frame, false))
          *target = std::move(values[i]);
      }
    }
  }
  return result;
}

void Interpreter::setHost(Object &object, const QString &name, std::vector<ExprPtr> *args, const Variant &value,
                          Frame &frame) {
  ArgsLease lease(*this);
  Args &values = lease.args;
  if (args) {
    for (ExprPtr &arg : *args)
      values.push_back(arg ? eval(*arg, frame) : Variant());
  }
  object.set(name, values, value);
}

Variant Interpreter::callBuiltin(const BuiltinDef &builtin, std::vector<ExprPtr> *args, Frame &frame) {
  const int count = args ? int(args->size()) : 0;
  if (count < builtin.minArgs || (builtin.maxArgs >= 0 && count > builtin.maxArgs))
    wrongArgumentCount(QString::fromLatin1(builtin.name));
  if (count > kMaxBuiltinArgs) {
    // Array(...) takes any number of values.
    std::vector<Variant> values(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      if (Expr *arg = (*args)[std::size_t(i)].get())
        values[std::size_t(i)] = eval(*arg, frame);
    }
    BuiltinArgs call{*this, frame, values.data(), count, 0};
    return builtin.fn(call);
  }
  BuiltinSlots arguments(*this, count);
  std::uint32_t omitted = 0;
  for (int i = 0; i < count; ++i) {
    if (Expr *arg = (*args)[std::size_t(i)].get())
      arguments.values[i] = eval(*arg, frame);
    else
      omitted |= 1u << i;
  }
  BuiltinArgs call{*this, frame, arguments.values, count, omitted};
  return builtin.fn(call);
}

// ---- calls from outside into script objects ----

int Interpreter::findPublicMember(const ScriptObject &object, const QString &name) const {
  const ClassDef &classDef = object.classDef();
  const int index = name.isEmpty() ? classDef.defaultMember : classDef.findMember(name.toLower());
  if (index < 0 || !classDef.members[std::size_t(index)].isPublic)
    raiseNamedError(ErrorNumber::NoSuchMember, name);
  return index;
}

Variant Interpreter::callObjectMember(ScriptObject &object, const QString &name, Args &args) {
  return guarded([&]() -> Variant {
    const ClassDef::Member &member = object.classDef().members[std::size_t(findPublicMember(object, name))];
    switch (member.kind) {
    case ClassDef::MemberKind::Field: {
      const Variant &field = object.fields()[std::size_t(member.field)];
      if (args.empty())
        return field;
      if (field.isArray()) {
        std::vector<std::int32_t> at;
        for (const Variant &a : args)
          at.push_back(a.toLong());
        if (at.size() > std::size_t(kMaxDimensions))
          raiseError(ErrorNumber::SubscriptOutOfRange);
        return field.array().elements()[elementOffset(field.array(), at.data(), int(at.size()))];
      }
      if (field.isObject() && field.rawObject()) {
        const ObjectRef target = field.rawObject();
        return target->call(QString(), args);
      }
      raiseError(ErrorNumber::TypeMismatch);
    }
    case ClassDef::MemberKind::Method: return invokeWithValues(*member.method, &object, args.data(), int(args.size()));
    case ClassDef::MemberKind::Property:
      if (!member.get)
        raiseNamedError(ErrorNumber::NoSuchMember, name);
      return invokeWithValues(*member.get, &object, args.data(), int(args.size()));
    }
    return Variant();
  });
}

void Interpreter::setObjectMember(ScriptObject &object, const QString &name, Args &args, const Variant &value) {
  guarded([&] {
    const ClassDef::Member &member = object.classDef().members[std::size_t(findPublicMember(object, name))];
    if (member.kind == ClassDef::MemberKind::Field) {
      Variant &field = object.fields()[std::size_t(member.field)];
      if (args.empty()) {
        field = value;
        return;
      }
      std::vector<std::int32_t> at;
      for (const Variant &a : args)
        at.push_back(a.toLong());
      VariantArray &array = field.mutableArray();
      if (at.size() > std::size_t(kMaxDimensions))
        raiseError(ErrorNumber::SubscriptOutOfRange);
      array.elements()[elementOffset(array, at.data(), int(at.size()))] = value;
      return;
    }
    const Procedure *setter = nullptr;
    if (member.kind == ClassDef::MemberKind::Property)
      setter = value.isObject() && member.set ? member.set : (member.let ? member.let : member.set);
    if (!setter)
      raiseNamedError(ErrorNumber::NoSuchMember, name);
    Args all = args;
    all.push_back(value);
    invokeWithValues(*setter, &object, all.data(), int(all.size()));
  });
}

} // namespace kordel::script::vb

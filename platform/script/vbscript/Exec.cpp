// Statements: the statement loop with its error handling, and each kind of
// statement. See the note at the top of Interpreter.cpp.

#include "core/Compare.h"
#include "script/vbscript/ErrObject.h"
#include "script/vbscript/Interpreter.h"
#include "script/vbscript/Operators.h"
#include "script/vbscript/ScriptObject.h"
#include "script/vbscript/VbErrors.h"

#include <typeinfo>

namespace kordel::script::vb {

namespace {

// A conversion function called as a statement (Call CInt(1)) is refused
// when it runs, as natively: its value has nowhere to go.
bool isConversionCall(const Expr &expr) {
  const Expr *callee = &expr;
  if (expr.kind == ExprKind::Call)
    callee = static_cast<const CallExpr &>(expr).callee.get();
  if (callee->kind != ExprKind::Name)
    return false;
  const auto &name = static_cast<const NameExpr &>(*callee);
  static const QStringList conversions{QStringLiteral("cbool"), QStringLiteral("cbyte"), QStringLiteral("ccur"),
                                       QStringLiteral("cdate"), QStringLiteral("cdbl"),  QStringLiteral("cint"),
                                       QStringLiteral("clng"),  QStringLiteral("csng"),  QStringLiteral("cstr")};
  return name.binding == Binding::Builtin && conversions.contains(name.folded);
}

} // namespace

namespace {

// Whether a For counter has passed its end, for a rising or a falling step.
bool pastEnd(const Variant &counter, const Variant &end, bool falling) {
  using VT = Variant::Type;
  const VT ct = counter.type(), et = end.type();
  if ((ct == VT::Integer || ct == VT::Long) && (et == VT::Integer || et == VT::Long)) {
    const std::int32_t c = ct == VT::Integer ? counter.rawInteger() : counter.rawLong();
    const std::int32_t e = et == VT::Integer ? end.rawInteger() : end.rawLong();
    return falling ? c < e : c > e;
  }
  const double c = counter.toDouble(), e = end.toDouble();
  return falling ? c < e : c > e;
}

// The walk over a host object for For Each. Script objects and values that
// are no object are no collection, nor are objects that cannot be walked.
std::unique_ptr<Enumerator> enumeratorOf(const Variant &collection) {
  if (!collection.isObject() || !collection.rawObject())
    raiseNotACollection();
  Object &object = *collection.rawObject();
  if (typeid(object) == typeid(ScriptObject))
    raiseNotACollection();
  try {
    return object.enumerate();
  } catch (const Error &error) {
    if (error.number() == ErrorNumber::NoSuchMember)
      raiseNotACollection();
    throw;
  }
}

// The start of a For loop as a number: strings are read as Double.
Variant numericStart(const Variant &start) {
  if (start.isNumber() && !start.isEmpty())
    return start;
  if (start.isEmpty())
    return Variant(std::int16_t(0));
  return Variant(start.toDouble());
}

} // namespace

Flow Interpreter::execBlock(const Block &block, Frame &frame) {
  for (const StmtPtr &stmt : block) {
    try {
      tick();
      const Flow flow = exec(*stmt, frame);
      if (flow != Flow::Normal)
        return flow;
    } catch (...) {
      recordOrRethrow(*stmt, frame);
    }
  }
  return Flow::Normal;
}

// Called inside a catch block. Under On Error Resume Next the error goes into
// Err and the caller carries on with the next statement; otherwise it leaves
// as a ScriptError that knows the line of the statement it came from. A stop
// (WScript.Quit) is no error: it passes every handler on its way out.
void Interpreter::recordOrRethrow(const Stmt &stmt, Frame &frame) {
  try {
    throw;
  } catch (const ScriptStop &) {
    throw;
  } catch (RunError &error) {
    if (!error.placed())
      error.place(stmt.line, stmt.column);
    if (aborting_ || !frame.resumeNext)
      throw;
    err_->record(error);
  } catch (...) {
    // A plain error of the library or a host object, or a compile error of
    // code run from a string: it belongs to this statement.
    RunError error(scriptVisibleError(pendingError()));
    error.place(stmt.line, stmt.column);
    if (aborting_ || !frame.resumeNext)
      throw error;
    err_->record(error);
  }
}

bool Interpreter::testCondition(Expr &condition, const Stmt &stmt, Frame &frame, bool onError) {
  try {
    return isTrue(eval(condition, frame));
  } catch (...) {
    recordOrRethrow(stmt, frame);
    return onError;
  }
}

Flow Interpreter::exec(Stmt &stmt, Frame &frame) {
  switch (stmt.kind) {
  case StmtKind::Assign: {
    auto &s = static_cast<AssignStmt &>(stmt);
    Variant value = eval(*s.value, frame);
    if (s.isSet) {
      if (!value.isObject())
        raiseError(ErrorNumber::ObjectRequired);
    } else if (value.isObject()) {
      value = plainValue(value);
    }
    assign(*s.target, std::move(value), s.isSet, frame);
    return Flow::Normal;
  }
  case StmtKind::Call: {
    Expr &call = *static_cast<CallStmt &>(stmt).call;
    if (isConversionCall(call))
      raiseError(VbError::UnsupportedAutomationType, runtimeErrorSource(),
                 standardDescription(VbError::UnsupportedAutomationType));
    if (call.kind == ExprKind::Name)
      checkUndeclaredCall(static_cast<NameExpr &>(call), frame);
    eval(call, frame);
    return Flow::Normal;
  }
  case StmtKind::ReDim: execReDim(static_cast<ReDimStmt &>(stmt), frame); return Flow::Normal;
  case StmtKind::Erase: execErase(static_cast<EraseStmt &>(stmt), frame); return Flow::Normal;
  case StmtKind::If: return execIf(static_cast<IfStmt &>(stmt), frame);
  case StmtKind::Select: return execSelect(static_cast<SelectStmt &>(stmt), frame);
  case StmtKind::For: return execFor(static_cast<ForStmt &>(stmt), frame);
  case StmtKind::ForEach: return execForEach(static_cast<ForEachStmt &>(stmt), frame);
  case StmtKind::Do: return execDo(static_cast<DoStmt &>(stmt), frame);
  case StmtKind::With: return execWith(static_cast<WithStmt &>(stmt), frame);
  case StmtKind::Exit: {
    const ExitKind what = static_cast<ExitStmt &>(stmt).what;
    return what == ExitKind::Do ? Flow::ExitDo : what == ExitKind::For ? Flow::ExitFor : Flow::ExitProcedure;
  }
  case StmtKind::OnError:
    frame.resumeNext = static_cast<OnErrorStmt &>(stmt).resumeNext;
    err_->clear();
    return Flow::Normal;
  }
  return Flow::Normal;
}

Flow Interpreter::execIf(IfStmt &stmt, Frame &frame) {
  for (IfStmt::Branch &branch : stmt.branches) {
    // An error in the condition under Resume Next goes on with the next
    // statement, which is the first one of the branch.
    if (testCondition(*branch.condition, stmt, frame, true))
      return execBlock(branch.body, frame);
  }
  return execBlock(stmt.elseBody, frame);
}

Flow Interpreter::execSelect(SelectStmt &stmt, Frame &frame) {
  Variant subject;
  try {
    subject = eval(*stmt.subject, frame);
  } catch (...) {
    // Under Resume Next the statement after the failing head is the first
    // of the first clause, as natively.
    recordOrRethrow(stmt, frame);
    return execBlock(stmt.cases.empty() ? stmt.elseBody : stmt.cases.front().body, frame);
  }
  for (SelectStmt::Case &item : stmt.cases) {
    for (ExprPtr &value : item.values) {
      const std::optional<int> order = compareValues(subject, eval(*value, frame));
      if (order && *order == 0)
        return execBlock(item.body, frame);
    }
  }
  return execBlock(stmt.elseBody, frame);
}

// The body of a loop whose head failed under Resume Next: the statement
// after the head is the first of the body, and the Next that ends the body
// finds no loop to go on with.
Flow Interpreter::loopBodyOnce(const Block &body, Frame &frame) {
  const Flow flow = execBlock(body, frame);
  return flow == Flow::ExitFor ? Flow::Normal : flow;
}

Flow Interpreter::execFor(ForStmt &stmt, Frame &frame) {
  Variant end, step;
  Variant *counter = nullptr;
  bool falling = false;
  try {
    const Variant start = numericStart(eval(*stmt.start, frame));
    end = eval(*stmt.end, frame);
    step = stmt.step ? eval(*stmt.step, frame) : Variant(std::int16_t(1));
    falling = step.toDouble() < 0.0;
    end.toDouble(); // a bound that is no number fails here, before the first turn
    counter = variable(*stmt.counter, frame, true);
    if (!counter)
      raiseIllegalAssignment(stmt.counter->name);
    *counter = start;
  } catch (...) {
    recordOrRethrow(stmt, frame);
    return loopBodyOnce(stmt.body, frame);
  }
  while (true) {
    tick();
    if (pastEnd(*counter, end, falling))
      return Flow::Normal;
    const Flow flow = execBlock(stmt.body, frame);
    if (flow == Flow::ExitFor)
      return Flow::Normal;
    if (flow != Flow::Normal)
      return flow;
    *counter = binaryOperation(BinaryOp::Add, *counter, step, budget_.maxStringLength);
  }
}

Flow Interpreter::execForEach(ForEachStmt &stmt, Frame &frame) {
  Variant collection;
  Variant *element = nullptr;
  std::unique_ptr<Enumerator> enumerator;
  try {
    collection = eval(*stmt.collection, frame);
    element = variable(*stmt.element, frame, true);
    if (!element)
      raiseIllegalAssignment(stmt.element->name);
    if (!collection.isArray())
      enumerator = enumeratorOf(collection);
  } catch (...) {
    recordOrRethrow(stmt, frame);
    return loopBodyOnce(stmt.body, frame);
  }
  if (collection.isArray()) {
    // The loop walks the array as it was at the start; the collection
    // variable shares its elements, so changes in the loop do not move them.
    const std::vector<Variant> &values = collection.array().elements();
    std::size_t at = 0;
    return forEachTurns(stmt, *element, frame, [&values, &at](Variant &value) {
      if (at == values.size())
        return false;
      value = values[at++];
      return true;
    });
  }
  return forEachTurns(stmt, *element, frame, [&enumerator](Variant &value) { return enumerator->next(value); });
}

// The turns of a For Each: each element the walk gives goes into the loop
// variable and the body runs, until the walk ends or an Exit leaves.
Flow Interpreter::forEachTurns(ForEachStmt &stmt, Variant &element, Frame &frame,
                               const std::function<bool(Variant &)> &next) {
  Variant value;
  while (next(value)) {
    tick();
    element = std::move(value);
    const Flow flow = execBlock(stmt.body, frame);
    if (flow == Flow::ExitFor)
      return Flow::Normal;
    if (flow != Flow::Normal)
      return flow;
  }
  return Flow::Normal;
}

Flow Interpreter::execDo(DoStmt &stmt, Frame &frame) {
  using Test = DoStmt::Test;
  while (true) {
    tick();
    if (stmt.test == Test::WhileBefore || stmt.test == Test::UntilBefore) {
      // Under Resume Next a failing test enters the body.
      const bool holds = testCondition(*stmt.condition, stmt, frame, stmt.test == Test::WhileBefore);
      if (holds != (stmt.test == Test::WhileBefore))
        return Flow::Normal;
    }
    const Flow flow = execBlock(stmt.body, frame);
    if (flow == Flow::ExitDo)
      return Flow::Normal;
    if (flow != Flow::Normal)
      return flow;
    if (stmt.test == Test::WhileAfter || stmt.test == Test::UntilAfter) {
      // Under Resume Next a failing test leaves the loop.
      const bool holds = testCondition(*stmt.condition, stmt, frame, stmt.test == Test::UntilAfter);
      if (holds != (stmt.test == Test::WhileAfter))
        return Flow::Normal;
    }
  }
}

Flow Interpreter::execWith(WithStmt &stmt, Frame &frame) {
  Variant &slot = *frame.refs[stmt.slot];
  try {
    slot = eval(*stmt.object, frame);
    if (!slot.isObject())
      raiseError(ErrorNumber::ObjectRequired);
  } catch (...) {
    // Under Resume Next the body still runs, as natively; its members then
    // fail one by one.
    recordOrRethrow(stmt, frame);
  }
  struct Release {
    Variant &slot;
    ~Release() { slot = Variant(); }
  } release{slot};
  return execBlock(stmt.body, frame);
}

void Interpreter::execReDim(ReDimStmt &stmt, Frame &frame) {
  for (ReDimStmt::Item &item : stmt.items) {
    std::vector<VariantArray::Bounds> bounds;
    std::size_t total = 1;
    for (ExprPtr &bound : item.bounds) {
      const std::int32_t upper = eval(*bound, frame).toLong();
      if (upper < -1)
        raiseError(ErrorNumber::SubscriptOutOfRange);
      bounds.push_back({0, upper});
      total *= std::size_t(upper + 1);
      checkArraySize(total);
    }
    Variant *target = variable(*item.target, frame, true);
    if (!target)
      raiseIllegalAssignment(item.target->name);
    if (target->isArray() && target->array().fixed())
      raiseError(ErrorNumber::ArrayFixedOrLocked);
    if (stmt.preserve && target->isArray() && target->array().dimensions() > 0)
      target->mutableArray().redim(std::move(bounds), true);
    else
      *target = Variant(VariantArray(std::move(bounds)));
  }
}

void Interpreter::execErase(EraseStmt &stmt, Frame &frame) {
  Variant *target = variable(*stmt.target, frame, false);
  if (!target || !target->isArray())
    raiseError(ErrorNumber::TypeMismatch);
  if (target->array().fixed()) {
    for (Variant &element : target->mutableArray().elements())
      element = Variant();
  } else {
    *target = Variant(VariantArray());
  }
}

} // namespace kordel::script::vb

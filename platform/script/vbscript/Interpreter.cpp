// The VBScript interpreter.
//
// Pipeline. Text is tokenized (Lexer), parsed into a syntax tree (Parser),
// and its names are bound once (Resolver); the interpreter then walks the
// tree. A block of code is compiled once; its procedures are called as
// often as the host likes without any parsing, and bindings that could only
// be made at run time (a name defined by a later block) are made at the
// first execution and kept in the node.
//
// Values and slots. Every value is a kordel::Variant. A procedure's
// parameters, locals, result and hidden temporaries (the object of a With)
// are slots numbered by the resolver; a frame is an array of pointers to
// Variants taken from the SlotStack, whose storage never moves, so a call
// costs no allocation once the stack has grown. Globals live in the
// GlobalTable (a deque: entries never move either); the fields of a class
// instance in its ScriptObject. Names are never looked up by string at run
// time, except members of host objects, which the host's late binding
// finds by name.
//
// ByRef. A frame slot is a pointer. A ByRef parameter whose argument is a
// variable (local, global, field of Me) points at the caller's variable, so
// writes land there at once, as in VB. An array element passed ByRef is
// copied in and written back when the call returns (VB locks the array for
// the call; copying is the safe equivalent, since a ReDim in the callee
// cannot leave a dangling reference). Expressions, properties, constants
// and arguments in extra parentheses go by value. Calls from the host pass
// their Args vector: ByRef parameters point into it, which is how an event
// handler's "eof = False" reaches the caller. Calls to host objects get a
// pooled Args vector and, after the call, write each argument that was a
// plain variable back into that variable.
//
// Errors. Every failure is a kordel::Error exception. The statement loop
// (execBlock) catches it: in a frame with On Error Resume Next the error
// goes into Err and the next statement runs; otherwise it is marked with
// the line of the innermost statement (a RunError) and leaves the
// procedure, to be judged by the caller's statement loop in the caller's
// own frame. At the engine's edge it becomes a ScriptError. That is how
// "On Error Resume Next" in a caller catches an error raised deep in a
// callee that has no handler, continuing after the call. An error in the
// condition of If, ElseIf, While or Do While, or in the head of For, For
// Each, Select Case or With, under Resume Next continues with the statement
// that follows it, which is the first statement of the block (of a loop:
// the body runs once; of Select Case: the first clause), as VBScript does.
//
// Budget. Each entry from the host (addCode, call, evaluate, a member call
// on a script object) starts the clock; statements and loop turns count as
// ticks and every thousand ticks the clock is read. When the time or the
// statement count is spent the run ends with an error that Resume Next
// does not catch. Calls that nest deeper than allowed, or than the
// thread's stack can bear, raise Out of stack space (28) as VBScript does.
//
// Stop. A host object ends the whole run by throwing ScriptStop
// (WScript.Quit). The statement loop and the entries let it pass
// untouched, whatever handler a frame has, so it unwinds every frame like
// an error that no On Error Resume Next sees, and leaves the engine as it
// was thrown.

#include "script/vbscript/Interpreter.h"

#include "core/Dictionary.h"
#include "core/FoldedName.h"
#include "script/vbscript/EntryGuard.h"
#include "script/vbscript/ErrObject.h"
#include "script/vbscript/Operators.h"
#include "script/vbscript/Parser.h"
#include "script/vbscript/RegExpObject.h"
#include "script/vbscript/Resolver.h"
#include "script/vbscript/ScriptObject.h"
#include "script/vbscript/VbErrors.h"

#include <QTime>

#include <pthread.h>

#include <cstring>

namespace kordel::script::vb {

namespace {

constexpr std::int64_t kTicksBetweenClockReads = 1000;
constexpr int kExpressionCacheSize = 256;
constexpr std::size_t kCalledNamesKept = 16;

// The lowest address of this thread's stack.
const char *stackLowest() {
  thread_local const char *lowest = [] {
    pthread_attr_t attributes;
    void *address = nullptr;
    std::size_t size = 0;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
      pthread_attr_getstack(&attributes, &address, &size);
      pthread_attr_destroy(&attributes);
    }
    return static_cast<const char *>(address);
  }();
  return lowest;
}

const char *currentFrameAddress() { return static_cast<const char *>(__builtin_frame_address(0)); }

// GetRef: a procedure as an object whose default member calls it.
class ProcedureReference final : public Object {
public:
  ProcedureReference(std::shared_ptr<Procedure> procedure, Interpreter &owner)
      : procedure_(std::move(procedure)), owner_(owner), alive_(owner.aliveToken()) {}
  QString typeName() const override { return QStringLiteral("Object"); }
  Variant call(const QString &name, Args &args) override {
    if (!name.isEmpty())
      return Object::call(name, args);
    if (alive_.expired())
      raiseError(ErrorNumber::ObjectRequired);
    return owner_.callProcedureByValue(*procedure_, args);
  }

private:
  std::shared_ptr<Procedure> procedure_;
  Interpreter &owner_;
  std::weak_ptr<void> alive_;
};

// The global scope as a late-bound object.
class CodeObject final : public Object {
public:
  explicit CodeObject(Interpreter &owner) : owner_(owner), alive_(owner.aliveToken()) {}
  QString typeName() const override { return QStringLiteral("Object"); }
  Variant call(const QString &name, Args &args) override { return live().callGlobal(name, args); }
  void set(const QString &name, Args &args, const Variant &value) override { live().setGlobal(name, args, value); }
  bool hasMember(const QString &name) const override { return !alive_.expired() && owner_.hasGlobal(name); }

private:
  Interpreter &live() const {
    if (alive_.expired())
      raiseError(ErrorNumber::ObjectRequired);
    return owner_;
  }
  Interpreter &owner_;
  std::weak_ptr<void> alive_;
};

} // namespace

Interpreter::Interpreter() : err_(std::make_shared<ErrObject>()), errRef_(err_), alive_(std::make_shared<int>(0)) {}

Interpreter::~Interpreter() {
  // Objects that die with the globals may still run their Class_Terminate.
  try {
    Entry entry(*this);
    globals_.clearValues();
  } catch (...) {
    // an error of a dying object has nowhere to go
  }
  expressionCache_.clear();
  alive_.reset();
}

// ---- budget ----

void Interpreter::startBudget() {
  ticks_ = 0;
  tickLimit_ = kTicksBetweenClockReads;
  if (budget_.statements > 0 && budget_.statements < tickLimit_)
    tickLimit_ = budget_.statements;
  deadline_ = budget_.milliseconds > 0
                  ? std::chrono::steady_clock::now() + std::chrono::milliseconds(budget_.milliseconds)
                  : std::chrono::steady_clock::time_point::max();
  if (runBudget_)
    deadline_ = std::min(deadline_, runBudget_->deadline());
  aborting_ = false;
  callDepth_ = 0;
  stackBase_ = currentFrameAddress();
  const char *lowest = stackLowest();
  const std::size_t available = lowest && stackBase_ > lowest ? std::size_t(stackBase_ - lowest) : (1u << 20);
  // Leave a good part of the stack to the host and the library.
  stackLimit_ = available - std::max<std::size_t>(available / 4, 256 * 1024);
  if (available <= 512 * 1024)
    stackLimit_ = available / 2;
}

void Interpreter::checkBudget() {
  if (runBudget_ && (runBudget_->memorySpent() || std::chrono::steady_clock::now() >= runBudget_->deadline()))
    abortRun(runBudget_->exhaustedError());
  if (budget_.statements > 0 && ticks_ >= budget_.statements)
    abortRun(QStringLiteral("The script ran more statements than it may (%1)").arg(budget_.statements));
  if (budget_.milliseconds > 0 && std::chrono::steady_clock::now() >= deadline_)
    abortRun(QStringLiteral("The script ran longer than it may (%1 ms)").arg(budget_.milliseconds));
  tickLimit_ = ticks_ + kTicksBetweenClockReads;
  if (budget_.statements > 0 && budget_.statements < tickLimit_)
    tickLimit_ = budget_.statements;
}

void Interpreter::abortRun(const QString &why) {
  abortRun(Error(ScriptErrorNumber::Timeout, runtimeErrorSource(), why));
}

void Interpreter::abortRun(const Error &error) {
  aborting_ = true;
  throw error;
}

void Interpreter::enterCall() {
  const std::size_t used = std::size_t(stackBase_ - currentFrameAddress());
  if (callDepth_ >= budget_.recursionDepth || used > stackLimit_)
    raiseError(ScriptErrorNumber::OutOfStackSpace, runtimeErrorSource(),
               vbErrorDescription(ScriptErrorNumber::OutOfStackSpace));
  ++callDepth_;
}

// ---- the engine's interface ----

void Interpreter::addNamedItem(const QString &name, const ObjectRef &object, bool globalMembers) {
  const QString folded = name.toLower();
  const int existing = globals_.find(folded);
  if (existing >= 0 && globals_.at(existing).kind != GlobalEntry::Kind::NamedItem)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("ScriptEngine"),
               QStringLiteral("The name '%1' is already used by the script").arg(name));
  const int index = globals_.add(name, GlobalEntry::Kind::NamedItem);
  globals_.at(index).value = Variant(object);
  if (globalMembers)
    globals_.markGlobalMembers(index);
}

void Interpreter::addCode(const QString &code) {
  guarded([&] {
    std::unique_ptr<Program> program = parseProgram(code);
    Resolver(globals_).resolveProgram(*program);
    runProgram(*program, nullptr);
  });
}

void Interpreter::checkSyntax(const QString &code) {
  guarded([&] {
    std::unique_ptr<Program> program = parseProgram(code);
    Resolver(globals_).checkProgram(*program);
  });
}

void Interpreter::initFixedArrays(const std::vector<std::pair<int, std::vector<std::int32_t>>> &arrays,
                                  Variant **refs) {
  for (const auto &[slot, uppers] : arrays) {
    std::vector<VariantArray::Bounds> bounds;
    std::size_t total = 1;
    for (std::int32_t upper : uppers) {
      bounds.push_back({0, upper});
      total *= std::size_t(std::max(upper + 1, 0));
    }
    checkArraySize(total);
    // No bounds: Dim a(), an array that ReDim gives its dimensions later.
    VariantArray array = uppers.empty() ? VariantArray() : VariantArray(std::move(bounds));
    array.setFixed(!uppers.empty());
    Variant &target = refs ? *refs[slot] : globals_.at(slot).value;
    target = Variant(std::move(array));
  }
}

void Interpreter::runProgram(Program &program, Frame *enclosing) {
  initFixedArrays(program.fixedArrays, nullptr);
  const SlotStack::Mark mark = slots_.mark();
  struct Release {
    SlotStack &stack;
    SlotStack::Mark mark;
    ~Release() { stack.pop(mark); }
  } release{slots_, mark};
  Frame frame;
  frame.refs = slots_.push(program.slotCount);
  frame.optionExplicit = program.optionExplicit;
  if (enclosing && enclosing->procedure) {
    // Code run from a string inside a procedure shares its variables.
    for (int i = 0; i < enclosing->procedure->slotCount; ++i)
      frame.refs[i] = enclosing->refs[i];
    frame.procedure = enclosing->procedure;
    frame.me = enclosing->me;
  }
  execBlock(program.statements, frame);
}

bool Interpreter::hasProcedure(const QString &name) const {
  const int index = globals_.find(foldedForLookup(name));
  return index >= 0 && globals_.at(index).kind == GlobalEntry::Kind::Procedure;
}

Variant Interpreter::call(const QString &name, Args &args) {
  return guarded([&] {
    const int index = calledEntry(name);
    if (index < 0 || globals_.at(index).kind != GlobalEntry::Kind::Procedure)
      raiseNamedError(ScriptErrorNumber::SubNotDefined, name);
    const std::shared_ptr<Procedure> procedure = globals_.at(index).procedure;
    return invokeWithValues(*procedure, nullptr, args.data(), int(args.size()));
  });
}

int Interpreter::calledEntry(const QString &name) {
  for (const auto &[called, index] : calledNames_) {
    if (called == name)
      return index;
  }
  // Entries never move or go, so a name once found stays found; a name not
  // found yet may come with a later block.
  const int index = globals_.find(name.toLower());
  if (index >= 0) {
    if (calledNames_.size() == kCalledNamesKept)
      calledNames_.erase(calledNames_.begin());
    calledNames_.emplace_back(name, index);
  }
  return index;
}

Variant Interpreter::callProcedureByValue(const Procedure &procedure, Args &args) {
  return guarded([&] { return invokeWithValues(procedure, nullptr, args.data(), int(args.size())); });
}

Variant Interpreter::evaluate(const QString &expression) {
  return guarded([&] {
    std::shared_ptr<Expr> compiled = expressionCache_.value(expression);
    if (!compiled) {
      ExprPtr parsed = parseExpression(expression);
      Resolver(globals_).resolveExpression(*parsed);
      compiled = std::shared_ptr<Expr>(std::move(parsed));
      if (expressionCache_.size() > kExpressionCacheSize)
        expressionCache_.clear();
      expressionCache_.insert(expression, compiled);
    }
    Frame frame;
    return eval(*compiled, frame);
  });
}

ObjectRef Interpreter::codeObject() {
  ObjectRef object = codeObject_.lock();
  if (!object) {
    object = std::make_shared<CodeObject>(*this);
    codeObject_ = object;
  }
  return object;
}

// ---- late-bound access from outside ----

bool Interpreter::hasGlobal(const QString &name) const {
  const int index = globals_.find(name.toLower());
  return index >= 0 && globals_.at(index).kind != GlobalEntry::Kind::Class;
}

Variant Interpreter::callGlobal(const QString &name, Args &args) {
  return guarded([&]() -> Variant {
    const int index = globals_.find(name.toLower());
    if (index < 0 || globals_.at(index).kind == GlobalEntry::Kind::Class)
      raiseNamedError(ErrorNumber::NoSuchMember, name);
    GlobalEntry &entry = globals_.at(index);
    if (entry.kind == GlobalEntry::Kind::Procedure) {
      const std::shared_ptr<Procedure> procedure = entry.procedure;
      return invokeWithValues(*procedure, nullptr, args.data(), int(args.size()));
    }
    if (args.empty())
      return entry.value;
    if (entry.value.isArray()) {
      std::vector<std::int32_t> subscripts;
      for (const Variant &a : args)
        subscripts.push_back(a.toLong());
      return entry.value.array().at(subscripts);
    }
    return entry.value.toObject() ? entry.value.rawObject()->call(QString(), args)
                                  : (raiseError(ErrorNumber::ObjectNotSet), Variant());
  });
}

void Interpreter::setGlobal(const QString &name, Args &args, const Variant &value) {
  guarded([&] {
    const int index = globals_.add(name, GlobalEntry::Kind::Variable);
    GlobalEntry &entry = globals_.at(index);
    if (entry.kind != GlobalEntry::Kind::Variable)
      raiseNamedError(VbError::IllegalAssignment, name);
    if (args.empty()) {
      entry.value = value;
      return;
    }
    std::vector<std::int32_t> subscripts;
    for (const Variant &a : args)
      subscripts.push_back(a.toLong());
    entry.value.mutableArray().at(subscripts) = value;
  });
}

void Interpreter::terminate(ScriptObject &object) {
  const Procedure *terminator = object.classDef().terminate;
  if (!terminator)
    return;
  try {
    guarded([&] { invokeWithValues(*terminator, &object, nullptr, 0); });
  } catch (...) {
    // The object is already gone; an error of its Class_Terminate has no
    // caller left to receive it.
  }
}

// ---- services for the library ----

ObjectRef Interpreter::createObject(const QString &progId) {
  if (objectFactory_) {
    if (ObjectRef made = objectFactory_(progId))
      return made;
  }
  if (progId.compare(QLatin1String("Scripting.Dictionary"), Qt::CaseInsensitive) == 0)
    return std::make_shared<Dictionary>();
  if (progId.compare(QLatin1String("VBScript.RegExp"), Qt::CaseInsensitive) == 0)
    return std::make_shared<RegExpObject>();
  raiseNamedError(ErrorNumber::CannotCreateObject, progId);
}

Variant Interpreter::evalString(const QString &code, Frame &frame) {
  if (!dynamicCodeAllowed_)
    raiseError(ErrorNumber::PermissionDenied, runtimeErrorSource(),
               QStringLiteral("Running code from a string is not allowed here"));
  ExprPtr expr = parseExpression(code);
  Resolver(globals_).resolveExpression(*expr, frame.procedure);
  return eval(*expr, frame);
}

void Interpreter::executeString(const QString &code, Frame &frame, bool global) {
  if (!dynamicCodeAllowed_)
    raiseError(ErrorNumber::PermissionDenied, runtimeErrorSource(),
               QStringLiteral("Running code from a string is not allowed here"));
  std::unique_ptr<Program> program = parseProgram(code);
  const Procedure *enclosing = global ? nullptr : frame.procedure;
  Resolver(globals_).resolveProgram(*program, enclosing);
  runProgram(*program, enclosing ? &frame : nullptr);
}

ObjectRef Interpreter::procedureReference(const QString &name) {
  const int index = globals_.find(name.toLower());
  if (index < 0 || globals_.at(index).kind != GlobalEntry::Kind::Procedure)
    raiseNamedError(ErrorNumber::InvalidCall, QStringLiteral("GetRef"));
  return std::make_shared<ProcedureReference>(globals_.at(index).procedure, *this);
}

float Interpreter::random(const Variant *argument) {
  // VB's generator: a 24-bit linear congruential sequence.
  if (argument) {
    const double x = argument->toDouble();
    if (x == 0.0)
      return lastRandom_;
    if (x < 0.0) {
      const float single = float(x);
      std::uint32_t bits = 0;
      std::memcpy(&bits, &single, sizeof bits);
      randomSeed_ = (bits + (bits >> 24)) & 0xFFFFFF;
    }
  }
  randomSeed_ = (randomSeed_ * 0x43FD43FDu + 0xC39EC3u) & 0xFFFFFFu;
  lastRandom_ = float(randomSeed_) / 16777216.0f;
  return lastRandom_;
}

void Interpreter::randomize(const Variant *seed) {
  double value;
  if (seed) {
    value = seed->toDouble();
  } else {
    const QTime now = QTime::currentTime();
    value = now.msecsSinceStartOfDay() / 1000.0;
  }
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  const std::uint32_t high = std::uint32_t(bits >> 32);
  const std::uint32_t mixed = ((high & 0xFFFFu) ^ (high >> 16)) << 8;
  randomSeed_ = ((randomSeed_ & 0xFF0000FFu) | mixed) & 0xFFFFFFu;
}

void Interpreter::checkStringLength(qsizetype length) const {
  if (length > budget_.maxStringLength)
    raiseError(stringTooLongError(length));
}

void Interpreter::checkArraySize(std::size_t elements) const {
  if (elements > std::size_t(budget_.maxArrayElements))
    raiseError(ErrorNumber::OutOfMemory);
}

} // namespace kordel::script::vb

#pragma once

#include "script/RunBudget.h"
#include "script/ScriptEngine.h"
#include "script/vbscript/Ast.h"
#include "script/vbscript/Builtins.h"
#include "script/vbscript/GlobalTable.h"
#include "script/vbscript/SlotStack.h"

#include <QHash>

#include <array>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>

namespace kordel::script::vb {

class ErrObject;
class ScriptObject;

// The activation of a procedure, of a block's global statements, or of
// code run from a string. refs[i] is the variable of slot i: the frame's
// own storage, or for a ByRef parameter the caller's variable.
struct Frame {
  const Procedure *procedure = nullptr;
  ScriptObject *me = nullptr;
  Variant **refs = nullptr;
  bool resumeNext = false;
  bool optionExplicit = false;
};

// How a statement ended: normally, or by an Exit that the enclosing loop
// or procedure must take.
enum class Flow : std::uint8_t { Normal, ExitDo, ExitFor, ExitProcedure };

// Runs VBScript. The design is described at the top of Interpreter.cpp.
class Interpreter {
public:
  Interpreter();
  ~Interpreter();
  Interpreter(const Interpreter &) = delete;
  Interpreter &operator=(const Interpreter &) = delete;

  // ---- the engine's interface (each an entry with its own budget) ----
  void addNamedItem(const QString &name, const ObjectRef &object, bool globalMembers);
  void addCode(const QString &code);
  // Parses and resolves a block without committing or running it.
  void checkSyntax(const QString &code);
  bool hasProcedure(const QString &name) const;
  Variant call(const QString &name, Args &args);
  Variant evaluate(const QString &expression);
  ObjectRef codeObject();
  void setObjectFactory(ObjectFactory factory) { objectFactory_ = std::move(factory); }
  void setUi(ScriptUi ui) { ui_ = std::move(ui); }
  void setBudget(const ScriptBudget &budget) { budget_ = budget; }
  void setDynamicCodeAllowed(bool allowed) { dynamicCodeAllowed_ = allowed; }
  void setLayoutRights(std::shared_ptr<RunBudget> runBudget) {
    layoutRights_ = true;
    runBudget_ = std::move(runBudget);
    memorySpent_ = runBudget_ ? &runBudget_->memorySpentFlag() : nullptr;
  }

  // ---- late-bound access from outside to what scripts made ----
  Variant callObjectMember(ScriptObject &object, const QString &name, Args &args);
  void setObjectMember(ScriptObject &object, const QString &name, Args &args, const Variant &value);
  void terminate(ScriptObject &object);
  Variant callGlobal(const QString &name, Args &args);
  void setGlobal(const QString &name, Args &args, const Variant &value);
  bool hasGlobal(const QString &name) const;
  Variant callProcedureByValue(const Procedure &procedure, Args &args);
  // Lets objects tell whether the engine that made them still exists.
  std::weak_ptr<void> aliveToken() const { return alive_; }

  // ---- services for the library ----
  ErrObject &err() { return *err_; }
  const ObjectRef &errObject() const { return errRef_; }
  ObjectRef createObject(const QString &progId);
  const ScriptUi &ui() const { return ui_; }
  Variant evalString(const QString &code, Frame &frame);
  void executeString(const QString &code, Frame &frame, bool global);
  ObjectRef procedureReference(const QString &name);
  // Rnd with VB's own generator: a number in [0, 1).
  float random(const Variant *argument);
  void randomize(const Variant *seed);
  void checkStringLength(qsizetype length) const;
  void checkArraySize(std::size_t elements) const;

private:
  class Entry;
  struct CopyBack;
  struct ArgsLease;
  struct BuiltinSlots;

  // entries and budget (Interpreter.cpp)
  template <class F> auto guarded(F &&body) -> decltype(body());
  void startBudget();
  void tick() {
    if (++ticks_ >= tickLimit_ || (memorySpent_ && memorySpent_->load(std::memory_order_relaxed)))
      checkBudget();
  }
  void checkBudget();
  [[noreturn]] void abortRun(const QString &why);
  [[noreturn]] void abortRun(const Error &error);
  void enterCall();
  void runProgram(Program &program, Frame *enclosing);
  int calledEntry(const QString &name);
  void initFixedArrays(const std::vector<std::pair<int, std::vector<std::int32_t>>> &arrays, Variant **refs);

  // statements (Exec.cpp)
  Flow execBlock(const Block &block, Frame &frame);
  Flow exec(Stmt &stmt, Frame &frame);
  void recordOrRethrow(const Stmt &stmt, Frame &frame);
  Flow execIf(IfStmt &stmt, Frame &frame);
  Flow execSelect(SelectStmt &stmt, Frame &frame);
  Flow loopBodyOnce(const Block &body, Frame &frame);
  Flow execFor(ForStmt &stmt, Frame &frame);
  Flow execForEach(ForEachStmt &stmt, Frame &frame);
  Flow forEachTurns(ForEachStmt &stmt, Variant &element, Frame &frame, const std::function<bool(Variant &)> &next);
  Flow execDo(DoStmt &stmt, Frame &frame);
  Flow execWith(WithStmt &stmt, Frame &frame);
  void execReDim(ReDimStmt &stmt, Frame &frame);
  void execErase(EraseStmt &stmt, Frame &frame);
  bool testCondition(Expr &condition, const Stmt &stmt, Frame &frame, bool onError);

  // expressions (Eval.cpp)
  // The two operands of a binary operator, read in place where that is safe.
  struct Operands {
    const Variant *left = nullptr;
    const Variant *right = nullptr;
    Variant leftCopy;
    Variant rightCopy;
  };
  Variant eval(Expr &expr, Frame &frame);
  void evalOperands(Expr &left, Expr &right, Frame &frame, Operands &out);
  Variant evalConcat(BinaryExpr &chain, Frame &frame);
  // The value of a literal, variable or constant where it is kept; nullptr
  // for expressions that must be evaluated.
  const Variant *storedValue(Expr &expr, Frame &frame);
  Variant evalName(NameExpr &name, Frame &frame);
  Variant evalCall(CallExpr &call, Frame &frame);
  Variant evalNew(NewExpr &expr);
  Variant objectOf(MemberExpr &member, Frame &frame);
  Variant memberAccess(MemberExpr &member, std::vector<ExprPtr> *args, Frame &frame);
  Variant memberCall(ScriptObject &object, int member, std::vector<ExprPtr> *args, Frame &frame);
  Variant callValue(const Variant &callee, std::vector<ExprPtr> *args, Frame &frame);
  Variant globalValue(int index, std::vector<ExprPtr> *args, NameExpr &name, Frame &frame);
  int scriptMember(ScriptObject &object, MemberExpr &member, const Frame &frame);

  // variables and assignment (Assign.cpp)
  Variant *variable(NameExpr &name, Frame &frame, bool forWrite);
  bool bindLate(NameExpr &name, Frame &frame, bool forWrite);
  void checkUndeclaredCall(NameExpr &name, Frame &frame);
  // The assignments move the value into place.
  void assign(Expr &target, Variant &&value, bool isSet, Frame &frame);
  void assignName(NameExpr &name, Variant &&value, bool isSet, Frame &frame);
  void assignMember(ScriptObject &object, int member, std::vector<ExprPtr> *args, Variant &&value, bool isSet,
                    Frame &frame);
  void assignElement(Variant &array, std::vector<ExprPtr> &args, Variant &&value, Frame &frame);
  Variant *storage(Expr &expr, Frame &frame);
  void subscripts(std::vector<ExprPtr> &args, Frame &frame, std::int32_t *out);

  // calls (Calls.cpp)
  Variant invoke(const Procedure &procedure, ScriptObject *me, std::vector<ExprPtr> *args, Frame &caller,
                 const Variant *assigned = nullptr);
  Variant invokeWithValues(const Procedure &procedure, ScriptObject *me, Variant *args, int count);
  Variant runFrame(const Procedure &procedure, Frame &frame);
  Variant callHost(Object &object, const QString &name, std::vector<ExprPtr> *args, Frame &frame);
  void setHost(Object &object, const QString &name, std::vector<ExprPtr> *args, const Variant &value, Frame &frame);
  Variant callBuiltin(const BuiltinDef &builtin, std::vector<ExprPtr> *args, Frame &frame);
  int findPublicMember(const ScriptObject &object, const QString &name) const;

  GlobalTable globals_;
  std::shared_ptr<ErrObject> err_;
  ObjectRef errRef_;
  SlotStack slots_;
  std::deque<Args> hostArgs_; // argument lists of host calls, one per nesting level
  std::size_t hostArgsDepth_ = 0;
  std::deque<std::array<Variant, kMaxBuiltinArgs>> builtinSlots_; // arguments of library calls, Empty between calls
  std::size_t builtinSlotsDepth_ = 0;
  std::shared_ptr<void> alive_;
  std::weak_ptr<Object> codeObject_;
  QHash<QString, std::shared_ptr<Expr>> expressionCache_;
  // Global entries of the names the host called, as it spelt them: a host
  // calls a few event procedures again and again, once per row.
  std::vector<std::pair<QString, int>> calledNames_;

  ObjectFactory objectFactory_;
  ScriptUi ui_;
  ScriptBudget budget_;
  bool dynamicCodeAllowed_ = false;
  bool layoutRights_ = false;
  std::shared_ptr<RunBudget> runBudget_;
  const std::atomic<bool> *memorySpent_ = nullptr; // the run budget's, looked at every statement
  std::uint32_t randomSeed_ = 0x50000;
  float lastRandom_ = 0.0f;

  // the run in progress
  int entryDepth_ = 0;
  int callDepth_ = 0;
  bool aborting_ = false;
  std::int64_t ticks_ = 0;
  std::int64_t tickLimit_ = 0;
  std::chrono::steady_clock::time_point deadline_;
  const char *stackBase_ = nullptr;
  std::size_t stackLimit_ = 0;
};

} // namespace kordel::script::vb

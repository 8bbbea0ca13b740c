#pragma once

#include "core/Error.h"
#include "core/Object.h"
#include "core/Variant.h"
#include "script/ScriptErrors.h"

#include <QString>

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>

namespace kordel::script {

class RunBudget;

// A compile or run-time error of a script, with the place it happened.
// Lines and columns count from 1 within the text given to addCode or
// evaluate; 0 when the error arose outside any statement.
class ScriptError : public Error {
public:
  ScriptError(const Error &error, int line, int column, bool compileError = false);

  int line() const { return line_; }
  int column() const { return column_; }
  // True for a syntax error found before the script ran.
  bool isCompileError() const { return compileError_; }

protected:
  void setPlace(int line, int column);

private:
  int line_;
  int column_;
  bool compileError_;
};

// The request to end a whole run at once with an exit code, as
// WScript.Quit makes it. It is no error: a host object throws it, both
// engines carry it past every handler of the script (On Error Resume Next,
// try/catch) and out of the host's entry, and the host that ran the script
// takes the code.
class ScriptStop final : public std::exception {
public:
  explicit ScriptStop(int exitCode) : exitCode_(exitCode) {}

  int exitCode() const { return exitCode_; }
  const char *what() const noexcept override { return "The script asked to stop"; }

private:
  int exitCode_;
};

// The limits of one entry into an engine from the host: a call, an
// evaluate or an addCode, with everything the script calls in turn.
// Zero means no limit. When the time or the statements are spent the
// script ends with an error (ScriptErrorNumber::Timeout) that On Error
// Resume Next cannot catch; calls nested too deep raise Out of stack space
// (ScriptErrorNumber::OutOfStackSpace). The default time keeps a runaway
// layout script from hanging a run; hosts that run long automation scripts
// lift it.
struct ScriptBudget {
  int milliseconds = 30000;    // wall-clock time of the entry
  std::int64_t statements = 0; // statements and loop turns executed
  int recursionDepth = 1000;   // nested procedure calls
  // The largest string and array a script may build (64 MB each); more
  // raises Out of memory (7).
  qsizetype maxStringLength = qsizetype(32) << 20;
  qsizetype maxArrayElements = (qsizetype(64) << 20) / qsizetype(sizeof(Variant));
};

// The user-interface seam: MsgBox and InputBox reach the user only through
// these callbacks, which the host connects to its own dialogs. Without
// them the two functions raise an error.
struct ScriptUi {
  // Returns the button pressed, as MsgBox returns it (vbOK = 1 ...).
  std::function<int(const QString &prompt, int buttons, const QString &title)> messageBox;
  // Returns the text entered, or nothing when the user cancelled.
  std::function<std::optional<QString>(const QString &prompt, const QString &title, const QString &defaultText)>
      inputBox;
};

// Makes the object for CreateObject(progId); nullptr when the ProgID is not
// on the host's list, and CreateObject then raises 429.
using ObjectFactory = std::function<ObjectRef(const QString &progId)>;

// A script engine of one language. Hosts add named items (objects that
// scripts see by name) and code, then call procedures and evaluate
// expressions; values and objects cross in both directions as Variant and
// Object. Every failure leaves as a ScriptError; a stop that a host object
// asked for leaves as the ScriptStop it threw.
class ScriptEngine {
public:
  virtual ~ScriptEngine();

  // "VBScript" or "JScript".
  virtual QString language() const = 0;

  // Makes an object visible to scripts under a name. With globalMembers
  // the object's members are also reachable without the name, as if they
  // were global functions and variables (used for expression contexts such
  // as a record whose fields scripts read by name).
  virtual void addNamedItem(const QString &name, const ObjectRef &object, bool globalMembers = false) = 0;

  // Compiles a block of code, adds its procedures, classes and variables
  // and runs its global statements. A syntax error adds nothing.
  virtual void addCode(const QString &code) = 0;

  // Compiles a block of code as addCode would and raises the compile error
  // addCode would raise, without adding or running anything of it: no
  // global statement runs and no name is declared.
  virtual void checkSyntax(const QString &code) = 0;

  virtual bool hasProcedure(const QString &name) const = 0;

  // Calls a procedure with arguments. Arguments the procedure takes by
  // reference are written back into args.
  virtual Variant call(const QString &name, Args &args) = 0;

  // Evaluates one expression in the global scope of the scripts added.
  virtual Variant evaluate(const QString &expression) = 0;

  // The global scope as an object: its procedures can be called and its
  // variables read and written by name, late bound.
  virtual ObjectRef codeObject() = 0;

  // The host's part of CreateObject; the engine knows only
  // "Scripting.Dictionary" by itself.
  virtual void setObjectFactory(ObjectFactory factory) = 0;
  virtual void setUi(ScriptUi ui) = 0;
  virtual void setBudget(const ScriptBudget &budget) = 0;
  // Whether scripts may run code given as text (Execute, ExecuteGlobal,
  // Eval). Off by default; when off those raise 70.
  virtual void setDynamicCodeAllowed(bool allowed) = 0;
  // Runs every entry with the rights of a layout script
  // (core/ScriptRights.h) and charges it to a budget shared with the other
  // engines of a report run (RunBudget.h). Once the run's budget is spent,
  // script code ends with its error, which no handler of the script
  // catches.
  virtual void setLayoutRights(std::shared_ptr<RunBudget> runBudget) = 0;
};

// A new engine for a language named as layouts name it ("VBScript",
// "JScript"), without regard to case. Raises 5 for a language it lacks.
std::unique_ptr<ScriptEngine> createScriptEngine(const QString &language);

} // namespace kordel::script

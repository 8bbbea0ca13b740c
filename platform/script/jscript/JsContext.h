#pragma once

#include "script/ScriptEngine.h"
#include "script/jscript/BridgeScript.h"

#include <QHash>
#include <QJSEngine>
#include <QJSValue>
#include <QSet>
#include <QStringList>

#include <memory>
#include <optional>

namespace kordel::script::js {

class ContextBridge;
class ObjectBridge;
class Watchdog;
struct BridgeLink;

// The state of one JScript engine, shared with the objects it hands out:
// Qt's JavaScript engine with the bridge script installed, the budget of
// entries from the host, the bridges of host objects and the script values
// that host objects hold.
//
// Lifetime. The JScript engine owns the context; JsObjects hold it weakly
// and raise 424 once it is gone. Bridges are QObjects that the script
// engine's collector owns; the collector queues those scripts no longer
// reach for deleteLater. The context lists the bridges and, now and then
// and when it goes, makes the queued ones let go of their host objects, so
// that host objects do not wait for the event loop to die.
class JsContext : public std::enable_shared_from_this<JsContext> {
public:
  JsContext();
  ~JsContext();
  JsContext(const JsContext &) = delete;
  JsContext &operator=(const JsContext &) = delete;

  QJSEngine &qjs() { return *qjs_; }
  QJSValue global() const { return qjs_->globalObject(); }
  const BridgeHelpers &helpers() const { return helpers_; }

  // ---- entries: every run of script code from the host goes through these.
  // The outermost entry starts the clock of the budget. Results are
  // converted within the entry, since converting a script object may run
  // script code; errors leave as ScriptError.

  // Runs a program in the global scope; returns its completion value.
  Variant runProgram(const QString &code);
  // Calls a function with a this object (undefined: none).
  Variant callFunction(const QJSValue &function, const QJSValue &self, const QJSValueList &args);
  // An expression as a function compiled once; undefined when the text is
  // no single expression, which then runs as a program.
  QJSValue compiledExpression(const QString &expression);

  void setBudget(const ScriptBudget &budget);
  // Every entry with layout rights, charged to the run's budget.
  void setLayoutRights(std::shared_ptr<RunBudget> runBudget);

  // ---- values crossing between Variant and script values (JsValues.cpp)
  QJSValue toJs(const Variant &value);
  QJSValueList toJsList(const Args &args);
  Variant toVariant(const QJSValue &value);
  // The elements of a script array of arguments.
  Args toArgs(const QJSValue &array);

  // Hands the exception in flight to the script that called into the host.
  // An error becomes the script's pending exception, an Error object with
  // number and description. A ScriptStop interrupts the engine, which no
  // try/catch of the script survives, and the entry then leaves as that
  // ScriptStop. For use inside a catch block of a bridge call only.
  void throwPendingIntoScript();

  // ---- the global scope
  // The script's own global function of a name: the exact name, else the
  // only one whose name differs in case alone. Undefined when there is none.
  QJSValue procedure(const QString &name) const;
  void defineGlobal(const QString &name, const ObjectRef &object, bool globalMembers);
  void setDynamicCodeAllowed(bool allowed);

  // ---- host objects
  void setObjectFactory(ObjectFactory factory) { objectFactory_ = std::move(factory); }
  // ActiveXObject: the host's factory, else Scripting.Dictionary, else 429.
  ObjectRef createObject(const QString &progId);
  const std::shared_ptr<BridgeLink> &bridgeLink() const { return link_; }
  // Gives a new bridge into the collector's care; returns its wrapper.
  QJSValue adoptBridge(ContextBridge *bridge);
  void bridgeDeleted(ContextBridge *bridge) { bridges_.remove(bridge); }
  void forgetBridgeOf(const Object *object, const ObjectBridge *bridge);

  // ---- script values that host objects hold (JsObject)
  quint64 hold(const QJSValue &value);
  QJSValue held(quint64 handle) const { return held_.value(handle); }
  void release(quint64 handle) { held_.remove(handle); }

private:
  class Entry;
  QJSValue proxyOf(const ObjectRef &object);
  void releaseCollectedBridges();
  // After a run that threw: the error as the host sees it, or the timeout
  // when the budget interrupted the run.
  [[noreturn]] void raiseThrown(const QJSValue &thrown, const QStringList &trace);
  // After a run that did not throw: the stop or the timeout if either
  // interrupted what followed (the conversion of the result).
  void checkInterrupted() const;
  Variant arrayToVariant(const QJSValue &array, int depth);
  Variant objectToVariant(const QJSValue &value, int depth);
  Variant vbArrayToVariant(const QJSValue &parts, int depth);
  Variant toVariant(const QJSValue &value, int depth);

  std::unique_ptr<QObject> hostBridge_;
  std::unique_ptr<QJSEngine> qjs_;
  QJSValue host_; // the HostBridge as the bridge script sees it
  BridgeHelpers helpers_;

  void makeWatchdog();

  ScriptBudget budget_;
  int timeLimitMs_ = 0;
  bool layoutRights_ = false;
  std::shared_ptr<RunBudget> runBudget_;
  std::unique_ptr<Watchdog> watchdog_;
  int depth_ = 0;
  std::optional<int> stopCode_; // WScript.Quit's code while the stop unwinds the entries

  ObjectFactory objectFactory_;
  std::shared_ptr<BridgeLink> link_;
  QSet<ContextBridge *> bridges_;
  qsizetype nextSweep_;
  QHash<const Object *, ObjectBridge *> bridgeOfObject_;

  QHash<quint64, QJSValue> held_;
  quint64 nextHandle_ = 1;

  QHash<QString, QJSValue> expressions_; // compiled form; undefined: runs as a program
};

} // namespace kordel::script::js

#include "script/jscript/JsContext.h"

#include "core/Dictionary.h"
#include "core/ScriptRights.h"
#include "script/RunBudget.h"
#include "script/jscript/JsErrors.h"
#include "script/jscript/ObjectBridge.h"
#include "script/jscript/Watchdog.h"

#include <QJSManagedValue>

#include <algorithm>

namespace kordel::script::js {

namespace {

constexpr int kExpressionCacheSize = 256;
// Bridges made before the first look for those the collector dropped; the
// next look comes when the count has doubled.
constexpr qsizetype kFirstSweep = 1024;
// A statement budget becomes a time budget at this rate: the engine counts
// no statements, and a loop is what the budget is there to stop.
constexpr std::int64_t kStatementsPerMillisecond = 10000;
// Entries from the host nested in one another (a script calls the host,
// which calls the script, ...) beyond which the script is out of stack
// space, whatever the recursion budget: each costs the engine's frames and
// the host's, and the engine's own limit, met first, does not unwind
// cleanly through the host.
constexpr int kMostNestedEntries = 128;

} // namespace

// One entry from the host. The outermost entry arms the watchdog and, when
// it ends, disarms it and lets the engine run again. Nested entries (a
// script calls the host, which calls a script function) count against the
// recursion budget.
class JsContext::Entry {
public:
  explicit Entry(JsContext &context) : context_(context) {
    const int budgeted = context_.budget_.recursionDepth;
    const int limit = budgeted > 0 ? std::min(budgeted, kMostNestedEntries) : kMostNestedEntries;
    if (context_.depth_ >= limit)
      throw ScriptError(
          Error(ScriptErrorNumber::OutOfStackSpace, runtimeErrorSource(), QStringLiteral("Out of stack space")), 0, 0);
    if (context_.layoutRights_)
      rights_.emplace();
    RunBudget *const run = context_.runBudget_.get();
    if (run) {
      run->enter();
      if (run->spent()) {
        run->leave();
        throw ScriptError(run->exhaustedError(), 0, 0);
      }
    }
    if (context_.depth_++ > 0)
      return;
    std::chrono::milliseconds time(context_.timeLimitMs_);
    if (run) {
      const auto left = run->remaining();
      time = time.count() > 0 ? std::min(time, left) : left;
      interrupt_ = run->addInterrupt([engine = context_.qjs_.get()] { engine->setInterrupted(true); });
    }
    if (context_.watchdog_ && time.count() > 0)
      context_.watchdog_->arm(time);
  }
  ~Entry() {
    if (RunBudget *const run = context_.runBudget_.get())
      run->leave();
    if (--context_.depth_ > 0)
      return;
    if (interrupt_)
      context_.runBudget_->removeInterrupt(interrupt_);
    if (context_.watchdog_)
      context_.watchdog_->disarm();
    context_.qjs_->setInterrupted(false);
    context_.stopCode_.reset();
  }
  Entry(const Entry &) = delete;
  Entry &operator=(const Entry &) = delete;

private:
  JsContext &context_;
  std::optional<LayoutScriptScope> rights_;
  int interrupt_ = 0;
};

JsContext::JsContext()
    : hostBridge_(std::make_unique<HostBridge>(*this)), qjs_(std::make_unique<QJSEngine>()),
      link_(std::make_shared<BridgeLink>(BridgeLink{this})), nextSweep_(kFirstSweep) {
  QJSEngine::setObjectOwnership(hostBridge_.get(), QJSEngine::CppOwnership);
  host_ = qjs_->newQObject(hostBridge_.get());
  helpers_ = installBridgeScript(*qjs_, host_);
  setDynamicCodeAllowed(false);
}

JsContext::~JsContext() {
  watchdog_.reset();
  expressions_.clear();
  held_.clear();
  helpers_ = {};
  host_ = QJSValue();
  qjs_.reset(); // deletes the bridges that the collector still owns
  // The rest wait for deleteLater: they let go now and are left empty to
  // the event loop.
  for (ContextBridge *queued : std::as_const(bridges_))
    queued->detach();
  link_->context = nullptr;
}

// ---- entries ----

Variant JsContext::runProgram(const QString &code) {
  Entry entry(*this);
  QStringList trace;
  const QJSValue result = qjs_->evaluate(code, QString(), 1, &trace);
  if (!trace.isEmpty() || qjs_->isInterrupted())
    raiseThrown(result, trace);
  Variant value = toVariant(result);
  checkInterrupted();
  return value;
}

Variant JsContext::callFunction(const QJSValue &function, const QJSValue &self, const QJSValueList &args) {
  Entry entry(*this);
  const QJSManagedValue managed(function, qjs_.get());
  const QJSValue result = self.isUndefined() ? managed.call(args) : managed.callWithInstance(self, args);
  if (qjs_->hasError() || qjs_->isInterrupted())
    raiseThrown(qjs_->hasError() ? qjs_->catchError() : QJSValue(), {});
  Variant value = toVariant(result);
  checkInterrupted();
  return value;
}

void JsContext::raiseThrown(const QJSValue &thrown, const QStringList &trace) {
  checkInterrupted();
  const QJSValue info = helpers_.errorInfo.call({thrown});
  checkInterrupted();
  throw scriptErrorFrom(info, thrown, trace);
}

void JsContext::checkInterrupted() const {
  if (!qjs_->isInterrupted())
    return;
  if (qjs_->hasError())
    qjs_->catchError();
  if (stopCode_)
    throw ScriptStop(*stopCode_);
  if (runBudget_ && runBudget_->spent())
    throw ScriptError(runBudget_->exhaustedError(), 0, 0);
  throw timeoutError(timeLimitMs_);
}

QJSValue JsContext::compiledExpression(const QString &expression) {
  const auto cached = expressions_.constFind(expression);
  if (cached != expressions_.constEnd())
    return *cached;
  QString body = expression.trimmed();
  while (body.endsWith(u';'))
    body = body.chopped(1).trimmed();
  // The expression keeps its own line numbers; the closing parenthesis
  // stands on a line of its own in case the text ends in a comment.
  QStringList trace;
  QJSValue compiled = qjs_->evaluate(QStringLiteral("(function () { return (") + body + QStringLiteral("\n); })"),
                                     QString(), 1, &trace);
  if (qjs_->isInterrupted())
    return QJSValue();
  if (!trace.isEmpty() || !compiled.isCallable())
    compiled = QJSValue();
  if (expressions_.size() >= kExpressionCacheSize)
    expressions_.clear();
  expressions_.insert(expression, compiled);
  return compiled;
}

void JsContext::setBudget(const ScriptBudget &budget) {
  budget_ = budget;
  int limit = std::max(budget.milliseconds, 0);
  if (budget.statements > 0) {
    const int fromStatements = int(std::clamp<std::int64_t>(budget.statements / kStatementsPerMillisecond, 1, 1 << 30));
    limit = limit > 0 ? std::min(limit, fromStatements) : fromStatements;
  }
  timeLimitMs_ = limit;
  if (timeLimitMs_ > 0)
    makeWatchdog();
}

void JsContext::setLayoutRights(std::shared_ptr<RunBudget> runBudget) {
  layoutRights_ = true;
  runBudget_ = std::move(runBudget);
  if (runBudget_)
    makeWatchdog();
}

void JsContext::makeWatchdog() {
  if (!watchdog_)
    watchdog_ = std::make_unique<Watchdog>([engine = qjs_.get()] { engine->setInterrupted(true); });
}

// ---- errors ----

void JsContext::throwPendingIntoScript() {
  try {
    throw;
  } catch (const ScriptStop &stop) {
    // The engine stops at once: an interrupted engine runs no catch or
    // finally block. Each entry it unwinds leaves as the stop again.
    stopCode_ = stop.exitCode();
    qjs_->setInterrupted(true);
  } catch (...) {
    const Error error = pendingError();
    qjs_->throwError(helpers_.makeError.call({error.number(), error.description(), error.source()}));
  }
}

// ---- the global scope ----

QJSValue JsContext::procedure(const QString &name) const { return helpers_.procedureOf.call({name}); }

void JsContext::defineGlobal(const QString &name, const ObjectRef &object, bool globalMembers) {
  const QJSValue value = toJs(Variant(object));
  const QJSValue defined = helpers_.defineGlobal.call({name, value});
  if (defined.isError())
    throw ScriptError(Error(ErrorNumber::InvalidCall, QStringLiteral("ScriptEngine"),
                            QStringLiteral("The name '%1' is already used by the script").arg(name)),
                      0, 0);
  if (!globalMembers || !object)
    return;
  const QJSValue bridge = helpers_.bridgeOf.call({value});
  if (!bridge.isQObject())
    throw ScriptError(
        Error(ErrorNumber::InvalidCall, QStringLiteral("ScriptEngine"),
              QStringLiteral("Only host objects can lend their members to the global scope ('%1')").arg(name)),
        0, 0);
  helpers_.addGlobalMembers.call({bridge});
}

void JsContext::setDynamicCodeAllowed(bool allowed) { helpers_.setDynamicCode.call({allowed}); }

// ---- host objects ----

ObjectRef JsContext::createObject(const QString &progId) {
  if (objectFactory_) {
    if (ObjectRef made = objectFactory_(progId))
      return made;
  }
  if (progId.compare(QLatin1String("Scripting.Dictionary"), Qt::CaseInsensitive) == 0)
    return std::make_shared<Dictionary>();
  raiseError(ErrorNumber::CannotCreateObject, runtimeErrorSource(),
             QStringLiteral("%1: '%2'").arg(defaultDescription(ErrorNumber::CannotCreateObject), progId));
}

QJSValue JsContext::adoptBridge(ContextBridge *bridge) {
  if (bridges_.size() >= nextSweep_) {
    releaseCollectedBridges();
    nextSweep_ = std::max(kFirstSweep, bridges_.size() * 2);
  }
  bridges_.insert(bridge);
  QJSEngine::setObjectOwnership(bridge, QJSEngine::JavaScriptOwnership);
  return qjs_->newQObject(bridge);
}

void JsContext::releaseCollectedBridges() {
  // The engine gives no wrapper for an object it has queued for deletion.
  for (auto it = bridges_.begin(); it != bridges_.end();) {
    if (qjs_->newQObject(*it).isNull()) {
      (*it)->detach();
      it = bridges_.erase(it);
    } else {
      ++it;
    }
  }
}

void JsContext::forgetBridgeOf(const Object *object, const ObjectBridge *bridge) {
  const auto known = bridgeOfObject_.find(object);
  if (known != bridgeOfObject_.end() && *known == bridge)
    bridgeOfObject_.erase(known);
}

QJSValue JsContext::proxyOf(const ObjectRef &object) {
  // One bridge per object while scripts reach it, so that a host object is
  // the same script object each time it crosses. A bridge the collector has
  // dropped gives a null wrapper and is replaced.
  ObjectBridge *bridge = bridgeOfObject_.value(object.get());
  QJSValue wrapper = bridge ? qjs_->newQObject(bridge) : QJSValue();
  if (!wrapper.isQObject()) {
    bridge = new ObjectBridge(link_, object);
    bridgeOfObject_.insert(object.get(), bridge);
    wrapper = adoptBridge(bridge);
  }
  return helpers_.wrap.call({wrapper});
}

// ---- script values held by host objects ----

quint64 JsContext::hold(const QJSValue &value) {
  const quint64 handle = nextHandle_++;
  held_.insert(handle, value);
  return handle;
}

} // namespace kordel::script::js

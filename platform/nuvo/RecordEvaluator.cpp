#include "nuvo/RecordEvaluator.h"

#include "nuvo/ActiveUserObject.h"
#include "nuvo/Engine.h"
#include "nuvo/RecordObject.h"

#include "hostapi/Classes.h"

#include "script/ScriptEngine.h"

#include "core/Error.h"

namespace kordel::nuvo {

// The names an expression sees: the members of the current record, and
// its field paths as names of their own.
class RecordScope : public Object {
public:
  void setRecord(std::shared_ptr<RecordObject> record) { record_ = std::move(record); }

  bool hasMember(const QString &name) const override {
    if (!record_)
      return false;
    if (record_->hasMember(name))
      return true;
    const Engine &engine = *record_->engine();
    return resolvePath(record_->definition(), name, hostapi::LookupMode::Either, engine.language()).has_value();
  }

  Variant call(const QString &name, Args &args) override {
    if (!record_)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Nuvo.Record"));
    if (record_->hasMember(name))
      return record_->call(name, args);
    expectArgs(args, 0, 0);
    return record_->value(name);
  }

private:
  std::shared_ptr<RecordObject> record_;
};

// ActiveUser inside an expression. It reaches the engine without holding
// it, since the engine holds the evaluator.
class UserScope : public Object {
public:
  explicit UserScope(Engine &engine) : engine_(engine) {}

  bool hasMember(const QString &name) const override { return user()->hasMember(name); }
  Variant call(const QString &name, Args &args) override { return user()->call(name, args); }

private:
  std::shared_ptr<ActiveUserObject> user() const {
    return std::make_shared<ActiveUserObject>(engine_.shared_from_this());
  }

  Engine &engine_;
};

RecordEvaluator::RecordEvaluator(Engine &engine)
    : engine_(engine), script_(script::createScriptEngine(QStringLiteral("VBScript"))),
      scope_(std::make_shared<RecordScope>()) {
  script_->addNamedItem(QStringLiteral("Record"), scope_, true);
  script_->addNamedItem(QStringLiteral("ActiveUser"), std::make_shared<UserScope>(engine_));
  script::ScriptBudget budget;
  budget.milliseconds = 10000;
  script_->setBudget(budget);
}

RecordEvaluator::~RecordEvaluator() = default;

Variant RecordEvaluator::evaluate(const std::shared_ptr<RecordObject> &record, const QString &expression) {
  scope_->setRecord(record);
  struct Reset {
    RecordScope &scope;
    ~Reset() { scope.setRecord(nullptr); }
  } reset{*scope_};
  return script_->evaluate(expression);
}

} // namespace kordel::nuvo

#pragma once

// The entry of a run from outside the interpreter, shared by the files that
// implement the interpreter's entry points. Not for use elsewhere.

#include "core/ScriptRights.h"
#include "script/vbscript/Interpreter.h"
#include "script/vbscript/VbErrors.h"

#include <optional>

namespace kordel::script::vb {

// One entry from outside: the first starts the budget, the last ends it.
class Interpreter::Entry {
public:
  explicit Entry(Interpreter &interpreter) : interpreter_(interpreter) {
    if (interpreter_.layoutRights_)
      rights_.emplace();
    if (interpreter_.runBudget_)
      interpreter_.runBudget_->enter();
    if (interpreter_.entryDepth_++ == 0)
      interpreter_.startBudget();
  }
  ~Entry() {
    if (--interpreter_.entryDepth_ == 0) {
      interpreter_.aborting_ = false;
      interpreter_.callDepth_ = 0;
    }
    if (interpreter_.runBudget_)
      interpreter_.runBudget_->leave();
  }
  Entry(const Entry &) = delete;
  Entry &operator=(const Entry &) = delete;

private:
  Interpreter &interpreter_;
  std::optional<LayoutScriptScope> rights_;
};

template <class F> auto Interpreter::guarded(F &&body) -> decltype(body()) {
  Entry entry(*this);
  if (entryDepth_ > 1)
    return body(); // a nested entry: errors travel on to the outer run as they are
  try {
    return body();
  } catch (const RunError &error) {
    throw error.toScriptError();
  } catch (const ScriptError &) {
    throw;
  } catch (const ScriptStop &) {
    throw;
  } catch (...) {
    throw ScriptError(scriptVisibleError(pendingError()), 0, 0);
  }
}

} // namespace kordel::script::vb

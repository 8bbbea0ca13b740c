#pragma once

#include "script/RunBudget.h"
#include "script/ScriptEngine.h"

#include <QStringList>

#include <functional>

namespace kordel::engine {

// What the host tells the engine once for every run of the process: the
// budget of a run's scripts, how layout scripts make objects, and where the
// problems of a run are reported.
struct RunSettings {
  script::RunBudget::Limits scriptLimits;
  // The host's CreateObject. A layout script's CreateObject reaches it only
  // for the ProgIDs layout scripts may make (core/ScriptRights.h); without
  // it they make what their engine makes by itself.
  script::ObjectFactory objectFactory;
  // Called after each top-level run that had problems (script errors, field
  // expressions that failed, a stop by the script budget), with the
  // report's document name and the problems in the order they came.
  std::function<void(const QString &documentName, const QStringList &problems)> reportProblems;
};

RunSettings &runSettings();

} // namespace kordel::engine

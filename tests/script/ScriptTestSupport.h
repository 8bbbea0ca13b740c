#pragma once

#include "script/ScriptEngine.h"

#include <QStringList>

#include <memory>

namespace kordel::test {

// Fixed regional settings as a United States system has them, so that
// dates and numbers print the same on every machine.
void useUnitedStatesRegion();

// An engine with a WScript object whose Echo lines land in output.
struct EchoEngine {
  std::unique_ptr<script::ScriptEngine> engine;
  std::shared_ptr<QStringList> output = std::make_shared<QStringList>();
};
EchoEngine makeEchoEngine();

} // namespace kordel::test

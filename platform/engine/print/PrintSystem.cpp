#include "engine/print/PrintSystem.h"

#include "engine/module/EngineModule.h"

namespace kordel::engine {

PrintQueue::~PrintQueue() = default;
PrintSystem::~PrintSystem() = default;

const PrintSystem &printSystem(const QString &source) {
  using Entry = const PrintSystem *(*)();
  return *reinterpret_cast<Entry>(
      engineModuleEntry("libkordel_cups.so", "kordel_print_system", QStringLiteral("print system"), source))();
}

} // namespace kordel::engine

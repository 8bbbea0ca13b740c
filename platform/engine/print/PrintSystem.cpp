#include "engine/print/PrintSystem.h"

#include "engine/module/EngineModule.h"

namespace kordel::engine {

PrintQueue::~PrintQueue() = default;
PrintSystem::~PrintSystem() = default;

const PrintSystem &printSystem(const QString &source) {
  return *reinterpret_cast<PrintSystemEntry>(
      engineModuleEntry(kPrintSystemModule, kPrintSystemEntry, QStringLiteral("print system"), source))();
}

} // namespace kordel::engine

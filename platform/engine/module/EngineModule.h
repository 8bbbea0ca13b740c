#pragma once

#include <QString>

namespace kordel::engine {

// The entry function of one of the engine's own modules (a library beside
// the engine's), loaded when first asked for and kept loaded. The modules
// hold the code that needs large libraries few runs use, the print
// system's and the workbook writer's, so that a process that never prints
// or writes a workbook neither loads them nor pays for their start.
// Raises 429 naming what the module does and the loader's reason when the
// module or its entry cannot be loaded; source names the caller.
void *engineModuleEntry(const char *file, const char *entry, const QString &purpose, const QString &source);

} // namespace kordel::engine

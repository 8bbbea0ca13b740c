#pragma once

#include "common/Units.h"
#include "core/Object.h"

#include <cstdint>

namespace kordel::addin {

// Whether the printer's driver offers a choice of paper bin; false for a
// printer that cannot be asked.
bool HasPaperBins(const QString &device, const QString &port);
// A new engine printer object on the printer of exactly that name; nullptr
// when the system has no such printer. Never raises.
ObjectRef FindPrinter(const QString &name);
// The number of the printer's bin of exactly that name; -1 for an empty
// name, a printer without bins or a name it lacks. Never raises.
std::int16_t FindPaperBin(const ObjectRef &printer, const QString &binName);
// The printer and paper bin last chosen for the report, from its
// settings; nullptr when none was chosen or the printer is gone. A bin
// the printer no longer has leaves the printer's own.
ObjectRef LoadReportPrinter(const QString &reportName);

} // namespace kordel::addin

#include "engine/print/SystemPrinters.h"

#include "engine/print/PrintSystem.h"

#include "core/Error.h"

#include "hostapi/Printers.h"

#include <QtGlobal>

#include <algorithm>

namespace kordel::engine {

std::vector<SystemPrinter> systemPrinters() {
  // Without a print system only the built-in printer is left; why goes to
  // the log, for the one who wonders where the printers went.
  std::vector<SystemPrinter> printers;
  try {
    printers = printSystem(QStringLiteral("Printers")).queues();
  } catch (const Error &error) {
    qWarning("%s", qUtf8Printable(error.description()));
  }
  const bool queueIsDefault =
      std::any_of(printers.begin(), printers.end(), [](const SystemPrinter &printer) { return printer.isDefault; });
  printers.push_back({QString::fromUtf8(hostapi::kBuiltInPdfPrinterName), !queueIsDefault});
  return printers;
}

QString defaultPrinterName() {
  const std::vector<SystemPrinter> printers = systemPrinters();
  // The list always marks one: a queue, or else the built-in printer.
  return std::find_if(printers.begin(), printers.end(), [](const SystemPrinter &printer) { return printer.isDefault; })
      ->name;
}

} // namespace kordel::engine

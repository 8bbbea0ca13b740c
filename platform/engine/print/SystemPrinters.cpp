#include "engine/print/SystemPrinters.h"

#include "hostapi/Printers.h"

#include <cups/cups.h>

#include <algorithm>

namespace kordel::engine {

std::vector<SystemPrinter> systemPrinters() {
  // Without a scheduler the connection fails at once (the local socket or
  // port refuses it) and only the built-in printer is left.
  cups_dest_t *dests = nullptr;
  const int found = cupsGetDests2(CUPS_HTTP_DEFAULT, &dests);
  std::vector<SystemPrinter> printers;
  for (int i = 0; i < found; ++i) {
    QString name = QString::fromUtf8(dests[i].name);
    if (dests[i].instance)
      name += u'/' + QString::fromUtf8(dests[i].instance);
    printers.push_back({name, dests[i].is_default != 0});
  }
  cupsFreeDests(found, dests);
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

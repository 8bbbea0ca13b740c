#pragma once

#include <QString>

#include <vector>

namespace kordel::engine {

// A printer of this machine as a list of printers shows it.
struct SystemPrinter {
  QString name; // "queue", "queue/instance" or the built-in PDF printer's name
  bool isDefault = false;
};

// The printers of this machine: the print system's queues in its order,
// then the built-in PDF printer, which is the default when the print
// system marks no queue as default or does not answer. Never raises and
// does not wait for a print server that is not there.
std::vector<SystemPrinter> systemPrinters();

// The name of the default printer of systemPrinters().
QString defaultPrinterName();

} // namespace kordel::engine

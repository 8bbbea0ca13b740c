#include "common/ARTools.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/Settings.h"
#include "core/Error.h"
#include "hostapi/Layout.h"

#include <vector>

namespace kordel::addin {

namespace {

// The values of an array-valued member, Empty giving none.
std::vector<Variant> Elements(const ObjectRef &object, const QString &member) {
  const Variant value = object->get(member);
  if (!value.isArray())
    return {};
  return value.array().elements();
}

} // namespace

bool HasPaperBins(const QString &device, const QString &port) {
  // The driver is asked through a printer object on the device; the port
  // names no other device here.
  Q_UNUSED(port);
  try {
    const ObjectRef printer = CreateObject(QString::fromLatin1(hostapi::kLayoutPrinterProgId));
    printer->set(QStringLiteral("DeviceName"), device);
    return !Elements(printer, QStringLiteral("PaperBinNames")).empty();
  } catch (...) {
    return false;
  }
}

ObjectRef FindPrinter(const QString &name) {
  try {
    const ObjectRef printers = EnumeratePrinters();
    const auto walk = printers->enumerate();
    Variant entry;
    while (walk->next(entry)) {
      if (entry.toObject()->get(QStringLiteral("Name")).toString() != name)
        continue;
      const ObjectRef printer = CreateObject(QString::fromLatin1(hostapi::kLayoutPrinterProgId));
      printer->set(QStringLiteral("DeviceName"), name);
      return printer;
    }
  } catch (...) {
  }
  return nullptr;
}

std::int16_t FindPaperBin(const ObjectRef &printer, const QString &binName) {
  try {
    if (binName.isEmpty() || !printer)
      return -1;
    if (!HasPaperBins(printer->get(QStringLiteral("DeviceName")).toString(),
                      printer->get(QStringLiteral("Port")).toString()))
      return -1;
    const std::vector<Variant> names = Elements(printer, QStringLiteral("PaperBinNames"));
    const std::vector<Variant> numbers = Elements(printer, QStringLiteral("PaperBins"));
    for (std::size_t i = 0; i < names.size(); ++i)
      if (names[i].toString() == binName)
        return numbers.at(i).toInteger();
  } catch (...) {
  }
  return -1;
}

ObjectRef LoadReportPrinter(const QString &reportName) {
  const QString section = QStringLiteral("PageSetup");
  const QString device = ReadReportSetting(reportName, section, QStringLiteral("DeviceName"), QString()).toString();
  if (device.isEmpty())
    return nullptr;
  const ObjectRef printer = FindPrinter(device);
  if (!printer)
    return nullptr;
  const QString binName = ReadReportSetting(reportName, section, QStringLiteral("PaperBinName"), QString()).toString();
  const std::int16_t bin = FindPaperBin(printer, binName);
  if (bin != -1) {
    try {
      printer->set(QStringLiteral("PaperBin"), bin);
    } catch (...) {
    }
  }
  return printer;
}

} // namespace kordel::addin

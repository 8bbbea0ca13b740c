#include "design/ARTools.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/Settings.h"
#include "core/Error.h"
#include "core/VbNumber.h"
#include "hostapi/Layout.h"

#include <cmath>
#include <limits>

namespace kordel::addin {

namespace {

constexpr double kTwipsPerInch = 1440.0;
constexpr float kTwipsPerInchSingle = 1440.0f;
constexpr double kMmPerInch = 25.4;
constexpr float kMmPerCentimetre = 10.0f;

// CLng: to the nearest integer, ties to even; 6 beyond the 32-bit range or
// for a value that is no number.
std::int32_t ToLong(double value, const char *procedure) {
  const double rounded = roundHalfEven(value);
  if (!std::isfinite(rounded) || rounded < double(std::numeric_limits<std::int32_t>::min()) ||
      rounded > double(std::numeric_limits<std::int32_t>::max()))
    raiseError(ErrorNumber::Overflow, QStringLiteral("ARTools.") + QString::fromLatin1(procedure));
  return std::int32_t(rounded);
}

// The values of an array-valued member, Empty giving none.
std::vector<Variant> Elements(const ObjectRef &object, const QString &member) {
  const Variant value = object->get(member);
  if (!value.isArray())
    return {};
  return value.array().elements();
}

} // namespace

std::int32_t MmToTwips(std::int32_t value) { return ToLong(double(value) / kMmPerInch * kTwipsPerInch, "MmToTwips"); }

std::int32_t CentimetersToTwips(float value) {
  return MmToTwips(ToLong(double(value * kMmPerCentimetre), "CentimetersToTwips"));
}

std::int32_t InchesToTwips(float value) { return ToLong(double(value * kTwipsPerInchSingle), "InchesToTwips"); }

float TwipsToMm(std::int32_t value) { return float(double(value) / kTwipsPerInch * kMmPerInch); }

float TwipsToCentimeters(std::int32_t value) { return float(double(TwipsToMm(value)) / double(kMmPerCentimetre)); }

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

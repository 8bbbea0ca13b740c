#include "engine/print/LayoutPrinter.h"

#include "engine/print/BuiltInPdfPrinter.h"
#include "engine/print/PrintSystem.h"
#include "engine/print/SystemPrinters.h"

#include "core/Error.h"

#include <algorithm>

namespace kordel::engine {

namespace {

const QString kDeviceSource = QStringLiteral("Printer.DeviceName");

const QSizeF kA4(11906, 16838);

} // namespace

LayoutPrinter::Device LayoutPrinter::lookUp(const QString &name) {
  if (isBuiltInPdfPrinter(name))
    return Device{name, builtInPdfFolder(), {}, kA4};
  const auto destination = printSystem(kDeviceSource).queue(name, kDeviceSource);
  QString found = destination->name();
  if (!destination->instance().isEmpty())
    found += u'/' + destination->instance();
  // The print system finds queues without regard to case; a device name
  // must be the queue's own.
  if (found != name)
    raiseError(ErrorNumber::InvalidCall, kDeviceSource,
               QStringLiteral("There is no printer \"%1\"; the print system has \"%2\"").arg(name, found));
  const std::optional<QSize> paper = destination->defaultPaper();
  return Device{name, destination->deviceUri(), destination->paperBins(), paper ? QSizeF(*paper) : kA4};
}

const LayoutPrinter::Device &LayoutPrinter::device() const {
  if (!device_)
    device_ = lookUp(defaultPrinterName());
  return *device_;
}

LayoutPrinter::Device &LayoutPrinter::device() {
  static_cast<const LayoutPrinter &>(*this).device();
  return *device_;
}

QString LayoutPrinter::deviceName() const { return device().name; }

void LayoutPrinter::setDeviceName(const QString &name) {
  device_ = lookUp(name);
  paperBin_ = kPrintersOwnBin;
  paperChosen_ = true;
}

QString LayoutPrinter::port() const { return device().port; }

const std::vector<std::pair<int, QString>> &LayoutPrinter::paperBins() const { return device().bins; }

void LayoutPrinter::setPaperBin(int bin) {
  const auto &bins = paperBins();
  const bool known =
      bin == kPrintersOwnBin ||
      std::any_of(bins.begin(), bins.end(), [bin](const std::pair<int, QString> &entry) { return entry.first == bin; });
  if (!known)
    raiseError(
        ErrorNumber::SubscriptOutOfRange, QStringLiteral("Printer.PaperBin"),
        bins.empty()
            ? QStringLiteral("The printer \"%1\" has no paper bins; %2 cannot be chosen").arg(deviceName()).arg(bin)
            : QStringLiteral("The printer \"%1\" has no paper bin %2; its bins are %3 to %4")
                  .arg(deviceName())
                  .arg(bin)
                  .arg(bins.front().first)
                  .arg(bins.back().first));
  paperBin_ = bin;
}

void LayoutPrinter::setOrientation(int orientation) {
  if (orientation != kPortrait && orientation != kLandscape)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Printer.Orientation"),
               QStringLiteral("The orientation is 1 (portrait) or 2 (landscape), not %1").arg(orientation));
  orientation_ = orientation;
}

void LayoutPrinter::setCopies(int copies) {
  if (copies < 1)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Printer.Copies"),
               QStringLiteral("At least one copy, not %1").arg(copies));
  copies_ = copies;
}

QSizeF LayoutPrinter::orientedPaper() const {
  const QSizeF &paper = device().paper;
  return orientation_ == kLandscape ? paper.transposed() : paper;
}

void LayoutPrinter::setOrientedPaper(const QSizeF &paper) {
  if (paper.width() <= 0 || paper.height() <= 0)
    raiseError(
        ErrorNumber::InvalidCall, QStringLiteral("Printer"),
        QStringLiteral("The paper must be larger than 0 twips, not %1 by %2").arg(paper.width()).arg(paper.height()));
  device().paper = orientation_ == kLandscape ? paper.transposed() : paper;
  paperChosen_ = true;
}

float LayoutPrinter::paperWidth() const { return float(orientedPaper().width()); }

float LayoutPrinter::paperHeight() const { return float(orientedPaper().height()); }

void LayoutPrinter::setPaperWidth(float twips) { setOrientedPaper(QSizeF(twips, orientedPaper().height())); }

void LayoutPrinter::setPaperHeight(float twips) { setOrientedPaper(QSizeF(orientedPaper().width(), twips)); }

const MemberTable &LayoutPrinter::memberTable() const {
  using P = LayoutPrinter;
  static const MemberTable table{{
      // Where pages go and how many are printed is the user's choice, never
      // a layout script's.
      fullRightsToSet(property<P>(
          "DeviceName", [](P &p) { return p.deviceName(); },
          [](P &p, const Variant &v) { p.setDeviceName(v.toString()); })),
      property<P>("Port", [](P &p) { return p.port(); }),
      fullRightsToSet(property<P>(
          "PaperBin", [](P &p) { return std::int16_t(p.paperBin()); },
          [](P &p, const Variant &v) { p.setPaperBin(v.toInteger()); })),
      property<P>("PaperBins",
                  [](P &p) {
                    std::vector<Variant> numbers;
                    for (const auto &[number, name] : p.paperBins())
                      numbers.emplace_back(std::int16_t(number));
                    return Variant(VariantArray::fromValues(std::move(numbers)));
                  }),
      property<P>("PaperBinNames",
                  [](P &p) {
                    std::vector<Variant> names;
                    for (const auto &[number, name] : p.paperBins())
                      names.emplace_back(name);
                    return Variant(VariantArray::fromValues(std::move(names)));
                  }),
      property<P>(
          "Orientation", [](P &p) { return std::int16_t(p.orientation()); },
          [](P &p, const Variant &v) { p.setOrientation(v.toInteger()); }),
      fullRightsToSet(property<P>(
          "Copies", [](P &p) { return std::int16_t(p.copies()); },
          [](P &p, const Variant &v) { p.setCopies(v.toInteger()); })),
      property<P>(
          "PaperWidth", [](P &p) { return p.paperWidth(); },
          [](P &p, const Variant &v) { p.setPaperWidth(v.toSingle()); }),
      property<P>(
          "PaperHeight", [](P &p) { return p.paperHeight(); },
          [](P &p, const Variant &v) { p.setPaperHeight(v.toSingle()); }),
  }};
  return table;
}

} // namespace kordel::engine

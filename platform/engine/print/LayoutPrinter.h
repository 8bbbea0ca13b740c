#pragma once

#include "core/Object.h"

#include <QSize>

#include <optional>
#include <utility>
#include <vector>

namespace kordel::engine {

// The printer a report prints on, which is also the printer object that
// callers make by ProgID. Writing DeviceName selects a device: a queue of
// the print system by its exact name, or the built-in PDF printer. Until
// then the object stands for the default printer, looked up when first
// needed. Late-bound: DeviceName, Port, PaperBin, PaperBins,
// PaperBinNames, Orientation, Copies, PaperWidth, PaperHeight.
class LayoutPrinter : public Object {
public:
  static constexpr int kPrintersOwnBin = -1;
  static constexpr int kPortrait = 1;
  static constexpr int kLandscape = 2;

  QString typeName() const override { return QStringLiteral("Printer"); }

  QString deviceName() const;
  // Raises 5 naming a name that is no printer, and the object stays as it
  // was. Otherwise the paper bin goes back to the printer's own choice and
  // the paper to the device's default.
  void setDeviceName(const QString &name);
  // Whether a device was selected or the paper set: only then does a run
  // lay its pages out on this printer's paper rather than the layout's.
  bool hasChosenPaper() const { return paperChosen_; }

  // The queue's device URI, "" when the print system does not say; the
  // documents folder for the built-in PDF printer.
  QString port() const;

  // The device's bins as printerPaperBins gives them: number and name.
  const std::vector<std::pair<int, QString>> &paperBins() const;
  // kPrintersOwnBin or a number of paperBins().
  int paperBin() const { return paperBin_; }
  // Raises 9 for a bin the device lacks.
  void setPaperBin(int bin);

  int orientation() const { return orientation_; }
  // kPortrait or kLandscape; raises 5 for another value.
  void setOrientation(int orientation);
  int copies() const { return copies_; }
  // Raises 5 for fewer than one.
  void setCopies(int copies);

  // The paper as it lies in the orientation, in twips: landscape turns the
  // device's paper, so its width is the paper's height. The device's
  // default paper when the print system says it, else A4.
  float paperWidth() const;
  float paperHeight() const;
  // As it lies in the orientation; raise 5 for a size that is not above 0.
  void setPaperWidth(float twips);
  void setPaperHeight(float twips);

protected:
  const MemberTable &memberTable() const override;

private:
  struct Device {
    QString name;
    QString port;
    std::vector<std::pair<int, QString>> bins;
    QSizeF paper; // as the device holds it, before any turn
  };

  static Device lookUp(const QString &name);
  const Device &device() const;
  Device &device();
  // The paper's size as it lies in the orientation.
  QSizeF orientedPaper() const;
  void setOrientedPaper(const QSizeF &paper);

  mutable std::optional<Device> device_;
  bool paperChosen_ = false;
  int paperBin_ = kPrintersOwnBin;
  int orientation_ = kPortrait;
  int copies_ = 1;
};

} // namespace kordel::engine

#pragma once

#include "core/Object.h"

#include <memory>
#include <vector>

namespace kordel::host {

// One printer of the system. Late-bound: Name, IsDefault.
class PrinterInfo : public Object {
public:
  PrinterInfo(QString name, bool isDefault) : name_(std::move(name)), isDefault_(isDefault) {}

  QString typeName() const override { return QStringLiteral("Printer"); }
  const QString &name() const { return name_; }
  bool isDefault() const { return isDefault_; }

protected:
  const MemberTable &memberTable() const override;

private:
  QString name_;
  bool isDefault_;
};

// The printers of the system ("Orvex.Printers"), as the print system knew
// them when the list was made, and last the built-in PDF printer, which is
// the default when the print system marks none. Without a print server
// the built-in printer is the only one. Late-bound: Count, Item(index from
// 1, or name), For Each.
class PrinterList : public Object {
public:
  explicit PrinterList(std::vector<std::shared_ptr<PrinterInfo>> printers) : printers_(std::move(printers)) {}
  // Asks the print system; never raises and does not wait for a server that
  // is not there.
  static std::shared_ptr<PrinterList> fromSystem();

  QString typeName() const override { return QStringLiteral("Printers"); }
  int count() const { return int(printers_.size()); }
  // By position from 1 or by name without regard to case; raises 9 when
  // there is no such printer.
  std::shared_ptr<PrinterInfo> item(const Variant &index) const;
  // The name of the default printer; "" when none is marked default.
  QString defaultPrinterName() const;

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::vector<std::shared_ptr<PrinterInfo>> printers_;
};

} // namespace kordel::host

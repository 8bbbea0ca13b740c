#include "host/PrinterList.h"

#include "engine/print/SystemPrinters.h"

#include "core/Error.h"

namespace kordel::host {

const MemberTable &PrinterInfo::memberTable() const {
  static const MemberTable table{{
                                     property<PrinterInfo>("Name", [](PrinterInfo &p) { return p.name(); }),
                                     property<PrinterInfo>("IsDefault", [](PrinterInfo &p) { return p.isDefault(); }),
                                 },
                                 nullptr,
                                 QStringLiteral("Name")};
  return table;
}

std::shared_ptr<PrinterList> PrinterList::fromSystem() {
  std::vector<std::shared_ptr<PrinterInfo>> printers;
  for (const engine::SystemPrinter &printer : engine::systemPrinters())
    printers.push_back(std::make_shared<PrinterInfo>(printer.name, printer.isDefault));
  return std::make_shared<PrinterList>(std::move(printers));
}

std::shared_ptr<PrinterInfo> PrinterList::item(const Variant &index) const {
  if (index.isString()) {
    for (const auto &printer : printers_) {
      if (printer->name().compare(index.rawString(), Qt::CaseInsensitive) == 0)
        return printer;
    }
  } else {
    const int position = index.toLong();
    if (position >= 1 && position <= count())
      return printers_[std::size_t(position - 1)];
  }
  raiseError(ErrorNumber::SubscriptOutOfRange, typeName(), QStringLiteral("No printer %1").arg(index.toText()));
}

QString PrinterList::defaultPrinterName() const {
  for (const auto &printer : printers_) {
    if (printer->isDefault())
      return printer->name();
  }
  return {};
}

std::unique_ptr<Enumerator> PrinterList::enumerate() {
  return std::make_unique<ListEnumerator>(std::vector<Variant>(printers_.begin(), printers_.end()));
}

const MemberTable &PrinterList::memberTable() const {
  static const MemberTable table{{
                                     property<PrinterList>("Count", [](PrinterList &l) { return l.count(); }),
                                     indexedProperty<PrinterList>("Item",
                                                                  [](PrinterList &l, Args &a) {
                                                                    expectArgs(a, 1, 1);
                                                                    return l.item(a[0]);
                                                                  }),
                                 },
                                 nullptr,
                                 QStringLiteral("Item")};
  return table;
}

} // namespace kordel::host

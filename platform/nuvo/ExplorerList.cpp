#include "nuvo/ExplorerList.h"

#include "hostapi/Classes.h"

#include "core/Error.h"

namespace kordel::nuvo {

int ExplorerList::find(const QString &className) const {
  for (std::size_t i = 0; i < explorers_.size(); ++i)
    if (explorers_[i]->explorerClass()->name().compare(className, Qt::CaseInsensitive) == 0)
      return int(i);
  return -1;
}

std::shared_ptr<hostapi::Explorer> ExplorerList::item(const QString &className) const {
  const int at = find(className);
  if (at < 0)
    raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Explorers"),
               QStringLiteral("No list window shows the class '%1'").arg(className));
  return explorers_[std::size_t(at)];
}

void ExplorerList::open(const std::shared_ptr<hostapi::Explorer> &explorer) {
  const int at = find(explorer->explorerClass()->name());
  if (at >= 0)
    explorers_[std::size_t(at)] = explorer;
  else
    explorers_.push_back(explorer);
  current_ = active_ = explorer;
}

void ExplorerList::close(const QString &className) {
  const int at = find(className);
  if (at < 0)
    return;
  const auto closing = explorers_[std::size_t(at)];
  explorers_.erase(explorers_.begin() + at);
  if (current_ == closing)
    current_ = explorers_.empty() ? nullptr : explorers_.back();
  if (active_ == closing)
    active_.reset();
}

void ExplorerList::activate(const QString &className) { current_ = active_ = item(className); }

std::unique_ptr<Enumerator> ExplorerList::enumerate() {
  std::vector<Variant> explorers(explorers_.begin(), explorers_.end());
  return std::make_unique<ListEnumerator>(std::move(explorers));
}

const MemberTable &ExplorerList::memberTable() const {
  static const MemberTable table{
      {
          property<ExplorerList>("Count", [](ExplorerList &e) { return e.count(); }),
          method<ExplorerList>("Exists",
                               [](ExplorerList &e, Args &a) {
                                 expectArgs(a, 1, 1);
                                 return e.exists(a[0].toString());
                               }),
          indexedProperty<ExplorerList>("Item",
                                        [](ExplorerList &e, Args &a) {
                                          expectArgs(a, 1, 1);
                                          return Variant(e.item(a[0].toString()));
                                        }),
          property<ExplorerList>("Current", [](ExplorerList &e) { return Variant(ObjectRef(e.current())); }),
      },
      nullptr,
      QStringLiteral("Item")};
  return table;
}

std::shared_ptr<hostapi::Inspector> InspectorList::item(int index) const {
  if (index < 1 || index > count())
    raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Inspectors"),
               QStringLiteral("There is no record window %1; %2 are open").arg(index).arg(count()));
  return inspectors_[std::size_t(index - 1)];
}

void InspectorList::open(const std::shared_ptr<hostapi::Inspector> &inspector) {
  inspectors_.push_back(inspector);
  active_ = inspector;
}

void InspectorList::close(const std::shared_ptr<hostapi::Inspector> &inspector) {
  std::erase(inspectors_, inspector);
  if (active_ == inspector)
    active_.reset();
}

std::unique_ptr<Enumerator> InspectorList::enumerate() {
  std::vector<Variant> inspectors(inspectors_.begin(), inspectors_.end());
  return std::make_unique<ListEnumerator>(std::move(inspectors));
}

const MemberTable &InspectorList::memberTable() const {
  static const MemberTable table{
      {
          property<InspectorList>("Count", [](InspectorList &i) { return i.count(); }),
          indexedProperty<InspectorList>("Item",
                                         [](InspectorList &i, Args &a) {
                                           expectArgs(a, 1, 1);
                                           return Variant(i.item(int(a[0].toLong())));
                                         }),
          property<InspectorList>("Active", [](InspectorList &i) { return Variant(ObjectRef(i.active())); }),
      },
      nullptr,
      QStringLiteral("Item")};
  return table;
}

} // namespace kordel::nuvo

#include "nuvo/NamedValuesObject.h"

#include "core/Error.h"

namespace kordel::nuvo {

Variant NamedValuesObject::item(const QString &name) const {
  const auto it = index_.constFind(name.toCaseFolded());
  return it == index_.constEnd() ? Variant() : entries_[std::size_t(*it)].second;
}

void NamedValuesObject::setItem(const QString &name, const Variant &value) {
  const QString key = name.toCaseFolded();
  const auto it = index_.constFind(key);
  if (it != index_.constEnd()) {
    entries_[std::size_t(*it)].second = value;
    return;
  }
  index_.insert(key, int(entries_.size()));
  entries_.emplace_back(name, value);
}

void NamedValuesObject::remove(const QString &name) {
  const auto it = index_.constFind(name.toCaseFolded());
  if (it == index_.constEnd())
    raiseError(ErrorNumber::ElementNotFound, QStringLiteral("Nuvo.") + typeName_);
  entries_.erase(entries_.begin() + *it);
  reindex();
}

QStringList NamedValuesObject::names() const {
  QStringList names;
  for (const auto &entry : entries_)
    names << entry.first;
  return names;
}

void NamedValuesObject::reindex() {
  index_.clear();
  for (std::size_t i = 0; i < entries_.size(); ++i)
    index_.insert(entries_[i].first.toCaseFolded(), int(i));
}

std::unique_ptr<Enumerator> NamedValuesObject::enumerate() {
  std::vector<Variant> names;
  for (const auto &entry : entries_)
    names.emplace_back(entry.first);
  return std::make_unique<ListEnumerator>(std::move(names));
}

const MemberTable &NamedValuesObject::memberTable() const {
  static const MemberTable table{
      {
          indexedProperty<NamedValuesObject>(
              "Item",
              [](NamedValuesObject &n, Args &a) {
                expectArgs(a, 1, 1);
                return n.item(a[0].toString());
              },
              [](NamedValuesObject &n, Args &a, const Variant &value) {
                expectArgs(a, 1, 1);
                n.setItem(a[0].toString(), value);
              }),
          method<NamedValuesObject>("SetItem",
                                    [](NamedValuesObject &n, Args &a) {
                                      expectArgs(a, 2, 2);
                                      n.setItem(a[0].toString(), a[1]);
                                      return Variant();
                                    }),
          method<NamedValuesObject>("Exists",
                                    [](NamedValuesObject &n, Args &a) {
                                      expectArgs(a, 1, 1);
                                      return n.exists(a[0].toString());
                                    }),
          method<NamedValuesObject>("Remove",
                                    [](NamedValuesObject &n, Args &a) {
                                      expectArgs(a, 1, 1);
                                      n.remove(a[0].toString());
                                      return Variant();
                                    }),
          property<NamedValuesObject>("Count", [](NamedValuesObject &n) { return n.count(); }),
          property<NamedValuesObject>("Names",
                                      [](NamedValuesObject &n) {
                                        std::vector<Variant> names;
                                        for (const QString &name : n.names())
                                          names.emplace_back(name);
                                        return VariantArray::fromValues(std::move(names));
                                      }),
      },
      nullptr,
      QStringLiteral("Item")};
  return table;
}

} // namespace kordel::nuvo

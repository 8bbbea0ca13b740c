#pragma once

#include "core/Dictionary.h"

#include <memory>

namespace kordel::addin {

class Page;

// The sub pages of a page by guid, in insertion order, indexed from 1.
class Pages : public Object {
public:
  QString typeName() const override { return QStringLiteral("Pages"); }

  std::int16_t Count() const { return std::int16_t(pages_.count()); }
  bool Exists(const QString &guid) const { return pages_.exists(guid); }
  // Raises 999 for a page without guid and 457 for a guid already there.
  void Add(const std::shared_ptr<Page> &page);
  // Raises 9 outside 1..Count.
  std::shared_ptr<addin::Page> Item(int index) const;
  // The page of that guid here or anywhere below, depth first; nullptr
  // when no page has it.
  std::shared_ptr<addin::Page> Lookup(const QString &guid) const;
  // Fails for a guid that is not here.
  std::shared_ptr<addin::Page> Page(const QString &guid) const;
  void Remove(const QString &guid) { pages_.remove(guid); }
  void RemoveAll() { pages_.removeAll(); }

private:
  Dictionary pages_;
};

} // namespace kordel::addin

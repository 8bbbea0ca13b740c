#pragma once

#include "core/Dictionary.h"

#include <memory>

namespace kordel::addin {

// Sort orders as the page properties dialog writes them; the cursor takes
// 2 as descending and anything else as ascending.
constexpr std::int16_t kSortAscending = 1;
constexpr std::int16_t kSortDescending = 2;

class SortField : public Object {
public:
  QString typeName() const override { return QStringLiteral("SortField"); }

  QString Name;
  std::int16_t SortOrder = kSortAscending;
};

// The sort fields of a page, in insertion order. Unlike the other
// collections, adding a name twice is no error: the first order stays.
class SortFields : public Object {
public:
  QString typeName() const override { return QStringLiteral("SortFields"); }

  std::int16_t Count() const { return fields_ ? std::int16_t(fields_->count()) : 0; }
  // True when added; false, changing nothing, when the name is there.
  bool Add(const QString &name, std::int16_t sortOrder);
  bool Exists(const QString &name) const { return fields_ && fields_->exists(name); }
  // Nothing for an absent name.
  std::shared_ptr<addin::SortField> SortField(const QString &name) const;
  // Nothing above Count; 0 and below raise 9.
  std::shared_ptr<addin::SortField> Item(int index) const;
  // Does nothing for an absent name.
  void Remove(const QString &name);
  // Drops the dictionary itself; the next use makes a new one.
  void RemoveAll() { fields_.reset(); }

private:
  Dictionary &dictionary();

  std::unique_ptr<Dictionary> fields_;
};

} // namespace kordel::addin

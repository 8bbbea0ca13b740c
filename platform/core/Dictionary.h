#pragma once

#include "core/Compare.h"
#include "core/Object.h"

#include <QHash>

#include <functional>

#include <vector>

namespace kordel {

// Scripting.Dictionary: keys and items in insertion order. Keys compare by
// kind: numbers by value (1 and 1.0 are one key), strings by the compare
// mode, objects by identity; a number and a string are never the same key.
// Reading Item of a missing key adds the key with Empty; Add of a present
// key raises 457; Remove of a missing key raises 32811.
class Dictionary : public Object {
public:
  QString typeName() const override { return QStringLiteral("Dictionary"); }

  int count() const { return int(entries_.size()); }
  bool exists(const Variant &key) const;
  void add(const Variant &key, const Variant &item);
  // Item read: adds the key with Empty when missing, as the original does.
  Variant item(const Variant &key);
  // Item read without the side effect, for C++ callers.
  Variant value(const Variant &key, const Variant &fallback = {}) const;
  void setItem(const Variant &key, const Variant &item);
  // Key(old) = new: renames a key; raises 32811 when old is missing and
  // 457 when new is present.
  void renameKey(const Variant &oldKey, const Variant &newKey);
  void remove(const Variant &key);
  // Removes every entry whose key the predicate picks, in one pass.
  void removeIf(const std::function<bool(const Variant &key)> &picked);
  void removeAll();

  std::vector<Variant> keys() const;
  std::vector<Variant> items() const;
  const Variant &keyAt(int index) const { return entries_.at(std::size_t(index)).key; }
  const Variant &itemAt(int index) const { return entries_.at(std::size_t(index)).item; }

  CompareMode compareMode() const { return mode_; }
  // Only while the dictionary is empty, else 5.
  void setCompareMode(CompareMode mode);

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  struct Entry {
    Variant key;
    Variant item;
  };

  // A key as the index compares it: numbers by the bits of their value as
  // a Double, objects by address, strings by their text, case-folded in
  // the Text mode. Making one allocates nothing, except to fold a string
  // that has capitals.
  struct IndexKey {
    enum class Kind : std::uint8_t { Empty, Null, Number, String, Object };
    Kind kind = Kind::Empty;
    quint64 bits = 0;
    QString text;

    friend bool operator==(const IndexKey &a, const IndexKey &b) {
      return a.kind == b.kind && a.bits == b.bits && a.text == b.text;
    }
    size_t hash(size_t seed) const;
    friend size_t qHash(const IndexKey &key, size_t seed) { return key.hash(seed); }
  };

  IndexKey indexKey(const Variant &key) const;
  int find(const Variant &key) const;
  void rebuildIndex();

  std::vector<Entry> entries_;
  QHash<IndexKey, int> index_;
  CompareMode mode_ = CompareMode::Binary;
};

} // namespace kordel

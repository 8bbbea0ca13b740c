#pragma once

#include "core/Dictionary.h"

namespace kordel::addin {

// A set of strings in insertion order, indexed from 1: each string is its
// own key, so adding a string twice raises 457.
class StringCollection : public Object {
public:
  QString typeName() const override { return QStringLiteral("StringCollection"); }

  int Count() const { return strings_.count(); }
  void Add(const QString &text);
  Variant Exists(const QString &text) const;
  // Raises 9 outside 1..Count.
  QString Item(int index) const;
  // A string removes that string; a 16- or 32-bit integer is taken as a
  // key too, which no string key matches, so it raises 32811; any other
  // type does nothing.
  void Remove(const Variant &keyOrIndex);
  void RemoveAll() { strings_.removeAll(); }

private:
  Dictionary strings_;
};

// The item at a position from 1 of a list of dictionary items; raises 9
// outside the list.
const Variant &itemAtPosition(const Dictionary &dictionary, int index);

} // namespace kordel::addin

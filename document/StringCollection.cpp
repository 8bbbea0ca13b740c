#include "document/StringCollection.h"

#include "core/Error.h"

namespace kordel::addin {

const Variant &itemAtPosition(const Dictionary &dictionary, int index) {
  if (index < 1 || index > dictionary.count())
    raiseError(ErrorNumber::SubscriptOutOfRange);
  return dictionary.itemAt(index - 1);
}

void StringCollection::Add(const QString &text) { strings_.add(text, text); }

Variant StringCollection::Exists(const QString &text) const { return strings_.exists(text); }

QString StringCollection::Item(int index) const { return itemAtPosition(strings_, index).toString(); }

void StringCollection::Remove(const Variant &keyOrIndex) {
  switch (keyOrIndex.type()) {
  case Variant::Type::Integer:
  case Variant::Type::Long: strings_.remove(Variant(keyOrIndex.toLong())); break;
  case Variant::Type::String: strings_.remove(keyOrIndex); break;
  default: break;
  }
}

} // namespace kordel::addin

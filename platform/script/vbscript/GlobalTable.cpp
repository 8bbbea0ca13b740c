#include "script/vbscript/GlobalTable.h"

#include <algorithm>

namespace kordel::script::vb {

int GlobalTable::add(const QString &name, GlobalEntry::Kind kind) {
  const QString folded = name.toLower();
  const int existing = find(folded);
  if (existing >= 0)
    return existing;
  GlobalEntry entry;
  entry.name = name;
  entry.kind = kind;
  entries_.push_back(std::move(entry));
  const int index = int(entries_.size()) - 1;
  index_.insert(folded, index);
  return index;
}

void GlobalTable::markGlobalMembers(int index) {
  entries_[std::size_t(index)].globalMembers = true;
  if (std::find(globalMemberItems_.begin(), globalMemberItems_.end(), index) == globalMemberItems_.end())
    globalMemberItems_.push_back(index);
}

void GlobalTable::clearValues() {
  for (auto it = entries_.rbegin(); it != entries_.rend(); ++it) {
    // Move the value out before it dies, so that code running from a
    // dying object sees the variable already empty.
    Variant dying = std::move(it->value);
    it->value = Variant();
  }
}

} // namespace kordel::script::vb

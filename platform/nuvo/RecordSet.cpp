#include "nuvo/RecordSet.h"

namespace kordel::nuvo {

namespace {
constexpr std::size_t kRecentSpellings = 32;
} // namespace

int RecordSet::columnOf(const QString &path) const {
  for (const auto &[spelling, column] : recent_)
    if (spelling.constData() == path.constData() && spelling.size() == path.size())
      return column;
  int column = -1;
  const auto spelled = spellings_.constFind(path);
  if (spelled != spellings_.constEnd()) {
    column = *spelled;
  } else {
    const auto folded = byPath_.constFind(path.toCaseFolded());
    if (folded == byPath_.constEnd())
      return -1;
    column = *folded;
    spellings_.insert(path, column);
  }
  if (recent_.size() < kRecentSpellings)
    recent_.emplace_back(path, column);
  return column;
}

void RecordSet::addSpelling(const QString &path, int column) const { spellings_.insert(path, column); }

int RecordSet::addColumn(ResultColumn column) {
  const QString key = column.path.internal().toCaseFolded();
  const auto found = byPath_.constFind(key);
  if (found != byPath_.constEnd())
    return *found;
  columns_.push_back(std::move(column));
  const int index = int(columns_.size()) - 1;
  byPath_.insert(key, index);
  return index;
}

RowValues &RecordSet::appendRow(int id) {
  if (!values_)
    values_ = std::make_unique<RowValues>(columnCount());
  ids_.push_back(id);
  return *values_;
}

} // namespace kordel::nuvo

#pragma once

#include "data/RowBufferColumn.h"
#include "data/RowBufferSyntax.h"

#include <QHash>

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace kordel::addin {

// The rows of one column grouped by value, each group in the row order the
// index was built with, so that a filter on the column is one look-up and
// its rows come in sort order without being sorted again. Null cells
// belong to no group. Built from the column as it stands: it does not
// follow later changes.
class EqualityIndex {
public:
  EqualityIndex(const RowBufferColumn &column, const std::vector<int> &order);

  // The rows whose cell equals the value: text without regard to case,
  // numbers by value. Raises 3001 for a quoted text that is no number on a
  // number column.
  std::span<const int> rowsEqualTo(const FilterValue &value) const;

private:
  std::span<const int> rowsOfGroup(int id) const;

  QString columnName_;
  ColumnType type_;
  std::vector<int> rows_;       // the groups one after the other
  std::vector<int> groupStart_; // where each group starts in rows_, and the end
  // Group ids by cell: a 64-bit integer or the bits of a double, or the
  // case-folded text.
  std::unordered_map<std::int64_t, int> numberGroups_;
  QHash<QString, int> textGroups_;
};

} // namespace kordel::addin

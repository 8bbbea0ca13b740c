#pragma once

#include "nuvo/FieldPath.h"
#include "nuvo/RowValues.h"
#include "nuvo/ValueCodec.h"

#include "core/Variant.h"

#include <QHash>

#include <memory>
#include <vector>

namespace kordel::nuvo {

// One fetched path of a query's result.
struct ResultColumn {
  FieldPath path;
  Storage storage = Storage::Text;
  // For a path that ends in a relation to one: the columns of the other
  // record's description fields, one per part of its class's description
  // (-1 for parts that are plain text).
  std::vector<int> descriptionColumns;
};

// The rows of one query, shared by the records made from it: the ids in
// memory, and the values of every column row by row in their compact form
// (RowValues), which leaves memory for a temporary file when the result is
// large.
class RecordSet {
public:
  explicit RecordSet(const ClassDef &cls) : class_(cls) {}

  const ClassDef &recordClass() const { return class_; }
  int rowCount() const { return int(ids_.size()); }
  int columnCount() const { return int(columns_.size()); }
  int id(int row) const { return ids_[std::size_t(row)]; }
  const std::vector<int> &ids() const { return ids_; }
  const ResultColumn &column(int index) const { return columns_[std::size_t(index)]; }
  Variant value(int row, int column) const { return values_->value(row, column); }

  // The column of a path as it was given or by its internal form without
  // regard to case; -1 when the query did not fetch it.
  int columnOf(const QString &path) const;
  // Remembers another spelling of a fetched path.
  void addSpelling(const QString &path, int column) const;

  // Building.
  int addColumn(ResultColumn column);
  ResultColumn &mutableColumn(int index) { return columns_[std::size_t(index)]; }
  // A row: its id here, then one value per column, in order, and endRow
  // on the values returned. Columns are added before the first row.
  RowValues &appendRow(int id);

private:
  const ClassDef &class_;
  std::vector<ResultColumn> columns_;
  QHash<QString, int> byPath_; // folded internal path -> column
  mutable QHash<QString, int> spellings_;
  // The spellings last asked for; callers that read many records pass the
  // same strings again, which are found here by their shared text alone.
  mutable std::vector<std::pair<QString, int>> recent_;
  std::vector<int> ids_;
  std::unique_ptr<RowValues> values_;
};

} // namespace kordel::nuvo

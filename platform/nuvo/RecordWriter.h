#pragma once

#include "nuvo/Catalog.h"

#include "core/Variant.h"

#include <QSqlQuery>
#include <QStringList>
#include <QVariantList>

#include <optional>
#include <vector>

namespace kordel::nuvo {

class SqlConnection;

// Writes new records of a class in batches: many rows per INSERT, through
// one prepared statement. Values are checked and converted as the fields
// store them. Rows not yet flushed are written by flush(); a writer
// dropped without flush() writes nothing more. The caller holds the
// Transaction that makes a set of rows all or nothing.
class RecordWriter {
public:
  // fieldNames: the fields each row gives, in order; they must have columns.
  RecordWriter(SqlConnection &sql, const ClassDef &cls, const QStringList &fieldNames);

  void add(const std::vector<Variant> &values);
  void flush();
  int written() const { return written_; }

private:
  QString insertSql(int rows) const;
  void write(int rows);

  SqlConnection &sql_;
  const ClassDef &class_;
  std::vector<const FieldDef *> fields_;
  int rowsPerStatement_;
  std::optional<QSqlQuery> fullBatch_;
  QVariantList pending_;
  int written_ = 0;
};

} // namespace kordel::nuvo

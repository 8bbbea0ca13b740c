#include "nuvo/RecordWriter.h"

#include "nuvo/SqlConnection.h"
#include "nuvo/ValueCodec.h"

#include "core/Error.h"

#include <algorithm>

namespace kordel::nuvo {

namespace {
// Bound values per statement stay well below the limits of both databases.
constexpr int kMaxValuesPerStatement = 8000;
constexpr int kMaxRowsPerStatement = 200;
} // namespace

RecordWriter::RecordWriter(SqlConnection &sql, const ClassDef &cls, const QStringList &fieldNames)
    : sql_(sql), class_(cls) {
  for (const QString &name : fieldNames) {
    const FieldDef *field = cls.field(name);
    if (!field || !field->hasColumn())
      raiseError(ErrorNumber::InvalidCall, QStringLiteral("Nuvo.Database"),
                 QStringLiteral("The class '%1' has no column '%2'").arg(cls.name, name));
    fields_.push_back(field);
  }
  rowsPerStatement_ = std::max(1, std::min(kMaxRowsPerStatement, kMaxValuesPerStatement / int(fields_.size())));
}

QString RecordWriter::insertSql(int rows) const {
  QStringList columns;
  for (const FieldDef *field : fields_)
    columns << SqlConnection::quote(field->name);
  const QString row = u'(' + QStringList(columns.size(), QStringLiteral("?")).join(u',') + u')';
  return QStringLiteral("INSERT INTO %1 (%2) VALUES ").arg(SqlConnection::quote(class_.name), columns.join(u',')) +
         QStringList(rows, row).join(u',');
}

void RecordWriter::add(const std::vector<Variant> &values) {
  if (values.size() != fields_.size())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Nuvo.Database"),
               QStringLiteral("A row of '%1' needs %2 values").arg(class_.name).arg(fields_.size()));
  for (std::size_t i = 0; i < values.size(); ++i)
    pending_ << encodeValue(*fields_[i], values[i]);
  if (pending_.size() == qsizetype(rowsPerStatement_) * qsizetype(fields_.size()))
    write(rowsPerStatement_);
}

void RecordWriter::write(int rows) {
  if (rows == rowsPerStatement_) {
    if (!fullBatch_)
      fullBatch_ = sql_.prepare(insertSql(rows));
    sql_.execPrepared(*fullBatch_, pending_);
  } else {
    sql_.exec(insertSql(rows), pending_);
  }
  written_ += rows;
  pending_.clear();
}

void RecordWriter::flush() {
  if (!pending_.isEmpty())
    write(int(pending_.size() / qsizetype(fields_.size())));
}

} // namespace kordel::nuvo

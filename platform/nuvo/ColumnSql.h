#pragma once

#include "nuvo/Catalog.h"

#include <QString>

namespace kordel::nuvo {

// Table aliases of one statement: t1, t2, ... never twice.
class SqlAliases {
public:
  QString next() { return QStringLiteral("t%1").arg(++last_); }

private:
  int last_ = 0;
};

// The SQL of a field of a table under an alias: its quoted column, or for a
// formula its expression with [field] replaced by that field's column.
// Raises 5 for a formula that names no column of the class.
QString columnSql(const QString &alias, const FieldDef &field);

// The quoted table of a class and its quoted key column.
QString tableSql(const ClassDef &cls);
QString idColumnSql(const QString &alias, const ClassDef &cls);

} // namespace kordel::nuvo

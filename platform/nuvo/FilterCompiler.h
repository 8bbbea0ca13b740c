#pragma once

#include "nuvo/ColumnSql.h"
#include "nuvo/FieldPath.h"

#include "core/Variant.h"

#include <QVariantList>

namespace kordel::hostapi {
class Filter;
}

namespace kordel::nuvo {

class Engine;

// Turns a filter into an SQL condition on the records of a class. A path
// across a relation becomes a sub-select on the other class's table, a
// pool a list of bound ids or a temporary table.
class FilterCompiler {
public:
  FilterCompiler(Engine &engine, SqlAliases &aliases) : engine_(engine), aliases_(aliases) {}

  // The condition, with its bound values appended to params; "" when the
  // filter has no condition. Raises 5 for a path the class lacks and 13
  // for a filter of another engine.
  QString compile(const hostapi::Filter &filter, const ClassDef &cls, const QString &alias, QVariantList &params);

private:
  QString condition(const FieldPath &path, std::size_t step, const QString &alias, int op, const Variant &value,
                    QVariantList &params);
  QString comparison(const QString &column, const FieldDef &field, int op, const Variant &value, QVariantList &params);

  Engine &engine_;
  SqlAliases &aliases_;
};

} // namespace kordel::nuvo

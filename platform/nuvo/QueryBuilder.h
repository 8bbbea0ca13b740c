#pragma once

#include "nuvo/ColumnSql.h"
#include "nuvo/RecordSet.h"

#include <QHash>
#include <QStringList>
#include <QVariantList>

#include <memory>

namespace kordel::hostapi {
class Filter;
}

namespace kordel::nuvo {

class Engine;

// Builds the one SELECT of a query: the records of a class under a filter,
// with the values of a set of paths. A path across relations to one
// becomes a chain of LEFT JOINs, shared by all paths with the same
// beginning; a path that ends in a relation also fetches the other
// record's description fields. Paths across a relation to many have no
// single value and are answered with Null.
class QueryBuilder {
public:
  QueryBuilder(Engine &engine, const ClassDef &cls);

  // Adds a path; returns its column in the result.
  int addPath(const FieldPath &path);
  void setFilter(std::shared_ptr<hostapi::Filter> filter) { filter_ = std::move(filter); }
  // Limits the query to one record.
  void setRecordId(int id) { recordId_ = id; }
  // Limits the query to these records.
  void setRecordIds(std::vector<int> ids) { recordIds_ = std::move(ids); }
  // Orders the rows by a result column, then by id; texts without regard
  // to case, a relation by the other record's first description field.
  // Without it the rows come by id.
  void setOrder(int column, bool descending);
  // Keeps the rows where the text of any of the result columns contains
  // the text, without regard to case; an empty text keeps all.
  void setSearch(const QString &text, std::vector<int> columns);

  // The statement and its bound values.
  QString sql();
  const QVariantList &params() const { return params_; }
  // Runs the statement and reads every row.
  std::shared_ptr<RecordSet> run();

private:
  QString aliasOfPrefix(const FieldPath &path, std::size_t steps);
  QString expressionOf(const FieldPath &path);

  Engine &engine_;
  const ClassDef &class_;
  SqlAliases aliases_;
  QString rootAlias_;
  std::shared_ptr<RecordSet> set_;
  std::shared_ptr<hostapi::Filter> filter_;
  int recordId_ = -1;
  std::vector<int> recordIds_;
  QString order_;
  QString search_;
  std::vector<int> searchColumns_;
  QStringList selectList_;
  std::vector<int> sqlColumnOf_; // result column -> column of the SELECT, -1 when not fetched
  QStringList joins_;
  QHash<QString, QString> joinAliases_; // folded prefix path -> alias
  QVariantList params_;
  QString sql_;
};

} // namespace kordel::nuvo

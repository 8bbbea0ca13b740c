#include "nuvo/QueryBuilder.h"

#include "nuvo/Engine.h"
#include "nuvo/FilterCompiler.h"

#include "hostapi/FieldTypes.h"

#include <QSqlQuery>

namespace kordel::nuvo {

namespace FT = hostapi::FieldType;

QueryBuilder::QueryBuilder(Engine &engine, const ClassDef &cls)
    : engine_(engine), class_(cls), rootAlias_(aliases_.next()), set_(std::make_shared<RecordSet>(cls)) {
  selectList_ << idColumnSql(rootAlias_, cls);
}

QString QueryBuilder::aliasOfPrefix(const FieldPath &path, std::size_t steps) {
  QString alias = rootAlias_;
  QString key;
  for (std::size_t i = 0; i < steps; ++i) {
    const FieldDef &relation = *path.steps[i];
    key += (i ? QStringLiteral(".") : QString()) + relation.name.toCaseFolded();
    const auto found = joinAliases_.constFind(key);
    if (found != joinAliases_.constEnd()) {
      alias = *found;
      continue;
    }
    const QString joined = aliases_.next();
    joins_ << QStringLiteral("LEFT JOIN ") + tableSql(*relation.relatedClass) + u' ' + joined + QStringLiteral(" ON ") +
                  idColumnSql(joined, *relation.relatedClass) + QStringLiteral(" = ") + columnSql(alias, relation);
    joinAliases_.insert(key, joined);
    alias = joined;
  }
  return alias;
}

QString QueryBuilder::expressionOf(const FieldPath &path) {
  const std::size_t steps = path.steps.size();
  // The id of the record at the end of a relation is the relation's own
  // column: no join is needed for it.
  if (steps >= 2 && path.last().type == FT::Counter)
    return columnSql(aliasOfPrefix(path, steps - 2), *path.steps[steps - 2]);
  return columnSql(aliasOfPrefix(path, steps - 1), path.last());
}

int QueryBuilder::addPath(const FieldPath &path) {
  const int existing = set_->columnOf(path.internal());
  if (existing >= 0)
    return existing;
  const FieldDef &last = path.last();
  ResultColumn column{path, storageOf(last), {}};
  const int index = set_->addColumn(std::move(column));
  const bool fetched = !path.crossesToMany() && last.type != FT::RelationToMany;
  sqlColumnOf_.push_back(fetched ? int(selectList_.size()) : -1);
  if (fetched)
    selectList_ << expressionOf(path);
  if (fetched && last.type == FT::RelationToOne) {
    std::vector<int> description;
    for (const ClassDef::DescriptionPart &part : last.relatedClass->descriptionParts())
      description.push_back(part.field ? addPath(path.extended(*part.field)) : -1);
    set_->mutableColumn(index).descriptionColumns = std::move(description);
  }
  return index;
}

void QueryBuilder::setOrder(int column, bool descending) {
  const ResultColumn &result = set_->column(column);
  int sorted = column;
  if (!result.descriptionColumns.empty() && result.descriptionColumns.front() >= 0)
    sorted = result.descriptionColumns.front();
  const int at = sqlColumnOf_[std::size_t(sorted)];
  if (at < 0)
    return; // a path with no single value sorts nothing
  QString expression = selectList_[at];
  if (set_->column(sorted).storage == Storage::Text)
    expression = QStringLiteral("LOWER(%1)").arg(expression);
  order_ = expression + (descending ? QStringLiteral(" DESC, ") : QStringLiteral(", ")) +
           idColumnSql(rootAlias_, class_) + (descending ? QStringLiteral(" DESC") : QString());
}

void QueryBuilder::setSearch(const QString &text, std::vector<int> columns) {
  search_ = text;
  searchColumns_ = std::move(columns);
}

QString QueryBuilder::sql() {
  if (!sql_.isEmpty())
    return sql_;
  QStringList conditions;
  if (filter_) {
    FilterCompiler compiler(engine_, aliases_);
    const QString condition = compiler.compile(*filter_, class_, rootAlias_, params_);
    if (!condition.isEmpty())
      conditions << condition;
  }
  if (recordId_ >= 0) {
    conditions << idColumnSql(rootAlias_, class_) + QStringLiteral(" = ?");
    params_ << recordId_;
  }
  if (!recordIds_.empty()) {
    QStringList marks;
    for (const int id : recordIds_) {
      marks << QStringLiteral("?");
      params_ << id;
    }
    conditions << idColumnSql(rootAlias_, class_) + QStringLiteral(" IN (") + marks.join(u',') + u')';
  }
  if (!search_.isEmpty()) {
    // LIKE's own wildcards in the text are matched as themselves.
    QString pattern = search_.toLower();
    pattern.replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'%', QStringLiteral("\\%"))
        .replace(u'_', QStringLiteral("\\_"));
    QStringList any;
    for (const int column : searchColumns_) {
      std::vector<int> parts{column};
      if (!set_->column(column).descriptionColumns.empty())
        parts = set_->column(column).descriptionColumns;
      for (const int part : parts) {
        const int at = part < 0 ? -1 : sqlColumnOf_[std::size_t(part)];
        if (at < 0)
          continue;
        any << QStringLiteral("LOWER(CAST(%1 AS TEXT)) LIKE ? ESCAPE '\\'").arg(selectList_[at]);
        params_ << QStringLiteral("%") + pattern + QStringLiteral("%");
      }
    }
    conditions << (any.isEmpty() ? QStringLiteral("1 = 0") : u'(' + any.join(QStringLiteral(" OR ")) + u')');
  }
  sql_ = QStringLiteral("SELECT ") + selectList_.join(QStringLiteral(", ")) + QStringLiteral(" FROM ") +
         tableSql(class_) + u' ' + rootAlias_;
  for (const QString &join : joins_)
    sql_ += u' ' + join;
  if (!conditions.isEmpty())
    sql_ += QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
  sql_ += QStringLiteral(" ORDER BY ") + (order_.isEmpty() ? idColumnSql(rootAlias_, class_) : order_);
  return sql_;
}

std::shared_ptr<RecordSet> QueryBuilder::run() {
  const QString statement = sql();
  QSqlQuery query = engine_.sql().select(statement, params_);
  const int columns = set_->columnCount();
  std::vector<Storage> storages;
  storages.reserve(std::size_t(columns));
  for (int c = 0; c < columns; ++c)
    storages.push_back(set_->column(c).storage);
  while (query.next()) {
    RowValues &values = set_->appendRow(query.value(0).toInt());
    for (int c = 0; c < columns; ++c) {
      const int at = sqlColumnOf_[std::size_t(c)];
      if (at < 0)
        values.appendNull();
      else
        appendDecoded(values, storages[std::size_t(c)], query.value(at));
    }
    values.endRow();
  }
  return set_;
}

} // namespace kordel::nuvo

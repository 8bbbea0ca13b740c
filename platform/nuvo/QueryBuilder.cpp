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
  sql_ = QStringLiteral("SELECT ") + selectList_.join(QStringLiteral(", ")) + QStringLiteral(" FROM ") +
         tableSql(class_) + u' ' + rootAlias_;
  for (const QString &join : joins_)
    sql_ += u' ' + join;
  if (!conditions.isEmpty())
    sql_ += QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
  sql_ += QStringLiteral(" ORDER BY ") + idColumnSql(rootAlias_, class_);
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
  const Variant null = Variant::null();
  while (query.next()) {
    set_->appendRow(query.value(0).toInt());
    for (int c = 0; c < columns; ++c) {
      const int at = sqlColumnOf_[std::size_t(c)];
      set_->appendValue(at < 0 ? null : decodeValue(storages[std::size_t(c)], query.value(at)));
    }
  }
  return set_;
}

} // namespace kordel::nuvo

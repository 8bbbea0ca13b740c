#include "nuvo/ListQuery.h"

#include "nuvo/Engine.h"
#include "nuvo/QueryBuilder.h"
#include "nuvo/RecordObject.h"

#include "hostapi/FieldTypes.h"

#include <QHash>

#include <algorithm>

namespace kordel::nuvo {

namespace FT = hostapi::FieldType;

ListQuery::ListQuery(std::shared_ptr<Engine> engine, const QString &className)
    : engine_(std::move(engine)), class_(engine_->classNamed(className)) {
  for (const auto &part : class_.descriptionParts())
    if (part.field && std::find(columns_.begin(), columns_.end(), part.field) == columns_.end())
      columns_.push_back(part.field);
  for (const auto &field : class_.fields) {
    const bool ownValue = field->type != FT::RelationToMany && field->type != FT::Counter;
    if (ownValue && !field->hidden && std::find(columns_.begin(), columns_.end(), field.get()) == columns_.end())
      columns_.push_back(field.get());
  }
}

QString ListQuery::columnTitle(int column) const {
  const FieldDef &field = columnField(column);
  const QString local = field.localNames.get(engine_->language());
  return local.isEmpty() ? field.name : local;
}

bool ListQuery::numericColumn(int column) const {
  switch (storageOf(columnField(column))) {
  case Storage::Integer:
  case Storage::Real:
  case Storage::Scaled:
  case Storage::Date:
  case Storage::DateTime:
  case Storage::Time: return columnField(column).options.empty();
  default: return false;
  }
}

std::vector<int> ListQuery::ids(const std::shared_ptr<hostapi::Filter> &filter, const QString &search, int sortColumn,
                                bool descending) const {
  QueryBuilder query(*engine_, class_);
  query.setFilter(filter);
  // Only what orders or narrows the list is read.
  if (sortColumn >= 0)
    query.setOrder(query.addPath(FieldPath{&class_, {&columnField(sortColumn)}}), descending);
  if (!search.isEmpty()) {
    std::vector<int> searched;
    for (const FieldDef *field : columns_)
      searched.push_back(query.addPath(FieldPath{&class_, {field}}));
    query.setSearch(search, std::move(searched));
  }
  return query.run()->ids();
}

std::vector<QStringList> ListQuery::texts(const std::vector<int> &ids) const {
  std::vector<QStringList> rows(ids.size(), QStringList(columnCount(), QString()));
  if (ids.empty())
    return rows;
  QueryBuilder query(*engine_, class_);
  std::vector<QString> paths;
  for (const FieldDef *field : columns_) {
    query.addPath(FieldPath{&class_, {field}});
    paths.push_back(field->name);
  }
  query.setRecordIds(ids);
  const std::shared_ptr<RecordSet> set = query.run();
  QHash<int, int> rowOf;
  for (int row = 0; row < set->rowCount(); ++row)
    rowOf.insert(set->id(row), row);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const auto found = rowOf.constFind(ids[i]);
    if (found == rowOf.constEnd())
      continue;
    const auto record = std::make_shared<RecordObject>(engine_, set, *found);
    for (int column = 0; column < columnCount(); ++column)
      rows[i][column] = record->text(paths[std::size_t(column)]);
  }
  return rows;
}

} // namespace kordel::nuvo

#include "nuvo/FilterCompiler.h"

#include "nuvo/Engine.h"
#include "nuvo/FilterObject.h"
#include "nuvo/PoolObject.h"
#include "nuvo/PoolTables.h"
#include "nuvo/ValueCodec.h"

#include "hostapi/Classes.h"
#include "hostapi/FieldTypes.h"

#include "core/Error.h"

#include <vector>

namespace kordel::nuvo {

namespace CO = hostapi::ConditionOp;
namespace FO = hostapi::FilterOperator;
namespace FT = hostapi::FieldType;

namespace {

const QString kSource = QStringLiteral("Nuvo.Filter");

// A Like pattern with * and ? as SQL's, with SQL's own wildcards escaped.
QString likePattern(const QString &text) {
  QString pattern;
  for (const QChar c : text) {
    if (c == u'*')
      pattern += u'%';
    else if (c == u'?')
      pattern += u'_';
    else if (c == u'%' || c == u'_' || c == u'\\')
      pattern += u'\\' + QString(c);
    else
      pattern += c;
  }
  return pattern;
}

std::shared_ptr<hostapi::Pool> poolOfCondition(const Variant &value) {
  if (auto pool = poolOf(value))
    return pool;
  auto pool = std::make_shared<PoolObject>();
  for (const Variant &id : value.array().elements())
    pool->add(id.toLong());
  return pool;
}

} // namespace

QString FilterCompiler::compile(const hostapi::Filter &filter, const ClassDef &cls, const QString &alias,
                                QVariantList &params) {
  const auto *own = dynamic_cast<const FilterObject *>(&filter);
  if (!own)
    raiseError(ErrorNumber::TypeMismatch, kSource, QStringLiteral("The filter was not made by this data engine"));
  std::vector<QString> stack;
  for (const FilterItem &item : own->items()) {
    if (item.isOperator) {
      if (item.op == FO::Not) {
        stack.back() = QStringLiteral("NOT (") + stack.back() + u')';
        continue;
      }
      QString right = std::move(stack.back());
      stack.pop_back();
      const QString joiner = item.op == FO::And ? QStringLiteral(" AND ") : QStringLiteral(" OR ");
      stack.back() = u'(' + stack.back() + joiner + right + u')';
      continue;
    }
    if (item.op == CO::EmbeddedFilter) {
      const auto embedded = objectAs<hostapi::Filter>(item.value);
      const QString inner = compile(*embedded, cls, alias, params);
      stack.push_back(inner.isEmpty() ? QStringLiteral("1 = 1") : inner);
      continue;
    }
    const auto path = resolvePath(cls, item.path, hostapi::LookupMode::Either, engine_.language());
    if (!path)
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("The class '%1' has no field '%2'").arg(cls.name, item.path));
    stack.push_back(condition(*path, 0, alias, item.op, item.value, params));
  }
  QString all;
  for (const QString &part : stack)
    all += all.isEmpty() ? part : QStringLiteral(" AND ") + part;
  return all;
}

QString FilterCompiler::condition(const FieldPath &path, std::size_t step, const QString &alias, int op,
                                  const Variant &value, QVariantList &params) {
  const FieldDef &field = *path.steps[step];
  const bool last = step + 1 == path.steps.size();
  if (last) {
    if (field.type == FT::RelationToMany)
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("'%1' relates to many records and cannot be compared").arg(path.internal()));
    return comparison(columnSql(alias, field), field, op, value, params);
  }
  const ClassDef &other = *field.relatedClass;
  if (field.type == FT::RelationToOne) {
    // The other record's id is this record's column.
    const FieldDef &next = *path.steps[step + 1];
    if (step + 2 == path.steps.size() && next.type == FT::Counter)
      return comparison(columnSql(alias, field), next, op, value, params);
    const QString inner = aliases_.next();
    return columnSql(alias, field) + QStringLiteral(" IN (SELECT ") + idColumnSql(inner, other) +
           QStringLiteral(" FROM ") + tableSql(other) + u' ' + inner + QStringLiteral(" WHERE ") +
           condition(path, step + 1, inner, op, value, params) + u')';
  }
  // A relation to many holds when any of the other records meets the rest.
  const QString inner = aliases_.next();
  return idColumnSql(alias, *field.owner) + QStringLiteral(" IN (SELECT ") + columnSql(inner, *field.relatedField) +
         QStringLiteral(" FROM ") + tableSql(other) + u' ' + inner + QStringLiteral(" WHERE ") +
         condition(path, step + 1, inner, op, value, params) + u')';
}

QString FilterCompiler::comparison(const QString &column, const FieldDef &field, int op, const Variant &value,
                                   QVariantList &params) {
  if (op == CO::InPool)
    return engine_.poolTables().membership(column, poolOfCondition(value), params);
  if (op == CO::Like) {
    if (storageOf(field) != Storage::Text)
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("'%1' is no text to match a pattern").arg(field.name));
    params << likePattern(value.toText()).toLower();
    return QStringLiteral("LOWER(") + column + QStringLiteral(") LIKE CAST(? AS TEXT) ESCAPE '\\'");
  }
  const QVariant stored = encodeValue(field, value);
  if (stored.isNull()) {
    if (op == CO::Equal)
      return column + QStringLiteral(" IS NULL");
    if (op == CO::NotEqual)
      return column + QStringLiteral(" IS NOT NULL");
    return QStringLiteral("1 = 0"); // nothing is less or greater than no value
  }
  params << stored;
  switch (op) {
  case CO::Equal: return column + QStringLiteral(" = ?");
  case CO::NotEqual: return u'(' + column + QStringLiteral(" <> ? OR ") + column + QStringLiteral(" IS NULL)");
  case CO::Less: return column + QStringLiteral(" < ?");
  case CO::LessOrEqual: return column + QStringLiteral(" <= ?");
  case CO::Greater: return column + QStringLiteral(" > ?");
  default: return column + QStringLiteral(" >= ?");
  }
}

} // namespace kordel::nuvo

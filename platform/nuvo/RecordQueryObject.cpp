#include "nuvo/RecordQueryObject.h"

#include "nuvo/ClassObjects.h"
#include "nuvo/Engine.h"
#include "nuvo/FilterCompiler.h"

#include "hostapi/Filters.h"

#include "xml/XmlDocument.h"

#include "core/Error.h"

#include <QSqlQuery>

namespace kordel::nuvo {

namespace Parts = hostapi::RecordQueryParts;

namespace {

const QString kSource = QStringLiteral("Nuvo.RecordQuery");

std::shared_ptr<hostapi::Filter> filterArgument(const Variant &value) {
  if (value.isEmpty() || value.isNull() || value.isNothing())
    return nullptr;
  auto filter = objectAs<hostapi::Filter>(value);
  if (!filter)
    raiseError(ErrorNumber::TypeMismatch, kSource, QStringLiteral("Open needs a Filter or Nothing"));
  return filter;
}

} // namespace

void RecordQueryObject::open(const Variant &classOrName, const std::shared_ptr<hostapi::Filter> &filter,
                             const std::shared_ptr<hostapi::View> &, int parts, int first, int max) {
  if (!engine_)
    raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("No database is open"));
  const ClassDef &cls = classOfValue(*engine_, classOrName);
  SqlAliases aliases;
  const QString alias = aliases.next();
  QVariantList params;
  QString where;
  if (filter) {
    FilterCompiler compiler(*engine_, aliases);
    const QString condition = compiler.compile(*filter, cls, alias, params);
    if (!condition.isEmpty())
      where = QStringLiteral(" WHERE ") + condition;
  }
  const QString from = QStringLiteral(" FROM ") + tableSql(cls) + u' ' + alias + where;

  auto document = XmlDocument::create();
  auto root = document->createElement(QStringLiteral("records"));
  document->appendChild(root);
  if (parts & Parts::Count) {
    const QVariant count = engine_->sql().scalar(QStringLiteral("SELECT COUNT(*)") + from, params);
    root->setAttribute(QStringLiteral("count"), QString::number(count.toLongLong()));
  }
  if (parts & Parts::Summary) {
    root->setAttribute(QStringLiteral("class"), cls.name);
    root->setAttribute(QStringLiteral("filter"), filter ? filter->name() : QString());
  }
  if (parts & Parts::Ids) {
    QString sql = QStringLiteral("SELECT ") + idColumnSql(alias, cls) + from + QStringLiteral(" ORDER BY ") +
                  idColumnSql(alias, cls);
    if (max >= 0)
      sql += QStringLiteral(" LIMIT %1").arg(max);
    else if (first > 0) // an offset needs a limit; "no limit" is spelt differently
      sql += engine_->sql().dialect() == Dialect::SQLite ? QStringLiteral(" LIMIT -1") : QStringLiteral(" LIMIT ALL");
    if (first > 0)
      sql += QStringLiteral(" OFFSET %1").arg(first);
    QSqlQuery ids = engine_->sql().select(sql, params);
    while (ids.next()) {
      auto record = document->createElement(QStringLiteral("record"));
      record->setAttribute(QStringLiteral("id"), ids.value(0).toString());
      root->appendChild(record);
    }
  }
  result_ = std::move(document);
}

std::shared_ptr<XmlDocument> RecordQueryObject::result() const {
  if (!result_)
    raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("The query has not been opened"));
  return result_;
}

const MemberTable &RecordQueryObject::memberTable() const {
  static const MemberTable table{{
      method<RecordQueryObject>("Open",
                                [](RecordQueryObject &q, Args &a) {
                                  expectArgs(a, 1, 6);
                                  q.open(a[0], filterArgument(arg(a, 1)), objectAs<hostapi::View>(arg(a, 2)),
                                         a.size() > 3 ? a[3].toLong() : Parts::Count, a.size() > 4 ? a[4].toLong() : 0,
                                         a.size() > 5 ? a[5].toLong() : -1);
                                  return Variant();
                                }),
      property<RecordQueryObject>("Result", [](RecordQueryObject &q) { return Variant(q.result()); }),
  }};
  return table;
}

} // namespace kordel::nuvo

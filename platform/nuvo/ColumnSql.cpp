#include "nuvo/ColumnSql.h"

#include "nuvo/SqlConnection.h"

#include "hostapi/FieldTypes.h"

#include "core/Error.h"

namespace kordel::nuvo {

QString columnSql(const QString &alias, const FieldDef &field) {
  if (field.type != hostapi::FieldType::Formula)
    return alias + u'.' + SqlConnection::quote(field.name);
  QString sql;
  const QString &formula = field.formula;
  qsizetype at = 0;
  while (at < formula.size()) {
    const qsizetype open = formula.indexOf(u'[', at);
    const qsizetype close = open < 0 ? -1 : formula.indexOf(u']', open);
    if (close < 0) {
      sql += formula.mid(at);
      break;
    }
    sql += formula.mid(at, open - at);
    const QString name = formula.mid(open + 1, close - open - 1);
    const FieldDef *named = field.owner ? field.owner->field(name) : nullptr;
    if (!named || !named->hasColumn())
      raiseError(ErrorNumber::InvalidCall, QStringLiteral("Nuvo.Catalog"),
                 QStringLiteral("The formula of '%1' names '%2', which is no column").arg(field.name, name));
    sql += alias + u'.' + SqlConnection::quote(named->name);
    at = close + 1;
  }
  return u'(' + sql + u')';
}

QString tableSql(const ClassDef &cls) { return SqlConnection::quote(cls.name); }

QString idColumnSql(const QString &alias, const ClassDef &cls) {
  return alias + u'.' + SqlConnection::quote(cls.idFieldName());
}

} // namespace kordel::nuvo

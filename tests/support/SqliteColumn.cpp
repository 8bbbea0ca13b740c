#include "support/SqliteColumn.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <gtest/gtest.h>

namespace kordel::test {

QStringList sqliteColumn(const QString &database, const QString &sql) {
  const QString connection = QStringLiteral("test-column");
  QStringList values;
  {
    auto db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    db.setDatabaseName(database);
    EXPECT_TRUE(db.open()) << database.toStdString() << ": " << db.lastError().text().toStdString();
    QSqlQuery query(db);
    EXPECT_TRUE(query.exec(sql)) << sql.toStdString() << ": " << query.lastError().text().toStdString();
    while (query.next())
      values << query.value(0).toString();
  }
  QSqlDatabase::removeDatabase(connection);
  return values;
}

} // namespace kordel::test

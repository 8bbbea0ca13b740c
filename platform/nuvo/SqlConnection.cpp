#include "nuvo/SqlConnection.h"

#include "core/Error.h"

#include <QSqlError>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <atomic>

namespace kordel::nuvo {

namespace {

const QString kSource = QStringLiteral("Nuvo.Database");

QString nextConnectionName() {
  static std::atomic<int> counter{0};
  return QStringLiteral("nuvo-%1").arg(++counter);
}

[[noreturn]] void raiseSqlError(const QString &what, const QSqlError &error, const QString &sql = {}) {
  QString text = what + QStringLiteral(": ") + error.text().trimmed();
  if (!sql.isEmpty())
    text += QStringLiteral(" [") + sql.left(300) + u']';
  raiseError(ErrorNumber::InvalidCall, kSource, text);
}

} // namespace

DatabaseAddress DatabaseAddress::parse(const QString &text) {
  DatabaseAddress address;
  if (!text.startsWith(QLatin1String("postgresql://")) && !text.startsWith(QLatin1String("postgres://"))) {
    address.file = text;
    return address;
  }
  const QUrl url(text);
  if (!url.isValid())
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("Not a database address: '%1'").arg(text));
  address.dialect = Dialect::PostgreSQL;
  address.host = url.host();
  address.port = url.port(5432);
  address.user = url.userName();
  address.password = url.password();
  address.database = url.path().mid(1);
  const QUrlQuery query(url);
  if (query.hasQueryItem(QStringLiteral("host")))
    address.host = query.queryItemValue(QStringLiteral("host"), QUrl::FullyDecoded);
  if (query.hasQueryItem(QStringLiteral("port")))
    address.port = query.queryItemValue(QStringLiteral("port")).toInt();
  if (address.database.isEmpty())
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The address names no database: '%1'").arg(text));
  return address;
}

QString DatabaseAddress::location() const {
  if (dialect == Dialect::SQLite)
    return file;
  return QStringLiteral("%1:%2").arg(host.isEmpty() ? QStringLiteral("localhost") : host).arg(port);
}

QString DatabaseAddress::name() const {
  if (dialect == Dialect::SQLite) {
    const qsizetype slash = file.lastIndexOf(u'/');
    QString base = file.mid(slash + 1);
    const qsizetype dot = base.lastIndexOf(u'.');
    return dot > 0 ? base.left(dot) : base;
  }
  return database;
}

SqlConnection::SqlConnection(const DatabaseAddress &address) : address_(address), connectionName_(nextConnectionName()) {
  const bool sqlite = address.dialect == Dialect::SQLite;
  const QString driver = sqlite ? QStringLiteral("QSQLITE") : QStringLiteral("QPSQL");
  if (!QSqlDatabase::isDriverAvailable(driver))
    raiseError(ErrorNumber::CannotCreateObject, kSource,
               QStringLiteral("The SQL driver %1 is not installed").arg(driver));
  db_ = QSqlDatabase::addDatabase(driver, connectionName_);
  if (sqlite) {
    db_.setDatabaseName(address.file);
  } else {
    db_.setHostName(address.host);
    db_.setPort(address.port);
    db_.setDatabaseName(address.database);
    db_.setUserName(address.user);
    db_.setPassword(address.password);
  }
  if (!db_.open()) {
    const QSqlError error = db_.lastError();
    db_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName_);
    raiseSqlError(QStringLiteral("Cannot open the database %1").arg(address.location()), error);
  }
  if (sqlite) {
    exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
    exec(QStringLiteral("PRAGMA temp_store=MEMORY"));
  } else {
    exec(QStringLiteral("SET client_min_messages TO WARNING"));
  }
  resetCounters();
}

SqlConnection::~SqlConnection() {
  if (depth_ > 0)
    db_.rollback();
  db_.close();
  db_ = QSqlDatabase();
  QSqlDatabase::removeDatabase(connectionName_);
}

QSqlQuery SqlConnection::run(const QString &sql, const QVariantList &params, bool forwardOnly) {
  QSqlQuery query(db_);
  query.setForwardOnly(forwardOnly);
  ++counters_.statements;
  if (params.isEmpty()) {
    if (!query.exec(sql))
      raiseSqlError(QStringLiteral("The database refused a statement"), query.lastError(), sql);
    return query;
  }
  if (!query.prepare(sql))
    raiseSqlError(QStringLiteral("The database refused a statement"), query.lastError(), sql);
  for (const QVariant &param : params)
    query.addBindValue(param);
  if (!query.exec())
    raiseSqlError(QStringLiteral("The database refused a statement"), query.lastError(), sql);
  return query;
}

void SqlConnection::exec(const QString &sql, const QVariantList &params) { run(sql, params, true); }

QSqlQuery SqlConnection::select(const QString &sql, const QVariantList &params) {
  ++counters_.selects;
  return run(sql, params, true);
}

QSqlQuery SqlConnection::prepare(const QString &sql) {
  QSqlQuery query(db_);
  query.setForwardOnly(true);
  if (!query.prepare(sql))
    raiseSqlError(QStringLiteral("The database refused a statement"), query.lastError(), sql);
  return query;
}

void SqlConnection::execPrepared(QSqlQuery &query, const QVariantList &params) {
  ++counters_.statements;
  for (qsizetype i = 0; i < params.size(); ++i)
    query.bindValue(int(i), params[i]);
  if (!query.exec())
    raiseSqlError(QStringLiteral("The database refused a statement"), query.lastError(), query.lastQuery());
}

QVariant SqlConnection::scalar(const QString &sql, const QVariantList &params) {
  QSqlQuery query = select(sql, params);
  return query.next() ? query.value(0) : QVariant();
}

void SqlConnection::begin() {
  if (depth_++ > 0)
    return;
  failed_ = false;
  if (!db_.transaction()) {
    depth_ = 0;
    raiseSqlError(QStringLiteral("Cannot begin a transaction"), db_.lastError());
  }
}

void SqlConnection::commit() {
  if (depth_ == 0)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("No transaction to commit"));
  if (--depth_ > 0)
    return;
  if (failed_) {
    db_.rollback();
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("A part of the transaction failed; nothing of it was written"));
  }
  if (!db_.commit()) {
    const QSqlError error = db_.lastError();
    db_.rollback();
    raiseSqlError(QStringLiteral("Cannot commit"), error);
  }
}

void SqlConnection::rollback() {
  if (depth_ == 0)
    return;
  if (--depth_ > 0) {
    failed_ = true;
    return;
  }
  db_.rollback();
}

QString SqlConnection::blobType() const {
  return address_.dialect == Dialect::PostgreSQL ? QStringLiteral("BYTEA") : QStringLiteral("BLOB");
}

QString SqlConnection::quote(const QString &name) {
  // Lower-case letters, digits and "_", not beginning with a digit.
  const auto simple = [](const QString &text) {
    if (text.isEmpty() || text.front().isDigit())
      return false;
    return std::all_of(text.begin(), text.end(), [](QChar c) {
      return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'_';
    });
  };
  if (!simple(name))
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("Not a valid SQL name: '%1'").arg(name));
  return u'"' + name + u'"';
}

Transaction::Transaction(SqlConnection &connection) : connection_(connection) { connection_.begin(); }

Transaction::~Transaction() {
  if (!done_)
    connection_.rollback();
}

void Transaction::commit() {
  done_ = true;
  connection_.commit();
}

} // namespace kordel::nuvo

#include "nuvo/SqlConnection.h"

#include "core/Error.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <atomic>

#include <fcntl.h>
#include <unistd.h>

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

// SQLite's primary result code for a write to a database that cannot be
// written; the driver gives extended codes, whose low byte it is.
constexpr int kSqliteReadOnly = 8;

bool refusedAsReadOnly(const QSqlError &error) {
  bool ok = false;
  const int code = error.nativeErrorCode().toInt(&ok);
  return ok && (code & 0xff) == kSqliteReadOnly;
}

// A SQLite file that is to be opened, not made: it must be there and hold
// a database, and be writable when it is to be written.
void checkDatabaseFile(const DatabaseAddress &address, OpenMode mode) {
  const QString &path = address.file;
  QFile file(path);
  if (!file.exists())
    raiseError(ErrorNumber::FileNotFound, kSource, QStringLiteral("There is no database %1").arg(path));
  if (QFileInfo(path).isDir())
    raiseError(ErrorNumber::InvalidFileFormat, kSource, QStringLiteral("%1 is a folder, not a database").arg(path));
  if (!file.open(QIODevice::ReadOnly))
    raiseError(ErrorNumber::PermissionDenied, kSource,
               QStringLiteral("The database %1 cannot be read: %2").arg(path, file.errorString()));
  const QByteArray header = file.read(16);
  if (header.isEmpty())
    raiseError(ErrorNumber::InvalidFileFormat, kSource, QStringLiteral("%1 is empty, not a database").arg(path));
  if (header != QByteArray("SQLite format 3", 16))
    raiseError(ErrorNumber::InvalidFileFormat, kSource, QStringLiteral("%1 is not a database").arg(path));
  if (mode == OpenMode::ReadWrite) {
    const QString reason = whyNotWritable(address);
    if (!reason.isEmpty())
      raiseError(ErrorNumber::PermissionDenied, kSource,
                 QStringLiteral("The database %1 cannot be changed: %2").arg(path, reason));
  }
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
  const auto seconds = [&](const char *name, int &into) {
    const QString item = QString::fromLatin1(name);
    if (!query.hasQueryItem(item))
      return;
    bool ok = false;
    const int value = query.queryItemValue(item).toInt(&ok);
    if (!ok || value < 0)
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("%1 takes a number of seconds from 0, not '%2'").arg(item, query.queryItemValue(item)));
    into = value;
  };
  seconds("connect_timeout", address.connectTimeout);
  if (address.connectTimeout == 1)
    address.connectTimeout = 2; // the driver waits 2 seconds at least
  seconds("statement_timeout", address.statementTimeout);
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

QString whyNotWritable(const DatabaseAddress &address) {
  if (address.dialect != Dialect::SQLite)
    return {};
  // The rights of the effective user, who opens the file.
  const auto writable = [](const QString &path, int mode) {
    return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), mode, AT_EACCESS) == 0;
  };
  const QFileInfo file(address.file);
  if (file.exists() && !writable(file.absoluteFilePath(), W_OK))
    return QStringLiteral("the file is read-only");
  // The journal and the write-ahead log are files beside the database.
  if (!writable(file.absolutePath(), W_OK | X_OK))
    return QStringLiteral("its folder %1 is read-only").arg(file.absolutePath());
  return {};
}

SqlConnection::SqlConnection(const DatabaseAddress &address, OpenMode mode)
    : address_(address), mode_(mode), connectionName_(nextConnectionName()) {
  const bool sqlite = address.dialect == Dialect::SQLite;
  const QString driver = sqlite ? QStringLiteral("QSQLITE") : QStringLiteral("QPSQL");
  if (!QSqlDatabase::isDriverAvailable(driver))
    raiseError(ErrorNumber::CannotCreateObject, kSource,
               QStringLiteral("The SQL driver %1 is not installed").arg(driver));
  if (sqlite && mode != OpenMode::Create)
    checkDatabaseFile(address, mode);
  db_ = QSqlDatabase::addDatabase(driver, connectionName_);
  try {
    if (!sqlite) {
      db_.setHostName(address.host);
      db_.setPort(address.port);
      db_.setDatabaseName(address.database);
      db_.setUserName(address.user);
      db_.setPassword(address.password);
      open(address.connectTimeout > 0 ? QStringLiteral("connect_timeout=%1").arg(address.connectTimeout) : QString());
      exec(QStringLiteral("SET client_min_messages TO WARNING"));
      exec(QStringLiteral("SET statement_timeout = %1").arg(qint64(address.statementTimeout) * 1000));
    } else if (mode == OpenMode::Create) {
      db_.setDatabaseName(address.file);
      open(QString());
    } else {
      // As an address, so that SQLite neither makes the file nor writes
      // a file that is to be only read.
      const QString uri = QUrl::fromLocalFile(QFileInfo(address.file).absoluteFilePath()).toString(QUrl::FullyEncoded);
      const bool readOnly = mode == OpenMode::ReadOnly;
      const QString options =
          readOnly ? QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_OPEN_READONLY") : QStringLiteral("QSQLITE_OPEN_URI");
      db_.setDatabaseName(uri + (readOnly ? QStringLiteral("?mode=ro") : QStringLiteral("?mode=rw")));
      open(options);
      // A database with a write-ahead log in a folder that cannot be
      // written has no place for the log's index: nobody can write it
      // there, so it is read as a file that does not change.
      if (readOnly && !readable()) {
        db_.close();
        db_.setDatabaseName(uri + QStringLiteral("?mode=ro&immutable=1"));
        open(options);
      }
    }
    if (sqlite) {
      exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
      exec(QStringLiteral("PRAGMA temp_store=MEMORY"));
      // 1 MB of pages in memory, not 2: a report reads its rows once, and
      // large reads and writes go through the file system's cache anyway.
      exec(QStringLiteral("PRAGMA cache_size=-1024"));
    }
  } catch (...) {
    db_.close();
    db_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName_);
    throw;
  }
  resetCounters();
}

void SqlConnection::open(const QString &options) {
  db_.setConnectOptions(options);
  if (db_.open())
    return;
  // The driver says "timeout expired" when the server took the connection
  // but did not answer in time.
  if (address_.dialect == Dialect::PostgreSQL && db_.lastError().text().contains(QLatin1String("timeout expired")))
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("Cannot open the database %1: the server did not answer within %2 seconds "
                              "(connect_timeout in the address sets the wait)")
                   .arg(address_.location())
                   .arg(address_.connectTimeout));
  raiseSqlError(QStringLiteral("Cannot open the database %1").arg(address_.location()), db_.lastError());
}

bool SqlConnection::readable() {
  QSqlQuery probe(db_);
  return probe.exec(QStringLiteral("SELECT count(*) FROM sqlite_master"));
}

void SqlConnection::useWriteAheadLog() {
  if (address_.dialect == Dialect::SQLite && mode_ != OpenMode::ReadOnly)
    exec(QStringLiteral("PRAGMA journal_mode=WAL"));
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
      raiseStatementError(query.lastError(), sql);
    return query;
  }
  if (!query.prepare(sql))
    raiseStatementError(query.lastError(), sql);
  for (const QVariant &param : params)
    query.addBindValue(param);
  if (!query.exec())
    raiseStatementError(query.lastError(), sql);
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
    raiseStatementError(query.lastError(), query.lastQuery());
}

void SqlConnection::raiseStatementError(const QSqlError &error, const QString &sql) {
  if (refusedAsReadOnly(error))
    raiseError(ErrorNumber::PermissionDenied, kSource,
               QStringLiteral("The database %1 is read-only: the change is refused").arg(address_.location()));
  raiseSqlError(QStringLiteral("The database refused a statement"), error, sql);
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
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'_'; });
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

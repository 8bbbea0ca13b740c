#include "nuvo/StoredFiles.h"

#include "nuvo/Engine.h"

#include "hostapi/Database.h"

#include "core/Error.h"

#include <QSqlQuery>

namespace kordel::nuvo {

QList<FileSummary> listFiles(Engine &engine, int kind) {
  QList<FileSummary> files;
  QSqlQuery rows = engine.sql().select(
      QStringLiteral("SELECT guid, name, policy FROM nv_file WHERE kind = ? ORDER BY name, guid"), {kind});
  while (rows.next()) {
    FileSummary file{rows.value(0).toString(), rows.value(1).toString(), rows.value(2).toInt(), {}};
    if (engine.accessMask(file.policy) & hostapi::Access::Read)
      files.append(file);
  }
  for (FileSummary &file : files) {
    QSqlQuery properties =
        engine.sql().select(QStringLiteral("SELECT name, value FROM nv_fileproperty WHERE guid = ?"), {file.guid});
    while (properties.next())
      file.properties.insert(properties.value(0).toString(), properties.value(1).toString());
  }
  return files;
}

void removeFile(Engine &engine, const QString &guid) {
  SqlConnection &sql = engine.sql();
  QSqlQuery row = sql.select(QStringLiteral("SELECT name, policy FROM nv_file WHERE guid = ?"), {guid});
  if (!row.next())
    raiseError(ErrorNumber::FileNotFound, QStringLiteral("File"), QStringLiteral("There is no file %1").arg(guid));
  const QString name = row.value(0).toString();
  if (!(engine.accessMask(row.value(1).toInt()) & hostapi::Access::Change))
    raiseError(ErrorNumber::PermissionDenied, QStringLiteral("File"),
               QStringLiteral("You may not change the file '%1'").arg(name));
  const bool records = sql.database().tables().contains(QStringLiteral("nv_storedrecord"), Qt::CaseInsensitive);
  Transaction transaction(sql);
  sql.exec(QStringLiteral("DELETE FROM nv_fileproperty WHERE guid = ?"), {guid});
  sql.exec(QStringLiteral("DELETE FROM nv_file WHERE guid = ?"), {guid});
  if (records)
    sql.exec(QStringLiteral("DELETE FROM nv_storedrecord WHERE guid = ?"), {guid});
  transaction.commit();
}

StoredRecords::StoredRecords(std::shared_ptr<Engine> engine) : engine_(std::move(engine)) {
  SqlConnection &sql = engine_->sql();
  if (sql.readOnly())
    present_ = sql.database().tables().contains(QStringLiteral("nv_storedrecord"), Qt::CaseInsensitive);
  else
    createTable();
}

void StoredRecords::createTable() {
  SqlConnection &sql = engine_->sql();
  sql.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS nv_storedrecord (guid TEXT PRIMARY KEY, type TEXT NOT NULL, "
                          "record %1 NOT NULL)")
               .arg(sql.blobType()));
  present_ = true;
}

std::optional<QByteArray> StoredRecords::read(const QString &guid) const {
  if (!present_)
    return std::nullopt;
  QSqlQuery row = engine_->sql().select(QStringLiteral("SELECT record FROM nv_storedrecord WHERE guid = ?"), {guid});
  if (!row.next())
    return std::nullopt;
  return row.value(0).toByteArray();
}

void StoredRecords::write(const QString &guid, const QString &type, const QByteArray &record) {
  if (!present_)
    createTable(); // refused by a database open only for reading
  SqlConnection &sql = engine_->sql();
  Transaction transaction(sql);
  sql.exec(QStringLiteral("DELETE FROM nv_storedrecord WHERE guid = ?"), {guid});
  sql.exec(QStringLiteral("INSERT INTO nv_storedrecord (guid, type, record) VALUES (?, ?, ?)"), {guid, type, record});
  transaction.commit();
}

void StoredRecords::remove(const QString &guid) {
  if (!present_)
    return;
  engine_->sql().exec(QStringLiteral("DELETE FROM nv_storedrecord WHERE guid = ?"), {guid});
}

} // namespace kordel::nuvo

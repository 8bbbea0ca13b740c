#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <memory>
#include <optional>

namespace kordel::nuvo {

class Engine;

// One host file as a list shows it, without its contents.
struct FileSummary {
  QString guid;
  QString name;
  int policy = 0;
  QMap<QString, QString> properties;
};

// The files of a kind that the signed-in user may read, by name.
QList<FileSummary> listFiles(Engine &engine, int kind);

// Deletes a file and the stored record of the object it belongs to, in one
// transaction. Raises 70 when the signed-in user may not change the file
// and 53 when there is no file of the guid.
void removeFile(Engine &engine, const QString &guid);

// The stored records the host keeps for its objects (the persisted state
// of report objects), one opaque record per guid with the type of object
// that wrote it. The table is made on first use, so databases made before
// it existed gain it; a database open only for reading is read as it is.
class StoredRecords {
public:
  explicit StoredRecords(std::shared_ptr<Engine> engine);

  // nullopt when there is none for the guid.
  std::optional<QByteArray> read(const QString &guid) const;
  // Adds or replaces the record of the guid.
  void write(const QString &guid, const QString &type, const QByteArray &record);
  // Removing a record that is not there changes nothing.
  void remove(const QString &guid);

private:
  void createTable();

  std::shared_ptr<Engine> engine_;
  bool present_ = false; // whether the database has the table
};

} // namespace kordel::nuvo

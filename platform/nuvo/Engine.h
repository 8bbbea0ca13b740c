#pragma once

#include "nuvo/Catalog.h"
#include "nuvo/DisplayFormat.h"
#include "nuvo/FieldPath.h"
#include "nuvo/SqlConnection.h"

#include <QHash>
#include <QString>

#include <memory>
#include <optional>

namespace kordel::nuvo {

class PoolTables;
class RecordEvaluator;
class RecordSet;

// The user a database is opened for.
struct UserInfo {
  QString login;
  QString name;
  int coworker = 0; // the id of the user's own coworker record; 0 when none
};

// An open database: the connection, the catalog, the language in which
// names and values are shown, and the signed-in user. Every object of the
// data engine that reads the database holds its Engine.
class Engine : public std::enable_shared_from_this<Engine> {
  struct Token {};

public:
  // Opens a database that holds our schema. An empty login takes
  // ORVEX_USER, then the system's user name when it is a user of the
  // database, then the first user by login. Raises 321 for a database
  // that is not ours, and what SqlConnection raises for the mode. A
  // database opened ReadWrite is switched to write-ahead logging.
  static std::shared_ptr<Engine> open(const DatabaseAddress &address, const QString &language,
                                      const QString &login = {}, OpenMode mode = OpenMode::ReadWrite);
  // Makes the schema for a catalog in an empty database and opens it.
  static std::shared_ptr<Engine> create(const DatabaseAddress &address, std::unique_ptr<Catalog> catalog,
                                        const QString &databaseName, const QString &language);

  Engine(Token, std::unique_ptr<SqlConnection> sql, std::unique_ptr<Catalog> catalog, QString language);
  ~Engine();

  SqlConnection &sql() { return *sql_; }
  const Catalog &catalog() const { return *catalog_; }
  const QString &language() const { return language_; }
  // How values read in the language.
  const DisplayFormat &display() const { return display_; }
  const UserInfo &user() const { return user_; }
  // Switches to another user of the database; raises 5 for an unknown login.
  void signIn(const QString &login);
  QString databaseName() const { return databaseName_; }

  // The Access bits of the signed-in user on a policy.
  int accessMask(int policy) const;

  // The class of a name, raising 5 when there is none.
  const ClassDef &classNamed(const QString &name) const;
  // resolvePath in the engine's language, kept: a report run resolves the
  // same few paths for every record.
  std::optional<FieldPath> resolved(const ClassDef &start, const QString &path, int mode) const;

  // The values of the user's own coworker record, read once; nullptr for a
  // user without one.
  std::shared_ptr<const RecordSet> userRecord();

  PoolTables &poolTables() { return *poolTables_; }
  RecordEvaluator &evaluator();

private:
  void loadUser(const QString &login);

  std::unique_ptr<SqlConnection> sql_;
  std::unique_ptr<Catalog> catalog_;
  QString language_;
  DisplayFormat display_;
  QString databaseName_;
  UserInfo user_;
  QHash<int, int> access_; // policy -> mask of the user
  std::shared_ptr<const RecordSet> userRecord_;
  mutable QHash<std::pair<const ClassDef *, int>, QHash<QString, std::optional<FieldPath>>> resolved_;
  mutable int resolvedCount_ = 0;
  std::unique_ptr<PoolTables> poolTables_;
  std::unique_ptr<RecordEvaluator> evaluator_;
};

} // namespace kordel::nuvo

#pragma once

#include "nuvo/SqlConnection.h"

#include <QString>

#include <optional>

namespace kordel::test {

// A PostgreSQL server for the tests: the one named by KORDEL_TEST_POSTGRES
// (an address of a database the tests may create databases from, as CI
// gives it), or else a private server started on first use in a temporary
// folder, listening on a socket there only, and stopped when the tests end.
// Under root the private server runs as "nobody", since PostgreSQL refuses
// to run as root.
class PrivatePostgres {
public:
  static PrivatePostgres &instance();

  bool available() const { return failure_.isEmpty(); }
  // Why no server is there.
  const QString &failure() const { return failure_; }

  // A new, empty database; nothing when the server is not there.
  std::optional<nuvo::DatabaseAddress> createDatabase();
  void dropDatabase(const nuvo::DatabaseAddress &address);

  void stop();

private:
  PrivatePostgres();
  bool startPrivateServer();
  void adminExec(const QString &sql);

  nuvo::DatabaseAddress admin_;
  QString folder_;
  QString binaries_;
  QString failure_;
  bool ownServer_ = false;
  int nextDatabase_ = 1;
};

} // namespace kordel::test

#pragma once

#include "nuvo/SqlConnection.h"

#include <QStringList>

namespace kordel::nuvo::demo {

// Where a demo database is built, so that nobody finds it half made: a
// SQLite file is built under a temporary name beside the target and takes
// the target's name only when finished; a PostgreSQL database, which
// cannot be renamed, is built where it is. An unfinished temporary file
// goes with the object.
class DemoBuild {
public:
  // Raises 58 when the target file is there already.
  explicit DemoBuild(const DatabaseAddress &target);
  ~DemoBuild();
  DemoBuild(const DemoBuild &) = delete;
  DemoBuild &operator=(const DemoBuild &) = delete;

  // The database to build into.
  const DatabaseAddress &address() const { return building_; }
  // The files an unfinished build leaves: the temporary database and its
  // journals; none for PostgreSQL.
  QStringList temporaryFiles() const;
  // Gives the built file the target's name. The database must be closed
  // and in rollback-journal mode, so that the file alone holds it. Raises
  // 58 when a file of the target's name appeared meanwhile.
  void finish();

private:
  DatabaseAddress target_;
  DatabaseAddress building_;
  bool finished_ = false;
};

} // namespace kordel::nuvo::demo

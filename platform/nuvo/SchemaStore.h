#pragma once

#include <QString>

#include <memory>

namespace kordel::nuvo {

class Catalog;
class SqlConnection;

// The metadata tables, and the catalog as they hold it. The data of each
// class lies in a table of the class's name whose key is id<class>; a
// relation to one is a column holding the other record's id, a relation to
// many is the other side of one and has no column.
namespace SchemaStore {

// The version written into a new database; opening another version fails.
constexpr int kSchemaVersion = 1;

// Whether the database holds our metadata tables.
bool hasSchema(SqlConnection &sql);
// Makes the metadata tables, the class tables of the catalog, and writes
// the catalog, in one transaction. The database must be empty.
void create(SqlConnection &sql, const Catalog &catalog, const QString &databaseName);
// Reads and completes the catalog; raises 5 for a database of another
// schema version.
std::unique_ptr<Catalog> load(SqlConnection &sql);

} // namespace SchemaStore

} // namespace kordel::nuvo

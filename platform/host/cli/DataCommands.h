#pragma once

#include <QStringList>

namespace kordel::host {

class HostApplication;

namespace cli {

// orvex demo [--db FILE] [--companies N] [--seed S]: makes a demo database
// (FILE may also be a postgresql:// address). Prints what it made.
int demo(HostApplication &app, const QStringList &args);

// Opens a database for the host: a SQLite file or a postgresql:// address;
// an empty text opens the default database of the data folder. Raises
// when the database cannot be opened.
void openDatabase(HostApplication &app, const QString &database);

// The default database of the data folder.
QString defaultDatabase();

} // namespace cli

} // namespace kordel::host

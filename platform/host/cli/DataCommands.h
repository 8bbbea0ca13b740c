#pragma once

#include "nuvo/SqlConnection.h"

#include <QStringList>

namespace kordel::host {

class HostApplication;

namespace cli {

class Arguments;

// orvex demo [--db FILE] [--companies N] [--seed S]: makes a demo database
// (FILE may also be a postgresql:// address). Prints what it made.
int demo(HostApplication &app, const Arguments &arguments);

// Opens a database for the host: a SQLite file or a postgresql:// address;
// an empty text opens the default database of the data folder. Only "orvex
// demo" makes databases: a file that is missing, empty or no database of
// ours is refused with how to make one. Raises when the database cannot
// be opened.
void openDatabase(HostApplication &app, const QString &database, nuvo::OpenMode mode);

} // namespace cli

} // namespace kordel::host

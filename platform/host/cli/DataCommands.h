#pragma once

#include "nuvo/SqlConnection.h"

#include <QMap>
#include <QStringList>

#include <functional>

namespace kordel::host {

class HostApplication;

namespace cli {

class Arguments;

// orvex demo [--db FILE] [--companies N] [--seed S]: makes a demo database
// (FILE may also be a postgresql:// address). Prints what it made.
int demo(HostApplication &app, const Arguments &arguments);

// Makes a demo database of that many companies (seed 1) with the ready
// reports, in a temporary file renamed at the end, and gives the counts of
// its records. runBuild runs the long part, the making of the data, which
// touches nothing of the application: a window may run it on a thread of
// its own and show progress meanwhile; by default it runs at once.
QMap<QString, int> makeDemoDatabase(HostApplication &app, const QString &database, int companies, std::uint64_t seed,
                                    const std::function<void(const std::function<void()> &)> &runBuild = {});

// Opens a database for the host: a SQLite file or a postgresql:// address;
// an empty text opens the default database of the data folder. Only "orvex
// demo" makes databases: a file that is missing, empty or no database of
// ours is refused with how to make one. Raises when the database cannot
// be opened.
void openDatabase(HostApplication &app, const QString &database, nuvo::OpenMode mode);

} // namespace cli

} // namespace kordel::host

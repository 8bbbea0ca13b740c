#pragma once

#include <QStringList>

namespace kordel::host {

class HostApplication;

namespace cli {

class Arguments;

// orvex reports [--db DATABASE]: lists the reports of a database.
int reports(HostApplication &app, const Arguments &arguments);
// orvex report-export NAME FILE [--db DATABASE]: writes a report's document
// to a file.
int reportExport(HostApplication &app, const Arguments &arguments);
// orvex report-import FILE [--name NAME] [--db DATABASE]: stores a document
// file as a new report.
int reportImport(HostApplication &app, const Arguments &arguments);

// Stores the ready reports of the demo database in the application's open
// database; returns their names.
QStringList addDemoReports(HostApplication &app);

} // namespace cli

} // namespace kordel::host

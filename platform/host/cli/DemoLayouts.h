#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <vector>

namespace kordel::host::cli {

// A ready report of the demo database: the report document in
// demo-reports/ that holds its pages, fields and sort fields, and the
// layout of each of its pages, saved in the engine's layout format, by the
// page's guid.
struct DemoReport {
  QString document; // the file name in demo-reports/
  QHash<QString, QByteArray> layouts;
};

// The ready reports, built anew at each call: a grouped company list with
// its persons, deals by value with striped rows and a total, and the
// history of each company's persons.
std::vector<DemoReport> demoReports();

} // namespace kordel::host::cli

#pragma once

#include "nuvo/SqlConnection.h"

#include <QMap>

#include <cstdint>

namespace kordel::nuvo::demo {

struct DemoOptions {
  int companies = 1000;
  // Persons per company on average; each company has from 1 to twice
  // this less 1.
  int personsPerCompany = 3;
  std::uint64_t seed = 1;
  QString databaseName = QStringLiteral("Demo");
};

// The number of records made per class.
using DemoCounts = QMap<QString, int>;

// Makes a demo database in an empty SQLite file or PostgreSQL database:
// the model of demoCatalog(), users with their coworker records, policies
// with access masks, and about three persons (personsPerCompany), two
// deals and five history entries per company. The same seed gives the
// same data. All of it is written in one transaction, so a failure leaves
// the database empty.
// Raises 58 when the SQLite file exists already, 5 for fewer than one
// company or person a company.
DemoCounts createDemoDatabase(const DatabaseAddress &address, const DemoOptions &options);

} // namespace kordel::nuvo::demo

#pragma once

#include <QString>

namespace kordel::nuvo {
struct DatabaseAddress;
}

// What the benchmarks share.

// The most memory the process has held so far, in megabytes.
long peakMegabytes();

// The database of a benchmark: a SQLite file that does not exist yet is
// made first with the demo data of that many companies, with that many
// persons a company on average.
kordel::nuvo::DatabaseAddress demoDatabase(const QString &database, int companies, int personsPerCompany = 3);

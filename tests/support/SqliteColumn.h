#pragma once

#include <QString>
#include <QStringList>

namespace kordel::test {

// The first column of a query on a SQLite file, read with plain SQL as a
// check beside what the program shows; a failing open or query fails the
// test that asked.
QStringList sqliteColumn(const QString &database, const QString &sql);

} // namespace kordel::test

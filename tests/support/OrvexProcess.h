#pragma once

#include "support/TempDir.h"

#include <QMap>
#include <QStringList>

namespace kordel::test {

// What a run of the orvex program gave.
struct OrvexRun {
  int exitCode = -1;
  QString out;
  QString err;
};

// Runs the orvex program of the build, as a user runs it, with its
// configuration, data and log in the folder and any further environment.
OrvexRun runOrvex(const TempDir &dir, const QStringList &arguments, const QMap<QString, QString> &environment = {});

} // namespace kordel::test

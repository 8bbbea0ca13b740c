#pragma once

#include "support/TempDir.h"

#include <QMap>
#include <QStringList>

class QProcess;

namespace kordel::test {

// What a run of the orvex program gave.
struct OrvexRun {
  int exitCode = -1;
  QString out;
  QString err;
};

// Who runs the program: the tests' own user, or an ordinary user, so that
// file rights hold when the tests run as root (who then runs it as
// "nobody"; the folders it uses must let that user in).
enum class RunAs { Tester, OrdinaryUser };

// Runs the orvex program of the build, as a user runs it, with its
// configuration, data and log in the folder and any further environment.
OrvexRun runOrvex(const TempDir &dir, const QStringList &arguments, const QMap<QString, QString> &environment = {},
                  RunAs runAs = RunAs::Tester);

// Starts the program as runOrvex runs it, without waiting for its end.
void startOrvex(QProcess &process, const TempDir &dir, const QStringList &arguments,
                const QMap<QString, QString> &environment = {}, RunAs runAs = RunAs::Tester);

} // namespace kordel::test

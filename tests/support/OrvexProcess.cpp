#include "support/OrvexProcess.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <grp.h>
#include <unistd.h>

namespace kordel::test {

namespace {
constexpr uid_t kNobody = 65534;
constexpr gid_t kNogroup = 65534;
} // namespace

void startOrvex(QProcess &process, const TempDir &dir, const QStringList &arguments,
                const QMap<QString, QString> &environment, RunAs runAs) {
  QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
  variables.insert("ORVEX_CONFIG_DIR", dir.file("config"));
  variables.insert("ORVEX_DATA_DIR", dir.file("data"));
  variables.insert("ORVEX_LOG_FILE", dir.file("orvex.log"));
  for (auto it = environment.constBegin(); it != environment.constEnd(); ++it)
    variables.insert(it.key(), it.value());
  process.setProcessEnvironment(variables);
  if (runAs == RunAs::OrdinaryUser && geteuid() == 0)
    process.setChildProcessModifier([] {
      if (setgroups(0, nullptr) != 0 || setgid(kNogroup) != 0 || setuid(kNobody) != 0)
        _exit(126);
    });
  process.start(QCoreApplication::applicationDirPath() + "/orvex", arguments);
}

OrvexRun runOrvex(const TempDir &dir, const QStringList &arguments, const QMap<QString, QString> &environment,
                  RunAs runAs) {
  QProcess process;
  startOrvex(process, dir, arguments, environment, runAs);
  EXPECT_TRUE(process.waitForFinished(120000));
  EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
  return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
          QString::fromUtf8(process.readAllStandardError())};
}

} // namespace kordel::test

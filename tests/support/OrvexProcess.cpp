#include "support/OrvexProcess.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace kordel::test {

OrvexRun runOrvex(const TempDir &dir, const QStringList &arguments, const QMap<QString, QString> &environment) {
  QProcess process;
  QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
  variables.insert("ORVEX_CONFIG_DIR", dir.file("config"));
  variables.insert("ORVEX_DATA_DIR", dir.file("data"));
  variables.insert("ORVEX_LOG_FILE", dir.file("orvex.log"));
  for (auto it = environment.constBegin(); it != environment.constEnd(); ++it)
    variables.insert(it.key(), it.value());
  process.setProcessEnvironment(variables);
  process.start(QCoreApplication::applicationDirPath() + "/orvex", arguments);
  EXPECT_TRUE(process.waitForFinished(120000));
  EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
  return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
          QString::fromUtf8(process.readAllStandardError())};
}

} // namespace kordel::test

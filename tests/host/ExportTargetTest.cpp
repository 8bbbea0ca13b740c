// orvex export refuses a file it could not write before it runs the
// report: a folder that is read-only or that the user may not write, and a
// read-only file, each on one line with the reason, and the file that was
// there stays as it was.

#include "support/OrvexProcess.h"
#include "support/TempDir.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>

using kordel::test::OrvexRun;
using kordel::test::RunAs;
using kordel::test::TempDir;

namespace {

bool setMode(const QString &path, mode_t mode) { return ::chmod(QFile::encodeName(path).constData(), mode) == 0; }

TEST(ExportTarget, AFolderOrFileThatCannotBeWrittenIsRefusedBeforeTheRun) {
  TempDir dir;
  // The program also runs as an ordinary user, whom this folder lets in.
  ASSERT_TRUE(setMode(dir.path(), 0777));
  const QString database = dir.file(QStringLiteral("crm.db"));
  const OrvexRun made = kordel::test::runOrvex(dir, {"demo", "--db", database, "--companies", "2"});
  ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();

  const QString locked = dir.file(QStringLiteral("locked"));
  const QString others = dir.file(QStringLiteral("others"));
  ASSERT_TRUE(QDir().mkdir(locked) && setMode(locked, 0555));
  ASSERT_TRUE(QDir().mkdir(others) && setMode(others, 0755));
  const QString kept = dir.file(QStringLiteral("kept.pdf"));
  ASSERT_TRUE(kordel::test::writeFile(kept, "last week's list") && setMode(kept, 0444));

  const struct {
    QString out;
    RunAs runAs;
    const char *reason;
  } refusals[] = {
      {locked + QStringLiteral("/list.pdf"), RunAs::Tester, "is read-only"},
      {others + QStringLiteral("/list.html"), RunAs::OrdinaryUser, "takes no new files (Permission denied)"},
      {kept, RunAs::Tester, "the file is read-only"},
  };
  for (const auto &refused : refusals) {
    SCOPED_TRACE(refused.out.toStdString());
    const OrvexRun run = kordel::test::runOrvex(
        dir, {"export", "--report", "Company list", "--all", "--out", refused.out, "--db", database}, {},
        refused.runAs);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.count(u'\n'), 1) << "nothing ran before the refusal: " << run.err.toStdString();
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("orvex: Cannot write ") + refused.out)) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QLatin1String(refused.reason))) << run.err.toStdString();
    EXPECT_TRUE(run.err.trimmed().endsWith(QLatin1String("(70)"))) << run.err.toStdString();
  }
  EXPECT_TRUE(QDir(locked).isEmpty());
  EXPECT_TRUE(QDir(others).isEmpty());
  EXPECT_EQ(kordel::test::readFile(kept), QByteArray("last week's list"));
  setMode(locked, 0755);
}

} // namespace

// The database files of orvex, run as a user runs the program: only "orvex
// demo" makes one, and it never leaves a half-made one under the name
// asked for; the other commands refuse what is not a database of ours and
// say how to make one, and read a database they may not write.

#include "support/OrvexProcess.h"
#include "support/SqliteColumn.h"
#include "support/TempDir.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <sys/stat.h>

using kordel::test::OrvexRun;
using kordel::test::RunAs;
using kordel::test::TempDir;

namespace {

// The files of a folder, hidden ones too.
QStringList filesIn(const QString &folder) {
  return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

bool setMode(const QString &path, mode_t mode) { return ::chmod(QFile::encodeName(path).constData(), mode) == 0; }

class DatabaseFilesTest : public ::testing::Test {
protected:
  OrvexRun orvex(const QStringList &arguments, RunAs runAs = RunAs::Tester) {
    return kordel::test::runOrvex(dir, arguments, {}, runAs);
  }

  // A small demo database at the path.
  void makeDemo(const QString &path) {
    const OrvexRun made = orvex({"demo", "--db", path, "--companies", "3"});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
  }

  // Starts a demo of many companies into the folder and interrupts it
  // with the signal while its file is being built.
  void interruptDemo(const QString &folder, int signal) {
    QProcess demo;
    kordel::test::startOrvex(demo, dir, {"demo", "--db", folder + "/crm.db", "--companies", "20000"});
    ASSERT_TRUE(demo.waitForStarted());
    while (filesIn(folder).isEmpty() && demo.state() == QProcess::Running)
      demo.waitForFinished(10);
    ASSERT_EQ(demo.state(), QProcess::Running) << demo.readAllStandardError().toStdString();
    ::kill(pid_t(demo.processId()), signal);
    ASSERT_TRUE(demo.waitForFinished(60000));
    EXPECT_EQ(demo.exitStatus(), QProcess::CrashExit);
  }

  TempDir dir;
};

TEST_F(DatabaseFilesTest, AnInterruptedDemoLeavesNoDatabaseAndTheNextOneIsMade) {
  const QString folder = dir.file("interrupted");
  ASSERT_TRUE(QDir().mkpath(folder));
  interruptDemo(folder, SIGINT);
  EXPECT_EQ(filesIn(folder), QStringList()) << "Ctrl-C leaves nothing behind";

  // A kill cannot be caught: what it leaves is no database of that name.
  interruptDemo(folder, SIGKILL);
  EXPECT_FALSE(QFile::exists(folder + "/crm.db"));
  const OrvexRun again = orvex({"demo", "--db", folder + "/crm.db", "--companies", "3"});
  EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
  EXPECT_TRUE(orvex({"reports", "--db", folder + "/crm.db"}).out.contains("Company list"));

  // Kills spread over a whole run, from its start to its end and after:
  // each leaves either no database or a whole one whose reports export.
  const QString database = folder + "/kill.db";
  QElapsedTimer clock;
  clock.start();
  const OrvexRun timed = orvex({"demo", "--db", database, "--companies", "200"});
  ASSERT_EQ(timed.exitCode, 0) << timed.err.toStdString();
  const qint64 runTime = std::max<qint64>(clock.elapsed(), 50);
  for (const double share : {0.02, 0.1, 0.25, 0.4, 0.55, 0.7, 0.85, 1.0, 1.5}) {
    for (const QString &file : filesIn(folder))
      ASSERT_TRUE(QFile::remove(folder + u'/' + file));
    const int delay = int(share * double(runTime));
    const std::string after = "a kill after " + std::to_string(delay) + " of " + std::to_string(runTime) + " ms";
    QProcess demo;
    kordel::test::startOrvex(demo, dir, {"demo", "--db", database, "--companies", "200"});
    ASSERT_TRUE(demo.waitForStarted()) << after;
    demo.waitForFinished(delay);
    if (demo.state() == QProcess::Running) {
      ::kill(pid_t(demo.processId()), SIGKILL);
      ASSERT_TRUE(demo.waitForFinished(60000)) << after;
    }
    if (QFile::exists(database)) {
      EXPECT_EQ(kordel::test::sqliteColumn(database, "PRAGMA integrity_check"), QStringList{"ok"}) << after;
      for (const char *report : {"Company list", "Deals by value", "Company history"}) {
        const OrvexRun exported =
            orvex({"export", "--db", database, "--report", report, "--all", "--out", dir.file("check.txt")});
        EXPECT_EQ(exported.exitCode, 0) << after << ", " << report << ": " << exported.err.toStdString();
      }
    } else {
      const OrvexRun next = orvex({"demo", "--db", database, "--companies", "3"});
      EXPECT_EQ(next.exitCode, 0) << after << ": " << next.err.toStdString();
      EXPECT_TRUE(orvex({"reports", "--db", database}).out.contains("Company list")) << after;
    }
  }
}

TEST_F(DatabaseFilesTest, OnlyTheDemoMakesADatabaseAndTheOthersSayHow) {
  const QString missing = dir.file("mistyped.db");
  const QString empty = dir.file("empty.db");
  const QString text = dir.file("notes.db");
  const QString foreign = dir.file("foreign.db");
  ASSERT_TRUE(kordel::test::writeFile(empty, ""));
  ASSERT_TRUE(kordel::test::writeFile(text, "shopping: milk, bread\n"));
  {
    auto db = QSqlDatabase::addDatabase("QSQLITE", "foreign");
    db.setDatabaseName(foreign);
    ASSERT_TRUE(db.open());
    ASSERT_TRUE(QSqlQuery(db).exec("CREATE TABLE recipe (name TEXT)"));
  }
  QSqlDatabase::removeDatabase("foreign");
  const QByteArray foreignBytes = kordel::test::readFile(foreign);
  const QString document = dir.file("list.xml");
  ASSERT_TRUE(kordel::test::writeFile(document, "<application/>"));

  for (const QString &database : {missing, empty, text, foreign}) {
    for (const QStringList &command : {QStringList{"reports"}, QStringList{"report-import", document},
                                       QStringList{"export", "--report", "x", "--all", "--out", dir.file("x.pdf")}}) {
      const OrvexRun run = orvex(command + QStringList{"--db", database});
      const std::string what = (command.front() + " on " + database).toStdString();
      EXPECT_EQ(run.exitCode, 1) << what;
      EXPECT_EQ(run.err.count(u'\n'), 1) << what << ": " << run.err.toStdString();
      EXPECT_TRUE(run.err.contains("run `orvex demo --db " + database + "` to make one"))
          << what << ": " << run.err.toStdString();
    }
  }
  EXPECT_FALSE(QFile::exists(missing));
  EXPECT_EQ(kordel::test::readFile(empty), "");
  EXPECT_EQ(kordel::test::readFile(foreign), foreignBytes);
  EXPECT_EQ(filesIn(dir.path()), QStringList({"empty.db", "foreign.db", "list.xml", "notes.db"}));

  // The default database is the one the demo makes without --db.
  const OrvexRun none = orvex({"reports"});
  EXPECT_EQ(none.exitCode, 1);
  EXPECT_TRUE(none.err.contains("run `orvex demo` to make one")) << none.err.toStdString();
  ASSERT_EQ(orvex({"demo", "--companies", "2"}).exitCode, 0);
  EXPECT_TRUE(QFile::exists(dir.file("data/demo.db")));
  EXPECT_TRUE(orvex({"reports"}).out.contains("Company list"));
}

TEST_F(DatabaseFilesTest, ADatabaseThatCannotBeWrittenIsReadAndAChangeIsRefused) {
  // The program runs as an ordinary user, whom the folder and the file
  // refuse; everything else here is open to that user.
  ASSERT_TRUE(setMode(dir.path(), 0777));
  const QString folder = dir.file("shelf");
  ASSERT_TRUE(QDir().mkpath(folder));
  const QString database = folder + "/crm.db";
  makeDemo(database);
  // A change by a command that writes leaves the file in write-ahead-log
  // mode, whose readers need a file beside it that this folder refuses.
  const QString document = dir.file("list.xml");
  ASSERT_EQ(orvex({"report-export", "Company list", document, "--db", database}).exitCode, 0);
  ASSERT_EQ(orvex({"report-import", document, "--name", "Copy", "--db", database}).exitCode, 0);
  ASSERT_TRUE(setMode(database, 0444));
  ASSERT_TRUE(setMode(folder, 0555));
  const QByteArray before = kordel::test::readFile(database);

  const OrvexRun listed = orvex({"reports", "--db", database}, RunAs::OrdinaryUser);
  EXPECT_EQ(listed.exitCode, 0) << listed.err.toStdString();
  EXPECT_TRUE(listed.out.contains("Company list")) << listed.out.toStdString();
  const QString text = dir.file("companies.txt");
  const OrvexRun exported =
      orvex({"export", "--report", "Company list", "--all", "--out", text, "--db", database}, RunAs::OrdinaryUser);
  EXPECT_EQ(exported.exitCode, 0) << exported.err.toStdString();
  EXPECT_TRUE(QFile::exists(text));
  EXPECT_EQ(orvex({"report-export", "Copy", dir.file("copy.xml"), "--db", database}, RunAs::OrdinaryUser).exitCode, 0);

  const OrvexRun imported =
      orvex({"report-import", document, "--name", "Another", "--db", database}, RunAs::OrdinaryUser);
  EXPECT_EQ(imported.exitCode, 1);
  EXPECT_TRUE(imported.err.contains("cannot be changed")) << imported.err.toStdString();
  EXPECT_TRUE(imported.err.trimmed().endsWith("(70)")) << imported.err.toStdString();

  // A script reads it; its change is refused with the reason.
  ASSERT_TRUE(kordel::test::writeFile(dir.file("change.vbs"), R"(
Set companies = CreateObject("Nuvo.Records")
companies.Open "company", Nothing, Nothing, 0
WScript.Echo "companies " & companies.Count
Set attributes = CreateObject("Nuvo.FileOpenAttributes")
attributes("guid") = "{6F1C2B9A-0D4E-4A57-8C3B-2E9F5A7D1B64}"
Set file = CreateObject("Nuvo.File")
file.Open Application.Database, 114, 2, attributes
file.Name = "Notes"
file.Save
)"));
  const OrvexRun script = orvex({"script", "--db", database, dir.file("change.vbs")}, RunAs::OrdinaryUser);
  EXPECT_EQ(script.out, "companies 3\n") << script.out.toStdString() << script.err.toStdString();
  EXPECT_EQ(script.exitCode, 1);
  EXPECT_TRUE(script.err.contains("is read-only: the change is refused (70)")) << script.err.toStdString();

  setMode(folder, 0755);
  EXPECT_EQ(filesIn(folder), QStringList{"crm.db"});
  EXPECT_EQ(kordel::test::readFile(database), before);
}

} // namespace

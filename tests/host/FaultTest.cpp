// Faults in the middle of work on the user's only copy of their reports:
// imports killed at many points, a file size limit reached while saving,
// and processes that export from and save to one database at once. After
// each the database passes SQLite's integrity check and every earlier
// report still exports.

#include "support/OrvexProcess.h"
#include "support/SqliteColumn.h"
#include "support/TempDir.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <sys/resource.h>

using namespace kordel;
using kordel::test::OrvexRun;
using kordel::test::TempDir;

namespace {

// A report document on company with a page of that many fields.
QByteArray manyFields(const QString &name, int fields) {
  QByteArray xml = "<?xml version=\"1.0\"?><application><section name=\"system\"><property name=\"name\" value=\"" +
                   name.toUtf8() +
                   "\"/></section><section name=\"settings\"><property name=\"toppage\" "
                   "value=\"{5C1F3E8A-0B7D-4E2A-9C61-2D8F4A7B3E10}\"/><property name=\"source\" "
                   "value=\"company\"/></section><section name=\"pages\"><section "
                   "name=\"{5C1F3E8A-0B7D-4E2A-9C61-2D8F4A7B3E10}\"><property name=\"name\" value=\"Companies\"/>"
                   "<property name=\"source\" value=\"company\"/><section name=\"fields\">";
  for (int i = 0; i < fields; ++i)
    xml += QStringLiteral("<section name=\"f%1\"><property name=\"name\" value=\"f%1\"/><property "
                          "name=\"expression\" value=\"name\"/></section>")
               .arg(i)
               .toUtf8();
  return xml + "</section></section></section></application>";
}

class FaultTest : public ::testing::Test {
protected:
  void SetUp() override {
    const OrvexRun demo = orvex({"demo", "--db", db, "--companies", "12"});
    ASSERT_EQ(demo.exitCode, 0) << demo.err.toStdString();
  }

  OrvexRun orvex(const QStringList &arguments) { return test::runOrvex(dir, arguments); }

  // The database is whole, and the demo's reports export as before.
  void expectWholeAndWorking(const std::string &after) {
    EXPECT_EQ(test::sqliteColumn(db, "PRAGMA integrity_check"), QStringList{"ok"}) << after;
    const OrvexRun exported =
        orvex({"export", "--db", db, "--report", "Company list", "--all", "--out", dir.file("check.txt")});
    EXPECT_EQ(exported.exitCode, 0) << after << ": " << exported.err.toStdString();
  }

  // Writes a document of manyFields into the test's folder; its path.
  QString writeDocument(const QString &file, const QString &name, int fields) {
    const QString path = dir.file(file);
    QFile out(path);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly) && out.write(manyFields(name, fields)) > 0) << path.toStdString();
    return path;
  }

  // The names of the stored reports.
  QStringList reports() { return test::sqliteColumn(db, "SELECT name FROM nv_file ORDER BY name"); }

  TempDir dir;
  QString db = dir.file("crm.db");
};

TEST_F(FaultTest, ImportsKilledAtAnyPointLeaveTheDatabaseWhole) {
  const QString document = writeDocument("big.xml", "Big", 6000);
  const QStringList before = reports();

  // From the first milliseconds to the commit and after.
  for (const int delay : {5, 40, 120, 250, 400, 600, 900}) {
    QProcess import;
    test::startOrvex(import, dir,
                     {"report-import", document, "--db", db, "--name", QStringLiteral("Big %1").arg(delay)});
    ASSERT_TRUE(import.waitForStarted());
    import.waitForFinished(delay);
    if (import.state() == QProcess::Running && import.processId() > 0)
      ::kill(pid_t(import.processId()), SIGKILL);
    import.waitForFinished(30000);
    const std::string after = "a kill after " + std::to_string(delay) + " ms";
    expectWholeAndWorking(after);
    // Either the whole report is there or none of it.
    const QStringList now = reports();
    if (now.contains(QStringLiteral("Big %1").arg(delay))) {
      const QString copy = dir.file("copy.xml");
      const OrvexRun exported = orvex({"report-export", QStringLiteral("Big %1").arg(delay), copy, "--db", db});
      ASSERT_EQ(exported.exitCode, 0) << after << ": " << exported.err.toStdString();
      EXPECT_TRUE(QString::fromUtf8(test::readFile(copy)).contains("name=\"f5999\"")) << after;
    }
    for (const QString &name : before)
      EXPECT_TRUE(now.contains(name)) << after << " lost " << name.toStdString();
  }
}

TEST_F(FaultTest, AFileSizeLimitWhileSavingLosesNothing) {
  const QString document = writeDocument("big.xml", "Big", 6000);
  const QStringList before = reports();
  const qint64 size = QFile(db).size();

  // The database may grow by a few pages only: the report does not fit.
  QProcess importing;
  const rlim_t limit = rlim_t(size + 64 * 1024);
  importing.setChildProcessModifier([limit] {
    const rlimit fileSize{limit, limit};
    ::setrlimit(RLIMIT_FSIZE, &fileSize);
    ::signal(SIGXFSZ, SIG_IGN); // a write beyond the limit fails instead of ending the process
  });
  test::startOrvex(importing, dir, {"report-import", document, "--db", db});
  ASSERT_TRUE(importing.waitForFinished(60000));
  EXPECT_NE(importing.exitCode(), 0) << "the import cannot have fitted";
  EXPECT_FALSE(importing.readAllStandardError().isEmpty()) << "a failure says why";
  expectWholeAndWorking("a full disk");
  EXPECT_EQ(reports(), before);
}

TEST_F(FaultTest, ExportsAndSavesAtOnceNeitherFailNorCorrupt) {
  std::vector<std::unique_ptr<QProcess>> processes;
  for (int i = 0; i < 3; ++i) {
    const QString document =
        writeDocument(QStringLiteral("r%1.xml").arg(i), QStringLiteral("Parallel %1").arg(i), 1500);
    processes.push_back(std::make_unique<QProcess>());
    test::startOrvex(*processes.back(), dir, {"report-import", document, "--db", db});
    processes.push_back(std::make_unique<QProcess>());
    test::startOrvex(*processes.back(), dir,
                     {"export", "--db", db, "--report", "Company history", "--all", "--out",
                      dir.file(QStringLiteral("history%1.pdf").arg(i))});
  }
  for (const auto &process : processes) {
    ASSERT_TRUE(process->waitForFinished(120000));
    EXPECT_EQ(process->exitCode(), 0) << process->arguments().join(' ').toStdString() << ": "
                                      << process->readAllStandardError().toStdString();
  }
  expectWholeAndWorking("exports and saves at once");
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(reports().contains(QStringLiteral("Parallel %1").arg(i)));
}

} // namespace

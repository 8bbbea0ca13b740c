// A designer that saves a stored report again and again, killed at many
// points: each save goes the way the designer window's Save goes (the
// window's OnSave, the report's update, the host file's save into the
// database). After each kill the database is whole, every report of it
// still lists and exports, and the report that was being saved is one of
// its versions, the one before or one the designer saved, never a mix.

#include "HostedFixture.h"

#include "addin/CustomReport.h"
#include "design/DlgReportDesigner.h"
#include "design/ReportDesigner.h"
#include "engine/designer/DesignerControl.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "hostapi/Classes.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "support/OrvexProcess.h"
#include "support/SqliteColumn.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>

namespace kordel::test {
namespace {

const QString kReport = QStringLiteral("Company list");
constexpr int kFieldsPerSave = 40;

// The top page's layout inside a report document.
QByteArray topLayout(const QByteArray &document) {
  const QString text = QString::fromUtf8(document);
  const QRegularExpression topPage(QStringLiteral("<property name=\"toppage\" value=\"([^\"]+)\"/>"));
  const QString guid = topPage.match(text).captured(1);
  const QRegularExpression resource(QRegularExpression::escape(QStringLiteral("name=\"%1\"").arg(guid)) +
                                    QStringLiteral(" dt:dt=\"bin\\.base64\">([^<]+)<"));
  return QByteArray::fromBase64(resource.match(text).captured(1).toLatin1());
}

// The mark the saving designer puts into the report's script: which child
// saved, and its how manyth save that was.
QString saveMark(const QString &child, int save) { return QStringLiteral("' save %1 of %2\n").arg(save).arg(child); }

class DesignerSaveKillTest : public HostedTest {
protected:
  OrvexRun orvex(const QStringList &arguments) { return runOrvex(dir, arguments); }

  // The stored report's document as the program exports it, without the
  // time of the export that it carries.
  QByteArray exported(const std::string &after) {
    const QString file = dir.file("exported.xml");
    const OrvexRun run = orvex({"report-export", kReport, file, "--db", db});
    EXPECT_EQ(run.exitCode, 0) << after << ": " << run.err.toStdString();
    static const QRegularExpression timestamp(QStringLiteral("<property name=\"timestamp\" value=\"[^\"]*\"/>"));
    return QString::fromUtf8(readFile(file)).remove(timestamp).toUtf8();
  }

  QString db = dir.file("crm.db");
};

// The designer the kill test kills: it opens the stored report of the
// database named in KORDEL_SAVING_CHILD through the add-in, and in its window inserts fields, marks the script and
// saves, again and again, saying after each save how many it made. Only
// that test runs it.
TEST_F(DesignerSaveKillTest, AChildThatSavesUntilKilled) {
  const QString database = qEnvironmentVariable("KORDEL_SAVING_CHILD");
  if (database.isEmpty())
    GTEST_SKIP() << "the saving designer of SavesKilledAtAnyPointLeaveTheReportWhole";
  const QString child = qEnvironmentVariable("KORDEL_SAVING_CHILD_NAME");
  nuvo::DatabaseAddress address;
  address.file = database;
  app->setDatabase(std::make_shared<nuvo::DatabaseObject>(
      nuvo::Engine::open(address, QStringLiteral("en"), QStringLiteral("anna"))));
  auto report = std::make_shared<addin::CustomReport>();
  report->IReport_SetDatabase(app->database());
  report->IReport_SetGUID(qEnvironmentVariable("KORDEL_SAVING_CHILD_GUID"));
  report->IReport_Refresh(false);
  ui->modalHandler = [&](QWidget &window) {
    auto &designer = dynamic_cast<addin::DlgReportDesigner &>(window);
    const auto control = std::dynamic_pointer_cast<engine::DesignerControl>(designer.Designer().DesignerControl());
    auto &document = control->document();
    const QString script = document.report()->script;
    std::fprintf(stdout, "designing\n");
    std::fflush(stdout);
    for (int save = 1;; ++save) {
      for (int i = 0; i < kFieldsPerSave; ++i) {
        document.select({document.report()->sections()->at(0)});
        designer.Designer().SetActiveSection();
        designer.Designer().InsertBuiltInField(1);
      }
      document.report()->script = script + saveMark(child, save);
      document.noteOutsideChange();
      designer.MnuFileSave_Click();
      std::fprintf(stdout, "saved %d\n", save);
      std::fflush(stdout);
    }
  };
  bool cancel = true;
  report->IReport_Configure(cancel, app->classes()->item("company"));
  ADD_FAILURE() << "the designer closed";
}

TEST_F(DesignerSaveKillTest, SavesKilledAtAnyPointLeaveTheReportWhole) {
  const OrvexRun demo = orvex({"demo", "--db", db, "--companies", "12"});
  ASSERT_EQ(demo.exitCode, 0) << demo.err.toStdString();
  const QStringList guids = sqliteColumn(db, "SELECT guid FROM nv_file WHERE name = '" + kReport + "'");
  ASSERT_EQ(guids.size(), 1);
  const QStringList reports = sqliteColumn(db, "SELECT name FROM nv_file ORDER BY name");
  ASSERT_EQ(reports.size(), 3);
  const int fieldsAtFirst = int(topLayout(exported("the demo")).count("<Field "));
  ASSERT_GT(fieldsAtFirst, 0);

  // From before the first save has written anything to many saves later;
  // the last kill waits for two saves told, however slow the machine.
  constexpr int kAfterTwoSaves = -1;
  const int delays[] = {0, 3, 10, 25, 50, 100, 200, 400, 800, kAfterTwoSaves};
  for (const int delay : delays) {
    const std::string after = delay == kAfterTwoSaves ? std::string("a kill after two saves")
                                                      : "a kill " + std::to_string(delay) + " ms into the saves";
    const QString child = QStringLiteral("designer %1").arg(delay);
    const QByteArray before = exported(after + ", before");
    QProcess designer;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KORDEL_SAVING_CHILD", db);
    environment.insert("KORDEL_SAVING_CHILD_NAME", child);
    environment.insert("KORDEL_SAVING_CHILD_GUID", guids.front());
    designer.setProcessEnvironment(environment);
    designer.start(QCoreApplication::applicationFilePath(),
                   {"--gtest_filter=DesignerSaveKillTest.AChildThatSavesUntilKilled"});
    QString said;
    while (!said.contains("designing") && designer.waitForReadyRead(60000))
      said += QString::fromUtf8(designer.readAllStandardOutput());
    ASSERT_TRUE(said.contains("designing")) << said.toStdString() << designer.readAllStandardError().toStdString();
    if (delay == kAfterTwoSaves)
      while (!said.contains("saved 2") && designer.waitForReadyRead(60000))
        said += QString::fromUtf8(designer.readAllStandardOutput());
    else
      designer.waitForFinished(delay);
    ASSERT_EQ(designer.state(), QProcess::Running) << designer.readAllStandardError().toStdString();
    ::kill(pid_t(designer.processId()), SIGKILL);
    ASSERT_TRUE(designer.waitForFinished(30000));
    said += QString::fromUtf8(designer.readAllStandardOutput());
    const int reported = int(said.count(QStringLiteral("saved ")));

    EXPECT_EQ(sqliteColumn(db, "PRAGMA integrity_check"), QStringList{"ok"}) << after;
    const OrvexRun listed = orvex({"reports", "--db", db});
    for (const QString &name : reports) {
      EXPECT_TRUE(listed.out.contains(name)) << after << ": " << listed.out.toStdString();
      const OrvexRun run = orvex({"export", "--db", db, "--report", name, "--all", "--out", dir.file("check.txt")});
      EXPECT_EQ(run.exitCode, 0) << after << ", " << name.toStdString() << ": " << run.err.toStdString();
    }

    // The report is the version before or the one of a save of this child,
    // each with its fields all there.
    const QByteArray now = exported(after);
    if (now == before)
      continue;
    const QByteArray layout = topLayout(now);
    int save = 0;
    for (int candidate = 1; candidate <= reported + 1 && save == 0; ++candidate)
      if (layout.contains(saveMark(child, candidate).toUtf8()))
        save = candidate;
    static const QRegularExpression marks(QStringLiteral("' save \\d+ of [^\\n]*"));
    QStringList found;
    for (const QRegularExpressionMatch &mark : marks.globalMatch(QString::fromUtf8(layout)))
      found << mark.captured();
    ASSERT_GT(save, 0) << after << ": neither the report before nor a save of the killed designer (" << reported
                       << " saves told; marks: " << found.join(", ").toStdString() << ")";
    const int fieldsBefore = int(topLayout(before).count("<Field "));
    EXPECT_EQ(layout.count("<Field "), fieldsBefore + save * kFieldsPerSave) << after << ", save " << save;
    EXPECT_TRUE(now.trimmed().endsWith("</application>")) << after;
  }
  const int fieldsAtLast = int(topLayout(exported("the last kill")).count("<Field "));
  EXPECT_GT(fieldsAtLast, fieldsAtFirst) << "no kill came after a save";
}

} // namespace
} // namespace kordel::test

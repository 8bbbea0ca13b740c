// Stored reports whose layout scripts run away, exported with "orvex export"
// as a user runs it: a script that spends the run's budget of time or
// memory stops the export with the budget named and leaves the file that
// was at the output path as it was; an endless recursion and a string over
// one value's cap are errors of the script, named, after which the run
// goes on. None of them takes the process's memory beyond a bound, and
// each ends.

#include "support/OrvexProcess.h"
#include "support/Sanitizers.h"
#include "support/TempDir.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <vector>

using kordel::test::kUnderAddressSanitizer;
using kordel::test::OrvexRun;
using kordel::test::TempDir;

namespace {

// An export that has not ended by then hangs.
constexpr auto kHangGuard = std::chrono::seconds(60);
constexpr long kPeakBoundKilobytes = 1024L * 1024L;

// What a run of the program left, with its peak resident memory.
struct MeasuredRun {
  bool ended = false;
  int exitCode = -1;
  QString err;
  long peakKilobytes = 0;
  double seconds = 0; // from start to end
};

// The document with the top page's layout carrying the report script in
// the language, under another name.
QByteArray withReportScript(QByteArray document, const QString &name, const QString &language, const QString &script) {
  const QRegularExpression resource(QStringLiteral("bin\\.base64\">([^<]+)<"));
  const QRegularExpressionMatch match = resource.match(QString::fromUtf8(document));
  EXPECT_TRUE(match.hasMatch());
  QByteArray layout = QByteArray::fromBase64(match.captured(1).toLatin1());
  layout.replace("ScriptLanguage=\"VBScript\"", "ScriptLanguage=\"" + language.toUtf8() + '"');
  const int pageSettingsEnd = int(layout.indexOf("/>", layout.indexOf("<PageSettings"))) + 2;
  layout.insert(pageSettingsEnd, "<Script><![CDATA[" + script.toUtf8() + "]]></Script>");
  document.replace(match.captured(1).toLatin1(), layout.toBase64());
  document.replace("<property name=\"scriptlanguage\" value=\"VBScript\"/>",
                   "<property name=\"scriptlanguage\" value=\"" + language.toUtf8() + "\"/>");
  document.replace("<property name=\"name\" value=\"Company list\"/>",
                   "<property name=\"name\" value=\"" + name.toUtf8() + "\"/>");
  return document;
}

class RunawayScriptExportTest : public ::testing::Test {
protected:
  void SetUp() override {
    const OrvexRun demo = orvex({"demo", "--db", db, "--companies", "12"});
    ASSERT_EQ(demo.exitCode, 0) << demo.err.toStdString();
    ASSERT_EQ(orvex({"report-export", "Company list", dir.file("list.xml"), "--db", db}).exitCode, 0);
    // A short budget of time keeps the stopped runs short; memory keeps its
    // default.
    ASSERT_TRUE(QDir().mkpath(dir.file("config")));
    ASSERT_TRUE(kordel::test::writeFile(dir.file("config/registry.ini"),
                                        "[HKEY_CURRENT_USER\\Software\\Skarnholt\\Orvex\\LayoutEngine]\n"
                                        "ScriptSeconds=2\n"));
  }

  OrvexRun orvex(const QStringList &arguments) { return kordel::test::runOrvex(dir, arguments); }

  // Stores the demo's company list with the report script as a new report.
  void store(const QString &name, const QString &language, const QString &script) {
    const QString path = dir.file(name + QStringLiteral(".xml"));
    ASSERT_TRUE(kordel::test::writeFile(
        path, withReportScript(kordel::test::readFile(dir.file("list.xml")), name, language, script)));
    const OrvexRun imported = orvex({"report-import", path, "--db", db});
    ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
  }

  // Runs the program as startOrvex does, waiting for it with its resource
  // use; a run that outlasts the hang guard is killed.
  MeasuredRun measured(const QStringList &arguments) {
    std::vector<QByteArray> owned{QFile::encodeName(QCoreApplication::applicationDirPath() + "/orvex")};
    for (const QString &argument : arguments)
      owned.push_back(argument.toUtf8());
    std::vector<char *> argv;
    for (QByteArray &argument : owned)
      argv.push_back(argument.data());
    argv.push_back(nullptr);
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert("ORVEX_CONFIG_DIR", dir.file("config"));
    variables.insert("ORVEX_DATA_DIR", dir.file("data"));
    variables.insert("ORVEX_LOG_FILE", dir.file("orvex.log"));
    std::vector<QByteArray> ownedEnvironment;
    for (const QString &variable : variables.toStringList())
      ownedEnvironment.push_back(QFile::encodeName(variable));
    std::vector<char *> envp;
    for (QByteArray &variable : ownedEnvironment)
      envp.push_back(variable.data());
    envp.push_back(nullptr);
    const QByteArray errFile = QFile::encodeName(dir.file("stderr.txt"));
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, errFile.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    MeasuredRun run;
    EXPECT_EQ(spawned, 0) << argv[0];
    if (spawned != 0)
      return run;
    int status = 0;
    rusage usage{};
    const auto started = std::chrono::steady_clock::now();
    const auto giveUp = started + kHangGuard;
    while (::wait4(pid, &status, WNOHANG, &usage) == 0) {
      if (std::chrono::steady_clock::now() > giveUp) {
        ::kill(pid, SIGKILL);
        ::wait4(pid, &status, 0, &usage);
        return run;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    run.ended = true;
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.err = QString::fromUtf8(kordel::test::readFile(dir.file("stderr.txt")));
    run.peakKilobytes = usage.ru_maxrss;
    return run;
  }

  TempDir dir;
  QString db = dir.file("crm.db");
};

TEST_F(RunawayScriptExportTest, BudgetsStopTheExportAndScriptErrorsLetItFinish) {
  struct Case {
    const char *name;
    const char *language;
    const char *script;
    // Whether the run's budget stops the export, or the script's error
    // ends only the script's procedure.
    bool stops;
    const char *cause;
  };
  const Case cases[] = {
      {"Endless loop", "VBScript", "Sub ActiveReport_ReportStart()\n  Do\n  Loop\nEnd Sub\n", true,
       "The report's scripts ran longer than the 2 seconds a run allows them"},
      {"Endless loop in JScript", "JScript", "function ActiveReport_ReportStart() { for (;;) {} }\n", true,
       "The report's scripts ran longer than the 2 seconds a run allows them"},
      {"Endless recursion", "VBScript",
       "Function Down(n)\n  Down = Down(n + 1)\nEnd Function\nSub ActiveReport_ReportStart()\n  Down 0\nEnd Sub\n",
       false, "Out of stack space (28)"},
      {"Endless recursion in JScript", "JScript",
       "function down(n) { return down(n + 1); }\nfunction ActiveReport_ReportStart() { down(0); }\n", false,
       "Out of stack space (28)"},
      {"Endless string", "VBScript",
       "Sub ActiveReport_ReportStart()\n  s = \"x\"\n  Do\n    s = s & s\n  Loop\nEnd Sub\n", false,
       "Out of memory (7)"},
      {"Endless string in JScript", "JScript",
       "function ActiveReport_ReportStart() { var s = 'x'; for (;;) s += s; }\n", true,
       "Out of memory: the report's scripts hold more than 256 MB"},
      // Strings under one value's cap that together outgrow the run's
      // memory; the strings dropped while the error unwinds do not let the
      // run go on. Repeated, since when the budget sees the growth varies.
      {"Hoard", "VBScript",
       "Dim kept()\nSub ActiveReport_ReportStart()\n  ReDim kept(100000)\n  s = String(4000000, \"x\")\n"
       "  For i = 0 To 100000\n    kept(i) = s & i\n  Next\nEnd Sub\n",
       true, "Out of memory: the report's scripts hold more than 256 MB"},
  };
  for (const Case &c : cases)
    store(QString::fromLatin1(c.name), QString::fromLatin1(c.language), QString::fromLatin1(c.script));

  const QString out = dir.file("companies.txt");
  const QByteArray earlier = "the export of yesterday\n";
  for (const Case &c : cases) {
    for (int round = 0; round < (QByteArray(c.name) == "Hoard" ? 3 : 1); ++round) {
      SCOPED_TRACE(c.name);
      ASSERT_TRUE(kordel::test::writeFile(out, earlier));
      const MeasuredRun run = measured({"export", "--db", db, "--report", c.name, "--all", "--out", out});
      ASSERT_TRUE(run.ended) << "the export still ran after " << kHangGuard.count() << " s";
      // How soon after its budget a run stops is measured here, not
      // asserted: the figure goes to the log.
      std::printf("[ budget   ] %s: ended after %.1f s (a budget of 2 s), peak %ld MB\n", c.name, run.seconds,
                  run.peakKilobytes / 1024);
      EXPECT_TRUE(run.err.contains(QLatin1String(c.cause))) << run.err.toStdString();
      if (c.stops) {
        EXPECT_EQ(run.exitCode, 1) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(QStringLiteral("The run stopped in ActiveReport_ReportStart")))
            << run.err.toStdString();
        EXPECT_EQ(kordel::test::readFile(out), earlier);
      } else {
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_TRUE(kordel::test::readFile(out).contains("Company")) << "the run went on to its pages";
      }
      if (!kUnderAddressSanitizer) {
        EXPECT_LT(run.peakKilobytes, kPeakBoundKilobytes);
      }
    }
  }
}

} // namespace

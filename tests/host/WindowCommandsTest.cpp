// The commands that open windows: orvex design and orvex print with its
// dialog. Their refusals on the command line, and the windows themselves on
// a real X display (Xvfb), looked at by a screenshot and driven by keys.
// KORDEL_SCREENSHOT_DIR=FOLDER keeps the pictures.

#include "support/OrvexProcess.h"
#include "support/PdfTools.h"
#include "support/SqliteColumn.h"
#include "support/TempDir.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QThread>

#include <gtest/gtest.h>

namespace {

using kordel::test::OrvexRun;

// The lines of a program's output, run to its end.
QString outputOf(const QString &program, const QStringList &arguments) {
  QProcess process;
  process.start(program, arguments);
  process.waitForFinished(10000);
  return QString::fromLocal8Bit(process.readAllStandardOutput());
}

class WindowCommands : public ::testing::Test {
protected:
  void TearDown() override {
    for (QProcess *process : {&program, &server}) {
      process->kill();
      process->waitForFinished();
    }
  }

  OrvexRun orvex(const QStringList &arguments) { return kordel::test::runOrvex(dir, arguments); }

  // A display of the test's own; false with the reason in skipReason when
  // the tools for it are missing.
  bool startDisplay() {
    xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    import = QStandardPaths::findExecutable(QStringLiteral("import"));
    xwininfo = QStandardPaths::findExecutable(QStringLiteral("xwininfo"));
    xdotool = QStandardPaths::findExecutable(QStringLiteral("xdotool"));
    if (xvfb.isEmpty() || import.isEmpty() || xwininfo.isEmpty() || xdotool.isEmpty()) {
      skipReason = "needs Xvfb, import, xwininfo and xdotool (scripts/setup.sh installs them)";
      return false;
    }
    display = QStringLiteral(":%1").arg(70 + QCoreApplication::applicationPid() % 200);
    server.start(xvfb, {display, "-screen", "0", "1280x800x24", "-nolisten", "tcp"});
    return server.waitForStarted();
  }

  // Starts orvex on the display and waits until a window of that title is
  // there; false after a minute and a half without it.
  bool openWindow(const QStringList &arguments, const QString &title, const QMap<QString, QString> &environment = {}) {
    QMap<QString, QString> settings = environment;
    settings.insert(QStringLiteral("DISPLAY"), display);
    settings.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    // The X keyboard library hands a string without its end to strndup,
    // which the sanitizer build would take for our fault.
    settings.insert(QStringLiteral("ASAN_OPTIONS"), qEnvironmentVariable("ASAN_OPTIONS") + ":intercept_strndup=0");
    QElapsedTimer waited;
    waited.start();
    // The server takes a moment to take connections; the window a moment more.
    while (waited.elapsed() < 90000 && !windows().contains(title)) {
      if (program.state() == QProcess::NotRunning && waited.elapsed() > 1000)
        kordel::test::startOrvex(program, dir, arguments, settings);
      QThread::msleep(300);
    }
    QThread::msleep(1000); // drawn
    return windows().contains(title);
  }

  QString windows() const { return outputOf(xwininfo, {"-display", display, "-root", "-tree"}); }

  // The whole screen, kept under the name when KORDEL_SCREENSHOT_DIR is set.
  QImage screenshot(const QString &name) {
    const QString shot = dir.file(name);
    QProcess::execute(import, {"-display", display, "-window", "root", shot});
    const QImage picture(shot);
    if (const QString keep = qEnvironmentVariable("KORDEL_SCREENSHOT_DIR"); !keep.isEmpty())
      picture.save(keep + u'/' + name);
    return picture;
  }

  static int coloursIn(const QImage &picture) {
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); y += 7)
      for (int x = 0; x < picture.width(); x += 7)
        colours.insert(picture.pixel(x, y));
    return colours.size();
  }

  // Keys typed into the window that has the focus.
  void type(const QStringList &keys) {
    QProcess tool;
    tool.setProcessEnvironment([this] {
      auto environment = QProcessEnvironment::systemEnvironment();
      environment.insert(QStringLiteral("DISPLAY"), display);
      return environment;
    }());
    tool.start(xdotool, QStringList{QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("100")} + keys);
    tool.waitForFinished(10000);
  }

  QString demoDatabase() {
    const QString database = dir.file("crm.db");
    EXPECT_EQ(orvex({"demo", "--db", database, "--companies", "5"}).exitCode, 0);
    return database;
  }

  kordel::test::TempDir dir;
  QString xvfb, import, xwininfo, xdotool, display, skipReason;
  QProcess server;
  QProcess program;
};

TEST_F(WindowCommands, WhatCannotOpenIsRefusedOnOneLine) {
  const struct {
    QStringList arguments;
    const char *reason;
  } cases[] = {
      {{"design"}, "give either --report NAME or --new"},
      {{"design", "--report", "Company list", "--new"}, "give either --report NAME or --new"},
      {{"design", "--new", "--name", "Mine"}, "--new needs --class CLASS"},
      {{"design", "--report", "Company list"}, "The designer needs a display"},
      {{"print", "--report", "Company list"}, "The print dialog needs a display"},
      {{"print", "--report", "Company list", "--all", "--dialog"}, "The print dialog needs a display"},
      {{"print", "--report", "Company list", "--printer", "Orvex PDF"}, "The printer is chosen in the print dialog"},
  };
  for (const auto &refused : cases) {
    const OrvexRun run = orvex(refused.arguments);
    const std::string what = refused.arguments.join(u' ').toStdString();
    EXPECT_EQ(run.exitCode, 1) << what;
    EXPECT_EQ(run.err.count(u'\n'), 1) << what << ": " << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QLatin1String(refused.reason))) << what << ": " << run.err.toStdString();
  }
}

TEST_F(WindowCommands, TheDesignerWindowOpensOnADemoReportOnARealDisplay) {
  if (!startDisplay())
    GTEST_SKIP() << skipReason.toStdString();
  const QString database = demoDatabase();
  ASSERT_TRUE(openWindow({"design", "--report", "Company list", "--db", database}, "Company list (Companies)"))
      << windows().toStdString() << program.readAllStandardError().toStdString();
  EXPECT_GT(coloursIn(screenshot("orvex-design.png")), 10)
      << "a window with bands, texts and toolbars, not a blank screen";

  // Its Print asks in the print dialog, on the rows of the class's list
  // window; Escape closes the dialog and leaves the designer open.
  type({"ctrl+p"});
  QElapsedTimer waited;
  waited.start();
  while (waited.elapsed() < 30000 && !windows().contains(QLatin1String("\"Print\"")))
    QThread::msleep(200);
  ASSERT_TRUE(windows().contains(QLatin1String("\"Print\""))) << program.readAllStandardError().toStdString();
  QThread::msleep(500);
  screenshot("orvex-design-print.png");
  type({"Escape"});
  QThread::msleep(1000);
  EXPECT_FALSE(windows().contains(QLatin1String("\"Print\"")));
  EXPECT_FALSE(program.waitForFinished(500)) << "the designer stays open";
}

// A print without a range opens the print dialog on the class's records;
// Enter prints all of them on the default printer, here the built-in PDF
// printer, since the test's print client reaches no print system.
TEST_F(WindowCommands, APrintWithoutARangeAsksInThePrintDialog) {
  if (!kordel::test::pdfToolsAvailable())
    GTEST_SKIP() << "pdftotext is needed";
  if (!startDisplay())
    GTEST_SKIP() << skipReason.toStdString();
  const QString database = demoDatabase();
  const QString documents = dir.file("Documents");
  ASSERT_TRUE(openWindow(
      {"print", "--report", "Company list", "--db", database}, "\"Print\"",
      {{"HOME", dir.path()}, {"XDG_DOCUMENTS_DIR", documents}, {"CUPS_SERVER", dir.file("no-print-system")}}))
      << windows().toStdString() << program.readAllStandardError().toStdString();
  EXPECT_GT(coloursIn(screenshot("orvex-print.png")), 10);

  type({"Return"});
  ASSERT_TRUE(program.waitForFinished(60000));
  const QString err = QString::fromLocal8Bit(program.readAllStandardError());
  EXPECT_EQ(program.exitCode(), 0) << err.toStdString();
  EXPECT_TRUE(err.contains(QLatin1String("Opening the print dialog for \"Company list\" for 5 records of")))
      << err.toStdString();
  const QStringList files = QDir(documents).entryList({QStringLiteral("*.pdf")}, QDir::Files);
  ASSERT_EQ(files.size(), 1) << err.toStdString();
  const QString text = kordel::test::pdfPageTexts(documents + u'/' + files.front()).join(u'\n');
  const QStringList companies = kordel::test::sqliteColumn(database, QStringLiteral("SELECT name FROM company"));
  ASSERT_EQ(companies.size(), 5);
  for (const QString &name : companies)
    EXPECT_TRUE(text.contains(name)) << name.toStdString() << " missing in " << text.toStdString();
}

// orvex alone is the desktop client: on its first start it makes the demo
// database, shows the classes, and Enter opens the list of the first one.
// Its place is kept when it is closed.
TEST_F(WindowCommands, TheDesktopClientStartsOnADemoDatabaseAndOpensAList) {
  if (!startDisplay())
    GTEST_SKIP() << skipReason.toStdString();
  ASSERT_TRUE(openWindow({}, "\"Orvex - Demo\""))
      << windows().toStdString() << program.readAllStandardError().toStdString();
  EXPECT_TRUE(QFile::exists(dir.file("data/demo.db")));
  const int before = coloursIn(screenshot("orvex-desktop-start.png"));
  type({"Return"});
  QThread::msleep(2000);
  const int after = coloursIn(screenshot("orvex-desktop-list.png"));
  EXPECT_GT(after, before + 10) << "the list window's rows and heads";

  type({"ctrl+q"});
  ASSERT_TRUE(program.waitForFinished(30000));
  EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
  QFile settings(dir.file("config/registry.ini"));
  ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
  EXPECT_TRUE(settings.readAll().contains("Place.MainWindow"));
}

} // namespace

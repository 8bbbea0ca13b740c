// orvex design: its refusals on the command line, and the designer window
// on a demo report on a real X display (Xvfb), looked at by a screenshot.
// KORDEL_SCREENSHOT_DIR=FOLDER keeps the picture.

#include "support/OrvexProcess.h"
#include "support/TempDir.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QThread>

#include <gtest/gtest.h>

namespace {

using kordel::test::OrvexRun;

class DesignCommandTest : public ::testing::Test {
protected:
  OrvexRun orvex(const QStringList &arguments) { return kordel::test::runOrvex(dir, arguments); }

  kordel::test::TempDir dir;
};

TEST_F(DesignCommandTest, WhatCannotBeDesignedIsRefusedOnOneLine) {
  const struct {
    QStringList arguments;
    const char *reason;
  } cases[] = {
      {{"design"}, "give either --report NAME or --new"},
      {{"design", "--report", "Company list", "--new"}, "give either --report NAME or --new"},
      {{"design", "--new", "--name", "Mine"}, "--new needs --class CLASS"},
      {{"design", "--report", "Company list"}, "The designer needs a display"},
  };
  for (const auto &refused : cases) {
    const OrvexRun run = orvex(refused.arguments);
    const std::string what = refused.arguments.join(u' ').toStdString();
    EXPECT_EQ(run.exitCode, 1) << what;
    EXPECT_EQ(run.err.count(u'\n'), 1) << what << ": " << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QLatin1String(refused.reason))) << what << ": " << run.err.toStdString();
  }
}

// The lines of a program's output, run to its end.
QString outputOf(const QString &program, const QStringList &arguments) {
  QProcess process;
  process.start(program, arguments);
  process.waitForFinished(10000);
  return QString::fromLocal8Bit(process.readAllStandardOutput());
}

TEST_F(DesignCommandTest, TheDesignerWindowOpensOnADemoReportOnARealDisplay) {
  const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
  const QString import = QStandardPaths::findExecutable(QStringLiteral("import"));
  const QString xwininfo = QStandardPaths::findExecutable(QStringLiteral("xwininfo"));
  if (xvfb.isEmpty() || import.isEmpty() || xwininfo.isEmpty())
    GTEST_SKIP() << "needs Xvfb, import and xwininfo (scripts/setup.sh installs them)";
  const QString database = dir.file("crm.db");
  ASSERT_EQ(orvex({"demo", "--db", database, "--companies", "5"}).exitCode, 0);

  const QString display = QStringLiteral(":%1").arg(70 + QCoreApplication::applicationPid() % 200);
  QProcess server;
  server.start(xvfb, {display, "-screen", "0", "1280x800x24", "-nolisten", "tcp"});
  ASSERT_TRUE(server.waitForStarted());
  QProcess designer;
  QElapsedTimer waited;
  waited.start();
  QString windows;
  // The server takes a moment to take connections; the window a moment more.
  while (waited.elapsed() < 90000 && !windows.contains(QLatin1String("Company list"))) {
    if (designer.state() == QProcess::NotRunning && waited.elapsed() > 1000)
      kordel::test::startOrvex(designer, dir, {"design", "--report", "Company list", "--db", database},
                               {{"DISPLAY", display},
                                {"QT_QPA_PLATFORM", "xcb"},
                                // The X keyboard library hands a string without its end to
                                // strndup, which the sanitizer build would take for our fault.
                                {"ASAN_OPTIONS", qEnvironmentVariable("ASAN_OPTIONS") + ":intercept_strndup=0"}});
    QThread::msleep(300);
    windows = outputOf(xwininfo, {"-display", display, "-root", "-tree"});
  }
  ASSERT_TRUE(windows.contains(QLatin1String("Company list (Companies)")))
      << windows.toStdString() << QString::fromLocal8Bit(designer.readAllStandardError()).toStdString();
  QThread::msleep(1000); // drawn
  const QString shot = dir.file("designer.png");
  QProcess::execute(import, {"-display", display, "-window", "root", shot});
  designer.kill();
  designer.waitForFinished();
  server.kill();
  server.waitForFinished();

  const QImage picture(shot);
  ASSERT_FALSE(picture.isNull());
  QSet<QRgb> colours;
  for (int y = 0; y < picture.height(); y += 7)
    for (int x = 0; x < picture.width(); x += 7)
      colours.insert(picture.pixel(x, y));
  EXPECT_GT(colours.size(), 10) << "a window with bands, texts and toolbars, not a blank screen";
  const QString keep = qEnvironmentVariable("KORDEL_SCREENSHOT_DIR");
  if (!keep.isEmpty())
    picture.save(keep + "/orvex-design.png");
}

} // namespace

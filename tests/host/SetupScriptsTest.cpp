// scripts/setup.sh and scripts/build.sh as scripts/run.sh uses them: the
// main job installs the packages to build and run, not the test tools,
// and builds the program and the add-in, not the tests. The package tools
// and ninja are stood in for by scripts that record what they are asked
// (ninja lists the commands of the build), so that nothing is installed
// or built.

#include "support/TempDir.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <gtest/gtest.h>

using kordel::test::TempDir;

namespace {

class SetupScriptsTest : public ::testing::Test {
protected:
  void SetUp() override {
    const QString ninja = QStandardPaths::findExecutable("ninja");
    ASSERT_FALSE(ninja.isEmpty());
    tool("dpkg-query", "exit 1"); // nothing is installed
    tool("apt-get", "echo \"$@\" >> " + dir.file("apt-get.log"));
    tool("sudo", "exec \"$@\"");
    // A build in the build folder lists the commands that would build the
    // targets given; CMake's own calls run.
    tool("ninja", QStringLiteral("case \" $* \" in *\" -t \"*) exec %2 \"$@\" ;; esac\n"
                                 "if [ \"$2\" = %1 ]; then\n"
                                 "  shift 2; targets=\n"
                                 "  for a; do case \"$a\" in -*) ;; *) targets=\"$targets $a\" ;; esac; done\n"
                                 "  exec %2 -C %1 -t commands $targets\n"
                                 "fi\n"
                                 "exec %2 \"$@\"")
                      .arg(build.path(), ninja));
  }

  void tool(const QString &name, const QString &body) {
    const QString path = dir.file(name);
    ASSERT_TRUE(kordel::test::writeFile(path, ("#!/bin/sh\n" + body + "\n").toUtf8()));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }

  // Runs a script of the repository with the stand-ins first on the path;
  // its standard output.
  QString script(const QString &name, const QStringList &arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PATH", dir.path() + ":" + environment.value("PATH"));
    process.setProcessEnvironment(environment);
    process.start("bash", QStringList{QStringLiteral(KORDEL_SOURCE_DIR "/scripts/") + name} + arguments);
    EXPECT_TRUE(process.waitForFinished(300000));
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
  }

  // The packages the last run of setup.sh asked apt-get to install.
  QStringList installed() {
    const QStringList calls = QString::fromUtf8(kordel::test::readFile(dir.file("apt-get.log"))).split(u'\n');
    QFile::remove(dir.file("apt-get.log"));
    for (const QString &call : calls)
      if (call.startsWith("install "))
        return call.split(u' ', Qt::SkipEmptyParts).filter(QRegularExpression("^[a-z0-9][a-z0-9.+-]+$")).mid(1);
    return {};
  }

  TempDir dir;
  TempDir build;
};

TEST_F(SetupScriptsTest, TheRuntimePackagesLeaveTheTestToolsOut) {
  script("setup.sh", {"--runtime"});
  const QStringList runtime = installed();
  script("setup.sh", {});
  const QStringList everything = installed();

  EXPECT_TRUE(runtime.contains("fonts-noto-cjk")) << runtime.join(u' ').toStdString();
  EXPECT_TRUE(runtime.contains("qt6-base-dev"));
  for (const QString &package : runtime)
    EXPECT_TRUE(everything.contains(package)) << package.toStdString();
  for (const char *testTool :
       {"libreoffice-writer-nogui", "googletest", "postgresql", "cups", "poppler-utils", "libtiff-tools", "xvfb"}) {
    EXPECT_FALSE(runtime.contains(testTool)) << testTool;
    EXPECT_TRUE(everything.contains(testTool)) << testTool;
  }
}

TEST_F(SetupScriptsTest, TheMainBuildMakesTheProgramAndTheAddinWithoutTheTests) {
  const QString plan = script("build.sh", {"--main", build.path()});
  EXPECT_TRUE(plan.contains(" -o bin/orvex ")) << plan.toStdString();
  EXPECT_TRUE(plan.contains(" -o lib/libkordel.so ")) << plan.toStdString();
  EXPECT_FALSE(plan.contains(" -o tests/")) << "tests are built";
  EXPECT_FALSE(plan.contains(" -o bench/")) << "benchmarks are built";
}

} // namespace

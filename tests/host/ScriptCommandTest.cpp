// orvex script: the program's exit code is the script's, as WScript.Quit
// gives it, 0 at the script's end and 1 for an error.

#include "support/TempDir.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace {

class ScriptCommandTest : public ::testing::Test {
protected:
  struct Result {
    int exitCode;
    QString out;
    QString err;
  };

  Result script(const QString &fileName, const QByteArray &code) {
    const QString path = dir.file(fileName);
    EXPECT_TRUE(kordel::test::writeFile(path, code));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ORVEX_CONFIG_DIR", dir.file("config"));
    environment.insert("ORVEX_DATA_DIR", dir.file("data"));
    environment.insert("ORVEX_LOG_FILE", dir.file("orvex.log"));
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationDirPath() + "/orvex", {"script", path, "3"});
    EXPECT_TRUE(process.waitForFinished(120000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
  }

  kordel::test::TempDir dir;
};

TEST_F(ScriptCommandTest, QuitGivesTheExitCodeInBothLanguages) {
  const Result vbs = script("quit.vbs", "Sub Leave()\n"
                                        "  On Error Resume Next\n"
                                        "  WScript.Quit CInt(WScript.Arguments(0))\n"
                                        "  WScript.Echo \"after quit\"\n"
                                        "End Sub\n"
                                        "On Error Resume Next\n"
                                        "WScript.Echo \"before\"\n"
                                        "Leave\n"
                                        "WScript.Echo \"after leave\"\n");
  EXPECT_EQ(vbs.exitCode, 3) << vbs.err.toStdString();
  EXPECT_EQ(vbs.out, "before\n");
  EXPECT_EQ(vbs.err, "");

  const Result js = script("quit.js", "function leave() {\n"
                                      "  try { WScript.Quit(Number(WScript.Arguments(0))); } catch (e) {}\n"
                                      "  WScript.Echo('after quit');\n"
                                      "}\n"
                                      "WScript.Echo('before');\n"
                                      "try { leave(); } catch (e) { WScript.Echo('caught'); }\n"
                                      "WScript.Echo('after leave');\n");
  EXPECT_EQ(js.exitCode, 3) << js.err.toStdString();
  EXPECT_EQ(js.out, "before\n");
  EXPECT_EQ(js.err, "");
}

TEST_F(ScriptCommandTest, AScriptThatEndsGivesZeroAndAnErrorGivesOne) {
  const Result ended = script("ended.vbs", "WScript.Echo \"done\"\n");
  EXPECT_EQ(ended.exitCode, 0) << ended.err.toStdString();
  EXPECT_EQ(ended.out, "done\n");

  const Result failed = script("failed.js", "WScript.Echo('one');\nnoSuchFunction();\n");
  EXPECT_EQ(failed.exitCode, 1);
  EXPECT_EQ(failed.out, "one\n");
  EXPECT_TRUE(failed.err.contains("failed.js(2, ")) << failed.err.toStdString();
}

} // namespace

// orvex script: the program's exit code is the script's, as WScript.Quit
// gives it, 0 at the script's end and 1 for an error.

#include "support/OrvexProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace {

class ScriptCommandTest : public ::testing::Test {
protected:
  kordel::test::OrvexRun script(const QString &fileName, const QByteArray &code) {
    const QString path = dir.file(fileName);
    EXPECT_TRUE(kordel::test::writeFile(path, code));
    return kordel::test::runOrvex(dir, {"script", path, "3"});
  }

  kordel::test::TempDir dir;
};

TEST_F(ScriptCommandTest, QuitGivesTheExitCodeInBothLanguages) {
  const kordel::test::OrvexRun vbs = script("quit.vbs", "Sub Leave()\n"
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

  const kordel::test::OrvexRun js =
      script("quit.js", "function leave() {\n"
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
  const kordel::test::OrvexRun ended = script("ended.vbs", "WScript.Echo \"done\"\n");
  EXPECT_EQ(ended.exitCode, 0) << ended.err.toStdString();
  EXPECT_EQ(ended.out, "done\n");

  const kordel::test::OrvexRun failed = script("failed.js", "WScript.Echo('one');\nnoSuchFunction();\n");
  EXPECT_EQ(failed.exitCode, 1);
  EXPECT_EQ(failed.out, "one\n");
  EXPECT_TRUE(failed.err.contains("failed.js(2, ")) << failed.err.toStdString();
}

} // namespace

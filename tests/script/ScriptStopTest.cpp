// WScript.Quit: the run ends at once with the code given, past every error
// handler of the script, in both languages; the engine stays usable after.

#include "script/JScriptTestModel.h"
#include "script/ScriptRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

struct Run {
  QStringList lines;
  script::ScriptOutcome outcome;
};

// Runs a script file as the command line does.
Run runFile(const QString &path, const QString &language, const script::ScriptRunOptions &base = {}) {
  Run run;
  script::ScriptRunOptions options = base;
  options.language = language;
  run.outcome =
      script::runScript(script::readScriptFile(path), options, [&run](const QString &line) { run.lines.append(line); });
  return run;
}

void expectStopped(const Run &run, int exitCode, const QStringList &lines) {
  EXPECT_FALSE(run.outcome.error.has_value()) << run.outcome.error->description().toStdString();
  EXPECT_EQ(run.outcome.exitCode, exitCode);
  EXPECT_EQ(run.lines, lines);
}

TEST(ScriptStop, QuitInANestedProcedureUnderResumeNextEndsTheVBScriptRun) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("quit.vbs"));
  ASSERT_TRUE(writeFile(path, "WScript.Echo \"start\"\n"
                              "Sub Inner()\n"
                              "  On Error Resume Next\n"
                              "  WScript.Echo \"inner\"\n"
                              "  WScript.Quit 3\n"
                              "  WScript.Echo \"after quit\"\n"
                              "End Sub\n"
                              "Function Outer()\n"
                              "  On Error Resume Next\n"
                              "  Inner\n"
                              "  WScript.Echo \"after inner\", Err.Number\n"
                              "End Function\n"
                              "On Error Resume Next\n"
                              "x = Outer()\n"
                              "WScript.Echo \"after outer\", Err.Number\n"));
  expectStopped(runFile(path, QStringLiteral("VBScript")), 3, {"start", "inner"});
}

TEST(ScriptStop, QuitInANestedFunctionInsideTryCatchEndsTheJScriptRun) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("quit.js"));
  ASSERT_TRUE(writeFile(path, "WScript.Echo('start');\n"
                              "function inner() {\n"
                              "  try { WScript.Echo('inner'); WScript.Quit(3); WScript.Echo('after quit'); }\n"
                              "  catch (e) { WScript.Echo('inner caught', e.number); }\n"
                              "  finally { WScript.Echo('finally'); }\n"
                              "}\n"
                              "function outer() {\n"
                              "  try { inner(); WScript.Echo('after inner'); } catch (e) { WScript.Echo('caught'); }\n"
                              "}\n"
                              "try { outer(); } catch (e) { WScript.Echo('outer caught'); }\n"
                              "WScript.Echo('end');\n"));
  expectStopped(runFile(path, QStringLiteral("JScript")), 3, {"start", "inner"});
}

TEST(ScriptStop, QuitWithoutACodeEndsWithZeroAndABadCodeIsAnError) {
  TempDir dir;
  const QString vbs = dir.file(QStringLiteral("plain.vbs"));
  ASSERT_TRUE(writeFile(vbs, "WScript.Echo 1\nWScript.Quit\nWScript.Echo 2\n"));
  expectStopped(runFile(vbs, QStringLiteral("VBScript")), 0, {"1"});
  const QString js = dir.file(QStringLiteral("plain.js"));
  ASSERT_TRUE(writeFile(js, "WScript.Echo(1); WScript.Quit(); WScript.Echo(2);\n"));
  expectStopped(runFile(js, QStringLiteral("JScript")), 0, {"1"});

  // A code that is no number is an ordinary error, which handlers see.
  const QString bad = dir.file(QStringLiteral("bad.vbs"));
  ASSERT_TRUE(writeFile(bad, "On Error Resume Next\nWScript.Quit \"many\"\nWScript.Echo Err.Number\n"));
  expectStopped(runFile(bad, QStringLiteral("VBScript")), 0, {"13"});
}

// The host calls back into the script (a nested entry) and the script
// quits there: the stop passes the host and the outer script's handlers.
TEST(ScriptStop, QuitInsideACallbackFromTheHostEndsTheWholeRun) {
  TempDir dir;
  script::ScriptRunOptions options;
  auto report = std::make_shared<TestReport>();
  options.namedItems.emplace_back(QStringLiteral("rpt"), report);

  const QString vbs = dir.file(QStringLiteral("callback.vbs"));
  ASSERT_TRUE(writeFile(vbs, "Sub Inner(code)\n"
                             "  On Error Resume Next\n"
                             "  WScript.Quit code\n"
                             "End Sub\n"
                             "On Error Resume Next\n"
                             "rpt.Apply GetRef(\"Inner\"), 4\n"
                             "WScript.Echo \"after\"\n"));
  expectStopped(runFile(vbs, QStringLiteral("VBScript"), options), 4, {});

  const QString js = dir.file(QStringLiteral("callback.js"));
  ASSERT_TRUE(writeFile(js, "try { rpt.Apply(function (code) { try { WScript.Quit(code); } catch (e) {} }, 4); }\n"
                            "catch (e) { WScript.Echo('caught'); }\n"
                            "WScript.Echo('after');\n"));
  expectStopped(runFile(js, QStringLiteral("JScript"), options), 4, {});
}

// After a stop the engine runs the next call normally: no state of the
// stop (an interrupted engine, an error in Err) is left behind.
TEST(ScriptStop, TheEngineRunsAgainAfterAStop) {
  struct Case {
    const char *language;
    const char *code;
    const char *check;
  };
  const Case cases[] = {
      {"VBScript",
       "Function Check() : Check = Err.Number + 10 : End Function\n"
       "Sub Leave() : On Error Resume Next : WScript.Quit 5 : End Sub\n",
       "Check"},
      {"JScript",
       "function check() { return 10; }\n"
       "function leave() { try { WScript.Quit(5); } catch (e) {} }\n",
       "check"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.language);
    auto engine = script::createScriptEngine(QString::fromLatin1(c.language));
    engine->addNamedItem(QStringLiteral("WScript"),
                         std::make_shared<script::WScriptObject>(nullptr, QStringLiteral("test")));
    engine->addCode(QString::fromLatin1(c.code));
    Args none;
    try {
      engine->call(QStringLiteral("leave"), none);
      ADD_FAILURE() << "no stop";
    } catch (const script::ScriptStop &stop) {
      EXPECT_EQ(stop.exitCode(), 5);
    }
    EXPECT_EQ(engine->call(QString::fromLatin1(c.check), none).toLong(), 10);
  }
}

} // namespace
} // namespace kordel::test

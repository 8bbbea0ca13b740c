// Runaway scripts end with an error instead of hanging or crashing, and the
// engine stays usable after them.

#include "script/ScriptEngine.h"
#include "script/ScriptTestSupport.h"

#include "core/Object.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

using script::ScriptError;

constexpr int kTimeout = 1001;
constexpr int kOutOfStack = 28;

int errorNumberOf(script::ScriptEngine &engine, const QString &code) {
  try {
    engine.addCode(code);
  } catch (const ScriptError &error) {
    return error.number();
  }
  return 0;
}

class ScriptBudgetTest : public ::testing::Test {
protected:
  void SetUp() override {
    echo = makeEchoEngine();
    echo.engine->addCode(QStringLiteral("Function Healthy() : Healthy = 1 + 1 : End Function\n"));
  }
  // The engine still runs code after a run was stopped.
  void expectUsable() {
    Args none;
    EXPECT_EQ(echo.engine->call(QStringLiteral("Healthy"), none).toLong(), 2);
  }
  EchoEngine echo;
};

TEST_F(ScriptBudgetTest, EndlessLoopStopsWhenItsTimeIsSpentEvenUnderResumeNext) {
  script::ScriptBudget budget;
  budget.milliseconds = 200;
  echo.engine->setBudget(budget);
  EXPECT_EQ(errorNumberOf(*echo.engine, QStringLiteral("On Error Resume Next\nDo\nLoop\n")), kTimeout);
  EXPECT_EQ(errorNumberOf(*echo.engine, QStringLiteral("On Error Resume Next\nWhile True\n x = 1 / 0\nWend\n")),
            kTimeout);
  expectUsable();
}

TEST_F(ScriptBudgetTest, StatementBudgetStopsALoopAndCountsPerEntry) {
  script::ScriptBudget budget;
  budget.statements = 5000;
  echo.engine->setBudget(budget);
  EXPECT_EQ(errorNumberOf(*echo.engine, QStringLiteral("For i = 1 To 100000\n  n = n + 1\nNext\n")), kTimeout);
  // Each entry has the whole budget again.
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(errorNumberOf(*echo.engine, QStringLiteral("For i = 1 To 1000\n  n = n + 1\nNext\n")), 0);
  expectUsable();
}

TEST_F(ScriptBudgetTest, EndlessRecursionEndsWithOutOfStackSpace) {
  EXPECT_EQ(errorNumberOf(*echo.engine, QStringLiteral("Function Down(n)\n  Down = Down(n + 1)\nEnd Function\n"
                                                       "x = Down(1)\n")),
            kOutOfStack);
  // Recursion through a class method and a host-visible call fails the same way.
  EXPECT_EQ(errorNumberOf(*echo.engine, QStringLiteral("Class R\n  Sub Go() : Me.Go : End Sub\nEnd Class\n"
                                                       "Set looping = New R\nlooping.Go\n")),
            kOutOfStack);
  expectUsable();
}

// A host object whose method calls a procedure of the script by name, as
// the host calls a script's event procedures.
class CallsBack : public Object {
public:
  explicit CallsBack(script::ScriptEngine &engine) : engine_(engine) {}

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<CallsBack>(
            "Relay", [](CallsBack &self, Args &args) { return self.engine_.call(QStringLiteral("Callback"), args); }),
    }};
    return table;
  }

private:
  script::ScriptEngine &engine_;
};

// Each turn from the script to the host and back enters the engine again,
// with the host's own frames between: the script's depth ends it before the
// process's stack does.
TEST(ScriptBudget, EndlessCallsBetweenScriptAndHostEndWithOutOfStackSpace) {
  struct Case {
    const char *language;
    const char *procedure;
    const char *start;
  };
  const Case cases[] = {
      {"VBScript", "Function Callback(n)\n  Callback = Host.Relay(n + 1)\nEnd Function\n", "x = Host.Relay(0)\n"},
      {"JScript", "function Callback(n) { return Host.Relay(n + 1); }\n", "var x = Host.Relay(0);\n"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.language);
    const auto engine = script::createScriptEngine(QString::fromLatin1(c.language));
    // A hang guard: without the depth's end the time's end comes instead.
    script::ScriptBudget budget;
    budget.milliseconds = 20000;
    engine->setBudget(budget);
    engine->addNamedItem(QStringLiteral("Host"), std::make_shared<CallsBack>(*engine));
    engine->addCode(QString::fromLatin1(c.procedure));
    EXPECT_EQ(errorNumberOf(*engine, QString::fromLatin1(c.start)), kOutOfStack);
    // Started by the host, as an event procedure is.
    Args first{Variant(0)};
    try {
      engine->call(QStringLiteral("Callback"), first);
      ADD_FAILURE() << "no error";
    } catch (const Error &error) {
      EXPECT_EQ(error.number(), kOutOfStack) << error.description().toStdString();
    }
    EXPECT_EQ(engine->evaluate(QStringLiteral("1 + 1")).toLong(), 2) << "the engine runs again";
  }
}

TEST_F(ScriptBudgetTest, RecursionUnderResumeNextUnwindsWithoutCrashing) {
  script::ScriptBudget budget;
  budget.recursionDepth = 200;
  echo.engine->setBudget(budget);
  echo.engine->addCode(QStringLiteral("Dim deepest\n"
                                      "Sub Dive(n)\n"
                                      "  On Error Resume Next\n"
                                      "  deepest = n\n"
                                      "  Dive n + 1\n"
                                      "End Sub\n"
                                      "Dive 1\n"
                                      "WScript.Echo deepest\n"));
  EXPECT_EQ(*echo.output, QStringList{QStringLiteral("200")});
  expectUsable();
}

TEST_F(ScriptBudgetTest, HugeStringsAndArraysAreRefused) {
  EXPECT_EQ(errorNumberOf(*echo.engine, QStringLiteral("s = Space(2000000000)\n")), ErrorNumber::OutOfStringSpace);
  // Over the budget's cap of 64 MB a string is out of memory.
  EXPECT_EQ(errorNumberOf(*echo.engine, QStringLiteral("s = \"xy\"\nDo\n  s = s & s\nLoop\n")),
            ErrorNumber::OutOfMemory);
  EXPECT_EQ(errorNumberOf(*echo.engine, QStringLiteral("ReDim a(100000, 100000)\n")), ErrorNumber::OutOfMemory);
  expectUsable();
}

TEST_F(ScriptBudgetTest, DeeplyNestedSourceIsACompileErrorNotACrash) {
  const QString nested = QString(5000, u'(') + u'1' + QString(5000, u')');
  try {
    echo.engine->evaluate(nested);
    FAIL() << "no error";
  } catch (const ScriptError &error) {
    EXPECT_TRUE(error.isCompileError());
  }
  expectUsable();
}

} // namespace
} // namespace kordel::test

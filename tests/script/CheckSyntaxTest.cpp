// Checking a script's syntax in both languages: the compile error with the
// place the text has it, and nothing of the text run or declared.

#include "script/ScriptEngine.h"
#include "script/ScriptRunner.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

using script::ScriptError;

struct CheckCase {
  const char *language;
  const char *good;           // a valid script whose global statement echoes
  const char *badOnLine3;     // a syntax error on its third line
  const char *unclosedOnLast; // a block left open to the end of its last line
  int lastLine;
};

class CheckSyntaxTest : public ::testing::TestWithParam<CheckCase> {
protected:
  void SetUp() override {
    engine = script::createScriptEngine(QString::fromLatin1(GetParam().language));
    auto lines = echoed;
    engine->addNamedItem(QStringLiteral("WScript"),
                         std::make_shared<script::WScriptObject>([lines](const QString &line) { lines->append(line); },
                                                                 QStringLiteral("test")));
  }

  // The error checking a text raises; fails the test when it raises none.
  ScriptError errorOf(const char *code) {
    try {
      engine->checkSyntax(QString::fromUtf8(code));
    } catch (const ScriptError &error) {
      return error;
    }
    ADD_FAILURE() << "no error from: " << code;
    return ScriptError(Error(0), 0, 0);
  }

  std::unique_ptr<script::ScriptEngine> engine;
  std::shared_ptr<QStringList> echoed = std::make_shared<QStringList>();
};

TEST_P(CheckSyntaxTest, AGoodScriptPassesAndNothingOfItRunsOrIsDeclared) {
  const QString good = QString::fromUtf8(GetParam().good);
  engine->checkSyntax(good);
  EXPECT_TRUE(echoed->isEmpty());
  EXPECT_FALSE(engine->hasProcedure(QStringLiteral("ActiveReport_ReportStart")));
  // The engine takes the same text afterwards as if no check had been.
  engine->addCode(good);
  EXPECT_EQ(*echoed, QStringList{QStringLiteral("ran")});
  EXPECT_TRUE(engine->hasProcedure(QStringLiteral("ActiveReport_ReportStart")));
}

TEST_P(CheckSyntaxTest, AnErrorNamesTheLineOfTheText) {
  const ScriptError error = errorOf(GetParam().badOnLine3);
  EXPECT_TRUE(error.isCompileError());
  EXPECT_EQ(error.line(), 3);
  EXPECT_GT(error.column(), 0);
  EXPECT_TRUE(echoed->isEmpty());
}

TEST_P(CheckSyntaxTest, ABlockLeftOpenIsReportedWithinTheText) {
  const ScriptError error = errorOf(GetParam().unclosedOnLast);
  EXPECT_TRUE(error.isCompileError());
  EXPECT_EQ(error.line(), GetParam().lastLine);
  EXPECT_TRUE(echoed->isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Languages, CheckSyntaxTest,
                         ::testing::Values(CheckCase{"VBScript",
                                                     "WScript.Echo \"ran\"\n"
                                                     "Sub ActiveReport_ReportStart()\n"
                                                     "End Sub\n",
                                                     "Dim a\n"
                                                     "a = 1\n"
                                                     "If a = 1\n"
                                                     "End If\n",
                                                     "WScript.Echo \"ran\"\n"
                                                     "Sub Detail_Format()\n"
                                                     "  If True Then",
                                                     3},
                                           CheckCase{"JScript",
                                                     "WScript.Echo('ran');\n"
                                                     "function ActiveReport_ReportStart() {\n"
                                                     "}\n",
                                                     "var a = 1;\n"
                                                     "WScript.Echo('ran');\n"
                                                     "var b = ;\n",
                                                     "WScript.Echo('ran');\n"
                                                     "function Detail_Format() {\n"
                                                     "  if (true) {",
                                                     3}),
                         [](const ::testing::TestParamInfo<CheckCase> &info) {
                           return std::string(info.param.language);
                         });

// The first line's columns are the text's own, though the check compiles
// it behind a wrapper.
TEST(CheckSyntaxJScript, ColumnsOfTheFirstLineAreTheTexts) {
  auto engine = script::createScriptEngine(QStringLiteral("JScript"));
  for (const QString &text : {QStringLiteral("var b = ;"), QStringLiteral("var a = 1;\nvar b = ;")}) {
    std::optional<ScriptError> checked;
    std::optional<ScriptError> added;
    try {
      engine->checkSyntax(text);
    } catch (const ScriptError &error) {
      checked = error;
    }
    try {
      engine->addCode(text);
    } catch (const ScriptError &error) {
      added = error;
    }
    ASSERT_TRUE(checked && added);
    EXPECT_EQ(checked->line(), added->line());
    EXPECT_EQ(checked->column(), added->column());
    EXPECT_EQ(checked->description(), added->description());
  }
}

// A text is read as a whole program: text that would close a function
// around it is an error, and names it declares before its first statement
// runs stay out of the engine.
TEST(CheckSyntaxJScript, TheTextIsReadAsAProgramOfItsOwn) {
  auto engine = script::createScriptEngine(QStringLiteral("JScript"));
  EXPECT_THROW(engine->checkSyntax(QStringLiteral("}); (function () {")), ScriptError);
  engine->checkSyntax(QStringLiteral("let total = 1;\nconst rate = 2;\nfunction later() {}"));
  EXPECT_FALSE(engine->hasProcedure(QStringLiteral("later")));
  engine->addCode(QStringLiteral("let total = 3;\nconst rate = 4;\nvar product = total * rate;"));
  EXPECT_EQ(engine->evaluate(QStringLiteral("product")), Variant(12));
}

} // namespace
} // namespace kordel::test

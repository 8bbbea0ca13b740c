// The script host interface over JScript: code, procedures and their
// arguments, expressions, errors with their places, the code object.

#include "script/JScriptTestModel.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

class JScriptEngineTest : public ::testing::Test, public JScriptFixture {};

TEST_F(JScriptEngineTest, ProceduresAreTheScriptsOwnGlobalFunctions) {
  engine->addCode(QStringLiteral("function ActiveReport_FetchData(eof) { return eof; }\n"
                                 "var counter = 0;\n"
                                 "var notAProcedure = 5;\n"));
  EXPECT_TRUE(engine->hasProcedure(QStringLiteral("ActiveReport_FetchData")));
  // The host's names may differ in case alone.
  EXPECT_TRUE(engine->hasProcedure(QStringLiteral("activereport_fetchdata")));
  EXPECT_FALSE(engine->hasProcedure(QStringLiteral("Detail_Format")));
  EXPECT_FALSE(engine->hasProcedure(QStringLiteral("notAProcedure")));
  // Neither the engine's functions nor named items are procedures.
  EXPECT_FALSE(engine->hasProcedure(QStringLiteral("parseInt")));
  EXPECT_FALSE(engine->hasProcedure(QStringLiteral("eval")));
  EXPECT_FALSE(engine->hasProcedure(QStringLiteral("ActiveXObject")));
  EXPECT_FALSE(engine->hasProcedure(QStringLiteral("rpt")));
  // A script may give an engine name a function of its own.
  engine->addCode(QStringLiteral("function escape(s) { return '<' + s + '>'; }"));
  EXPECT_TRUE(engine->hasProcedure(QStringLiteral("escape")));

  Args args{Variant(QStringLiteral("a"))};
  try {
    engine->call(QStringLiteral("Detail_Format"), args);
    ADD_FAILURE() << "no error";
  } catch (const script::ScriptError &error) {
    EXPECT_EQ(error.number(), 35);
  }
}

TEST_F(JScriptEngineTest, AReturnedValueComesBackInTheFirstArgument) {
  engine->addCode(QStringLiteral("var rows = 2;\n"
                                 "function ActiveReport_FetchData(eof) {\n"
                                 "  if (rows === 0) return true;\n"
                                 "  rows--;\n"
                                 "  return false;\n"
                                 "}\n"
                                 "function Detail_Format() { rpt.Title = 'formatted'; }\n"));
  int fetched = 0;
  for (;;) {
    Args args{Variant(false)};
    engine->call(QStringLiteral("ActiveReport_FetchData"), args);
    if (args[0].toBool())
      break;
    ++fetched;
  }
  EXPECT_EQ(fetched, 2);
  // A procedure that returns nothing leaves the arguments alone.
  Args untouched{Variant(7)};
  EXPECT_TRUE(engine->call(QStringLiteral("Detail_Format"), untouched).isEmpty());
  EXPECT_EQ(untouched[0], Variant(7));
  EXPECT_EQ(report->title, Variant(QStringLiteral("formatted")));
}

TEST_F(JScriptEngineTest, EvaluateTakesExpressionsWithOrWithoutSemicolonAndSeesLaterChanges) {
  report->recordIndex = 1;
  EXPECT_EQ(eval(QStringLiteral("rpt.RecordIndex;")), Variant(1));
  report->recordIndex = 2;
  EXPECT_EQ(eval(QStringLiteral("rpt.RecordIndex;")), Variant(2));
  EXPECT_EQ(eval(QStringLiteral("  rpt.RecordIndex * 10 ;; ")), Variant(20));
  EXPECT_EQ(eval(QStringLiteral("rpt.RecordIndex // the row\n")), Variant(2));
  // Statements run as a program and give their last value.
  EXPECT_EQ(eval(QStringLiteral("var n = 3; n * n")), Variant(9));
  engine->addCode(QStringLiteral("var later = 'defined later';"));
  EXPECT_EQ(text(QStringLiteral("later")), QStringLiteral("defined later"));
  EXPECT_TRUE(eval(QString()).isEmpty());
}

TEST_F(JScriptEngineTest, SyntaxErrorsNameLineAndColumnAndAddNothing) {
  const script::ScriptError error = errorOf(QStringLiteral("function early() { return 1; }\n"
                                                           "var a = 1;\n"
                                                           "var b = ;\n"));
  EXPECT_TRUE(error.isCompileError());
  EXPECT_EQ(error.number(), 1002);
  EXPECT_EQ(error.line(), 3);
  EXPECT_EQ(error.column(), 9);
  EXPECT_EQ(error.source(), QStringLiteral("JScript compilation error"));
  EXPECT_FALSE(engine->hasProcedure(QStringLiteral("early")));
  // The same in an expression.
  try {
    engine->evaluate(QStringLiteral("1 +"));
    ADD_FAILURE() << "no error";
  } catch (const script::ScriptError &thrown) {
    EXPECT_TRUE(thrown.isCompileError());
    EXPECT_EQ(thrown.line(), 1);
  }
  // Module imports do not exist.
  EXPECT_TRUE(errorOf(QStringLiteral("import('/etc/passwd');")).isCompileError());
  // Nor does assigning to a call, as in "d.Item(k) = v": it is refused
  // before anything runs.
  const script::ScriptError assignment = errorOf(QStringLiteral("rpt.Title = 'ran';\nrpt.Sections('Detail') = 5;"));
  EXPECT_TRUE(assignment.isCompileError());
  EXPECT_EQ(assignment.line(), 2);
  EXPECT_TRUE(report->title.isEmpty());
}

TEST_F(JScriptEngineTest, RunTimeErrorsCarryNumberDescriptionAndLine) {
  script::ScriptError error = errorOf(QStringLiteral("var a = 1;\nmissing + 1;\n"));
  EXPECT_EQ(error.number(), 5009);
  EXPECT_EQ(error.line(), 2);
  EXPECT_EQ(error.column(), 0);
  EXPECT_FALSE(error.isCompileError());
  EXPECT_EQ(error.source(), QStringLiteral("JScript runtime error"));
  EXPECT_TRUE(error.description().contains(QLatin1String("missing")));

  EXPECT_EQ(errorOf(QStringLiteral("\n\nnull.x;")).number(), 5007);
  EXPECT_EQ(errorOf(QStringLiteral("\n\nnull.x;")).line(), 3);

  error = errorOf(QStringLiteral("throw new Error('custom text');"));
  EXPECT_EQ(error.number(), 5022);
  EXPECT_EQ(error.description(), QStringLiteral("custom text"));

  error = errorOf(QStringLiteral("throw 'a plain value';"));
  EXPECT_EQ(error.number(), 5022);
  EXPECT_TRUE(error.description().contains(QLatin1String("a plain value")));

  // An error with a number, as JScript code raises its own.
  error = errorOf(QStringLiteral("var e = new Error('mine'); e.number = 10500; e.description = 'own text';\n"
                                 "throw e;"));
  EXPECT_EQ(error.number(), 10500);
  EXPECT_EQ(error.description(), QStringLiteral("own text"));
  EXPECT_EQ(error.line(), 1);

  // Errors of a procedure carry the line within the block that defined it.
  engine->addCode(QStringLiteral("// block two\n"
                                 "function fails() {\n"
                                 "  return undefinedThing;\n"
                                 "}\n"));
  Args none;
  try {
    engine->call(QStringLiteral("fails"), none);
    ADD_FAILURE() << "no error";
  } catch (const script::ScriptError &thrown) {
    EXPECT_EQ(thrown.number(), 5009);
    EXPECT_EQ(thrown.line(), 3);
  }
}

TEST_F(JScriptEngineTest, CodeObjectExposesGlobalsToTheHost) {
  engine->addCode(QStringLiteral("var total = 5; function add(n) { total += n; return total; }"));
  const ObjectRef code = engine->codeObject();
  EXPECT_EQ(code->get(QStringLiteral("total")), Variant(5));
  EXPECT_EQ(code->invoke(QStringLiteral("Add"), {Variant(2)}), Variant(7));
  code->set(QStringLiteral("total"), Variant(100));
  EXPECT_EQ(eval(QStringLiteral("total")), Variant(100));
  EXPECT_TRUE(code->hasMember(QStringLiteral("add")));
  EXPECT_FALSE(code->hasMember(QStringLiteral("subtract")));
  EXPECT_EQ(code->get(QStringLiteral("rpt")).toObject(), ObjectRef(report));
}

TEST_F(JScriptEngineTest, ANamedItemCannotTakeANameTheScriptDeclared) {
  engine->addCode(QStringLiteral("var Records = 1;"));
  try {
    engine->addNamedItem(QStringLiteral("Records"), std::make_shared<TestReport>());
    ADD_FAILURE() << "no error";
  } catch (const script::ScriptError &error) {
    EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  }
  // A named item stays what the host made it.
  engine->addCode(QStringLiteral("rpt = 5;"));
  EXPECT_EQ(eval(QStringLiteral("rpt")).toObject(), ObjectRef(report));
}

TEST(JScriptEngineFactory, MakesJScriptEnginesByName) {
  EXPECT_EQ(script::createScriptEngine(QStringLiteral("jscript"))->language(), QStringLiteral("JScript"));
}

} // namespace
} // namespace kordel::test

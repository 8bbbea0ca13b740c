// What a JScript script cannot do: run past its budget, create objects off
// the host's list, reach files, the network or Qt, or run code from strings
// unless the host allows it.

#include "script/JScriptTestModel.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

constexpr int kTimeout = 1001;
constexpr int kOutOfStack = 28;

class JScriptSafetyTest : public ::testing::Test, public JScriptFixture {
protected:
  void useBudget(int milliseconds, std::int64_t statements = 0, int recursionDepth = 1000) {
    script::ScriptBudget budget;
    budget.milliseconds = milliseconds;
    budget.statements = statements;
    budget.recursionDepth = recursionDepth;
    engine->setBudget(budget);
  }
  // The engine still runs code after a run was stopped.
  void expectUsable() { EXPECT_EQ(eval(QStringLiteral("1 + 1")), Variant(2)); }
};

TEST_F(JScriptSafetyTest, EndlessLoopsEndWithTheTimeoutEvenInsideTryCatch) {
  useBudget(200);
  EXPECT_EQ(errorOf(QStringLiteral("for (;;) {}")).number(), kTimeout);
  expectUsable();
  EXPECT_EQ(errorOf(QStringLiteral("while (true) { try { for (;;) {} } catch (e) {} }")).number(), kTimeout);
  expectUsable();
  engine->addCode(QStringLiteral("function Detail_Format() { var n = 0; while (true) n++; }"));
  Args none;
  try {
    engine->call(QStringLiteral("Detail_Format"), none);
    ADD_FAILURE() << "no error";
  } catch (const script::ScriptError &error) {
    EXPECT_EQ(error.number(), kTimeout);
  }
  try {
    engine->evaluate(QStringLiteral("(function () { for (;;) {} })();"));
    ADD_FAILURE() << "no error";
  } catch (const script::ScriptError &error) {
    EXPECT_EQ(error.number(), kTimeout);
  }
  expectUsable();
}

TEST_F(JScriptSafetyTest, ALoopInACallbackTheHostRunsEndsTheWholeEntry) {
  useBudget(200);
  EXPECT_EQ(errorOf(QStringLiteral("rpt.Apply(function () { for (;;) {} }, 0); 'not reached';")).number(), kTimeout);
  // A script object the host calls later has the budget too.
  engine->addCode(QStringLiteral("rpt.Keep(function () { for (;;) {} });"));
  try {
    report->kept.toObject()->invoke(QString());
    ADD_FAILURE() << "no error";
  } catch (const Error &error) {
    EXPECT_EQ(error.number(), kTimeout);
  }
  expectUsable();
}

TEST_F(JScriptSafetyTest, AStatementBudgetAlsoEndsALoop) {
  useBudget(0, 1000000);
  EXPECT_EQ(errorOf(QStringLiteral("for (;;) {}")).number(), kTimeout);
  expectUsable();
}

TEST_F(JScriptSafetyTest, DeepRecursionEndsWithOutOfStackSpace) {
  useBudget(5000);
  EXPECT_EQ(errorOf(QStringLiteral("function down(n) { return down(n + 1); }\ndown(0);")).number(), kOutOfStack);
  expectUsable();
  // Through the host and back: each turn enters the engine again.
  EXPECT_EQ(errorOf(QStringLiteral("function viaHost(n) { return rpt.Apply(viaHost, n + 1); }\nviaHost(0);")).number(),
            kOutOfStack);
  expectUsable();
  useBudget(5000, 0, 20);
  EXPECT_EQ(eval(QStringLiteral("function depth(n) { return n === 0 ? 'bottom' : rpt.Apply(depth, n - 1); }"
                                "depth(10)")),
            Variant(QStringLiteral("bottom")));
  EXPECT_EQ(errorOf(QStringLiteral("depth(30)")).number(), kOutOfStack);
}

TEST_F(JScriptSafetyTest, ActiveXObjectMakesOnlyWhatTheHostAllows) {
  engine->setObjectFactory([](const QString &progId) -> ObjectRef {
    return progId.compare(QLatin1String("Kordel.Allowed"), Qt::CaseInsensitive) == 0 ? std::make_shared<TestReport>()
                                                                                     : nullptr;
  });
  EXPECT_EQ(text(QStringLiteral("new ActiveXObject('kordel.allowed').Timestamp('ok')")), QStringLiteral("stamp ok"));
  EXPECT_EQ(text(QStringLiteral("typeof new ActiveXObject('Scripting.Dictionary').Add")), QStringLiteral("function"));
  for (const char *refused : {"WScript.Shell", "Scripting.FileSystemObject", "Shell.Application"}) {
    EXPECT_EQ(eval(QStringLiteral("try { new ActiveXObject('%1'); 0 } catch (e) { e.number }").arg(refused)),
              Variant(ErrorNumber::CannotCreateObject))
        << refused;
  }
  EXPECT_EQ(errorOf(QStringLiteral("\nnew ActiveXObject('WScript.Shell');")).line(), 2);
}

TEST_F(JScriptSafetyTest, NoFileNetworkOrQtObjectsAreReachable) {
  for (const char *name : {"Qt", "XMLHttpRequest", "print", "console", "gc", "qsTr", "require", "fetch", "WebSocket",
                           "Worker", "setTimeout", "setInterval", "LocalStorage", "File", "FileReader", "process"}) {
    EXPECT_EQ(text(QStringLiteral("typeof %1").arg(name)), QStringLiteral("undefined")) << name;
  }
  // Every global name is the language's own or one of JScript's three.
  const QStringList known =
      QStringLiteral("Array ArrayBuffer Atomics Boolean DataView Date Error EvalError Float32Array Float64Array "
                     "Function Infinity Int16Array Int32Array Int8Array JSON Map Math NaN Number Object Promise Proxy "
                     "RangeError ReferenceError Reflect RegExp Set SharedArrayBuffer String Symbol SyntaxError "
                     "TypeError URIError URL URLSearchParams Uint16Array Uint32Array Uint8Array Uint8ClampedArray "
                     "WeakMap WeakSet decodeURI decodeURIComponent encodeURI encodeURIComponent escape eval isFinite "
                     "isNaN parseFloat parseInt undefined unescape Enumerator VBArray ActiveXObject rpt")
          .split(u' ');
  const QStringList globals =
      text(QStringLiteral("Object.getOwnPropertyNames((function () { return this; })()).join(' ')")).split(u' ');
  for (const QString &name : globals)
    EXPECT_TRUE(known.contains(name)) << name.toStdString();
}

TEST_F(JScriptSafetyTest, CodeFromStringsRunsOnlyWhenAllowed) {
  const QStringList compilers{
      QStringLiteral("eval('1 + 1')"),
      QStringLiteral("Function('return 1')()"),
      QStringLiteral("new Function('a', 'return a')(1)"),
      QStringLiteral("(function () {}).constructor('return 1')()"),
      QStringLiteral("[].map.constructor('return 1')()"),
      QStringLiteral("Object.getPrototypeOf(function* () {}).constructor('yield 1')().next().value"),
  };
  for (const QString &code : compilers)
    EXPECT_EQ(eval(QStringLiteral("try { %1 } catch (e) { e.number }").arg(code)),
              Variant(ErrorNumber::PermissionDenied))
        << code.toStdString();
  // Functions are still functions.
  EXPECT_TRUE(eval(QStringLiteral("(function () {}) instanceof Function && typeof Function.prototype.call === "
                                  "'function'"))
                  .toBool());

  engine->setDynamicCodeAllowed(true);
  for (const QString &code : compilers)
    EXPECT_NE(eval(code), Variant(ErrorNumber::PermissionDenied)) << code.toStdString();
  EXPECT_EQ(eval(QStringLiteral("eval('6 * 7')")), Variant(42));

  engine->setDynamicCodeAllowed(false);
  EXPECT_EQ(errorOf(QStringLiteral("eval('1')")).number(), ErrorNumber::PermissionDenied);
}

} // namespace
} // namespace kordel::test

// The script host interface as a host uses it: named items, code, calls
// with ByRef arguments, evaluate, errors with their places, the object
// factory, the UI seam and script objects handed to the host.

#include "core/Dictionary.h"
#include "script/ScriptEngine.h"
#include "script/ScriptTestSupport.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

using script::ScriptError;

// A host object with a property, a method that changes its argument, a
// method that fails, and a default indexed property.
class Probe : public Object {
public:
  QString typeName() const override { return QStringLiteral("Probe"); }
  Variant value;
  QStringList written;
  std::shared_ptr<Dictionary> items = std::make_shared<Dictionary>();

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{
        {
            property<Probe>(
                "Value", [](Probe &p) { return p.value; }, [](Probe &p, const Variant &v) { p.value = v; }),
            property<Probe>("Items", [](Probe &p) { return ObjectRef(p.items); }),
            method<Probe>("Twice",
                          [](Probe &, Args &a) {
                            expectArgs(a, 1, 1);
                            a[0] = Variant(a[0].toLong() * 2);
                            return Variant(true);
                          }),
            method<Probe>("FailWith",
                          [](Probe &, Args &a) -> Variant {
                            expectArgs(a, 1, 1);
                            raiseError(int(a[0].toLong()), QStringLiteral("Probe"), QString());
                          }),
            method<Probe>("Fail",
                          [](Probe &, Args &) -> Variant {
                            raiseError(ErrorNumber::PermissionDenied, QStringLiteral("Probe"),
                                       QStringLiteral("The probe refuses"));
                          }),
            indexedProperty<Probe>(
                "Item",
                [](Probe &, Args &a) {
                  expectArgs(a, 1, 1);
                  return Variant(QStringLiteral("item ") + a[0].toString());
                },
                [](Probe &p, Args &a, const Variant &v) {
                  expectArgs(a, 1, 1);
                  p.written.append(a[0].toString() + u'=' + v.toString());
                }),
        },
        nullptr,
        QStringLiteral("Item")};
    return table;
  }
};

class ScriptEngineTest : public ::testing::Test {
protected:
  void SetUp() override {
    useUnitedStatesRegion();
    echo = makeEchoEngine();
    probe = std::make_shared<Probe>();
    engine().addNamedItem(QStringLiteral("Probe"), probe);
  }
  script::ScriptEngine &engine() { return *echo.engine; }
  const QStringList &output() const { return *echo.output; }

  // The error a piece of code raises; fails the test when it raises none.
  ScriptError errorOf(const QString &code) {
    try {
      engine().addCode(code);
    } catch (const ScriptError &error) {
      return error;
    }
    ADD_FAILURE() << "no error from: " << code.toStdString();
    return ScriptError(Error(0), 0, 0);
  }

  EchoEngine echo;
  std::shared_ptr<Probe> probe;
};

TEST_F(ScriptEngineTest, NamedItemsAreReachedByLateBinding) {
  engine().addCode(QStringLiteral("Probe.Value = 41\n"
                                  "Probe.Value = Probe.Value + 1\n"
                                  "Probe(\"k\") = \"v\"\n"
                                  "WScript.Echo Probe(7), Probe.Item(8), TypeName(Probe)\n"));
  EXPECT_EQ(probe->value.toLong(), 42);
  EXPECT_EQ(probe->written, QStringList{QStringLiteral("k=v")});
  EXPECT_EQ(output(), QStringList{QStringLiteral("item 7 item 8 Probe")});
}

TEST_F(ScriptEngineTest, ArgumentsToAPropertyWithoutParametersGoToItsValue) {
  engine().addCode(QStringLiteral("Probe.Items(\"a\") = 1\n"
                                  "Probe.Items(\"a\") = Probe.Items(\"a\") + 1\n"
                                  "Probe.Items.Add \"b\", 5\n"
                                  "Probe.Value = Array(\"x\", \"y\")\n"
                                  "WScript.Echo Probe.Items(\"a\"), Probe.Items.Count, Probe.Value(1)\n"));
  EXPECT_EQ(output(), QStringList{QStringLiteral("2 2 y")});
  EXPECT_EQ(probe->items->value(Variant(QStringLiteral("b"))).toLong(), 5);
}

TEST_F(ScriptEngineTest, HostMethodsWriteBackIntoVariablesButNotIntoExpressions) {
  engine().addCode(QStringLiteral("Dim n, m\n"
                                  "n = 5 : m = 5\n"
                                  "Probe.Twice n\n"
                                  "Probe.Twice (m)\n"
                                  "WScript.Echo n, m\n"));
  EXPECT_EQ(output(), QStringList{QStringLiteral("10 5")});
}

TEST_F(ScriptEngineTest, CallWritesByRefArgumentsBackAndLeavesByValAlone) {
  engine().addCode(QStringLiteral("Sub FetchData(eof, ByVal count)\n"
                                  "  eof = False\n"
                                  "  count = count + 1\n"
                                  "End Sub\n"
                                  "Function Sum(a, b)\n"
                                  "  Sum = a + b\n"
                                  "End Function\n"));
  Args args{Variant(true), Variant(3)};
  EXPECT_TRUE(engine().call(QStringLiteral("fetchdata"), args).isEmpty());
  EXPECT_EQ(args[0], Variant(false));
  EXPECT_EQ(args[1], Variant(3));

  Args sum{Variant(2), Variant(QStringLiteral("3"))};
  EXPECT_EQ(engine().call(QStringLiteral("Sum"), sum).toDouble(), 5.0);
  EXPECT_TRUE(engine().hasProcedure(QStringLiteral("SUM")));
  EXPECT_FALSE(engine().hasProcedure(QStringLiteral("Missing")));
}

TEST_F(ScriptEngineTest, DeepRecursionKeepsEachFramesLocalsAndByRefTargets) {
  // Forty locals a frame and three hundred frames: the frames outgrow the
  // first block of slot storage, and a ByRef parameter refers to a local
  // many frames (and blocks) further up.
  QString locals, checks;
  for (int i = 0; i < 40; ++i) {
    locals += QStringLiteral("  Dim v%1 : v%1 = n * %1\n").arg(i);
    checks += QStringLiteral("  If v%1 <> n * %1 Then Walk = -1000000\n").arg(i);
  }
  engine().addCode(QStringLiteral("Function Walk(n, ByRef deepest)\n") + locals +
                   QStringLiteral("  If n = 0 Then\n"
                                  "    deepest = \"reached\"\n"
                                  "    Walk = 0\n"
                                  "  Else\n"
                                  "    Walk = Walk(n - 1, deepest) + 1\n"
                                  "  End If\n") +
                   checks + QStringLiteral("End Function\n"));
  Args args{Variant(300), Variant()};
  EXPECT_EQ(engine().call(QStringLiteral("Walk"), args).toLong(), 300);
  EXPECT_EQ(args[1].toString(), QStringLiteral("reached"));
}

TEST_F(ScriptEngineTest, CallOfUnknownProcedureOrWithWrongArgumentsFails) {
  engine().addCode(QStringLiteral("Sub One(a)\nEnd Sub\n"));
  Args none;
  try {
    engine().call(QStringLiteral("Nowhere"), none);
    FAIL() << "no error";
  } catch (const ScriptError &error) {
    EXPECT_EQ(error.number(), 35);
  }
  try {
    engine().call(QStringLiteral("One"), none);
    FAIL() << "no error";
  } catch (const ScriptError &error) {
    EXPECT_EQ(error.number(), ErrorNumber::WrongArgumentCount);
  }
}

TEST_F(ScriptEngineTest, LaterBlocksDefineWhatEarlierProceduresUseAndMayRedefineIt) {
  engine().addCode(QStringLiteral("Sub Report()\n"
                                  "  WScript.Echo Describe(2), limit\n"
                                  "End Sub\n"));
  engine().addCode(
      QStringLiteral("Dim limit\nlimit = 9\nFunction Describe(n) : Describe = \"first \" & n : End Function\n"));
  Args none;
  engine().call(QStringLiteral("Report"), none);
  engine().addCode(QStringLiteral("Function Describe(n) : Describe = \"second \" & n : End Function\n"));
  engine().call(QStringLiteral("Report"), none);
  EXPECT_EQ(output(), (QStringList{QStringLiteral("first 2 9"), QStringLiteral("second 2 9")}));
}

TEST_F(ScriptEngineTest, EvaluateSeesGlobalsNamedItemsAndLaterChanges) {
  engine().addCode(QStringLiteral("Dim rate\nrate = 3\nFunction Twice(x)\n Twice = 2 * x\nEnd Function\n"));
  probe->value = Variant(10);
  EXPECT_EQ(engine().evaluate(QStringLiteral("Twice(rate) + Probe.Value")).toLong(), 16);
  engine().addCode(QStringLiteral("rate = 4"));
  EXPECT_EQ(engine().evaluate(QStringLiteral("Twice(rate) + Probe.Value")).toLong(), 18);
  EXPECT_EQ(engine().evaluate(QStringLiteral("\"a\" & 1 = \"a1\"")), Variant(true));
  try {
    engine().evaluate(QStringLiteral("1 +"));
    FAIL() << "no error";
  } catch (const ScriptError &error) {
    EXPECT_TRUE(error.isCompileError());
    EXPECT_EQ(error.number(), 1023);
  }
}

TEST_F(ScriptEngineTest, SyntaxErrorsNameLineColumnAndWhatWasExpected) {
  ScriptError missingEnd = errorOf(QStringLiteral("Sub Good()\nEnd Sub\nWith x\n  y = 1\n"));
  EXPECT_TRUE(missingEnd.isCompileError());
  EXPECT_EQ(missingEnd.number(), 1014);
  EXPECT_EQ(missingEnd.description(), QStringLiteral("Expected 'End'"));
  EXPECT_EQ(missingEnd.line(), 5);

  // An If never closed is named where it opens, however far the text goes on.
  ScriptError openIf = errorOf(QStringLiteral("x = 1\nIf x Then :\n  y = 1\nIf y Then y = 2\n"));
  EXPECT_EQ(openIf.number(), 1014);
  EXPECT_EQ(openIf.line(), 2);
  ScriptError ifInSub = errorOf(QStringLiteral("Sub A()\n  If 1 Then\n  x = 1\nEnd Sub\n"));
  EXPECT_EQ(ifInSub.number(), 1014);
  EXPECT_EQ(ifInSub.line(), 2);

  ScriptError paren = errorOf(QStringLiteral("x = 1\ny = (2 + 3\n"));
  EXPECT_EQ(paren.number(), 1006);
  EXPECT_EQ(paren.description(), QStringLiteral("Expected ')'"));
  EXPECT_EQ(paren.line(), 2);
  EXPECT_EQ(paren.column(), 11);

  ScriptError then = errorOf(QStringLiteral("If a = 1\n  b = 2\nEnd If\n"));
  EXPECT_EQ(then.description(), QStringLiteral("Expected 'Then'"));
  EXPECT_EQ(then.line(), 1);
  EXPECT_EQ(then.column(), 9);

  ScriptError wrongEnd = errorOf(QStringLiteral("Sub A()\n  With Me\n  End Sub\n"));
  EXPECT_EQ(wrongEnd.description(), QStringLiteral("Expected 'With'"));
  EXPECT_EQ(wrongEnd.line(), 3);

  ScriptError string = errorOf(QStringLiteral("s = \"open\n"));
  EXPECT_EQ(string.number(), 1033);

  ScriptError subParens = errorOf(QStringLiteral("Sub Two(a, b)\nEnd Sub\nTwo(1, 2)\n"));
  EXPECT_EQ(subParens.number(), 1044);
  EXPECT_EQ(subParens.line(), 3);

  // Nothing of a block that fails to compile is added.
  EXPECT_FALSE(engine().hasProcedure(QStringLiteral("Good")));
  EXPECT_FALSE(engine().hasProcedure(QStringLiteral("Two")));
}

TEST_F(ScriptEngineTest, RunTimeErrorsCarryNumberSourceAndLineOfTheFailingStatement) {
  ScriptError division = errorOf(QStringLiteral("Dim a\na = 1\na = a / 0\n"));
  EXPECT_FALSE(division.isCompileError());
  EXPECT_EQ(division.number(), ErrorNumber::DivisionByZero);
  EXPECT_EQ(division.line(), 3);

  engine().addCode(QStringLiteral("Function Inner(x)\n"
                                  "  Dim arr(2)\n"
                                  "  Inner = arr(x)\n"
                                  "End Function\n"
                                  "Sub Outer()\n"
                                  "  WScript.Echo Inner(5)\n"
                                  "End Sub\n"));
  Args none;
  try {
    engine().call(QStringLiteral("Outer"), none);
    FAIL() << "no error";
  } catch (const ScriptError &error) {
    EXPECT_EQ(error.number(), ErrorNumber::SubscriptOutOfRange);
    EXPECT_EQ(error.line(), 3); // inside Inner, where the subscript failed
  }

  ScriptError host = errorOf(QStringLiteral("\n\nProbe.Fail\n"));
  EXPECT_EQ(host.number(), ErrorNumber::PermissionDenied);
  EXPECT_EQ(host.source(), QStringLiteral("Probe"));
  EXPECT_EQ(host.description(), QStringLiteral("The probe refuses"));
  EXPECT_EQ(host.line(), 3);

  // The procedures of a block that failed while running stay defined.
  EXPECT_TRUE(engine().hasProcedure(QStringLiteral("Outer")));
}

TEST_F(ScriptEngineTest, HostErrorsReachErrUnderResumeNext) {
  engine().addCode(QStringLiteral("On Error Resume Next\n"
                                  "Probe.Fail\n"
                                  "WScript.Echo Err.Number, Err.Source, Err.Description\n"));
  EXPECT_EQ(output(), QStringList{QStringLiteral("70 Probe The probe refuses")});
}

// A host's HRESULT reaches the script as the number the native engine
// gives it, with that number's description.
TEST_F(ScriptEngineTest, HostHresultsBecomeTheirVBScriptNumbers) {
  engine().addCode(QStringLiteral("On Error Resume Next\n"
                                  "For Each h In Array(&H8007000E, &H800A01A8, &H80004001, &H80020003, &H8002000E, "
                                  "&H80070057, &H80004005)\n"
                                  "  Probe.FailWith h\n"
                                  "  WScript.Echo Err.Number, Err.Description\n"
                                  "  Err.Clear\n"
                                  "Next\n"));
  EXPECT_EQ(output(), (QStringList{"7 Out of memory", "424 Object required", "445 Object doesn't support this action",
                                   "438 Object doesn't support this property or method",
                                   "450 Wrong number of arguments or invalid property assignment",
                                   "5 Invalid procedure call or argument",
                                   "-2147467259 Application-defined or object-defined error"}));
}

TEST_F(ScriptEngineTest, CreateObjectKnowsDictionaryAndTheHostsListOnly) {
  ScriptError shell = errorOf(QStringLiteral("Set s = CreateObject(\"WScript.Shell\")\n"));
  EXPECT_EQ(shell.number(), ErrorNumber::CannotCreateObject);

  engine().setObjectFactory([](const QString &progId) -> ObjectRef {
    if (progId.compare(QLatin1String("Kordel.Probe"), Qt::CaseInsensitive) == 0)
      return std::make_shared<Probe>();
    return nullptr;
  });
  engine().addCode(QStringLiteral("Set p = CreateObject(\"kordel.probe\")\n"
                                  "Set d = CreateObject(\"Scripting.Dictionary\")\n"
                                  "d.Add \"k\", p\n"
                                  "WScript.Echo TypeName(d(\"k\")), d.Count\n"));
  EXPECT_EQ(output(), QStringList{QStringLiteral("Probe 1")});
  EXPECT_EQ(errorOf(QStringLiteral("Set s = CreateObject(\"WScript.Shell\")\n")).number(),
            ErrorNumber::CannotCreateObject);
}

TEST_F(ScriptEngineTest, CodeFromStringsRunsOnlyWhenAllowed) {
  EXPECT_EQ(errorOf(QStringLiteral("Execute \"x = 1\"\n")).number(), ErrorNumber::PermissionDenied);
  EXPECT_EQ(errorOf(QStringLiteral("y = Eval(\"1 + 1\")\n")).number(), ErrorNumber::PermissionDenied);
  engine().setDynamicCodeAllowed(true);
  engine().addCode(QStringLiteral("Sub Local()\n"
                                  "  Dim v\n"
                                  "  v = 2\n"
                                  "  Execute \"v = v * 21\"\n"
                                  "  WScript.Echo v, Eval(\"v + 1\")\n"
                                  "End Sub\n"
                                  "Local\n"
                                  "ExecuteGlobal \"Function Made() : Made = 7 : End Function\"\n"
                                  "WScript.Echo Made()\n"));
  EXPECT_EQ(output(), (QStringList{QStringLiteral("42 43"), QStringLiteral("7")}));
}

TEST_F(ScriptEngineTest, MessageAndInputBoxesGoThroughTheUiSeam) {
  EXPECT_EQ(errorOf(QStringLiteral("MsgBox \"hi\"\n")).number(), ErrorNumber::PermissionDenied);
  QStringList shown;
  script::ScriptUi ui;
  ui.messageBox = [&shown](const QString &prompt, int buttons, const QString &title) {
    shown.append(QStringLiteral("%1|%2|%3").arg(prompt).arg(buttons).arg(title));
    return 6; // vbYes
  };
  int asked = 0;
  ui.inputBox = [&asked](const QString &, const QString &, const QString &defaultText) -> std::optional<QString> {
    if (asked++ == 0)
      return defaultText + QStringLiteral("!");
    return std::nullopt;
  };
  engine().setUi(ui);
  engine().addCode(QStringLiteral("r = MsgBox(\"Go on?\", vbYesNo + vbQuestion, \"Title\")\n"
                                  "WScript.Echo r = vbYes\n"
                                  "WScript.Echo InputBox(\"Name\", \"T\", \"abc\")\n"
                                  "WScript.Echo IsEmpty(InputBox(\"Name\"))\n"));
  EXPECT_EQ(shown, QStringList{QStringLiteral("Go on?|36|Title")});
  EXPECT_EQ(output(), (QStringList{QStringLiteral("True"), QStringLiteral("abc!"), QStringLiteral("True")}));
}

TEST_F(ScriptEngineTest, ScriptObjectsAreLateBoundObjectsForTheHost) {
  engine().addCode(
      QStringLiteral("Class Account\n"
                     "  Public Owner\n"
                     "  Private m_balance\n"
                     "  Public Property Get Balance() : Balance = m_balance : End Property\n"
                     "  Public Property Let Balance(v) : m_balance = v : End Property\n"
                     "  Public Default Function Describe(prefix)\n"
                     "    Describe = prefix & Owner & \":\" & m_balance\n"
                     "  End Function\n"
                     "  Public Sub Deposit(ByRef amount) : m_balance = m_balance + amount : amount = 0 : End Sub\n"
                     "End Class\n"
                     "Function MakeAccount()\n"
                     "  Set MakeAccount = New Account\n"
                     "End Function\n"));
  Args none;
  const ObjectRef account = engine().call(QStringLiteral("MakeAccount"), none).toObject();
  ASSERT_TRUE(account);
  EXPECT_EQ(account->typeName(), QStringLiteral("Account"));
  account->set(QStringLiteral("owner"), Variant(QStringLiteral("Ann")));
  account->set(QStringLiteral("Balance"), Variant(10));
  Args amount{Variant(5)};
  account->call(QStringLiteral("Deposit"), amount);
  EXPECT_EQ(amount[0].toLong(), 0);
  EXPECT_EQ(account->get(QStringLiteral("Balance")).toLong(), 15);
  EXPECT_EQ(account->invoke(QString(), {Variant(QStringLiteral("> "))}).toString(), QStringLiteral("> Ann:15"));
  EXPECT_TRUE(account->hasMember(QStringLiteral("Deposit")));
  EXPECT_FALSE(account->hasMember(QStringLiteral("m_balance")));
  try {
    account->get(QStringLiteral("m_balance"));
    FAIL() << "a private member was reachable";
  } catch (const Error &error) {
    EXPECT_EQ(error.number(), ErrorNumber::NoSuchMember);
  }

  // The host hands the object back to a script.
  engine().addNamedItem(QStringLiteral("Given"), account);
  engine().addCode(QStringLiteral("Given.Deposit 1 : WScript.Echo Given.Balance, Given(\"# \")"));
  EXPECT_EQ(output(), QStringList{QStringLiteral("16 # Ann:16")});
}

TEST_F(ScriptEngineTest, ScriptObjectsOutlivingTheirEngineFailCleanly) {
  ObjectRef survivor;
  {
    auto other = script::createScriptEngine(QStringLiteral("vbscript"));
    other->addCode(QStringLiteral("Class Thing\n Public Function Hello() : Hello = 1 : End Function\nEnd Class\n"
                                  "Function Make() : Set Make = New Thing : End Function\n"));
    Args none;
    survivor = other->call(QStringLiteral("Make"), none).toObject();
    EXPECT_EQ(survivor->get(QStringLiteral("Hello")).toLong(), 1);
  }
  EXPECT_THROW(survivor->get(QStringLiteral("Hello")), Error);
}

TEST_F(ScriptEngineTest, ClassTerminateRunsWhenTheLastReferenceGoes) {
  engine().addCode(QStringLiteral("Class Noisy\n"
                                  "  Public Tag\n"
                                  "  Private Sub Class_Terminate() : WScript.Echo \"bye \" & Tag : End Sub\n"
                                  "End Class\n"
                                  "Sub Scoped()\n"
                                  "  Dim n : Set n = New Noisy : n.Tag = \"local\"\n"
                                  "End Sub\n"
                                  "Scoped\n"
                                  "Set g = New Noisy : g.Tag = \"global\"\n"
                                  "WScript.Echo \"running\"\n"));
  EXPECT_EQ(output(), (QStringList{QStringLiteral("bye local"), QStringLiteral("running")}));
  echo.engine.reset();
  EXPECT_EQ(output().last(), QStringLiteral("bye global"));
}

TEST_F(ScriptEngineTest, CodeObjectExposesGlobalsToTheHost) {
  engine().addCode(QStringLiteral("Dim total\ntotal = 3\nFunction Scaled(x) : Scaled = x * total : End Function\n"));
  const ObjectRef code = engine().codeObject();
  EXPECT_EQ(code->get(QStringLiteral("Total")).toLong(), 3);
  code->set(QStringLiteral("total"), Variant(5));
  EXPECT_EQ(code->invoke(QStringLiteral("Scaled"), {Variant(2)}).toLong(), 10);
  EXPECT_TRUE(code->hasMember(QStringLiteral("scaled")));
  EXPECT_FALSE(code->hasMember(QStringLiteral("nothing_here")));
}

// A record as an expression context: its fields are reached by name,
// bracketed paths included, and through Value("path").
class RecordItem : public Object {
public:
  QString typeName() const override { return QStringLiteral("Record"); }
  bool hasMember(const QString &name) const override {
    return name.compare(QLatin1String("Value"), Qt::CaseInsensitive) == 0 || fieldOf(name).has_value();
  }
  Variant call(const QString &name, Args &args) override {
    if (name.compare(QLatin1String("Value"), Qt::CaseInsensitive) == 0) {
      expectArgs(args, 1, 1);
      if (auto field = fieldOf(args[0].toString()))
        return *field;
      raiseError(ErrorNumber::InvalidCall);
    }
    if (auto field = fieldOf(name))
      return *field;
    return Object::call(name, args);
  }

private:
  static std::optional<Variant> fieldOf(const QString &path) {
    if (path.compare(QLatin1String("Customer.Name"), Qt::CaseInsensitive) == 0)
      return Variant(QStringLiteral("Acme"));
    if (path.compare(QLatin1String("Amount"), Qt::CaseInsensitive) == 0)
      return Variant(12.5);
    return std::nullopt;
  }
};

TEST_F(ScriptEngineTest, NamedItemWithGlobalMembersServesRecordExpressions) {
  engine().addNamedItem(QStringLiteral("Record"), std::make_shared<RecordItem>(), true);
  EXPECT_EQ(engine().evaluate(QStringLiteral("[Customer.Name] & \": \" & Amount * 2")).toString(),
            QStringLiteral("Acme: 25"));
  EXPECT_EQ(engine().evaluate(QStringLiteral("Value(\"customer.name\")")).toString(), QStringLiteral("Acme"));
  EXPECT_EQ(engine().evaluate(QStringLiteral("UCase(Record.Value(\"Customer.Name\"))")).toString(),
            QStringLiteral("ACME"));
}

// A host object that calls back into the engine while a script runs.
class Reentrant : public Object {
public:
  explicit Reentrant(script::ScriptEngine &engine) : engine_(engine) {}
  Variant call(const QString &name, Args &args) override {
    if (name.compare(QLatin1String("Relay"), Qt::CaseInsensitive) == 0)
      return engine_.call(QStringLiteral("Callback"), args);
    return Object::call(name, args);
  }

private:
  script::ScriptEngine &engine_;
};

TEST_F(ScriptEngineTest, HostMayCallBackIntoTheEngineDuringACall) {
  engine().addNamedItem(QStringLiteral("Host"), std::make_shared<Reentrant>(engine()));
  engine().addCode(QStringLiteral("Function Callback(x) : x = x + 1 : Callback = x * 10 : End Function\n"
                                  "Dim v : v = 1\n"
                                  "WScript.Echo Host.Relay(v), v\n"));
  EXPECT_EQ(output(), QStringList{QStringLiteral("20 2")});
}

TEST(ScriptEngineFactory, KnowsVBScriptAndRefusesOtherLanguages) {
  EXPECT_EQ(script::createScriptEngine(QStringLiteral("VBSCRIPT"))->language(), QStringLiteral("VBScript"));
  EXPECT_THROW(script::createScriptEngine(QStringLiteral("Cobol")), Error);
}

} // namespace
} // namespace kordel::test

// Host objects as JScript sees them: properties, methods, default members,
// collections and errors crossing in both directions.

#include "script/JScriptTestModel.h"

#include "core/Dictionary.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

class JScriptBridgeTest : public ::testing::Test, public JScriptFixture {};

TEST_F(JScriptBridgeTest, PropertiesAreReadAndWrittenAndMethodsCalled) {
  engine->addCode(QStringLiteral("rpt.Title = 'Sales';"));
  EXPECT_EQ(report->title, Variant(QStringLiteral("Sales")));
  report->recordIndex = 41;
  EXPECT_EQ(eval(QStringLiteral("rpt.RecordIndex + 1")), Variant(42));
  EXPECT_EQ(text(QStringLiteral("rpt.Title + '!'")), QStringLiteral("Sales!"));
  // The built-in field form: a method call with a trailing semicolon.
  EXPECT_EQ(text(QStringLiteral("rpt.Timestamp(\"yyyy-mm-dd\");")), QStringLiteral("stamp yyyy-mm-dd"));
  // A method without parentheses is a function, not a call.
  EXPECT_EQ(text(QStringLiteral("typeof rpt.Timestamp")), QStringLiteral("function"));
  EXPECT_EQ(text(QStringLiteral("var f = rpt.Timestamp; f('q')")), QStringLiteral("stamp q"));
  EXPECT_TRUE(eval(QStringLiteral("'Title' in rpt && !('Nope' in rpt)")).toBool());
}

TEST_F(JScriptBridgeTest, DefaultMembersAndIndexedPropertiesReachItems) {
  EXPECT_EQ(text(QStringLiteral("rpt.Sections('Detail').Name")), QStringLiteral("Detail"));
  EXPECT_EQ(text(QStringLiteral("rpt.Sections.Item('detail').Name")), QStringLiteral("Detail"));
  EXPECT_EQ(text(QStringLiteral("rpt.Sections(0).Name")), QStringLiteral("PageHeader"));
  EXPECT_EQ(eval(QStringLiteral("rpt.Sections.Count")), Variant(2));
  // A value with a default member reads as that member's value.
  x->text = QStringLiteral("ten");
  EXPECT_EQ(text(QStringLiteral("'[' + rpt.Sections('Detail').Controls('x') + ']'")), QStringLiteral("[ten]"));
  EXPECT_EQ(text(QStringLiteral("String(rpt)")), QStringLiteral("[object Report]"));
}

TEST_F(JScriptBridgeTest, ChainedAssignmentReachesTheControl) {
  engine->addCode(QStringLiteral("rpt.Sections(\"Detail\").Controls(\"x\").Text = \"set by script\";"));
  EXPECT_EQ(x->text, Variant(QStringLiteral("set by script")));
  engine->addCode(QStringLiteral("var c = rpt.Sections('Detail').Controls; c('y').Text = c('x').Text + '!';"));
  EXPECT_EQ(text(QStringLiteral("rpt.Sections('Detail').Controls('y').Text")), QStringLiteral("set by script!"));
}

TEST_F(JScriptBridgeTest, CollectionsWalkWithForOfAndEnumerator) {
  EXPECT_EQ(text(QStringLiteral("var names = []; for (var c of rpt.Sections('Detail').Controls) names.push(c.Name);"
                                "names.join(',')")),
            QStringLiteral("x,y"));
  EXPECT_EQ(text(QStringLiteral("var e = new Enumerator(rpt.Sections), seen = [];"
                                "for (; !e.atEnd(); e.moveNext()) seen.push(e.item().Name);"
                                "e.moveFirst(); seen.push(e.item().Name); seen.join(',')")),
            QStringLiteral("PageHeader,Detail,PageHeader"));
  EXPECT_EQ(text(QStringLiteral("var d = new ActiveXObject('Scripting.Dictionary'); d.Add('k1', 1); d.Add('k2', 2);"
                                "var keys = []; for (var e = new Enumerator(d); !e.atEnd(); e.moveNext())"
                                " keys.push(e.item() + '=' + d.Item(e.item())); keys.join(' ')")),
            QStringLiteral("k1=1 k2=2"));
  // An object that is no collection says so.
  EXPECT_EQ(errorOf(QStringLiteral("for (var s of rpt.Sections('Detail')) {}")).number(), ErrorNumber::NoSuchMember);
  EXPECT_EQ(errorOf(QStringLiteral("new Enumerator(5)")).number(), 451);
}

TEST_F(JScriptBridgeTest, AHostObjectIsTheSameScriptObjectEachTimeAndComesBackAsItself) {
  EXPECT_TRUE(eval(QStringLiteral("rpt.Sections('Detail') === rpt.Sections(1)")).toBool());
  engine->addCode(QStringLiteral("rpt.Keep(rpt.Sections('Detail'));"));
  EXPECT_EQ(report->kept.toObject(), ObjectRef(detail));
  EXPECT_EQ(eval(QStringLiteral("rpt")).toObject(), ObjectRef(report));
}

TEST_F(JScriptBridgeTest, HostErrorsAreCatchableWithNumberAndDescription) {
  EXPECT_EQ(text(QStringLiteral("try { rpt.Fail(); } catch (e) { e.number + '|' + e.description + '|' + e.message }")),
            QStringLiteral("70|The report refuses|The report refuses"));
  EXPECT_EQ(eval(QStringLiteral("try { rpt.Nope; } catch (e) { e.number }")), Variant(ErrorNumber::NoSuchMember));
  EXPECT_EQ(eval(QStringLiteral("try { rpt.Sections('Missing'); } catch (e) { e.number }")),
            Variant(ErrorNumber::SubscriptOutOfRange));
  // Read-only property and wrong argument counts.
  EXPECT_EQ(eval(QStringLiteral("try { rpt.RecordIndex = 3; } catch (e) { e.number }")),
            Variant(ErrorNumber::NoSuchMember));
  EXPECT_EQ(eval(QStringLiteral("try { rpt.Timestamp(); } catch (e) { e.number }")),
            Variant(ErrorNumber::WrongArgumentCount));
}

TEST_F(JScriptBridgeTest, UncaughtHostErrorsKeepNumberSourceAndTheScriptLine) {
  const script::ScriptError error = errorOf(QStringLiteral("var a = 1;\n\nrpt.Fail();\n"));
  EXPECT_EQ(error.number(), ErrorNumber::PermissionDenied);
  EXPECT_EQ(error.source(), QStringLiteral("Report"));
  EXPECT_EQ(error.description(), QStringLiteral("The report refuses"));
  EXPECT_EQ(error.line(), 3);
  EXPECT_FALSE(error.isCompileError());
  // Through a property read in a function defined in an earlier block.
  engine->addCode(QStringLiteral("function readIt() {\n  return rpt.Missing;\n}\n"));
  Args none;
  try {
    engine->call(QStringLiteral("readIt"), none);
    ADD_FAILURE() << "no error";
  } catch (const script::ScriptError &thrown) {
    EXPECT_EQ(thrown.number(), ErrorNumber::NoSuchMember);
    EXPECT_EQ(thrown.line(), 2);
  }
}

TEST_F(JScriptBridgeTest, ScriptingDictionaryWorksFromScripts) {
  EXPECT_EQ(text(QStringLiteral("var d = new ActiveXObject('Scripting.Dictionary');"
                                "d.Add('a', 1); d.Add('b', 'two');"
                                "d.Item('a') + d.Count + d('b') + d.Exists('a') + d.Exists('z')")),
            QStringLiteral("3twotruefalse"));
  EXPECT_EQ(eval(QStringLiteral("try { d.Add('a', 3); } catch (e) { e.number }")), Variant(ErrorNumber::DuplicateKey));
  EXPECT_EQ(text(QStringLiteral("d.Keys().join(',') + ' ' + new VBArray(d.Items()).toArray().join(',')")),
            QStringLiteral("a,b 1,two"));
}

TEST_F(JScriptBridgeTest, ScriptFunctionsAndObjectsAreLateBoundObjectsForTheHost) {
  engine->addCode(QStringLiteral("rpt.Keep(function (n) { return n * 2; });"));
  EXPECT_EQ(report->kept.toObject()->invoke(QString(), {Variant(21)}), Variant(42));
  EXPECT_EQ(eval(QStringLiteral("rpt.Apply(function (s) { return s + '!'; }, 'hi')")), Variant(QStringLiteral("hi!")));

  engine->addCode(
      QStringLiteral("rpt.Keep({ label: 'box', count: 2, twice: function (n) { return this.count * n; } });"));
  const ObjectRef box = report->kept.toObject();
  EXPECT_EQ(box->get(QStringLiteral("Label")), Variant(QStringLiteral("box"))); // case does not matter
  EXPECT_EQ(box->invoke(QStringLiteral("twice"), {Variant(5)}), Variant(10));
  box->set(QStringLiteral("count"), Variant(3));
  EXPECT_EQ(box->invoke(QStringLiteral("twice"), {Variant(5)}), Variant(15));
  EXPECT_TRUE(box->hasMember(QStringLiteral("label")));
  EXPECT_TRUE(box->isMethod(QStringLiteral("twice")));
  EXPECT_FALSE(box->isMethod(QStringLiteral("count")));
  EXPECT_THROW(box->get(QStringLiteral("nothing")), Error);

  engine.reset();
  try {
    box->get(QStringLiteral("label"));
    ADD_FAILURE() << "no error";
  } catch (const Error &error) {
    EXPECT_EQ(error.number(), ErrorNumber::ObjectRequired);
  }
}

TEST_F(JScriptBridgeTest, NamedItemWithGlobalMembersLendsItsNamesToScripts) {
  auto record = std::make_shared<TestReport>();
  record->title = QStringLiteral("Record one");
  record->recordIndex = 7;
  engine->addNamedItem(QStringLiteral("Record"), record, true);
  EXPECT_EQ(text(QStringLiteral("Title + ' #' + RecordIndex + ' ' + Timestamp('d')")),
            QStringLiteral("Record one #7 stamp d"));
  engine->addCode(QStringLiteral("Title = 'changed'; fresh = 1;"));
  EXPECT_EQ(record->title, Variant(QStringLiteral("changed")));
  EXPECT_EQ(eval(QStringLiteral("fresh")), Variant(1));
  EXPECT_EQ(text(QStringLiteral("typeof Title + ' ' + typeof Unknown")), QStringLiteral("string undefined"));
  // The script's own names come first.
  engine->addCode(QStringLiteral("var RecordIndex = 'mine';"));
  EXPECT_EQ(text(QStringLiteral("RecordIndex")), QStringLiteral("mine"));
  EXPECT_EQ(errorOf(QStringLiteral("Unknown + 1")).number(), 5009);
}

TEST(JScriptBridgeLifetime, ObjectsScriptsDropAreReleasedWithoutWaitingForTheEventLoop) {
  {
    auto engine = script::createScriptEngine(QStringLiteral("JScript"));
    engine->setObjectFactory([](const QString &progId) -> ObjectRef {
      return progId == QLatin1String("Test.Counted") ? std::make_shared<CountedObject>() : nullptr;
    });
    // Far more objects than the collector lets pile up: most are released
    // while the engine runs, though no event loop runs here.
    engine->addCode(QStringLiteral("var kept = new ActiveXObject('Test.Counted');"
                                   "for (var i = 0; i < 20000; i++) new ActiveXObject('Test.Counted');"));
    EXPECT_GE(CountedObject::live, 1);
    EXPECT_LT(CountedObject::live, 10000);
    // The object the script keeps is still there.
    EXPECT_EQ(engine->evaluate(QStringLiteral("String(kept)")), Variant(QStringLiteral("[object Object]")));
  }
  // The rest go with the engine.
  EXPECT_EQ(CountedObject::live, 0);
}

} // namespace
} // namespace kordel::test

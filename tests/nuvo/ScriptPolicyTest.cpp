// The safety check of layout scripts: what it lets through untouched and
// what it neutralises, in VBScript and JScript.

#include "support/ErrorCapture.h"
#include "support/QtPrinters.h"

#include "nuvo/ScriptPolicyObject.h"

#include <gtest/gtest.h>

using namespace kordel;

namespace {

class ScriptPolicyTest : public ::testing::Test {
protected:
  QString vb(const char *text) { return policy.checkScript(QString::fromUtf8(text), QStringLiteral("VBScript")); }
  QString js(const char *text) { return policy.checkScript(QString::fromUtf8(text), QStringLiteral("JScript")); }
  QString any(const char *text) { return policy.checkScript(QString::fromUtf8(text)); }

  nuvo::ScriptPolicyObject policy;
};

TEST_F(ScriptPolicyTest, SafeScriptsComeBackUnchanged) {
  const char *scripts[] = {
      "Sub Detail_Format\r\n  Fields(\"total\").Value = [value] * 2 ' CreateObject(\"WScript.Shell\")\r\nEnd Sub\r\n",
      "Dim d : Set d = CreateObject(\"Scripting.Dictionary\")\nd.Add \"Execute\", \"Eval(x)\"\n",
      "Set p = Extensions.Application.CreateObject(\"Nuvo.Pool\")\n' GetObject(\"x\") is only mentioned\n",
      "Set m = re.Execute(text)\nx = obj.Eval\n",
      "msg = \"He said \"\"CreateObject(\"\"WScript.Shell\"\")\"\" twice\"\n",
      "Set f = Application.CreateObject(\"nuvo.filter\") ' ProgIDs ignore case\n",
  };
  for (const char *script : scripts) {
    EXPECT_EQ(vb(script), QString::fromUtf8(script));
    EXPECT_EQ(any(script), QString::fromUtf8(script));
  }
  const char *jscripts[] = {
      "function Detail_Format() { var s = 'new ActiveXObject(\"WScript.Shell\")'; /* eval(s) */ }\n",
      "var d = new ActiveXObject(\"Scripting.Dictionary\"); // eval(x)\n",
      "var f = function (a) { return a.Execute(\"x\"); };\n",
      "var a = [1, 2]; var t = a[0] + a[-1] + o[\"total\"] + o['name'] + o[`net`]; f([x]);\n",
      "var o = { \"k\": 1, m: function () { return this.k; } }; var q = (o) / 2 / o.k;\n",
      "class Line { constructor(x) { this.x = x; } }\nvar s = `total ${a + b[1]} of ${n}`;\n",
      "var ok = /ab+c\\/[/\"]/gi.test(s) && x / y > 1; if (ok) /\"/.exec(s);\n",
  };
  for (const char *script : jscripts)
    EXPECT_EQ(js(script), QString::fromUtf8(script));
  const char *remark = "Rem GetObject(\"x\") is only mentioned\n";
  EXPECT_EQ(vb(remark), QString::fromUtf8(remark));
  // VBScript that JScript would read otherwise: apostrophes, names in brackets, Function.
  const char *vbScript = "' it's fine\r\nPublic Function Total(a) ' don't\r\n  Total = [a b] * 2\r\nEnd Function\r\n";
  EXPECT_EQ(any(vbScript), QString::fromUtf8(vbScript));
}

TEST_F(ScriptPolicyTest, CodeAfterAnyLineEndOfTheLanguageIsChecked) {
  // VBScript ends a line, and so a comment, at a bare carriage return.
  EXPECT_EQ(vb("x = 1 ' note\rSet sh = CreateObject(\"WScript.Shell\")\r"), "x = 1 ' note\rSet sh = Nothing\r");
  EXPECT_EQ(any("x = 1 ' note\rSet sh = CreateObject(\"WScript.Shell\")"), "x = 1 ' note\rSet sh = Nothing");
  EXPECT_EQ(vb("Rem note\rExecute code\rx = 1"), "Rem note\rErr.Raise 70\rx = 1");
  EXPECT_EQ(vb("Execute \"a\" & _\r\n  \"b\"\r\nc = 1"), "Err.Raise 70\r\nc = 1");
  // JScript ends a line at CR, U+2028 and U+2029 as well.
  EXPECT_EQ(js("x = 1; // note\reval(y)"), "x = 1; // note\rundefined");
  EXPECT_EQ(js("x = 1; // note\u2028eval(y)"), QString::fromUtf8("x = 1; // note\u2028undefined"));
  EXPECT_EQ(any("x = 1; // note\u2029eval(y)"), QString::fromUtf8("x = 1; // note\u2029undefined"));
  // A backslash before CR LF continues a string: what follows is code.
  EXPECT_EQ(js("var s = \"a\\\r\n\"; eval(y); //\""), "var s = \"a\\\r\n\"; undefined; //\"");
}

TEST_F(ScriptPolicyTest, JScriptNamesAreReadAsTheEngineReadsThem) {
  // Escapes in names.
  EXPECT_EQ(js("var v = \\u0065val(\"1\");"), "var v = undefined;");
  EXPECT_EQ(js("var v = \\u{65}val(\"1\");"), "var v = undefined;");
  EXPECT_EQ(js("var sh = new ActiveX\\u004fbject(\"WScript.Shell\");"), "var sh = null;");
  EXPECT_EQ(js("this.\\u0065val(\"1\");"), "undefined;");
  // Code in template placeholders, also nested ones.
  EXPECT_EQ(js("var s = `a${eval(x)}b`;"), "var s = `a${undefined}b`;");
  EXPECT_EQ(js("var s = `${`${eval(x)}`}`;"), "var s = `${`${undefined}`}`;");
  // Regular expressions hide no code, and divisions start none.
  EXPECT_EQ(js("var r = /\"/; eval(x); var q = /\"/;"), "var r = /\"/; undefined; var q = /\"/;");
  EXPECT_EQ(js("var r = /[/\"]/; eval(x)"), "var r = /[/\"]/; undefined");
  EXPECT_EQ(js("if (a) /\"/.test(s); eval(x); //\""), "if (a) /\"/.test(s); undefined; //\"");
  EXPECT_EQ(js("function f() {}\n/\"/.test(s); eval(x) //\""), "function f() {}\n/\"/.test(s); undefined //\"");
  EXPECT_EQ(js("var z = (a) / 2; s = \"/\"; eval(x)"), "var z = (a) / 2; s = \"/\"; undefined");
  EXPECT_EQ(js("var o = {} / 2; s = \"/\"; eval(x)"), "var o = {} / 2; s = \"/\"; undefined");
  EXPECT_EQ(js("var f = function () {} / 2; s = \"/\"; eval(x)"), "var f = function () {} / 2; s = \"/\"; undefined");
}

TEST_F(ScriptPolicyTest, ComputedNamesAndConstructorsAreNeutralised) {
  // A computed name becomes a number: indices work, no name can come of it.
  EXPECT_EQ(js("this[\"ev\" + \"al\"](\"code\");"), "this[+(\"ev\" + \"al\")](\"code\");");
  EXPECT_EQ(js("obj[\"CreateObject\"](\"WScript.Shell\");"), "obj[+(\"CreateObject\")](\"WScript.Shell\");");
  EXPECT_EQ(js("globalThis[name](x); s += a[i + 1];"), "globalThis[+(name)](x); s += a[+(i + 1)];");
  EXPECT_EQ(js("o[\"\\x65val\"](x); o[`${k}`](x);"), "o[+(\"\\x65val\")](x); o[+(`${k}`)](x);");
  EXPECT_EQ(js("var {[k]: e} = this;"), "var {[+(k)]: e} = this;");
  EXPECT_EQ(js("o[eval(k)]"), "o[+(undefined)]") << "the key's own code is checked too";
  EXPECT_EQ(js("Function.prototype.constructor(\"code\")();"), "null.prototype.undefined(\"code\")();");
  EXPECT_EQ(js("[].constructor.constructor(\"code\")();"), "[].undefined.undefined(\"code\")();");
  EXPECT_EQ(js("var {constructor: F} = f;"), "var {undefined: F} = f;");
  EXPECT_EQ(js("with (f) { constructor(\"code\")(); }"), "with (f) { undefined(\"code\")(); }");
  EXPECT_EQ(js("var F = Function; F(\"code\")();"), "var F = null; F(\"code\")();");
  EXPECT_EQ(js("var g = Function`code`;"), "var g = null`code`;");
  EXPECT_EQ(any("t = this\nt[\"ev\" + \"al\"](\"code\")"), "t = this\nt[+(\"ev\" + \"al\")](\"code\")")
      << "JScript's rules apply to a text that looks like VBScript, and compiles as VBScript too";
}

TEST_F(ScriptPolicyTest, JScriptThatCannotBeReadCleanlyIsBlockedWhole) {
  const auto expectBlocked = [](const QString &checked, const char *text) {
    EXPECT_TRUE(checked.startsWith("throw ") && checked.contains("Permission denied"))
        << text << " gave " << checked.toStdString();
  };
  for (const char *text : {"var s = 'open", "x = 1; /* open", "var t = `open ${eval(x)", "f(a;", "a = b); eval(x)"})
    expectBlocked(js(text), text);
  // Without a language: blocked in the language the text seems to be in,
  // unless VBScript compiles it.
  for (const char *text : {"x = 1; /* open", "f(a;", "a = b); eval(x)"})
    expectBlocked(any(text), text);
  EXPECT_EQ(any("var s = 'open"), "Err.Raise 70");
  EXPECT_EQ(any("x = 1 ' it's\n"), "x = 1 ' it's\n");
  EXPECT_EQ(any("x = ' it\n"), "Err.Raise 70") << "nor is this VBScript";
}

TEST_F(ScriptPolicyTest, ObjectCreationOutsideTheAllowListBecomesNothing) {
  EXPECT_EQ(vb("Set sh = CreateObject(\"WScript.Shell\")\nsh.Run \"rm -rf /\"\n"),
            "Set sh = Nothing\nsh.Run \"rm -rf /\"\n");
  EXPECT_EQ(vb("Set fs = Extensions.Application.CreateObject(\"Scripting.FileSystemObject\")"), "Set fs = Nothing");
  EXPECT_EQ(vb("Set x = GetObject(\"winmgmts:\")"), "Set x = Nothing");
  EXPECT_EQ(vb("Set x = CreateObject(name)"), "Set x = Nothing") << "a ProgID that is not literal is refused";
  EXPECT_EQ(vb("Set x = CreateObject(\"Scripting.Dictionary\" & suffix)"), "Set x = Nothing");
  EXPECT_EQ(vb("Set p = LoadPicture(\"/etc/passwd\")"), "Set p = Nothing");
  EXPECT_EQ(vb("Set a = CreateObject(\"A.B\") : Set b = CreateObject(\"Nuvo.Pool\")"),
            "Set a = Nothing : Set b = CreateObject(\"Nuvo.Pool\")");
  EXPECT_EQ(js("var sh = new ActiveXObject(\"WScript.Shell\");"), "var sh = null;");
  EXPECT_EQ(js("var r = new XMLHttpRequest(); r.open('GET', u);"), "var r = null; r.open('GET', u);");
  EXPECT_EQ(js("Qt.include(\"evil.js\");"), "null;");
}

TEST_F(ScriptPolicyTest, CodeFromStringsIsNotRun) {
  EXPECT_EQ(vb("x = Eval(\"1+1\") + 1"), "x = Empty + 1");
  EXPECT_EQ(vb("Execute code\nx = 1\n"), "Err.Raise 70\nx = 1\n");
  EXPECT_EQ(vb("If a Then ExecuteGlobal \"Sub X : End Sub\"\n"), "If a Then Err.Raise 70\n");
  EXPECT_EQ(vb("y = 1 : Execute(\"y = 2\") : z = 3"), "y = 1 : Err.Raise 70 : z = 3");
  EXPECT_EQ(vb("Execute \"a\" & _\n  \"b\"\nc = 1"), "Err.Raise 70\nc = 1");
  EXPECT_EQ(js("var v = eval(\"2 * 3\") + 1;"), "var v = undefined + 1;");
  EXPECT_EQ(js("var f = new Function(\"return 1\");"), "var f = null;");
  EXPECT_EQ(js("var g = Function('a', 'return a');"), "var g = null;");
}

TEST_F(ScriptPolicyTest, WithoutALanguageBothRuleSetsApply) {
  EXPECT_EQ(any("Set sh = CreateObject(\"WScript.Shell\")"), "Set sh = Nothing");
  EXPECT_EQ(any("var sh = new ActiveXObject(\"WScript.Shell\");"), "var sh = null;");
  // What VBScript would read as a comment is code to JScript.
  EXPECT_EQ(any("var x = 'a'; eval(y)"), "var x = 'a'; undefined");
  EXPECT_EQ(any("x = 'a'; eval(y)"), "x = 'a'; undefined");
  // Late-bound, as the add-in calls it.
  ObjectRef object = std::make_shared<nuvo::ScriptPolicyObject>();
  EXPECT_EQ(object->invoke("CheckScript", {QStringLiteral("x = Eval(y)")}).toString(), "x = Empty");
  EXPECT_EQ(test::errorNumber([&] { policy.checkScript("x", "Perl"); }), ErrorNumber::InvalidCall);
}

} // namespace

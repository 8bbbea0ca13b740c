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
  };
  for (const char *script : jscripts)
    EXPECT_EQ(js(script), QString::fromUtf8(script));
  const char *remark = "Rem GetObject(\"x\") is only mentioned\n";
  EXPECT_EQ(vb(remark), QString::fromUtf8(remark));
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

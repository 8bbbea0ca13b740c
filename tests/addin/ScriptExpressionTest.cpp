#include "DemoFixture.h"

#include "common/ScriptExpression.h"
#include "hostapi/Database.h"

using namespace kordel;
using namespace kordel::addin;

class ScriptExpressionTest : public kordel::test::DemoHostedTest {
protected:
  std::shared_ptr<hostapi::Fields> companyFields() { return app->classes()->item("company")->fields(); }
};

TEST_F(ScriptExpressionTest, ReferencesTravelBetweenLocalAndInternalPaths) {
  const QString local = "[City] & Value(\"Responsible.Name\") & VALUE(\"City\") & text(\"Responsible\") & "
                        "ActiveUser.Record.Value(\"Name\")";
  const QString internal = "[city] & Value(\"coworker.name\") & Value(\"city\") & Text(\"coworker\") & "
                           "ActiveUser.Record.Value(\"name\")";
  EXPECT_EQ(ConvertScriptExpression(companyFields(), local, 0), internal);
  EXPECT_EQ(ConvertScriptExpression(companyFields(), internal, 1),
            "[City] & Value(\"Responsible.Name\") & Value(\"City\") & Text(\"Responsible\") & "
            "ActiveUser.Record.Value(\"Name\")");
}

TEST_F(ScriptExpressionTest, UnknownReferencesStayAndNothingFails) {
  EXPECT_EQ(ConvertScriptExpression(companyFields(), "", 0), "");
  EXPECT_EQ(ConvertScriptExpression(companyFields(), "[Nowhere] & Value(\"Nowhere\") & [", 0),
            "[Nowhere] & Value(\"Nowhere\") & [");
  EXPECT_EQ(ConvertScriptExpression(nullptr, "VALUE(\"x\") & TEXT(\"y\")", 0), "Value(\"x\") & Text(\"y\")");
  // A name that is a field of the page as well as of the user stays the
  // user's: the user's own form is never taken for a page reference.
  EXPECT_EQ(ConvertScriptExpression(companyFields(), "activeuser.record.value(\"Name\") & Value(\"Name\")", 0),
            "ActiveUser.Record.Value(\"name\") & Value(\"name\")");
}

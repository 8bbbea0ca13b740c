// Library behaviour beyond what the conformance scripts pin down: the
// Format function we add, and conversions under other regional settings.

#include "core/Regional.h"
#include "script/ScriptEngine.h"
#include "script/ScriptTestSupport.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

class ScriptLibraryTest : public ::testing::Test {
protected:
  void SetUp() override {
    useUnitedStatesRegion();
    engine = script::createScriptEngine(QStringLiteral("VBScript"));
  }
  QString text(const QString &expression) { return engine->evaluate(expression).toString(); }
  std::unique_ptr<script::ScriptEngine> engine;
};

TEST_F(ScriptLibraryTest, FormatUsesTheSharedFormatter) {
  EXPECT_EQ(text(QStringLiteral("Format(#1/2/2003 1:04:05 PM#, \"yyyy-mm-dd hh:nn\")")),
            QStringLiteral("2003-01-02 13:04"));
  EXPECT_EQ(text(QStringLiteral("Format(1234.5, \"#,##0.00\")")), QStringLiteral("1,234.50"));
  EXPECT_EQ(text(QStringLiteral("Format(\"abc\", \">\")")), QStringLiteral("ABC"));
  EXPECT_EQ(text(QStringLiteral("Format(#1/2/2003#, \"dddd\")")), QStringLiteral("Thursday"));
  EXPECT_EQ(text(QStringLiteral("Format(#1/1/2003#, \"ww\", vbMonday, vbFirstFourDays)")), QStringLiteral("1"));
  EXPECT_EQ(text(QStringLiteral("Format(5)")), QStringLiteral("5"));
}

TEST_F(ScriptLibraryTest, ConversionsAndFormattingFollowTheRegionalSettings) {
  RegionalSettings swedish = RegionalSettings::fromLocale(QLocale(QLocale::Swedish, QLocale::Sweden));
  swedish.groupSeparator = u' ';
  swedish.shortDate = QStringLiteral("yyyy-mm-dd");
  swedish.longTime = QStringLiteral("hh:nn:ss");
  swedish.currencySymbol = QStringLiteral("kr");
  swedish.currencySymbolFirst = false;
  swedish.currencySpace = true;
  setRegional(swedish);
  EXPECT_EQ(text(QStringLiteral("CStr(1.5)")), QStringLiteral("1,5"));
  EXPECT_EQ(engine->evaluate(QStringLiteral("CDbl(\"2,25\") * 2")).toDouble(), 4.5);
  EXPECT_EQ(text(QStringLiteral("FormatNumber(1234.5)")), QStringLiteral("1 234,50"));
  EXPECT_EQ(text(QStringLiteral("FormatCurrency(-1234.5)")), QStringLiteral("-1 234,50 kr"));
  EXPECT_EQ(text(QStringLiteral("CStr(#1/2/2003 1:04:05 PM#)")), QStringLiteral("2003-01-02 13:04:05"));
  EXPECT_EQ(text(QStringLiteral("1.5 & \"\"")), QStringLiteral("1,5"));
  useUnitedStatesRegion();
}

TEST_F(ScriptLibraryTest, EscapeAndUnescapeRoundTrip) {
  EXPECT_EQ(text(QStringLiteral("Escape(\"a b&c/ü€\")")), QStringLiteral("a%20b%26c/%FC%u20AC"));
  EXPECT_EQ(text(QStringLiteral("Unescape(\"a%20b%26c/%FC%u20AC\")")), QStringLiteral("a b&c/ü€"));
}

TEST_F(ScriptLibraryTest, WrongArgumentCountsAreReportedWithTheFunctionName) {
  try {
    engine->evaluate(QStringLiteral("Left(\"abc\")"));
    FAIL() << "no error";
  } catch (const script::ScriptError &error) {
    EXPECT_EQ(error.number(), ErrorNumber::WrongArgumentCount);
    EXPECT_TRUE(error.description().contains(QStringLiteral("'Left'")));
  }
}

} // namespace
} // namespace kordel::test

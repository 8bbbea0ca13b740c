// Record.Evaluate: VBScript expressions that read the record's fields and
// the signed-in user's own record.

#include "KnownRecords.h"

#include "support/ErrorCapture.h"

#include "hostapi/Records.h"

using namespace kordel;
using kordel::test::KnownRecordsTest;

namespace {

class EvaluateTest : public KnownRecordsTest {};

TEST_P(EvaluateTest, ExpressionsReadFieldsInEveryForm) {
  auto deal = record("en", "deal", 1);
  EXPECT_EQ(deal->evaluate("[name] & \" for \" & [company.name]", 1).toString(),
            QString::fromUtf8("Support renewal for Åkerlund & Söner AB"));
  EXPECT_EQ(deal->evaluate("Value(\"value\") * 2", 1).toDouble(), 2469.0);
  EXPECT_EQ(deal->evaluate("Text(\"probability\")", 1).toString(), "25%");
  EXPECT_EQ(deal->evaluate("Text(\"Contact\") & \"!\"", 1).toString(), QString::fromUtf8("Klára Dvořáková!"));
  EXPECT_EQ(deal->evaluate("[company.turnover] > 1000000", 1), Variant(true));
  EXPECT_EQ(deal->evaluate("UCase(ActiveUser.Record.Value(\"name\"))", 1).toString(), "ANNA LINDQVIST");
  EXPECT_EQ(deal->evaluate("ActiveUser.Login", 1).toString(), "anna");
  EXPECT_EQ(deal->evaluate("Year([closedate]) + ID", 1).toLong(), 2025);
  EXPECT_TRUE(deal->evaluate("IsNull([coworker])", 1).toBool());
}

TEST_P(EvaluateTest, EachRecordAnswersForItself) {
  auto first = record("sv", "product", 1);
  auto second = record("sv", "product", 2);
  EXPECT_EQ(first->evaluate("Text(\"active\") & \" \" & [name]", 1).toString(), "Ja Licence");
  EXPECT_EQ(second->evaluate("Text(\"active\") & \" \" & [name]", 1).toString(), "Nej Old licence");
  EXPECT_EQ(first->evaluate("[name]", 1).toString(), "Licence");
}

TEST_P(EvaluateTest, FailingExpressionsRaiseTheirError) {
  auto deal = record("en", "deal", 1);
  EXPECT_EQ(test::errorNumber([&] { deal->evaluate("1 / 0", 1); }), ErrorNumber::DivisionByZero);
  // A name that is no field is an undeclared variable, Empty, as VBScript has it.
  EXPECT_EQ(deal->evaluate("[nosuchfield] + 1", 1).toLong(), 1);
  EXPECT_NE(test::errorNumber([&] { deal->evaluate("Value(\"company.nowhere\")", 1); }), 0);
  EXPECT_NE(test::errorNumber([&] { deal->evaluate("(", 1); }), 0);
  // A failure leaves the engine ready for the next expression.
  EXPECT_EQ(deal->evaluate("[name]", 1).toString(), "Support renewal");
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Databases, EvaluateTest, ::testing::Values(kordel::nuvo::Dialect::SQLite),
                         kordel::test::dialectName);

#include "support/QtPrinters.h"

#include "document/ReportFields.h"
#include "document/SortFields.h"
#include "document/StringCollection.h"
#include "support/ErrorCapture.h"

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::errorNumber;

TEST(StringCollection, IsASetInInsertionOrder) {
  StringCollection strings;
  EXPECT_EQ(strings.Count(), 0);
  strings.Add("b");
  strings.Add("a");
  strings.Add("c");
  EXPECT_EQ(errorNumber([&] { strings.Add("a"); }), ErrorNumber::DuplicateKey);
  EXPECT_TRUE(strings.Exists("a").toBool());
  EXPECT_FALSE(strings.Exists("A").toBool());
  EXPECT_EQ(strings.Item(1), "b");
  strings.Remove(Variant("b"));
  EXPECT_EQ(strings.Item(1), "a");
  EXPECT_EQ(strings.Item(2), "c");
  EXPECT_EQ(errorNumber([&] { strings.Item(3); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { strings.Item(0); }), ErrorNumber::SubscriptOutOfRange);
  // A number is a key, not a position, and no key is a number.
  EXPECT_EQ(errorNumber([&] { strings.Remove(Variant(1)); }), ErrorNumber::ElementNotFound);
  EXPECT_EQ(errorNumber([&] { strings.Remove(Variant(std::int16_t(1))); }), ErrorNumber::ElementNotFound);
  strings.Remove(Variant(1.0)); // any other type does nothing
  EXPECT_EQ(strings.Count(), 2);
}

TEST(ReportFields, RejectDuplicatesAndFailOnMissingNames) {
  ReportFields fields;
  fields.Add("name", "name", "");
  fields.Add("vbscript:[city] & \"!\"", "[city] & \"!\"", "-");
  EXPECT_EQ(fields.Count(), 2);
  EXPECT_EQ(errorNumber([&] { fields.Add("name", "x", ""); }), ErrorNumber::DuplicateKey);
  EXPECT_EQ(fields.Item(2)->DefaultValue, "-");
  EXPECT_EQ(fields.Field("name")->Expression, "name");
  EXPECT_NE(errorNumber([&] { fields.Field("missing"); }), 0);
  EXPECT_EQ(errorNumber([&] { fields.Item(3); }), ErrorNumber::SubscriptOutOfRange);
  fields.Remove("name");
  EXPECT_EQ(fields.Item(1)->Name, "vbscript:[city] & \"!\"");
  EXPECT_EQ(errorNumber([&] { fields.Remove("name"); }), ErrorNumber::ElementNotFound);
}

TEST(SortFields, KeepTheFirstOrderOfADuplicate) {
  SortFields sorts;
  EXPECT_EQ(sorts.Count(), 0);
  EXPECT_EQ(sorts.Item(1), nullptr);
  EXPECT_TRUE(sorts.Add("name", kSortAscending));
  EXPECT_TRUE(sorts.Add("city", kSortDescending));
  EXPECT_FALSE(sorts.Add("name", kSortDescending));
  EXPECT_EQ(sorts.Count(), 2);
  EXPECT_EQ(sorts.SortField("name")->SortOrder, kSortAscending);
  EXPECT_EQ(sorts.SortField("missing"), nullptr);
  EXPECT_EQ(sorts.Item(3), nullptr);
  EXPECT_EQ(errorNumber([&] { sorts.Item(0); }), ErrorNumber::SubscriptOutOfRange);
  sorts.Remove("missing"); // nothing happens
  sorts.Remove("name");
  EXPECT_EQ(sorts.Item(1)->Name, "city");
  sorts.RemoveAll();
  EXPECT_EQ(sorts.Count(), 0);
  EXPECT_TRUE(sorts.Add("name", kSortAscending));
}

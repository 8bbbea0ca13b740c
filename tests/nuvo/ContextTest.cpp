// The engine's report context and named-value objects.

#include "nuvo/FilterObject.h"
#include "nuvo/NamedValuesObject.h"
#include "nuvo/PoolObject.h"
#include "nuvo/ReportContextObject.h"

#include "core/Dictionary.h"
#include "support/ErrorCapture.h"

#include <gtest/gtest.h>

using namespace kordel;

namespace {

TEST(ReportContextTest, ThePropertyBagReplacesAndRemoves) {
  nuvo::ReportContextObject context;
  EXPECT_TRUE(context.getProperty("anything").isEmpty());
  EXPECT_EQ(context.getProperty("anything", 7), Variant(7));
  EXPECT_EQ(context.fileName(), QString());
  EXPECT_TRUE(context.getProperty("sysprop__exportfile").isEmpty()) << "FileName reads without writing";

  auto filter = std::make_shared<nuvo::FilterObject>();
  context.setProperty("{page}", Variant(filter));
  context.setProperty("{page}", Variant(filter)); // a second filter under one name replaces the first
  EXPECT_EQ(objectAs<hostapi::Filter>(context.getProperty("{page}")), filter);
  context.setProperty("sysprop__copies", 2);
  context.setPrinterName("Office");
  context.setFileName("/tmp/out.pdf");
  EXPECT_EQ(context.getProperty("sysprop__printername"), Variant("Office"));
  EXPECT_EQ(context.fileName(), QStringLiteral("/tmp/out.pdf"));
  EXPECT_EQ(context.propertyNames(),
            QStringList({"{page}", "sysprop__copies", "sysprop__printername", "sysprop__exportfile"}));
  context.setProperty("sysprop__copies", Variant());
  EXPECT_TRUE(context.getProperty("sysprop__copies", -1) == Variant(-1));
  EXPECT_EQ(context.propertyNames().size(), 3);

  // Range keeps objects by reference and plain values as they are.
  auto pool = std::make_shared<nuvo::PoolObject>();
  context.setRange(Variant(pool));
  pool->add(5);
  EXPECT_EQ(objectAs<hostapi::Pool>(context.range())->count(), 1);
  context.setRange(42);
  EXPECT_EQ(context.range(), Variant(42));
}

TEST(ReportContextTest, ScriptsUseTheSameMembers) {
  ObjectRef context = std::make_shared<nuvo::ReportContextObject>();
  context->set("Name", "Customers");
  context->invoke("SetProperty", {"FilterName", "Customers"});
  EXPECT_EQ(context->invoke("GetProperty", {"FilterName"}), Variant("Customers"));
  EXPECT_EQ(context->invoke("GetProperty", {"Missing", "fallback"}), Variant("fallback"));
  EXPECT_EQ(context->get("FileName"), Variant(QString()));
  EXPECT_TRUE(context->get("Class").isNothing());
}

TEST(NamedValuesTest, NamesIgnoreCaseAndKeepTheirOrder) {
  nuvo::NamedValuesObject values(QStringLiteral("Properties"));
  values.setItem("Guid", "{1}");
  values.setItem("Zeta", 1);
  values.setItem("GUID", "{2}");
  EXPECT_EQ(values.item("guid"), Variant("{2}"));
  EXPECT_EQ(values.names(), QStringList({"Guid", "Zeta"}));
  EXPECT_TRUE(values.exists("zeta"));
  values.remove("ZETA");
  EXPECT_EQ(values.count(), 1);
  EXPECT_TRUE(values.item("Zeta").isEmpty());
  ObjectRef object = std::make_shared<nuvo::NamedValuesObject>(QStringLiteral("Properties"));
  object->invoke("SetItem", {"a", 1});
  EXPECT_EQ(object->invoke("", {"A"}), Variant(1)) << "Item is the default member";
  // Removing what is not there fails as a dictionary's Remove does, and changes nothing.
  const Error missing = test::errorOf([&] { object->invoke("Remove", {"zeta"}); });
  EXPECT_EQ(missing.number(), ErrorNumber::ElementNotFound);
  EXPECT_EQ(missing.number(), test::errorNumber([] { Dictionary().remove(Variant("zeta")); }));
  EXPECT_EQ(missing.source(), "Nuvo.Properties");
  EXPECT_EQ(object->invoke("Count", {}), Variant(1));
  EXPECT_EQ(object->typeName(), QStringLiteral("Properties"));
}

} // namespace

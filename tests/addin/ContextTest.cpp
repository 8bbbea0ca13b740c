// Print contexts and the context manager against a demo database: the
// property bag's two maps, the range types the manager recognises, its
// checks and counts, and the contexts it makes.

#include "DemoFixture.h"

#include "core/Dictionary.h"
#include "data/Context.h"
#include "data/ContextManager.h"
#include "hostapi/Classes.h"
#include "hostapi/Explorer.h"
#include "hostapi/Filters.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"
#include "support/ErrorCapture.h"

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::DemoHostedTest;
using kordel::test::errorNumber;

namespace {

class ContextTest : public DemoHostedTest {
protected:
  std::shared_ptr<nuvo::Engine> engine() const {
    return std::dynamic_pointer_cast<nuvo::DatabaseObject>(app->database())->engine();
  }
  std::shared_ptr<hostapi::Filter> newFilter() {
    return std::dynamic_pointer_cast<hostapi::Filter>(app->createObject("Nuvo.Filter"));
  }
  std::shared_ptr<hostapi::Filter> savedFilter(const QString &cls, const QString &name) {
    return app->classes()->item(cls)->filters()->lookup(name, hostapi::FilterLookup::ByName);
  }
  std::shared_ptr<hostapi::Pool> pool(std::initializer_list<int> ids) {
    auto made = std::dynamic_pointer_cast<hostapi::Pool>(app->createObject("Nuvo.Pool"));
    for (int id : ids)
      made->add(id);
    return made;
  }
  std::shared_ptr<hostapi::ReportContext> hostContext(const Variant &range, const QString &cls = {}) {
    auto context = std::dynamic_pointer_cast<hostapi::ReportContext>(app->createObject("Nuvo.ReportContext"));
    context->setRange(range);
    if (!cls.isEmpty())
      context->setContextClass(app->classes()->item(cls));
    return context;
  }
  std::shared_ptr<nuvo::ExplorerObject> openExplorer(const QString &cls) {
    auto explorer = std::make_shared<nuvo::ExplorerObject>(engine(), cls);
    app->explorerList().open(explorer);
    return explorer;
  }
  // The number of companies the demo database holds under a saved filter.
  int countOf(const QString &filterName) {
    auto records = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("Nuvo.Records"));
    records->open(Variant("company"), savedFilter("company", filterName), nullptr, 0);
    return records->count();
  }
  std::unique_ptr<ContextManager> manager() {
    auto made = std::make_unique<ContextManager>();
    made->SetApplication(app);
    return made;
  }
};

TEST_F(ContextTest, FiltersShadowPlainPropertiesAndAreAddedNotReplaced) {
  Context context;
  EXPECT_TRUE(context.getProperty("nothing").isEmpty());
  EXPECT_EQ(context.getProperty("nothing", 7), Variant(7));
  EXPECT_EQ(context.fileName(), "");
  EXPECT_TRUE(context.fileName().isEmpty() && !context.getProperty("sysprop__exportfile", "x").isEmpty());
  ASSERT_TRUE(context.ExtensionsProperties());
  EXPECT_EQ(context.ExtensionsProperties()->count(), 0);

  context.setProperty("{PAGE}", "plain");
  const auto filter = savedFilter("person", "withemail");
  context.setProperty("{PAGE}", Variant(ObjectRef(filter)));
  EXPECT_EQ(context.getProperty("{PAGE}").rawObject(), filter) << "the filter shadows the plain value";
  EXPECT_EQ(errorNumber([&] { context.setProperty("{PAGE}", Variant(ObjectRef(newFilter()))); }),
            ErrorNumber::DuplicateKey);
  const auto other = newFilter();
  context.AddSubFilter("{PAGE}", other);
  EXPECT_EQ(context.getProperty("{PAGE}").rawObject(), other) << "AddSubFilter replaces";
  context.setProperty("{PAGE}", Variant());
  EXPECT_EQ(context.getProperty("{PAGE}"), Variant(QStringLiteral("plain"))) << "only the filter went";
  context.setProperty("{PAGE}", Variant());
  EXPECT_TRUE(context.getProperty("{PAGE}").isEmpty());
  context.setProperty("never set", Variant());

  context.setProperty("Key", 1);
  EXPECT_TRUE(context.getProperty("key").isEmpty()) << "names are compared exactly";
  context.setFileName("/tmp/out.pdf");
  context.setPrinterName("Office");
  EXPECT_EQ(context.getProperty("sysprop__exportfile"), Variant(QStringLiteral("/tmp/out.pdf")));
  EXPECT_EQ(context.printerName(), "Office");
  const auto dictionary = std::make_shared<Dictionary>();
  context.setProperty("object", Variant(ObjectRef(dictionary)));
  EXPECT_EQ(context.getProperty("object").rawObject(), dictionary) << "other objects by reference";
  context.AddExtensionsProperty("FilterName", "Kunder");
  EXPECT_EQ(context.getProperty("FilterName"), Variant(QStringLiteral("Kunder")));
}

TEST_F(ContextTest, ScriptsReachTheContextLateBound) {
  Context context;
  context.invoke("SetProperty", {"sysprop__copies", 3});
  EXPECT_EQ(context.invoke("GetProperty", {"sysprop__copies"}), Variant(3));
  context.set("ContextType", kdContextTypeAll);
  EXPECT_EQ(context.ContextType(), kdContextTypeAll);
  EXPECT_EQ(errorNumber([&] { context.set("ContextType", 9); }), ErrorNumber::InvalidCall);
  context.set("Range", Variant(ObjectRef(pool({4}))));
  EXPECT_TRUE(std::dynamic_pointer_cast<hostapi::Pool>(context.range().rawObject()));
  context.set("Class", Variant(ObjectRef(app->classes()->item("deal"))));
  EXPECT_EQ(context.contextClass()->name(), "deal");
}

TEST_F(ContextTest, PlainValuesAndPoolsBecomePoolsAndEmptyRangesAreRefused) {
  // A range without a class of its own is of the class of the current
  // list window, which the context then takes.
  EXPECT_EQ(errorNumber([&] { manager()->Initialize("company", hostContext(3)); }), ErrorNumber::ObjectNotSet);
  openExplorer("company");
  auto m = manager();
  m->Initialize("company", hostContext(3));
  EXPECT_EQ(m->RangeType(), RangePool);
  EXPECT_EQ(m->GetRangeCount(RangeCountPool), 1);
  EXPECT_EQ(m->GetRangeCount(RangeCountSelected), 0) << "counts only for their own range type";
  EXPECT_EQ(m->Class()->name(), "company");
  EXPECT_EQ(m->Name(), "The current record");

  auto two = manager();
  two->Initialize("", hostContext(Variant(ObjectRef(pool({1, 2}))), "company"));
  EXPECT_EQ(two->Name(), "2 records");
  const auto context = two->CreateContext(ContextFromSelection, "");
  EXPECT_EQ(context->range().rawObject(), two->Range());
  EXPECT_EQ(context->getProperty("sysprop__description"), Variant(QString()));

  EXPECT_EQ(errorNumber([&] { manager()->Initialize("company", hostContext(Variant(ObjectRef(pool({}))))); }),
            ErrorNumber::UnusableRange);
  EXPECT_EQ(errorNumber([&] { manager()->Initialize("company", hostContext(Variant())); }), ErrorNumber::UnusableRange);
  EXPECT_EQ(errorNumber([&] { manager()->Initialize("company", hostContext(Variant(ObjectRef(pool({1}))), "deal")); }),
            ErrorNumber::ClassMismatch);
}

TEST_F(ContextTest, FiltersAreCountedOnceAndAnEmptyOneIsRefused) {
  const int customers = countOf("customers");
  ASSERT_GT(customers, 0);
  auto m = manager();
  m->Initialize("company", hostContext(Variant(ObjectRef(savedFilter("company", "customers"))), "company"));
  EXPECT_EQ(m->RangeType(), RangeFilter);
  EXPECT_EQ(m->GetRangeCount(RangeCountFilter), customers);
  EXPECT_EQ(m->Name(), QStringLiteral("Filter \"customers\" (%1 records)").arg(customers));
  const auto context = m->CreateContext(ContextFromAll, "");
  EXPECT_EQ(context->getProperty("sysprop__description"), Variant(QStringLiteral("customers")));

  EXPECT_EQ(errorNumber([&] {
              manager()->Initialize("company",
                                    hostContext(Variant(ObjectRef(savedFilter("company", "antarctica"))), "company"));
            }),
            ErrorNumber::UnusableRange);
  EXPECT_EQ(errorNumber([&] {
              manager()->Initialize("person",
                                    hostContext(Variant(ObjectRef(savedFilter("company", "customers"))), "company"));
            }),
            ErrorNumber::ClassMismatch);

  // A context's own name wins.
  auto named = manager();
  auto withName = hostContext(Variant(ObjectRef(savedFilter("company", "customers"))), "company");
  withName->setName("My customers");
  named->Initialize("", withName);
  EXPECT_EQ(named->Name(), "My customers");
}

TEST_F(ContextTest, AListWindowGivesAllItsRowsItsSelectionOrOneOfItsFilters) {
  EXPECT_EQ(errorNumber([&] { manager()->Initialize("", nullptr); }), ErrorNumber::NoListWindow);
  EXPECT_EQ(errorNumber([&] { manager()->Initialize("company", nullptr); }), ErrorNumber::NoListWindow);

  auto explorer = openExplorer("company");
  explorer->setActiveFilter(savedFilter("company", "customers"));
  const std::vector<int> listed = explorer->listedIds();
  ASSERT_GE(listed.size(), 2u);
  explorer->select({listed[0]});

  auto m = manager();
  m->Initialize("company", nullptr);
  EXPECT_EQ(m->RangeType(), RangeExplorer);
  EXPECT_TRUE(m->IsRangeActiveExplorer());
  ASSERT_TRUE(m->RangeFilters());
  EXPECT_EQ(m->GetRangeCount(RangeCountAll), int(listed.size()));
  EXPECT_EQ(m->GetRangeCount(RangeCountSelected), 1);
  EXPECT_EQ(m->GetFilterHitCount("sweden"), [&] {
    auto records = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("Nuvo.Records"));
    auto both = newFilter();
    both->addCondition("", Variant(ObjectRef(savedFilter("company", "customers"))), 2, 0);
    both->addCondition("", Variant(ObjectRef(savedFilter("company", "sweden"))), 2, 0);
    both->addOperator(9);
    records->open(Variant("company"), both, nullptr, 0);
    return records->count();
  }()) << "a filter counts only within what the window lists";

  const auto selected = m->CreateContext(ContextFromSelection, "");
  const auto selectedPool = std::dynamic_pointer_cast<hostapi::Pool>(selected->range().rawObject());
  ASSERT_TRUE(selectedPool);
  EXPECT_EQ(selectedPool->ids(), std::vector<int>{listed[0]});
  EXPECT_EQ(selected->getProperty("sysprop__description").toString().toStdString(),
            QStringLiteral("customers (1/%1)").arg(listed.size()).toStdString());

  auto all = manager();
  all->Initialize("", nullptr);
  const auto everything = all->CreateContext(ContextFromAll, "");
  EXPECT_EQ(everything->getProperty("sysprop__description"), Variant(QStringLiteral("customers")))
      << "all listed rows: no counts";

  // A filter that has no effect in a window without a source: a filter with
  // no condition at all.
  auto unfiltered = openExplorer("person");
  auto p = manager();
  p->Initialize("person", nullptr);
  (void)unfiltered;
  const auto byFilter = p->CreateContext(ContextFromFilter, "withemail");
  const auto made = std::dynamic_pointer_cast<hostapi::Filter>(byFilter->range().rawObject());
  ASSERT_TRUE(made);
  EXPECT_EQ(made->count(), 1) << "only the named filter, nothing to join";

  // A window that is not the active one gives no rows for all or selected.
  auto inactive = manager();
  inactive->Initialize("company", nullptr);
  EXPECT_FALSE(inactive->IsRangeActiveExplorer());
  EXPECT_EQ(errorNumber([&] { inactive->CreateContext(ContextFromAll, ""); }), ErrorNumber::UnusableRange);
}

TEST_F(ContextTest, ARecordWindowPrintsItsRecordUnlessItIsNewOrGone) {
  auto inspector = std::make_shared<nuvo::InspectorObject>(engine(), "company", 2);
  auto m = manager();
  m->Initialize("", hostContext(Variant(ObjectRef(inspector))));
  EXPECT_EQ(m->RangeType(), RangeInspector);
  EXPECT_EQ(m->Class()->name(), "company");
  EXPECT_EQ(m->Name(), inspector->record()->description());
  const auto context = m->CreateContext(0, "");
  const auto range = std::dynamic_pointer_cast<hostapi::Pool>(context->range().rawObject());
  ASSERT_TRUE(range);
  EXPECT_EQ(range->ids(), std::vector<int>{2});

  auto fresh = nuvo::InspectorObject::forNewRecord(engine(), "company");
  EXPECT_EQ(errorNumber([&] { manager()->Initialize("", hostContext(Variant(ObjectRef(fresh)))); }),
            ErrorNumber::UnusableRange);

  // A record handed over on its own is a pool of one.
  auto single = manager();
  single->Initialize("company", hostContext(Variant(ObjectRef(inspector->record())), "company"));
  EXPECT_EQ(single->RangeType(), RangePool);
  EXPECT_EQ(single->Name(), "The current record");

  // GetProperty reads objects as references and plain values with a default.
  single->SetProperty("sysprop__copies", 2);
  EXPECT_EQ(single->GetProperty("sysprop__copies", 1), Variant(2));
  EXPECT_EQ(single->GetProperty("sysprop__paperbin", -1), Variant(-1));
}

} // namespace

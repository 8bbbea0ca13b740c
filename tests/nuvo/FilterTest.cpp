// Filters compiled to SQL: each kind of condition and operator, paths
// across relations, embedded and saved filters, and pools of every size.
// The expected ids are found the slow way, by reading every record.

#include "QueryTestSupport.h"

#include "support/ErrorCapture.h"

#include "nuvo/ClassObjects.h"
#include "nuvo/RecordQueryObject.h"
#include "nuvo/SavedFilters.h"

#include "hostapi/Records.h"

#include "xml/XmlDocument.h"

#include "core/VbDate.h"

#include <QJsonObject>

#include <algorithm>
#include <set>

using namespace kordel;
using kordel::test::QueryTest;

namespace {

namespace CO = hostapi::ConditionOp;
namespace FO = hostapi::FilterOperator;

std::vector<int> unite(std::vector<int> a, const std::vector<int> &b) {
  a.insert(a.end(), b.begin(), b.end());
  std::sort(a.begin(), a.end());
  a.erase(std::unique(a.begin(), a.end()), a.end());
  return a;
}

std::vector<int> intersect(const std::vector<int> &a, const std::vector<int> &b) {
  std::vector<int> both;
  std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(both));
  return both;
}

class FilterTest : public QueryTest {
protected:
  std::shared_ptr<hostapi::Filter> saved(const char *cls, const char *name) {
    return nuvo::ClassesObject(engine).item(QString::fromLatin1(cls))->filters()->item(QString::fromLatin1(name));
  }
  std::shared_ptr<nuvo::FilterObject> where(const char *path, int op, const Variant &value) {
    auto f = filter();
    f->addCondition(QString::fromUtf8(path), value, op, 0);
    return f;
  }
};

TEST_P(FilterTest, ComparisonsSelectWhatTheValuesSay) {
  const auto customers = idsWhere("company", [](hostapi::Record &r) { return r.value("category").toLong() == 1; });
  ASSERT_FALSE(customers.empty());
  // A choice compares by its key, its option name or its text in any language.
  EXPECT_EQ(idsOf("company", where("category", CO::Equal, 1)), customers);
  EXPECT_EQ(idsOf("company", where("category", CO::Equal, "customer")), customers);
  EXPECT_EQ(idsOf("company", where("category", CO::Equal, "Kund")), customers);

  EXPECT_EQ(idsOf("company", where("turnover", CO::GreaterOrEqual, 5.0e7)),
            idsWhere("company", [](hostapi::Record &r) { return r.value("turnover").toDouble() >= 5.0e7; }));
  const Date limit = dateFromParts(1950, 1, 1);
  EXPECT_EQ(idsOf("company", where("founded", CO::Less, limit)),
            idsWhere("company", [&](hostapi::Record &r) { return r.value("founded").toDate().serial < limit.serial; }));
  EXPECT_EQ(idsOf("history", where("date", CO::LessOrEqual, "2022-06-30 12:00")),
            idsWhere("history", [](hostapi::Record &r) {
              return r.value("date").toDate().serial <=
                     combineDateTime(dateFromParts(2022, 6, 30), timeFromParts(12, 0, 0)).serial;
            }));
  EXPECT_EQ(idsOf("deal", where("value", CO::Greater, Currency::fromDouble(250000))),
            idsWhere("deal", [](hostapi::Record &r) { return r.value("value").toDouble() > 250000; }));
  EXPECT_EQ(idsOf("product", where("active", CO::Equal, true)),
            idsWhere("product", [](hostapi::Record &r) { return r.value("active").toBool(); }));
}

TEST_P(FilterTest, NoValueIsAskedForWithNullAndNotEqualKeepsRecordsWithout) {
  const auto withoutEmail = idsWhere("person", [](hostapi::Record &r) { return r.value("email").isNull(); });
  ASSERT_FALSE(withoutEmail.empty());
  EXPECT_EQ(idsOf("person", where("email", CO::Equal, Variant::null())), withoutEmail);
  const QString someEmail = openRecords("person", where("email", CO::NotEqual, Variant::null()))->at(0)->text("email");
  EXPECT_EQ(idsOf("person", where("email", CO::NotEqual, someEmail)),
            idsWhere("person", [&](hostapi::Record &r) { return r.text("email") != someEmail; }));
  EXPECT_TRUE(idsOf("person", where("birthday", CO::Greater, Variant::null())).empty());
}

TEST_P(FilterTest, LikeMatchesPatternsWithoutRegardToCase) {
  EXPECT_EQ(idsOf("company", where("name", CO::Like, "*ab")),
            idsWhere("company", [](hostapi::Record &r) { return r.text("name").endsWith("AB"); }));
  const auto twoLetterDomains = idsOf("company", where("email", CO::Like, "INFO@*.?E"));
  EXPECT_FALSE(twoLetterDomains.empty());
  EXPECT_EQ(twoLetterDomains, idsWhere("company", [](hostapi::Record &r) {
              const QString email = r.text("email");
              return email.startsWith("info@") && (email.endsWith(".se") || email.endsWith(".de"));
            }));
  // SQL's own wildcards are plain characters here.
  EXPECT_TRUE(idsOf("company", where("name", CO::Like, "%")).empty());
  EXPECT_EQ(test::errorNumber([&] { idsOf("company", where("turnover", CO::Like, "1*")); }), ErrorNumber::InvalidCall);
}

TEST_P(FilterTest, PathsFollowRelationsToOneAndToMany) {
  EXPECT_EQ(idsOf("person", where("company.country", CO::Equal, "Sweden")),
            idsWhere("person", [](hostapi::Record &r) { return r.value("company.country").toText() == "Sweden"; }));
  EXPECT_EQ(idsOf("history", where("deal.company.coworker.login", CO::Equal, "erik")),
            idsWhere("history", [](hostapi::Record &r) { return r.text("deal.company.coworker.login") == "erik"; }));
  // Through a relation to many: coworkers responsible for any customer.
  std::set<int> responsible;
  auto customers = openRecords("company", where("category", CO::Equal, "customer"), {"coworker"});
  for (int i = 0; i < customers->count(); ++i)
    responsible.insert(customers->at(i)->value("coworker").toLong());
  EXPECT_EQ(idsOf("coworker", where("company.category", CO::Equal, "customer")),
            std::vector<int>(responsible.begin(), responsible.end()));
  EXPECT_EQ(idsOf("coworker", saved("coworker", "withcustomers")),
            std::vector<int>(responsible.begin(), responsible.end()));
}

TEST_P(FilterTest, OperatorsJoinTheConditionsBeforeThem) {
  const auto sweden = idsOf("company", where("country", CO::Equal, "Sweden"));
  const auto customers = idsOf("company", where("category", CO::Equal, "customer"));
  auto both = where("country", CO::Equal, "Sweden");
  both->addCondition("category", "customer", CO::Equal, 0);
  both->addOperator(FO::And);
  EXPECT_EQ(idsOf("company", both), intersect(sweden, customers));
  auto either = where("country", CO::Equal, "Sweden");
  either->addCondition("category", "customer", CO::Equal, 0);
  either->addOperator(FO::Or);
  EXPECT_EQ(idsOf("company", either), unite(sweden, customers));
  auto notSweden = where("country", CO::Equal, "Sweden");
  notSweden->addOperator(FO::Not);
  EXPECT_EQ(intersect(idsOf("company", notSweden), sweden), std::vector<int>{});
  EXPECT_EQ(idsOf("company", notSweden).size() + sweden.size(), std::size_t(openRecords("company")->count()));
  // Conditions left unjoined must all hold.
  auto unjoined = where("country", CO::Equal, "Sweden");
  unjoined->addCondition("category", "customer", CO::Equal, 0);
  EXPECT_EQ(idsOf("company", unjoined), intersect(sweden, customers));

  EXPECT_EQ(test::errorNumber([&] { where("country", CO::Equal, "Sweden")->addOperator(FO::And); }),
            ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { filter()->addOperator(FO::Not); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { filter()->addOperator(12); }), ErrorNumber::InvalidCall);
}

TEST_P(FilterTest, EmbeddedAndSavedFiltersCompose) {
  const auto customers = idsOf("company", saved("company", "customers"));
  const auto sweden = idsOf("company", saved("company", "sweden"));
  ASSERT_FALSE(intersect(customers, sweden).empty());
  EXPECT_EQ(idsOf("company", saved("company", "swedishcustomers")), intersect(customers, sweden));

  auto outer = filter();
  outer->addCondition({}, Variant(saved("company", "customers")), CO::EmbeddedFilter, 0);
  outer->addCondition("coworker.name", "Erik Söderström", CO::Equal, 0);
  outer->addOperator(FO::And);
  EXPECT_EQ(idsOf("company", outer), intersect(customers, idsWhere("company", [](hostapi::Record &r) {
                                                 return r.text("coworker") == QString::fromUtf8("Erik Söderström");
                                               })));
  // An embedded filter without conditions holds for every record.
  auto nothing = filter();
  auto wrapper = filter();
  wrapper->addCondition({}, Variant(nothing), CO::EmbeddedFilter, 0);
  EXPECT_TRUE(wrapper->empty());
  EXPECT_EQ(wrapper->count(), 1);
  EXPECT_EQ(idsOf("company", wrapper).size(), std::size_t(openRecords("company")->count()));
  EXPECT_FALSE(outer->empty());
  // A filter may not hold itself, however deep.
  EXPECT_EQ(test::errorNumber([&] { nothing->addCondition({}, Variant(wrapper), CO::EmbeddedFilter, 0); }),
            ErrorNumber::InvalidCall);
}

TEST_P(FilterTest, PoolsOfAnySizeSelectTheirIds) {
  // Ten ids go inline, fifty thousand through a temporary table; ids the
  // class lacks select nothing.
  auto small = std::make_shared<nuvo::PoolObject>();
  for (int id : {3, 5, 7, 9, 11, 13, 17, 19, 23, 9999})
    small->add(id);
  EXPECT_EQ(idsOf("company", where("idcompany", CO::InPool, Variant(small))),
            (std::vector<int>{3, 5, 7, 9, 11, 13, 17, 19, 23}));
  auto large = std::make_shared<nuvo::PoolObject>();
  for (int id = 100000; id > 0; id -= 2)
    large->add(id);
  ASSERT_EQ(large->count(), 50000);
  const auto even = idsWhere("company", [](hostapi::Record &r) { return r.id() % 2 == 0; });
  auto inLarge = where("idcompany", CO::InPool, Variant(large));
  EXPECT_EQ(idsOf("company", inLarge), even);
  // A pool that changes after a query is read again.
  large->remove(2);
  large->add(1);
  auto expected = even;
  expected.erase(expected.begin());
  expected.insert(expected.begin(), 1);
  EXPECT_EQ(idsOf("company", inLarge), expected);
  // The children of pooled parents, as a sub page finds them.
  EXPECT_EQ(idsOf("person", where("company.idcompany", CO::InPool, Variant(small))),
            idsWhere("person", [&](hostapi::Record &r) { return small->contains(r.value("company").toLong()); }));
  EXPECT_TRUE(idsOf("company", where("idcompany", CO::InPool, Variant(std::make_shared<nuvo::PoolObject>()))).empty());
  auto selection = std::make_shared<nuvo::SelectionObject>(std::vector<int>{4, 8});
  EXPECT_EQ(idsOf("company", where("idcompany", CO::InPool, Variant(selection))), (std::vector<int>{4, 8}));
  EXPECT_EQ(test::errorNumber([&] { where("idcompany", CO::InPool, 5); }), ErrorNumber::TypeMismatch);
}

TEST(Pool, KeepsEachIdOnceInTheOrderAddedWhateverThatOrder) {
  // Ascending ids, as queries give them, then ids out of order.
  nuvo::PoolObject pool(std::vector<int>{2, 4, 6, 8});
  const quint64 start = pool.revision();
  pool.add(4);
  pool.add(10);
  pool.remove(5);
  EXPECT_EQ(pool.revision(), start + 1) << "only a real change counts";
  pool.remove(2);
  pool.add(3);
  pool.add(6);
  pool.add(1);
  pool.add(3);
  EXPECT_EQ(pool.ids(), (std::vector<int>{4, 6, 8, 10, 3, 1}));
  for (int id : {1, 3, 4, 6, 8, 10})
    EXPECT_TRUE(pool.contains(id)) << id;
  for (int id : {0, 2, 5, 7, 9, 11})
    EXPECT_FALSE(pool.contains(id)) << id;
  pool.remove(8);
  EXPECT_EQ(pool.ids(), (std::vector<int>{4, 6, 10, 3, 1}));
  EXPECT_FALSE(pool.contains(8));

  // Made from ids out of order or twice, and its clone.
  const nuvo::PoolObject mixed(std::vector<int>{5, 3, 5, 9, 3});
  EXPECT_EQ(mixed.ids(), (std::vector<int>{5, 3, 9}));
  EXPECT_EQ(mixed.clone()->ids(), (std::vector<int>{5, 3, 9}));
  EXPECT_TRUE(mixed.clone()->contains(9));

  pool.clear();
  EXPECT_EQ(pool.count(), 0);
  pool.add(7);
  pool.add(7);
  EXPECT_EQ(pool.ids(), (std::vector<int>{7}));
}

TEST_P(FilterTest, BadFiltersAreRefusedWithClearErrors) {
  EXPECT_EQ(test::errorNumber([&] { idsOf("company", where("nosuchfield", CO::Equal, 1)); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { idsOf("company", where("person", CO::Equal, 1)); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { idsOf("company", where("category", CO::Equal, "nosuchoption")); }),
            ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { idsOf("company", where("founded", CO::Equal, "not a date")); }),
            ErrorNumber::TypeMismatch);
  EXPECT_EQ(test::errorNumber([&] { idsOf("person", saved("company", "customers")); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { filter()->addCondition("name", 1, 99, 0); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { filter()->addCondition("name", 1, CO::Equal, 1); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { filter()->addCondition({}, 1, CO::EmbeddedFilter, 0); }),
            ErrorNumber::TypeMismatch);
}

TEST_P(FilterTest, RecordQueryCountsWhatRecordsWouldOpen) {
  nuvo::ClassesObject classes(engine);
  int emptyFilters = 0;
  for (int c = 0; c < classes.count(); ++c) {
    const auto cls = classes.at(c);
    auto filters = std::dynamic_pointer_cast<nuvo::SavedFilters>(cls->filters());
    ASSERT_GE(filters->count(), 2) << cls->name().toStdString();
    for (int f = 0; f < filters->count(); ++f) {
      auto saved = filters->at(f);
      nuvo::RecordQueryObject query(engine);
      query.open(cls->name(), saved, nullptr, hostapi::RecordQueryParts::Count, 0, -1);
      const QString count = query.result()->firstChild()->getAttribute(QStringLiteral("count")).value();
      EXPECT_EQ(count.toInt(), openRecords(cls->name(), saved)->count()) << saved->name().toStdString();
      emptyFilters += count == QLatin1String("0");
    }
  }
  EXPECT_GE(emptyFilters, 5) << "the demo has filters without hits";

  nuvo::RecordQueryObject ids(engine);
  ids.open("company", saved("company", "customers"), nullptr,
           hostapi::RecordQueryParts::Ids | hostapi::RecordQueryParts::Summary, 1, 3);
  const auto root = ids.result()->firstChild();
  EXPECT_EQ(root->getAttribute(QStringLiteral("filter")).value(), QStringLiteral("customers"));
  const auto customers = idsOf("company", saved("company", "customers"));
  std::vector<int> listed;
  for (auto node = root->firstChild(); node; node = node->nextSibling())
    listed.push_back(node->getAttribute(QStringLiteral("id")).value().toInt());
  EXPECT_EQ(listed, std::vector<int>(customers.begin() + 1, customers.begin() + 4));
  EXPECT_EQ(test::errorNumber([] { nuvo::RecordQueryObject(nullptr).result(); }), ErrorNumber::ObjectNotSet);
}

// Saved filters read from a database embed others by name: one that embeds
// itself, or a few that each embed the next ten times (ten million filters
// by the eighth), are refused at once with their reason.
TEST(SavedFilterTest, EmbeddingIsBoundedInDepthAndInAll) {
  nuvo::ClassDef cls;
  cls.name = QStringLiteral("company");
  for (int level = 0; level < 8; ++level) {
    nuvo::FilterDef def;
    def.name = QStringLiteral("level%1").arg(level);
    if (level == 7) {
      def.items.append(QJsonObject{{"path", "name"}, {"op", CO::Equal}, {"value", "x"}});
    } else {
      for (int i = 0; i < 10; ++i)
        def.items.append(QJsonObject{{"filter", QStringLiteral("level%1").arg(level + 1)}});
      for (int i = 1; i < 10; ++i)
        def.items.append(QJsonObject{{"operator", FO::Or}});
    }
    cls.filters.push_back(def);
  }
  nuvo::FilterDef itself;
  itself.name = QStringLiteral("itself");
  itself.items.append(QJsonObject{{"filter", "itself"}});
  cls.filters.push_back(itself);

  const Error wide = test::errorOf([&] { nuvo::makeSavedFilter(cls, cls.filters[0], "en"); });
  EXPECT_EQ(wide.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(wide.description().contains("embeds more than 1000 filters")) << wide.description().toStdString();
  const Error deep = test::errorOf([&] { nuvo::makeSavedFilter(cls, cls.filters.back(), "en"); });
  EXPECT_TRUE(deep.description().contains("embeds itself")) << deep.description().toStdString();
  EXPECT_NO_THROW(nuvo::makeSavedFilter(cls, cls.filters[5], "en")) << "level 5: ten filters of one condition each";
}

} // namespace

KORDEL_ON_BOTH_DATABASES(FilterTest);

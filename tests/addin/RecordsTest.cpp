// The record cursor against a demo database: a three-level page tree
// (companies, their persons, the persons' history) opened for each kind of
// range, with one query per page, children picked per parent in their sort
// order, sub filters, empty levels, values and the script's view.

#include "DemoFixture.h"

#include "data/ContextManager.h"
#include "data/Records.h"
#include "document/Page.h"
#include "document/Report.h"
#include "document/ReportFields.h"
#include "document/SortFields.h"
#include "hostapi/Classes.h"
#include "hostapi/Explorer.h"
#include "hostapi/Filters.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"
#include "hostapi/ReportContext.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"
#include "support/ErrorCapture.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <set>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::DemoHostedTest;

namespace {

const QString kPersons = QStringLiteral("{PERSONS}");
const QString kHistory = QStringLiteral("{HISTORY}");

class RecordsTest : public DemoHostedTest {
protected:
  void SetUp() override {
    DemoHostedTest::SetUp();
    report = std::make_shared<Report>();
    report->LoadContents(Variant());
    ASSERT_TRUE(report->Create("company"));
    ASSERT_TRUE(report->AddPage(kPersons, "Persons", "person", report->Guid(), Variant()));
    ASSERT_TRUE(report->AddPage(kHistory, "History", "person.history", kPersons, Variant()));
    auto top = report->Page();
    top->Fields()->Add("name", "name", "");
    top->Fields()->Add("turnover", "turnover", "");
    top->SortFields()->Add("name", kSortDescending);
    auto persons = report->LookupPage(kPersons);
    persons->Fields()->Add("lastname", "lastname", "");
    persons->Fields()->Add("firstname", "firstname", "");
    persons->SortFields()->Add("lastname", kSortAscending);
    persons->SortFields()->Add("firstname", kSortDescending);
    auto history = report->LookupPage(kHistory);
    history->Fields()->Add("date", "date", "");
    history->SortFields()->Add("date", kSortDescending);
  }

  std::shared_ptr<nuvo::Engine> engine() const {
    return std::dynamic_pointer_cast<nuvo::DatabaseObject>(app->database())->engine();
  }
  std::shared_ptr<hostapi::Pool> pool(const std::vector<int> &ids) {
    auto made = std::dynamic_pointer_cast<hostapi::Pool>(app->createObject("Nuvo.Pool"));
    for (int id : ids)
      made->add(id);
    return made;
  }
  std::shared_ptr<hostapi::Filter> savedFilter(const QString &cls, const QString &name) {
    return app->classes()->item(cls)->filters()->lookup(name, hostapi::FilterLookup::ByName);
  }
  std::shared_ptr<hostapi::ReportContext> context(const Variant &range) {
    auto made = std::dynamic_pointer_cast<hostapi::ReportContext>(app->createObject("Nuvo.ReportContext"));
    made->setRange(range);
    return made;
  }
  // The ids of a class's records under a filter, asked of the engine directly.
  std::set<int> idsWhere(const QString &cls, const QString &field, int id) {
    auto filter = std::dynamic_pointer_cast<hostapi::Filter>(app->createObject("Nuvo.Filter"));
    filter->addCondition(field, id, hostapi::ConditionOp::Equal, 0);
    auto records = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("Nuvo.Records"));
    records->open(Variant(cls), filter, nullptr, 0);
    std::set<int> ids;
    for (int i = 0; i < records->count(); ++i)
      ids.insert(records->at(i)->id());
    return ids;
  }
  std::shared_ptr<Records> open(const std::shared_ptr<hostapi::ReportContext> &ctx) {
    auto records = std::make_shared<Records>();
    records->OpenRecords(report->Page(), ctx, nullptr);
    return records;
  }
  // The texts of a field down the active rows, walking with MoveNext.
  static std::vector<std::pair<int, QStringList>> walk(Records &cursor, const QStringList &paths) {
    std::vector<std::pair<int, QStringList>> rows;
    while (!cursor.EndOfFile()) {
      QStringList texts;
      for (const QString &path : paths)
        texts << cursor.Record()->text(path);
      rows.emplace_back(cursor.Record()->id(), texts);
      cursor.MoveNext();
    }
    return rows;
  }

  std::shared_ptr<Report> report;
};

TEST_F(RecordsTest, ATreeOfThreePagesIsOpenedWithOneQueryPerPageAndWalkedWithoutAnother) {
  auto allCompanies = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("Nuvo.Records"));
  allCompanies->open(Variant("company"), nullptr, nullptr, 0);
  std::vector<int> companyIds;
  for (int i = 0; i < allCompanies->count(); ++i)
    companyIds.push_back(allCompanies->at(i)->id());

  engine()->sql().resetCounters();
  auto top = open(context(Variant(ObjectRef(pool(companyIds)))));
  EXPECT_EQ(engine()->sql().counters().selects, 3) << "one query per page of the tree";

  auto persons = top->LookupSubRecords(kPersons);
  auto history = top->LookupSubRecords(kHistory);
  ASSERT_TRUE(persons && history);
  EXPECT_EQ(persons->ParentLinkField(), "company.idcompany");
  EXPECT_EQ(history->ParentLinkField(), "person.idperson");
  EXPECT_EQ(top->IdField(), "idcompany");
  EXPECT_EQ(persons->SortExpression(), "[lastname] ASC, [firstname] DESC");
  EXPECT_EQ(persons->LookupSubRecords(kPersons), persons) << "a cursor finds itself";
  EXPECT_EQ(persons->LookupSubRecords(report->Guid()), nullptr) << "the search only goes down";
  EXPECT_EQ(top->LookupSubRecords("{NONE}"), nullptr);

  const auto companies = walk(*top, {"name"});
  ASSERT_EQ(int(companies.size()), int(companyIds.size()));
  for (std::size_t i = 1; i < companies.size(); ++i)
    EXPECT_GE(companies[i - 1].second[0].compare(companies[i].second[0], Qt::CaseInsensitive), 0) << "name descending";

  // What was picked per parent, checked against the engine afterwards so
  // that the checking queries do not count.
  std::map<int, std::set<int>> personsOf;
  std::map<int, std::set<int>> historyOf;
  for (const auto &[companyId, unused] : companies) {
    persons->SetParentFilter(pool({companyId}));
    EXPECT_EQ(persons->RecordIndex(), 0);
    const auto rows = walk(*persons, {"lastname", "firstname"});
    std::set<int> picked;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      picked.insert(rows[i].first);
      if (i > 0) {
        const int byLast = rows[i - 1].second[0].compare(rows[i].second[0], Qt::CaseInsensitive);
        EXPECT_LE(byLast, 0) << "last name ascending";
        if (byLast == 0) {
          EXPECT_GE(rows[i - 1].second[1].compare(rows[i].second[1], Qt::CaseInsensitive), 0)
              << "first name descending among equal last names";
        }
      }
      history->SetParentFilter(pool({rows[i].first}));
      for (const auto &event : walk(*history, {"date"}))
        historyOf[rows[i].first].insert(event.first);
    }
    personsOf[companyId] = picked;
    EXPECT_EQ(persons->GetPool()->count(), int(rows.size())) << "during a parent filter the pool is the picked ids";
  }
  EXPECT_EQ(engine()->sql().counters().selects, 3) << "no query while the rows are walked";

  int historySeen = 0;
  for (const auto &[companyId, picked] : personsOf) {
    EXPECT_EQ(picked, idsWhere("person", "company", companyId)) << "the children of company " << companyId;
    for (int personId : picked) {
      EXPECT_EQ(historyOf[personId], idsWhere("history", "person", personId)) << "the history of person " << personId;
      historySeen += int(historyOf[personId].size());
    }
  }
  EXPECT_GT(historySeen, 0);
}

TEST_F(RecordsTest, DatesSortAsTimeAndChildrenOfSeveralParentsAreSortedTogether) {
  auto top = open(context(Variant(ObjectRef(pool({1, 2, 3})))));
  auto persons = top->LookupSubRecords(kPersons);
  auto history = top->LookupSubRecords(kHistory);

  // All persons of two companies in one pick, sorted as one list.
  persons->SetParentFilter(pool({1, 2}));
  std::set<int> expected = idsWhere("person", "company", 1);
  for (int id : idsWhere("person", "company", 2))
    expected.insert(id);
  std::set<int> picked;
  for (const auto &row : walk(*persons, {}))
    picked.insert(row.first);
  EXPECT_EQ(picked, expected);

  // History of every person at once, newest first by the raw date.
  history->SetParentFilter(persons->GetPool());
  double previous = std::numeric_limits<double>::infinity();
  bool seenNull = false;
  int rows = 0;
  while (!history->EndOfFile()) {
    const Variant date = history->Record()->value("date");
    if (date.isNull()) {
      seenNull = true;
    } else {
      EXPECT_FALSE(seenNull) << "a date without a value sorts as Null: last when descending";
      EXPECT_LE(date.toDouble(), previous) << "row " << rows;
      previous = date.toDouble();
    }
    ++rows;
    history->MoveNext();
  }
  EXPECT_GT(rows, 1);
  EXPECT_EQ(history->RecordIndex(), rows);
}

TEST_F(RecordsTest, EveryKindOfRangeOpensTheTopPage) {
  const auto customers = savedFilter("company", "customers");
  auto byFilter = open(context(Variant(ObjectRef(customers))));
  auto customerRecords = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("Nuvo.Records"));
  customerRecords->open(Variant("company"), customers, nullptr, 0);
  EXPECT_EQ(byFilter->RecordCount(), customerRecords->count());

  auto byId = open(context(Variant(4)));
  EXPECT_EQ(byId->RecordCount(), 1);
  EXPECT_EQ(byId->Record()->id(), 4) << "a plain value is one id";

  auto explorer = std::make_shared<nuvo::ExplorerObject>(engine(), "company");
  app->explorerList().open(explorer);
  explorer->select({2, 5});
  auto bySelection = open(context(Variant(ObjectRef(explorer->selection()))));
  std::set<int> selected;
  for (const auto &row : walk(*bySelection, {}))
    selected.insert(row.first);
  EXPECT_EQ(selected, (std::set<int>{2, 5}));

  // A record window, through the manager, as a print from it goes.
  auto inspector = std::make_shared<nuvo::InspectorObject>(engine(), "company", 3);
  ContextManager manager;
  manager.SetApplication(app);
  manager.Initialize("company", context(Variant(ObjectRef(inspector))));
  auto byInspector = open(manager.CreateContext(0, ""));
  EXPECT_EQ(byInspector->RecordCount(), 1);
  EXPECT_EQ(byInspector->Record()->id(), 3);

  // A range that is no filter, pool or selection gives nothing to ask for.
  const Error error = test::errorOf([&] { open(context(Variant(ObjectRef(explorer)))); });
  EXPECT_EQ(error.number(), ErrorNumber::UserMessage);
  EXPECT_EQ(error.description(), "There are no records to print: choose a selection, a list or a filter.");
}

TEST_F(RecordsTest, EmptyLevelsAndSubFilters) {
  auto none = open(context(Variant(ObjectRef(pool({999999})))));
  EXPECT_TRUE(none->EndOfFile());
  EXPECT_TRUE(none->BeginningOfFile());
  EXPECT_EQ(none->RecordCount(), 0);
  EXPECT_EQ(none->RecordIndex(), 0);
  EXPECT_EQ(test::errorNumber([&] { none->Record(); }), ErrorNumber::NoCurrentRow);
  auto noPersons = none->LookupSubRecords(kPersons);
  ASSERT_TRUE(noPersons) << "sub cursors open also under an empty page";
  EXPECT_EQ(noPersons->RecordCount(), 0);
  noPersons->SetParentFilter(pool({1}));
  EXPECT_TRUE(noPersons->EndOfFile());
  EXPECT_EQ(noPersons->GetPool()->count(), 0);

  // Only persons with an e-mail address, by a filter under the page's guid.
  auto ctx = context(Variant(ObjectRef(pool({1, 2, 3, 4, 5, 6}))));
  ctx->setProperty(kPersons, Variant(ObjectRef(savedFilter("person", "withemail"))));
  auto top = open(ctx);
  auto persons = top->LookupSubRecords(kPersons);
  persons->SetParentFilter(top->GetPool());
  int withEmail = 0;
  while (!persons->EndOfFile()) {
    EXPECT_FALSE(persons->Record()->text("email").isEmpty());
    ++withEmail;
    persons->MoveNext();
  }
  EXPECT_EQ(withEmail, persons->LookupSubRecords(kPersons)->RecordCount());

  // The parent filter with an empty pool: an empty pick, nothing cleared.
  persons->SetParentFilter(pool({}));
  EXPECT_TRUE(persons->IsFiltered());
  EXPECT_TRUE(persons->EndOfFile());
  persons->ClearParentFilter();
  EXPECT_FALSE(persons->IsFiltered());
  EXPECT_EQ(persons->RecordCount(), withEmail);
  EXPECT_EQ(persons->RecordIndex(), 0) << "clearing keeps the counter";

  // Navigation counts moves; after MoveLast it is the row count.
  persons->MoveLast();
  EXPECT_EQ(persons->RecordIndex(), persons->RecordCount());
  persons->MoveFirst();
  EXPECT_EQ(persons->RecordIndex(), 0);
  persons->MoveNext();
  persons->MovePrevious();
  EXPECT_EQ(persons->RecordIndex(), 0);
  EXPECT_FALSE(persons->BeginningOfFile());
  persons->MovePrevious();
  EXPECT_TRUE(persons->BeginningOfFile());
}

TEST_F(RecordsTest, ValuesFollowTheirTypesAndFallToTheirDefaults) {
  auto top = report->Page();
  top->Fields()->Add("vbscript:shout",
                     "[city] & Value(\"country\") & [city] & ActiveUser.Record.Value(\"email\") & text(\"phone\") & "
                     "[nosuch]",
                     "");
  auto cursor = open(context(Variant(2)));
  EXPECT_EQ(cursor->View()->paths(), (QStringList{"name", "turnover", "city", "country", "phone", "idcompany"}))
      << "each path once; the user's record and names that are no field are not fetched";

  const auto record = cursor->Record();
  ReportField name;
  name.Name = "name";
  name.Expression = "name";
  EXPECT_EQ(cursor->Value(name), Variant(record->text("name")));
  ReportField turnover;
  turnover.Name = "turnover";
  turnover.Expression = "turnover";
  EXPECT_EQ(cursor->Value(turnover).type(), record->value("turnover").type()) << "decimals reach the layout as numbers";
  ReportField founded;
  founded.Name = "founded";
  founded.Expression = "founded";
  EXPECT_EQ(cursor->Value(founded), Variant(record->text("founded"))) << "dates as the engine's text";
  ReportField script;
  script.Name = "VBScript:loud";
  script.Expression = "UCase([name]) & \"!\"";
  EXPECT_EQ(cursor->Value(script), Variant(record->text("name").toUpper() + "!"));
  ReportField empty;
  empty.Name = "vbscript:empty";
  empty.Expression = "\"\"";
  empty.DefaultValue = "-";
  EXPECT_EQ(cursor->Value(empty), Variant(QStringLiteral("-")));
  ReportField broken;
  broken.Name = "nosuch";
  broken.Expression = "nosuch.path";
  broken.DefaultValue = "?";
  EXPECT_EQ(cursor->Value(broken), Variant(QStringLiteral("?")));
  cursor->MoveNext();
  EXPECT_EQ(cursor->Value(broken), Variant(QStringLiteral("?"))) << "at the end of the rows too";
  EXPECT_EQ(cursor->Value(name), Variant(QString()));

  // The script's view moves the same cursor and opens nothing.
  auto facade = std::make_shared<RecordsFacade>();
  facade->SetRecords(cursor);
  facade->invoke("MoveFirst", {});
  EXPECT_EQ(facade->get("RecordIndex"), Variant(0));
  EXPECT_EQ(facade->get("EndOfFile"), Variant(false));
  EXPECT_EQ(facade->get("Record").rawObject(), record);
  EXPECT_EQ(test::errorNumber([&] { facade->invoke("SetParentFilter", {}); }), ErrorNumber::NoSuchMember);
  EXPECT_EQ(test::errorNumber([&] { facade->get("IsFiltered"); }), ErrorNumber::NoSuchMember);
}

TEST_F(RecordsTest, AStaleSortFieldStopsTheReportAtOpening) {
  report->LookupPage(kPersons)->SortFields()->Add("shoesize", kSortAscending);
  const Error error = test::errorOf([&] { open(context(Variant(1))); });
  EXPECT_TRUE(error.description().contains("shoesize")) << error.description().toStdString();

  // A relation to many has no column, so sorting on it fails too.
  report->LookupPage(kPersons)->SortFields()->Remove("shoesize");
  report->Page()->SortFields()->Add("person", kSortAscending);
  EXPECT_NE(test::errorNumber([&] { open(context(Variant(1))); }), 0);
}

} // namespace

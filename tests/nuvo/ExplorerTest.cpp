// The models of list and record windows, and the host application that
// carries the database, the windows and the data engine's ProgIDs.

#include "NuvoFixture.h"

#include "support/ErrorCapture.h"

#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/HostToolsObject.h"
#include "host/SettingsStore.h"

#include "nuvo/ClassObjects.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"
#include "nuvo/ListQuery.h"

#include "hostapi/ActiveUser.h"
#include "hostapi/Classes.h"
#include "hostapi/Filters.h"
#include "hostapi/Picture.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"

#include "script/ScriptEngine.h"

using namespace kordel;

namespace {

class ExplorerTest : public test::DatabaseTest {
protected:
  void SetUp() override {
    DatabaseTest::SetUp();
    createDemo(30, 5);
    engine = open("en", "erik");
  }

  std::shared_ptr<hostapi::Filter> saved(const char *cls, const char *name) {
    return nuvo::ClassesObject(engine).item(cls)->filters()->item(name);
  }

  std::shared_ptr<nuvo::Engine> engine;
};

TEST_P(ExplorerTest, AListWindowShowsTheRecordsOfItsFilter) {
  auto explorer = std::make_shared<nuvo::ExplorerObject>(engine, "company");
  EXPECT_EQ(explorer->records()->count(), 30);
  EXPECT_FALSE(explorer->activeFilter());
  EXPECT_FALSE(explorer->records()->source());

  explorer->setActiveFilter(saved("company", "customers"));
  const int customers = explorer->records()->count();
  ASSERT_GT(customers, 3);
  EXPECT_EQ(explorer->records()->source()->name(), "customers");
  EXPECT_EQ(explorer->items()->count(), customers);
  EXPECT_EQ(explorer->selection()->count(), 0);
  const auto ids = explorer->items()->pool()->ids();
  // A narrowed list shows fewer items than there are records.
  explorer->narrow({ids[0], ids[2], 100000});
  EXPECT_EQ(explorer->items()->pool()->ids(), (std::vector<int>{ids[0], ids[2]}));
  EXPECT_EQ(explorer->records()->count(), customers);
  explorer->select({ids[2], ids[1]});
  EXPECT_EQ(explorer->selection()->pool()->ids(), std::vector<int>{ids[2]}) << "only listed items can be selected";
  EXPECT_EQ(explorer->filters()->count(), 6);
  EXPECT_EQ(explorer->explorerClass()->name(), "company");
  // The records carry their descriptions without another query.
  engine->sql().resetCounters();
  EXPECT_FALSE(explorer->records()->at(0)->description().isEmpty());
  EXPECT_EQ(engine->sql().counters().statements, 0);
}

// The list's order and search are the database's, in both dialects: both
// ways of a sort mirror each other, a search keeps only rows that show the
// text, and LIKE's wildcards in it are plain characters.
class ListOrderTest : public ExplorerTest {};

TEST_P(ListOrderTest, TheDatabaseSortsAndSearchesAList) {
  auto explorer = std::make_shared<nuvo::ExplorerObject>(engine, "company");
  const nuvo::ListQuery &list = explorer->listQuery();
  ASSERT_EQ(list.columnTitle(0), "Name");
  const std::vector<int> byId = explorer->listedIds();

  explorer->arrange(QString(), 0, false);
  std::vector<int> ascending = explorer->listedIds();
  explorer->arrange(QString(), 0, true);
  std::vector<int> descending = explorer->listedIds();
  std::reverse(descending.begin(), descending.end());
  EXPECT_EQ(ascending, descending);
  EXPECT_NE(ascending, byId);
  const auto names = list.texts(ascending);
  for (std::size_t i = 1; i < names.size(); ++i)
    if (names[i - 1][0].front().unicode() < 128 && names[i][0].front().unicode() < 128) {
      EXPECT_LE(names[i - 1][0].compare(names[i][0], Qt::CaseInsensitive), 0) << i;
    }

  explorer->select({ascending[0], ascending[1]});
  explorer->arrange(QStringLiteral("AB"), 0, false);
  const std::vector<int> found = explorer->listedIds();
  ASSERT_FALSE(found.empty());
  EXPECT_LT(found.size(), byId.size());
  for (const QStringList &row : list.texts(found))
    EXPECT_TRUE(row.join(u'|').contains(QStringLiteral("ab"), Qt::CaseInsensitive)) << row.join(u'|').toStdString();
  for (const int id : explorer->selectedIds())
    EXPECT_NE(std::find(found.begin(), found.end(), id), found.end()) << "the selection keeps what is listed";
  EXPECT_EQ(explorer->records()->count(), 30) << "a search narrows the list, not the records";

  explorer->arrange(QStringLiteral("%"), -1, false);
  EXPECT_TRUE(explorer->listedIds().empty());
  explorer->arrange(QString(), -1, false);
  EXPECT_EQ(explorer->listedIds(), byId);
}

TEST_P(ExplorerTest, TheHostKnowsItsCurrentAndActiveWindows) {
  nuvo::ExplorerList windows;
  EXPECT_FALSE(windows.current());
  auto companies = std::make_shared<nuvo::ExplorerObject>(engine, "company");
  auto persons = std::make_shared<nuvo::ExplorerObject>(engine, "person");
  windows.open(companies);
  windows.open(persons);
  EXPECT_EQ(windows.current(), persons);
  EXPECT_EQ(windows.active(), persons);
  windows.activate("company");
  EXPECT_EQ(windows.current(), companies);
  windows.deactivate();
  EXPECT_FALSE(windows.active());
  EXPECT_EQ(windows.current(), companies) << "the current window stays current";
  EXPECT_TRUE(windows.exists("PERSON"));
  EXPECT_EQ(windows.item("person"), persons);
  EXPECT_EQ(test::errorNumber([&] { windows.item("deal"); }), ErrorNumber::SubscriptOutOfRange);
  windows.close("company");
  EXPECT_EQ(windows.current(), persons);
  EXPECT_EQ(windows.count(), 1);
}

TEST_P(ExplorerTest, ARecordWindowShowsOneRecordOrANewOne) {
  nuvo::InspectorObject inspector(engine, "person", 4);
  EXPECT_EQ(inspector.inspectorClass()->name(), "person");
  EXPECT_EQ(inspector.record()->id(), 4);
  EXPECT_EQ(inspector.record()->state(), hostapi::RecordState::Saved);
  EXPECT_EQ(inspector.record()->description(),
            inspector.record()->text("firstname") + u' ' + inspector.record()->text("lastname"));
  auto fresh = nuvo::InspectorObject::forNewRecord(engine, "deal");
  EXPECT_EQ(fresh->record()->state() & hostapi::RecordState::New, hostapi::RecordState::New);
  EXPECT_EQ(fresh->record()->id(), 0);
  EXPECT_TRUE(fresh->record()->value("company.name").isNull());
  EXPECT_EQ(fresh->record()->description(), QString());
  EXPECT_EQ(test::errorNumber([&] { nuvo::InspectorObject(engine, "person", 99999); }), ErrorNumber::InvalidCall);
}

class HostedDataTest : public ExplorerTest {
protected:
  void SetUp() override {
    ExplorerTest::SetUp();
    app = std::make_shared<host::HostApplication>(std::make_shared<host::SettingsStore>(dir.file("registry.ini")),
                                                  std::make_shared<host::FileLog>(dir.file("orvex.log")), "sv");
  }

  std::shared_ptr<host::HostApplication> app;
};

TEST_P(HostedDataTest, TheApplicationCarriesTheDatabaseAndItsWindows) {
  EXPECT_EQ(test::errorNumber([&] { app->classes(); }), ErrorNumber::ObjectNotSet);
  EXPECT_FALSE(app->activeUser());
  app->setDatabase(std::make_shared<nuvo::DatabaseObject>(open("sv", "erik")));
  EXPECT_EQ(app->classes()->item("company")->localName(), QString::fromUtf8("Företag"));
  EXPECT_EQ(app->activeUser()->login(), "erik");
  EXPECT_EQ(app->activeUser()->record()->text("name"), QString::fromUtf8("Erik Söderström"));
  EXPECT_FALSE(app->activeExplorer());
  auto explorer = std::make_shared<nuvo::ExplorerObject>(engine, "deal");
  app->explorerList().open(explorer);
  EXPECT_EQ(app->activeExplorer(), explorer);
  EXPECT_EQ(app->get("ActiveExplorer").rawObject(), explorer);
  EXPECT_EQ(app->get("Explorers").rawObject()->invoke("Exists", {"deal"}), Variant(true));
  app->registerReportFactory("OrvexKordel.Addin");
  app->registerReportFactory("orvexkordel.addin");
  EXPECT_EQ(app->reportFactories(), QStringList{"OrvexKordel.Addin"});
}

TEST_P(HostedDataTest, EveryProgIdOfTheDataEngineCanBeCreated) {
  app->setDatabase(std::make_shared<nuvo::DatabaseObject>(engine));
  const std::pair<const char *, const char *> progIds[] = {
      {"Nuvo.Pool", "Pool"},
      {"Nuvo.Filter", "Filter"},
      {"Nuvo.View", "View"},
      {"Nuvo.Records", "Records"},
      {"Nuvo.RecordQuery", "RecordQuery"},
      {"Nuvo.ReportContext", "ReportContext"},
      {"Nuvo.File", "File"},
      {"Nuvo.FileOpenAttributes", "FileOpenAttributes"},
      {"Nuvo.Document", "Document"},
      {"Nuvo.Properties", "Properties"},
      {"Nuvo.Script", "Script"},
  };
  for (const auto &[progId, typeName] : progIds)
    EXPECT_EQ(app->createObject(progId)->typeName(), QString::fromLatin1(typeName)) << progId;
  auto records = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("nuvo.records"));
  records->open("product", nullptr, nullptr, 0);
  EXPECT_EQ(records->count(), 20);
}

TEST_P(HostedDataTest, AScriptDrivesTheWholeModelThroughApplication) {
  app->setDatabase(std::make_shared<nuvo::DatabaseObject>(open("sv", "erik")));
  auto script = script::createScriptEngine("VBScript");
  script->addNamedItem("Application", app);
  script->setObjectFactory([this](const QString &progId) -> ObjectRef {
    try {
      return app->createObject(progId);
    } catch (const Error &) {
      return nullptr; // not a host ProgID: the engine raises 429 itself
    }
  });
  script->addCode(R"(
    Dim f, r, rec, n, total
    Set f = CreateObject("Nuvo.Filter")
    f.AddCondition "Land", "Sweden", 0, 0
    f.AddCondition "category", "Kund", 0, 0
    f.AddOperator 9
    Set r = CreateObject("Nuvo.Records")
    r.Open Application.Classes("company"), f, Nothing, 0
    For Each rec In r
      If rec.Text("category") = "Kund" And rec("country") = "Sweden" Then n = n + 1
    Next
    total = r.Count
    Set q = CreateObject("Nuvo.RecordQuery")
    q.Open "company", f, Nothing, 3, 0, -1
  )");
  EXPECT_GT(script->evaluate("total").toLong(), 0);
  EXPECT_EQ(script->evaluate("n").toLong(), script->evaluate("total").toLong());
  EXPECT_EQ(script->evaluate("q.Result.firstChild.Attributes.getNamedItem(\"count\").nodeValue").toLong(),
            script->evaluate("total").toLong());
  EXPECT_EQ(script->evaluate("Application.ActiveUser.Record.Text(\"Namn\")").toString(),
            QString::fromUtf8("Erik Söderström"));
  EXPECT_EQ(
      script->evaluate("Application.Classes.Lookup(\"Affär\", 2).Fields.TranslatePath(\"Företag.Ort\", 0)").toString(),
      "company.city");
}

TEST(HostToolsTest, IconsComeFromTheModulesFolderAtTheAskedSize) {
  test::TempDir dir;
  QImage icon(32, 32, QImage::Format_ARGB32);
  icon.fill(Qt::darkGreen);
  ASSERT_TRUE(icon.save(dir.file("customIcon.png")));
  ObjectRef tools = std::make_shared<host::HostToolsObject>();
  const Variant picture = tools->invoke("LoadIconPicture", {dir.path(), "customIcon", 16, 16});
  EXPECT_EQ(picture.rawObject()->get("Width"), Variant(16));
  EXPECT_EQ(objectAs<hostapi::Picture>(picture)->image().pixelColor(8, 8), QColor(Qt::darkGreen));
  EXPECT_EQ(test::errorNumber([&] {
              tools->invoke("LoadIconPicture", {dir.path(), "otherIcon", 16, 16});
            }),
            ErrorNumber::FileNotFound);
}

} // namespace

KORDEL_ON_BOTH_DATABASES(ListOrderTest);
INSTANTIATE_TEST_SUITE_P(Databases, ExplorerTest, ::testing::Values(kordel::nuvo::Dialect::SQLite),
                         kordel::test::dialectName);
INSTANTIATE_TEST_SUITE_P(Databases, HostedDataTest, ::testing::Values(kordel::nuvo::Dialect::SQLite),
                         kordel::test::dialectName);

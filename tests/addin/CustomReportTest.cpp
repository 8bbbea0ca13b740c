// The add-in's entry and the report object the host sees: connection,
// factory, the IReport surface, the stored record in both layouts and the
// host file, against a demo database.

#include "DemoFixture.h"

#include "addin/Addin.h"
#include "common/ApplicationManager.h"
#include "addin/CustomReport.h"
#include "common/ResourceManager.h"
#include "document/Page.h"
#include "document/Report.h"
#include "host/StoredRecord.h"
#include "hostapi/Classes.h"
#include "hostapi/HostFile.h"
#include "hostapi/Picture.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"
#include "support/ErrorCapture.h"

#include <QRegularExpression>

#include "design/DlgReportDesigner.h"
#include "design/ReportDesigner.h"
#include "dialogs/DlgReportProperties.h"
#include "engine/designer/DesignerControl.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "hostapi/Classes.h"

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::DemoHostedTest;

namespace {

// The host's side of an add-in connection: "Object" is set by the add-in.
class AddInInstance : public Object {
public:
  Variant object;

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        property<AddInInstance>(
            "Object", [](AddInInstance &i) { return i.object; },
            [](AddInInstance &i, const Variant &v) { i.object = v; }),
    }};
    return table;
  }
};

class CustomReportTest : public DemoHostedTest {
protected:
  std::shared_ptr<CustomReport> newReport() {
    auto report = std::make_shared<CustomReport>();
    report->IReport_SetDatabase(app->database());
    return report;
  }

  // A document of the company class with a persons sub page, as the
  // designer would hand it over after a save.
  std::shared_ptr<Report> designedReport(const QString &name) {
    auto report = std::make_shared<Report>();
    report->LoadContents(Variant());
    EXPECT_TRUE(report->Create("company"));
    report->SetName(name);
    EXPECT_TRUE(report->AddPage("{SUB-PERSONS}", "Persons", "person", report->Guid(), Variant()));
    return report;
  }

  std::shared_ptr<hostapi::HostFile> hostFile(const QString &guid, int mode = hostapi::FileOpenMode::Existing) {
    auto attributes = std::dynamic_pointer_cast<hostapi::NamedValues>(app->createObject("Nuvo.FileOpenAttributes"));
    attributes->setItem("guid", guid);
    auto file = std::dynamic_pointer_cast<hostapi::HostFile>(app->createObject("Nuvo.File"));
    file->open(app->database(), hostapi::FileKind::Report, mode, attributes);
    return file;
  }

  void openExplorer(const QString &className) {
    const auto engine = std::dynamic_pointer_cast<nuvo::DatabaseObject>(app->database())->engine();
    app->explorerList().open(std::make_shared<nuvo::ExplorerObject>(engine, className));
  }
};

TEST_F(CustomReportTest, TheAddinConnectsRegistersAndCountsItsConnections) {
  const int before = ConnectionCount();
  auto first = std::make_shared<Addin>();
  EXPECT_EQ(first->IReportFactory_Name(), "") << "no name before the connection";
  EXPECT_EQ(first->IReportFactory_Type(), "orvexReportCustomReport");

  auto other =
      std::make_shared<host::HostApplication>(std::make_shared<host::SettingsStore>(dir.file("other.ini")),
                                              std::make_shared<host::FileLog>(dir.file("o.log")), QStringLiteral("sv"));
  // Let this test make the first connection and start the translator.
  addin::Disconnect();
  addin::StopTranslation();
  ASSERT_EQ(ConnectionCount(), before - 1);

  auto instance = std::make_shared<AddInInstance>();
  first->IDTExtensibility2_OnConnection(other, 0, instance, Variant());
  EXPECT_EQ(instance->object.rawObject(), first) << "the host reaches the factory through its instance";
  EXPECT_EQ(other->reportFactories(), QStringList{"OrvexKordel.Addin"});
  EXPECT_EQ(first->IReportFactory_Name(), "Kordel rapporter")
      << "the translator runs, in the host's language, before the name is read";
  EXPECT_EQ(ApplicationTitle(), first->IReportFactory_Name());
  EXPECT_EQ(first->get("Type"), Variant(QStringLiteral("orvexReportCustomReport")));

  auto second = std::make_shared<Addin>();
  second->IDTExtensibility2_OnConnection(app, 0, std::make_shared<AddInInstance>(), Variant());
  EXPECT_EQ(CurrentApplication(), other) << "a second connection keeps the first application";
  EXPECT_EQ(ConnectionCount(), before + 1);

  second->IDTExtensibility2_OnDisconnection(0, Variant());
  EXPECT_EQ(CurrentApplication(), other);
  first->IDTExtensibility2_OnDisconnection(0, Variant());
  EXPECT_EQ(ConnectionCount(), before - 1);
  if (ConnectionCount() == 0) {
    EXPECT_EQ(CurrentApplication(), nullptr) << "the last disconnection drops the application";
  }

  auto a = first->IReportFactory_Create();
  auto b = first->IReportFactory_Create();
  ASSERT_TRUE(a && b);
  EXPECT_NE(a, b);
  a->IReport_SetName("A");
  EXPECT_EQ(b->IReport_Name(), "") << "each report object is its own";
  EXPECT_EQ(a->IReport_Type(), first->IReportFactory_Type());
  addin::Connect(app);
  addin::StartTranslation("en");
}

TEST_F(CustomReportTest, AFailedConnectionIsRaisedUnchangedAndKeepsWhatWasDone) {
  const int before = ConnectionCount();
  auto addin = std::make_shared<Addin>();
  const Error error = test::errorOf([&] { addin->IDTExtensibility2_OnConnection(app, 0, nullptr, Variant()); });
  EXPECT_EQ(error.number(), ErrorNumber::ObjectRequired);
  EXPECT_EQ(error.source(), "Addin.OnConnection");
  EXPECT_EQ(ConnectionCount(), before + 1) << "the count stays raised";
  EXPECT_TRUE(ui->boxes.empty()) << "the reporter is not used while connecting";
}

TEST_F(CustomReportTest, TheReportSurfaceKeepsItsValuesAndItsModifiedFlag) {
  auto report = newReport();
  EXPECT_FALSE(report->IReport_Modified());
  const QString guid = report->IReport_GUID();
  EXPECT_TRUE(QRegularExpression("^\\{[0-9A-F-]{36}\\}$").match(guid).hasMatch()) << guid.toStdString();
  EXPECT_EQ(report->IReport_GUID(), guid) << "the GUID sticks";
  EXPECT_FALSE(report->IReport_Modified()) << "making the GUID is no change";

  report->IReport_SetDatabase(app->database());
  EXPECT_FALSE(report->IReport_Modified());
  report->IReport_SetPolicy(3);
  EXPECT_TRUE(report->IReport_Modified());
  report->IReport_SetModified(false);
  report->IReport_SetCategory("Sales");
  EXPECT_TRUE(report->IReport_Modified());
  report->IReport_SetModified(false);
  report->IReport_SetName("Customers");
  EXPECT_TRUE(report->IReport_Modified());
  EXPECT_EQ(report->IReport_Type(), "orvexReportCustomReport");

  // Late-bound, as automation scripts reach it.
  EXPECT_EQ(report->get("Name"), Variant(QStringLiteral("Customers")));
  EXPECT_EQ(report->get("Policy"), Variant(3));
  EXPECT_EQ(report->invoke("Supports", {Variant(8)}), Variant(true));

  const auto icon = report->IReport_Icon();
  ASSERT_TRUE(icon);
  EXPECT_EQ(icon->image().size(), QSize(16, 16));
  EXPECT_GT(icon->image().pixelColor(8, 8).alpha(), 0) << "an icon, not an empty square";
}

TEST_F(CustomReportTest, CapabilitiesAreExactNumbersAndClassesAreComparedWithoutCase) {
  auto report = newReport();
  for (int capability : {1, 2, 4, 8, 32})
    EXPECT_TRUE(report->IReport_Supports(capability, Variant())) << capability;
  for (int capability : {0, 3, 64, -1})
    EXPECT_FALSE(report->IReport_Supports(capability, Variant())) << capability;

  // No class yet, no list window: every class test answers no and none raises.
  EXPECT_FALSE(report->IReport_Supports(16, Variant()));
  EXPECT_FALSE(report->IReport_Supports(16, Variant(QString())));

  host::StoredRecord record;
  record.WriteProperty("guid", "{G}");
  record.WriteProperty("C", "Company");
  record.WriteProperty("name", "N");
  record.WriteProperty("category", "");
  record.WriteProperty("contents", Variant());
  report->Class_ReadProperties(record);

  EXPECT_TRUE(report->IReport_Supports(16, Variant(QStringLiteral("company"))));
  EXPECT_FALSE(report->IReport_Supports(16, Variant(QStringLiteral("person"))));
  EXPECT_FALSE(report->IReport_Supports(16, Variant(QStringLiteral("spaceship")))) << "a class the database lacks";
  EXPECT_FALSE(report->IReport_Supports(16, Variant(QString()))) << "the empty name is looked up like any other";
  EXPECT_TRUE(report->IReport_Supports(16, Variant(ObjectRef(app->classes()->item("company")))));
  EXPECT_FALSE(report->IReport_Supports(16, Variant(ObjectRef(app->classes()->item("deal")))));
  EXPECT_FALSE(report->IReport_Supports(16, Variant(ObjectRef(app->database())))) << "an object that is no class";
  EXPECT_FALSE(report->IReport_Supports(16, Variant::nothing()));

  EXPECT_FALSE(report->IReport_Supports(16, Variant())) << "no list window is open";
  openExplorer("deal");
  EXPECT_FALSE(report->IReport_Supports(16, Variant::null()));
  openExplorer("company");
  EXPECT_TRUE(report->IReport_Supports(16, Variant::null()));
  EXPECT_TRUE(report->IReport_Supports(16, Variant()));
}

TEST_F(CustomReportTest, StoredRecordsOfBothLayoutsAreRead) {
  host::StoredRecord current;
  current.WriteProperty("guid", "{11111111-2222-3333-4444-555555555555}");
  current.WriteProperty("C", "person");
  current.WriteProperty("name", "People");
  current.WriteProperty("category", "Contacts");
  current.WriteProperty("contents", QByteArray("<opaque/>"));
  auto report = newReport();
  report->Class_ReadProperties(current);
  EXPECT_EQ(report->IReport_GUID(), "{11111111-2222-3333-4444-555555555555}");
  EXPECT_EQ(report->ReportClass(), "person");
  EXPECT_EQ(report->IReport_Name(), "People");
  EXPECT_EQ(report->IReport_Category(), "Contacts");
  EXPECT_TRUE(report->IReport_Modified()) << "reading the GUID goes through its setter";

  host::StoredRecord older;
  older.WriteProperty("Name", "Old list");
  older.WriteProperty("A", "Archive");
  older.WriteProperty("C", "deal");
  older.WriteProperty("Contents", Variant());
  auto old = newReport();
  old->Class_ReadProperties(older);
  EXPECT_EQ(old->IReport_Name(), "Old list");
  EXPECT_EQ(old->IReport_Category(), "Archive");
  EXPECT_EQ(old->ReportClass(), "deal");
  EXPECT_TRUE(old->IReport_GUID().startsWith('{')) << "an older record receives a new GUID";
  EXPECT_TRUE(old->IReport_Modified());

  // An older record without a class belongs to the class in view, and
  // stays without one when no list window is open.
  host::StoredRecord classless;
  classless.WriteProperty("Name", "X");
  classless.WriteProperty("A", "");
  classless.WriteProperty("C", "");
  classless.WriteProperty("Contents", Variant());
  auto unviewed = newReport();
  unviewed->Class_ReadProperties(classless);
  EXPECT_EQ(unviewed->ReportClass(), "");
  openExplorer("history");
  auto viewed = newReport();
  viewed->Class_ReadProperties(classless);
  EXPECT_EQ(viewed->ReportClass(), "history");

  // A current record cut short falls back, and the older keys are missing
  // too: that failure reaches the host.
  host::StoredRecord broken;
  broken.WriteProperty("guid", "{G}");
  broken.WriteProperty("C", "company");
  EXPECT_EQ(test::errorNumber([&] { newReport()->Class_ReadProperties(broken); }), ErrorNumber::DataValueNotFound);
}

TEST_F(CustomReportTest, ADesignerSaveReachesTheHostFileAndARefreshReadsItBack) {
  auto report = newReport();
  report->IReport_SetName("Customers by city");
  report->IReport_SetCategory("Sales");
  report->IReport_SetPolicy(0);
  host::StoredRecord classed;
  classed.WriteProperty("guid", report->IReport_GUID());
  classed.WriteProperty("C", "company");
  classed.WriteProperty("name", "Customers by city");
  classed.WriteProperty("category", "Sales");
  classed.WriteProperty("contents", Variant());
  report->Class_ReadProperties(classed);

  auto document = designedReport("Named in the designer");
  report->m_Designer_OnSave(document);
  EXPECT_TRUE(ui->boxes.empty()) << (ui->boxes.empty() ? "" : ui->boxes.front().text.toStdString());
  EXPECT_FALSE(report->IReport_Modified()) << "the update ran at once";
  EXPECT_EQ(report->IReport_Name(), "Named in the designer") << "the designer's name comes along";

  auto file = hostFile(report->IReport_GUID());
  EXPECT_EQ(file->name(), "Named in the designer");
  EXPECT_EQ(file->getProperty("A"), "Sales");
  EXPECT_EQ(file->getProperty("C"), "company");
  ASSERT_TRUE(file->contents().isByteArray());
  EXPECT_TRUE(file->contents().rawBytes().contains("{SUB-PERSONS}"));

  // Another object bound to the same file by its GUID.
  auto bound = newReport();
  bound->IReport_SetGUID(report->IReport_GUID());
  bound->IReport_Refresh(false);
  EXPECT_TRUE(bound->Refreshed());
  EXPECT_FALSE(bound->IReport_Modified());
  EXPECT_EQ(bound->IReport_Name(), "Named in the designer");
  EXPECT_EQ(bound->IReport_Category(), "Sales");
  EXPECT_EQ(bound->ReportClass(), "company");

  // Its contents come lazily from the file; a record written from it holds
  // the same pages.
  host::StoredRecord written;
  bound->Class_WriteProperties(written);
  EXPECT_EQ(written.ReadProperty("guid"), Variant(report->IReport_GUID()));
  EXPECT_EQ(written.ReadProperty("C"), Variant(QStringLiteral("company")));
  auto reloaded = std::make_shared<Report>();
  reloaded->LoadContents(written.ReadProperty("contents"));
  EXPECT_TRUE(reloaded->PageExists("{SUB-PERSONS}"));
  EXPECT_EQ(reloaded->Name(), "Named in the designer");

  // After a refresh the contents are Empty: an update keeps the file's own.
  bound->IReport_SetCategory("Changed");
  bound->IReport_Update();
  EXPECT_FALSE(bound->IReport_Modified());
  auto again = hostFile(report->IReport_GUID());
  EXPECT_EQ(again->getProperty("A"), "Changed");
  EXPECT_EQ(again->contents(), file->contents());

  // A refresh with reload reads what another object stored meanwhile.
  report->IReport_SetName("Renamed elsewhere");
  report->IReport_Update();
  bound->IReport_Refresh(true);
  EXPECT_EQ(bound->IReport_Name(), "Renamed elsewhere");
}

TEST_F(CustomReportTest, ConfigureOpensTheDesignerWhoseSavesReachTheHostFileAtOnce) {
  auto report = newReport();
  report->IReport_SetName("Designed here");
  const auto company = app->classes()->item("company");
  int shown = 0;
  QStringList asked;
  ui->modalHandler = [&](QWidget &window) {
    asked << window.objectName();
    // A new report asks for its name, class and paper first.
    if (auto *properties = dynamic_cast<DlgReportProperties *>(&window)) {
      properties->CmdOK_Click();
      return;
    }
    auto &designer = dynamic_cast<DlgReportDesigner &>(window);
    ++shown;
    // A date field in the page header, saved, then the window closed.
    const auto control = std::dynamic_pointer_cast<engine::DesignerControl>(designer.Designer().DesignerControl());
    control->document().select({control->document().report()->sections()->at(0)});
    designer.Designer().SetActiveSection();
    designer.Designer().InsertBuiltInField(1);
    designer.MnuFileSave_Click();
    ui->boxAnswers = {7};
    designer.close();
  };
  bool cancel = true;
  report->IReport_Configure(cancel, company);
  EXPECT_EQ(asked, (QStringList{"DlgReportProperties", "DlgReportDesigner"}));
  EXPECT_FALSE(cancel) << "the report came out complete";
  EXPECT_EQ(report->ReportClass(), "company");
  const auto file = hostFile(report->IReport_GUID());
  ASSERT_TRUE(file->contents().isByteArray());
  auto stored = std::make_shared<Report>();
  stored->LoadContents(file->contents());
  EXPECT_TRUE(stored->IsValid());
  const Variant layout = stored->Page()->LayoutTemplate();
  EXPECT_TRUE((layout.isByteArray() ? layout.rawBytes() : layout.toString().toUtf8()).contains("pField_date1"));

  // A report of one class refuses another class's context.
  ui->modalHandler = nullptr;
  cancel = false;
  report->IReport_Configure(cancel, app->classes()->item("person"));
  EXPECT_TRUE(cancel);
  ASSERT_FALSE(ui->boxes.empty());
  EXPECT_TRUE(ui->boxes.back().text.contains(company->localName())) << ui->boxes.back().text.toStdString();
  EXPECT_EQ(shown, 1);
}

TEST_F(CustomReportTest, TheHostsNameWinsAndAnEmptyNameTakesTheDocuments) {
  auto contents = designedReport("Document name")->SaveContents();

  auto named = newReport();
  host::StoredRecord record;
  record.WriteProperty("guid", named->IReport_GUID());
  record.WriteProperty("C", "company");
  record.WriteProperty("name", "Host name");
  record.WriteProperty("category", "");
  record.WriteProperty("contents", contents);
  named->Class_ReadProperties(record);
  host::StoredRecord out;
  named->Class_WriteProperties(out);
  auto document = std::make_shared<Report>();
  document->LoadContents(out.ReadProperty("contents"));
  EXPECT_EQ(document->Name(), "Host name");

  auto unnamed = newReport();
  record.WriteProperty("name", "");
  unnamed->Class_ReadProperties(record);
  host::StoredRecord out2;
  unnamed->Class_WriteProperties(out2);
  EXPECT_EQ(unnamed->IReport_Name(), "Document name");
  EXPECT_EQ(out2.ReadProperty("name"), Variant(QString())) << "the name was written before the document was read";
}

TEST_F(CustomReportTest, MissingContentsAreAnErrorOnlyForAReportThatExists) {
  // Never refreshed, no contents, no file: a report that does not exist yet.
  auto fresh = newReport();
  host::StoredRecord record;
  fresh->Class_WriteProperties(record);
  EXPECT_FALSE(record.contains("contents")) << "a new document has no pages to save";
  ASSERT_EQ(ui->boxes.size(), 1u) << "which the reporter says";
  EXPECT_TRUE(ui->boxes[0].text.contains("Source: CustomReport.Class_WriteProperties"))
      << ui->boxes[0].text.toStdString();
  ui->boxes.clear();
  fresh->IReport_SetName("Brand new");
  fresh->IReport_Update();
  EXPECT_FALSE(fresh->IReport_Modified()) << "a new document without a class is stored";
  EXPECT_EQ(hostFile(fresh->IReport_GUID())->name(), "Brand new");
  EXPECT_TRUE(ui->boxes.empty());

  // A refreshed report whose file has no contents.
  auto empty = newReport();
  empty->IReport_SetGUID(fresh->IReport_GUID());
  empty->IReport_Refresh(false);
  host::StoredRecord out;
  empty->Class_WriteProperties(out);
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_EQ(ui->boxes[0].text, "The report has no contents. It may have been saved incompletely.");
  EXPECT_FALSE(out.contains("contents"));
  EXPECT_TRUE(logLines().last().contains("CustomReport.Class_WriteProperties")) << logLines().last().toStdString();
}

TEST_F(CustomReportTest, AnUpdateLeavesTheFileAloneWhenTheDocumentsClassIsGone) {
  auto report = newReport();
  report->m_Designer_OnSave(designedReport("Kept"));
  const Variant stored = hostFile(report->IReport_GUID())->contents();

  QByteArray lost = stored.rawBytes();
  lost.replace("value=\"company\"", "value=\"spaceship\"");
  host::StoredRecord record;
  record.WriteProperty("guid", report->IReport_GUID());
  record.WriteProperty("C", "spaceship");
  record.WriteProperty("name", "Lost");
  record.WriteProperty("category", "");
  record.WriteProperty("contents", lost);
  auto orphan = newReport();
  orphan->Class_ReadProperties(record);
  orphan->IReport_Update();
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_EQ(ui->boxes[0].text, "The report cannot be saved: its class no longer exists in the database.");
  EXPECT_EQ(ui->boxes[0].flags, 0);
  EXPECT_FALSE(orphan->IReport_Modified());
  auto file = hostFile(report->IReport_GUID());
  EXPECT_EQ(file->name(), "Kept");
  EXPECT_EQ(file->contents(), stored);
}

TEST_F(CustomReportTest, ARefreshWithoutAHostOnlyMarksTheObject) {
  auto report = newReport();
  report->IReport_SetName("Unchanged");
  addin::Disconnect();
  ASSERT_EQ(CurrentApplication(), nullptr);
  report->IReport_Refresh(true);
  addin::Connect(app);
  EXPECT_TRUE(report->Refreshed());
  EXPECT_EQ(report->IReport_Name(), "Unchanged");
  EXPECT_TRUE(report->IReport_Modified());
  EXPECT_TRUE(ui->boxes.empty());
}

} // namespace

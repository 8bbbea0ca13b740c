// The host's reports: the add-in loaded as a plugin and connected, report
// documents imported, listed and exported through its report objects, and
// the stored records the host keeps for them.

#include "host/AddinHost.h"
#include "core/Dictionary.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/ReportCatalog.h"
#include "host/SettingsStore.h"
#include "host/StoredRecord.h"

#include "hostapi/Addin.h"
#include "hostapi/HostFile.h"
#include "hostapi/Report.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "nuvo/StoredFiles.h"
#include "nuvo/demo/DemoDatabase.h"
#include "support/ErrorCapture.h"
#include "support/OrvexProcess.h"
#include "support/QtPrinters.h"
#include "support/ScriptedUi.h"
#include "support/TempDir.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::host;

namespace {

const QString kDemoReports = QStringLiteral(KORDEL_DEMO_REPORTS_DIR);

TEST(StoredRecordTest, EveryStorableValueComesBackExactly) {
  StoredRecord record;
  const QString hostile = QString::fromUtf8("line\r\nbreak 'quote' \"double\" \0 nul Åsa", 33);
  const QByteArray bytes("\x00\xff\r\n<xml/>", 10);
  record.WriteProperty("empty", Variant());
  record.WriteProperty("null", Variant::null());
  record.WriteProperty("text", hostile);
  record.WriteProperty("bytes", bytes);
  record.WriteProperty("long", Variant(-2147483647 - 1));
  record.WriteProperty("integer", Variant(std::int16_t(-7)));
  record.WriteProperty("double", Variant(0.1));
  record.WriteProperty("currency", Variant(Currency{-123456789}));
  record.WriteProperty("date", Variant(Date{45000.75}));
  record.WriteProperty("bool", Variant(true));
  record.WriteProperty("text", hostile + "!"); // replaces, keeps its place

  const StoredRecord back = StoredRecord::fromBytes(record.toBytes());
  EXPECT_TRUE(back.ReadProperty("empty").isEmpty());
  EXPECT_TRUE(back.ReadProperty("null").isNull());
  EXPECT_EQ(back.ReadProperty("text"), Variant(hostile + "!"));
  EXPECT_EQ(back.ReadProperty("bytes"), Variant(bytes));
  EXPECT_EQ(back.ReadProperty("long"), Variant(-2147483647 - 1));
  EXPECT_EQ(back.ReadProperty("integer"), Variant(std::int16_t(-7)));
  EXPECT_EQ(back.ReadProperty("double"), Variant(0.1));
  EXPECT_EQ(back.ReadProperty("currency"), Variant(Currency{-123456789}));
  EXPECT_EQ(back.ReadProperty("date"), Variant(Date{45000.75}));
  EXPECT_EQ(back.ReadProperty("bool"), Variant(true));
  EXPECT_EQ(back.toBytes(), record.toBytes());

  EXPECT_EQ(test::errorNumber([&] { back.ReadProperty("Text"); }), ErrorNumber::DataValueNotFound) << "names are exact";
  EXPECT_EQ(back.ReadProperty("missing", Variant(5)), Variant(5));
  EXPECT_EQ(test::errorNumber([&] { record.WriteProperty("o", Variant(ObjectRef(std::make_shared<Dictionary>()))); }),
            ErrorNumber::TypeMismatch);
}

TEST(StoredRecordTest, BytesThatAreNoRecordAreRefused) {
  StoredRecord record;
  record.WriteProperty("name", "A fairly long value to cut");
  const QByteArray good = record.toBytes();
  EXPECT_EQ(test::errorNumber([&] { StoredRecord::fromBytes("<xml/>"); }), ErrorNumber::InvalidFileFormat);
  EXPECT_EQ(test::errorNumber([&] { StoredRecord::fromBytes(good.left(good.size() - 4)); }),
            ErrorNumber::InvalidFileFormat);
  EXPECT_EQ(test::errorNumber([&] { StoredRecord::fromBytes(good + "x"); }), ErrorNumber::InvalidFileFormat);
  QByteArray later = good;
  later[5] = 9; // a version this program does not know
  EXPECT_EQ(test::errorOf([&] { StoredRecord::fromBytes(later); }).description().contains("version"), true);
}

// A demo database with the add-in loaded from the build's plugin folder and
// connected, as the host runs it.
class ReportCatalogTest : public ::testing::Test {
protected:
  void SetUp() override {
    nuvo::DatabaseAddress address;
    address.file = dir.file("demo.db");
    nuvo::demo::DemoOptions options;
    options.companies = 5;
    nuvo::demo::createDemoDatabase(address, options);
    ui = std::make_shared<test::ScriptedUi>();
    hostapi::installUi(ui);
    app = std::make_shared<HostApplication>(std::make_shared<SettingsStore>(dir.file("registry.ini")),
                                            std::make_shared<FileLog>(dir.file("orvex.log")), QStringLiteral("en"));
    engine = nuvo::Engine::open(address, "en", "anna");
    app->setDatabase(std::make_shared<nuvo::DatabaseObject>(engine));
    addins = std::make_unique<AddinHost>(*app);
    const QStringList progIds = addins->loadPlugins(HostPaths::addinFolder());
    ASSERT_TRUE(progIds.contains("OrvexKordel.Addin")) << progIds.join(", ").toStdString();
    ASSERT_TRUE(progIds.contains("OrvexKordel.Context"));
    catalog = std::make_unique<ReportCatalog>(*app, addins->connectReportFactory("OrvexKordel.Addin"));
  }

  void TearDown() override {
    catalog.reset();
    addins.reset();
    hostapi::installUi(nullptr);
  }

  // The document without its stamps of time, user and version.
  static QString unstamped(const QString &path) {
    return QString::fromUtf8(test::readFile(path))
        .remove(QRegularExpression(R"(<section name="system">.*?</section>)"));
  }

  test::TempDir dir;
  std::shared_ptr<test::ScriptedUi> ui;
  std::shared_ptr<HostApplication> app;
  std::shared_ptr<nuvo::Engine> engine;
  std::unique_ptr<AddinHost> addins;
  std::unique_ptr<ReportCatalog> catalog;
};

TEST_F(ReportCatalogTest, TheAddinsPublicClassesAreMadeByTheHost) {
  EXPECT_EQ(app->createObject("orvexkordel.context")->typeName(), "Context");
  EXPECT_EQ(test::errorNumber([&] { app->createObject("OrvexKordel.Nothing"); }), ErrorNumber::CannotCreateObject);
  EXPECT_EQ(app->reportFactories(), QStringList{"OrvexKordel.Addin"}) << "the connected add-in registered itself";
}

TEST_F(ReportCatalogTest, ADocumentIsStoredListedExportedAndImportedAgainWithNothingLost) {
  EXPECT_TRUE(catalog->list().isEmpty());
  const ReportEntry stored = catalog->importDocument(kDemoReports + "/1-company-list.xml", QString());
  EXPECT_EQ(stored.name, "Company list") << "the document's own name";
  EXPECT_EQ(stored.reportClass, "company");
  EXPECT_TRUE(ui->boxes.empty()) << ui->boxes.front().text.toStdString();

  const QList<ReportEntry> listed = catalog->list();
  ASSERT_EQ(listed.size(), 1);
  EXPECT_EQ(listed[0].guid, stored.guid);
  EXPECT_EQ(catalog->find("COMPANY LIST").guid, stored.guid) << "names are found without regard to case";
  EXPECT_TRUE(nuvo::StoredRecords(engine).read(stored.guid)) << "the host keeps the stored record too";

  const QString first = dir.file("first.xml");
  catalog->exportDocument("Company list", first);
  const ReportEntry copy = catalog->importDocument(first, "Copy of the list");
  const QString second = dir.file("second.xml");
  catalog->exportDocument("copy of the list", second);
  EXPECT_EQ(unstamped(second).replace("Copy of the list", "Company list"), unstamped(first));
  EXPECT_TRUE(test::readFile(second).contains("{6B1D1E0A-2C4F-4E39-9A51-3F2D7C0E8B11}")) << "the sub page came along";
  EXPECT_NE(copy.guid, stored.guid);

  // A report whose host keeps no stored record is bound to its host file.
  nuvo::StoredRecords(engine).remove(copy.guid);
  const QString third = dir.file("third.xml");
  catalog->exportDocument("Copy of the list", third);
  EXPECT_EQ(unstamped(third), unstamped(second));
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(ReportCatalogTest, HostileNamesAndValuesSurviveTheRoundTrip) {
  const QString hostile = QString::fromUtf8("Kunder's \"bästa\" <lista> & co\r\nrad två \\C013\\ slut");
  catalog->importDocument(kDemoReports + "/2-deals-by-value.xml", hostile);
  const ReportEntry found = catalog->find(hostile);
  EXPECT_EQ(found.name, hostile);
  const QString out = dir.file("hostile.xml");
  catalog->exportDocument(hostile, out);
  const QByteArray text = test::readFile(out);
  EXPECT_TRUE(text.contains("Kunder's &quot;bästa&quot; &lt;lista&gt; &amp; co\\C013\\") ||
              text.contains("Kunder's \"bästa\" &lt;lista&gt; &amp; co\\C013\\"))
      << text.left(400).toStdString();

  // The marker of a carriage return has no escape: a name that holds it
  // comes back with a carriage return in its place, as the document keeps it.
  const ReportEntry again = catalog->importDocument(out, QString());
  EXPECT_EQ(again.name, QString(hostile).replace("\\C013\\", "\r"));
}

TEST_F(ReportCatalogTest, BadDocumentsAndNamesAreRefusedWithTheirReason) {
  const QString missing = dir.file("missing.xml");
  EXPECT_EQ(test::errorNumber([&] { catalog->importDocument(missing, "X"); }), ErrorNumber::FileNotFound);

  const QString broken = dir.file("broken.xml");
  test::writeFile(broken, "<application><section name=\"settings\">");
  const Error notParsed = test::errorOf([&] { catalog->importDocument(broken, "X"); });
  EXPECT_EQ(notParsed.number(), ErrorNumber::InvalidFileFormat);
  EXPECT_TRUE(notParsed.description().contains("Line 1")) << notParsed.description().toStdString();

  const QString foreign = dir.file("foreign.xml");
  test::writeFile(foreign, "<?xml version=\"1.0\"?><report/>");
  EXPECT_TRUE(test::errorOf([&] { catalog->importDocument(foreign, "X"); }).description().contains("\"application\""));

  QByteArray lacking = test::readFile(kDemoReports + "/2-deals-by-value.xml");
  lacking.replace("value=\"deal\"", "value=\"spaceship\"");
  test::writeFile(dir.file("lacking.xml"), lacking);
  const Error noClass = test::errorOf([&] { catalog->importDocument(dir.file("lacking.xml"), "X"); });
  EXPECT_TRUE(noClass.description().contains("\"spaceship\", which this database lacks"))
      << noClass.description().toStdString();

  // A top page listed among its own sub pages once overflowed the stack.
  QByteArray circular = test::readFile(kDemoReports + "/1-company-list.xml");
  circular.replace("<property name=\"1\" value=\"{6B1D1E0A-2C4F-4E39-9A51-3F2D7C0E8B11}\"/>",
                   "<property name=\"1\" value=\"{E3336E1B-CB9C-4A34-A0F2-3A3BB22CAC49}\"/>");
  test::writeFile(dir.file("circular.xml"), circular);
  EXPECT_EQ(test::errorNumber([&] { catalog->importDocument(dir.file("circular.xml"), "X"); }),
            ErrorNumber::InvalidCall);
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_TRUE(ui->boxes[0].text.contains("the page \"Companies\" ({E3336E1B-CB9C-4A34-A0F2-3A3BB22CAC49}) is listed as "
                                         "a sub page of itself"))
      << ui->boxes[0].text.toStdString();

  catalog->importDocument(kDemoReports + "/2-deals-by-value.xml", QString());
  EXPECT_EQ(
      test::errorNumber([&] { catalog->importDocument(kDemoReports + "/2-deals-by-value.xml", "deals BY value"); }),
      ErrorNumber::FileAlreadyExists);
  EXPECT_EQ(catalog->list().size(), 1) << "nothing half-stored by the refusals";

  EXPECT_EQ(test::errorNumber([&] { catalog->exportDocument("No such report", dir.file("n.xml")); }),
            ErrorNumber::FileNotFound);
  EXPECT_EQ(test::errorNumber([&] { catalog->exportDocument("Deals by value", dir.file("no/folder/n.xml")); }),
            ErrorNumber::PathNotFound);
  EXPECT_FALSE(QFile::exists(dir.file("n.xml")));
}

// The command line, run as the user runs it.
test::OrvexRun orvex(const test::TempDir &dir, const QStringList &arguments) {
  return test::runOrvex(dir, arguments, {{"ORVEX_LANGUAGE", "en"}, {"ORVEX_USER", "anna"}});
}

TEST(ReportCommandsTest, TheDemoReportsAreListedExportedAndImported) {
  test::TempDir dir;
  const QString db = dir.file("crm.db");
  const test::OrvexRun made = orvex(dir, {"demo", "--db", db, "--companies", "20"});
  ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
  EXPECT_TRUE(made.out.contains(QRegularExpression("reports\\s+3\\n"))) << made.out.toStdString();

  const test::OrvexRun listed = orvex(dir, {"reports", "--db", db});
  EXPECT_EQ(listed.exitCode, 0) << listed.err.toStdString();
  EXPECT_EQ(listed.out, "Company history  (Company)\nCompany list  (Company)\nDeals by value  (Deal)\n");

  const QString file = dir.file("deals.xml");
  const test::OrvexRun exported = orvex(dir, {"report-export", "Deals by value", file, "--db", db});
  EXPECT_EQ(exported.exitCode, 0) << exported.err.toStdString();
  EXPECT_TRUE(test::readFile(file).startsWith("<?xml version=\"1.0\"?>\n<application>"));

  const test::OrvexRun imported = orvex(dir, {"report-import", file, "--name", "Big deals", "--db", db});
  EXPECT_EQ(imported.exitCode, 0) << imported.err.toStdString();
  EXPECT_EQ(imported.out, "Stored \"Big deals\" (Deal)\n");
  EXPECT_TRUE(orvex(dir, {"reports", "--db", db}).out.contains("Big deals  (Deal)\n"));

  const test::OrvexRun taken = orvex(dir, {"report-import", file, "--db", db});
  EXPECT_EQ(taken.exitCode, 1);
  EXPECT_TRUE(taken.err.startsWith("orvex: A report named \"Deals by value\" exists already"))
      << taken.err.toStdString();
  const test::OrvexRun unknown = orvex(dir, {"report-export", "Nothing", dir.file("x.xml"), "--db", db});
  EXPECT_EQ(unknown.exitCode, 1);
  EXPECT_EQ(unknown.err, "orvex: There is no report \"Nothing\" (53)\n");
  EXPECT_EQ(orvex(dir, {"report-export", "Deals by value", "--db", db}).exitCode, 1) << "a file is needed";
}

} // namespace

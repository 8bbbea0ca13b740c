// Host files of kind 114 (report records): round trips, rights by policy,
// and saves that write all or nothing. Documents and their files.

#include "NuvoFixture.h"

#include "support/ErrorCapture.h"

#include "nuvo/DatabaseObject.h"
#include "nuvo/DocumentObject.h"
#include "nuvo/HostFileObject.h"
#include "nuvo/NamedValuesObject.h"

#include "hostapi/HostFile.h"

using namespace kordel;
using kordel::test::DatabaseTest;

namespace {

namespace Mode = hostapi::FileOpenMode;
constexpr int kReport = hostapi::FileKind::Report;
const QString kGuid = QStringLiteral("{6F9619FF-8B86-D011-B42D-00C04FC964FF}");

class HostFileTest : public DatabaseTest {
protected:
  void SetUp() override {
    DatabaseTest::SetUp();
    if (IsSkipped())
      return;
    createDemo(3);
  }

  // The database as a user sees it.
  ObjectRef database(const QString &login) { return std::make_shared<nuvo::DatabaseObject>(open("en", login)); }

  std::shared_ptr<nuvo::HostFileObject> openFile(const ObjectRef &db, int mode, const QString &guid = kGuid) {
    auto attributes = std::make_shared<nuvo::NamedValuesObject>(QStringLiteral("FileOpenAttributes"));
    attributes->setItem(QStringLiteral("guid"), guid);
    auto file = std::make_shared<nuvo::HostFileObject>();
    file->open(db, kReport, mode, attributes);
    return file;
  }

  void saveReport(const QString &login, int policy, const QByteArray &contents, const QString &guid = kGuid) {
    auto file = openFile(database(login), Mode::Existing | Mode::Create, guid);
    file->setName(QStringLiteral("Customers by city"));
    file->setPolicy(policy);
    file->setProperty(QStringLiteral("A"), QStringLiteral("Sales"));
    file->setProperty(QStringLiteral("C"), QStringLiteral("company"));
    file->setContents(contents);
    file->save();
  }
};

TEST_P(HostFileTest, AFileComesBackAsItWasSaved) {
  const QByteArray contents = QByteArray("<application>\0\x01\xff", 16) + QString::fromUtf8("ÅÄÖ").toUtf8();
  saveReport("anna", 1, contents);
  auto file = openFile(database("erik"), Mode::Existing);
  EXPECT_EQ(file->name(), QStringLiteral("Customers by city"));
  EXPECT_EQ(file->policy(), 1);
  EXPECT_EQ(file->getProperty(QStringLiteral("A")), QStringLiteral("Sales"));
  EXPECT_EQ(file->getProperty(QStringLiteral("C")), QStringLiteral("company"));
  EXPECT_EQ(file->getProperty(QStringLiteral("missing")), QString());
  EXPECT_EQ(file->contents(), Variant(contents));
  // Changes stay in the object until saved; Reload forgets them.
  file->setName(QStringLiteral("Renamed"));
  file->setContents(Variant());
  file->reload();
  EXPECT_EQ(file->name(), QStringLiteral("Customers by city"));
  EXPECT_EQ(file->contents(), Variant(contents));
  // Saving again replaces properties as a whole.
  auto writer = openFile(database("anna"), Mode::Existing | Mode::Create);
  writer->setProperty(QStringLiteral("A"), QStringLiteral("Finance"));
  writer->save();
  EXPECT_EQ(openFile(database("anna"), Mode::Existing)->getProperty(QStringLiteral("A")), QStringLiteral("Finance"));
  EXPECT_EQ(openFile(database("anna"), Mode::Existing)->contents(), Variant(contents));
}

TEST_P(HostFileTest, OpeningFollowsTheModeAndTheAttributes) {
  EXPECT_EQ(test::errorNumber([&] { openFile(database("anna"), Mode::Existing); }), ErrorNumber::FileNotFound);
  auto fresh = openFile(database("anna"), Mode::Create);
  EXPECT_EQ(fresh->name(), QString());
  EXPECT_TRUE(fresh->contents().isEmpty());
  fresh->save();
  EXPECT_EQ(test::errorNumber([&] { openFile(database("anna"), Mode::Create); }), ErrorNumber::FileAlreadyExists);
  auto readOnly = openFile(database("anna"), Mode::Existing);
  EXPECT_EQ(test::errorNumber([&] { readOnly->save(); }), ErrorNumber::PermissionDenied);
  EXPECT_EQ(test::errorNumber([&] { openFile(database("anna"), Mode::Existing, QString()); }),
            ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { openFile(nullptr, Mode::Existing); }), ErrorNumber::ObjectNotSet);
  EXPECT_EQ(test::errorNumber([] { nuvo::HostFileObject().save(); }), ErrorNumber::ObjectNotSet);
}

TEST_P(HostFileTest, PoliciesGrantTheirRightsPerUser) {
  // Everyone may do everything under policy 1. Under Sales (2) sellers
  // such as Erik may change, others read. Management (3) is Anna's alone.
  auto anna = std::dynamic_pointer_cast<hostapi::Database>(database("anna"));
  auto erik = std::dynamic_pointer_cast<hostapi::Database>(database("erik"));
  auto petra = std::dynamic_pointer_cast<hostapi::Database>(database("petra"));
  EXPECT_EQ(anna->accessMask(0), hostapi::Access::All) << "policy 0 governs nothing";
  EXPECT_EQ(petra->accessMask(1), hostapi::Access::All);
  EXPECT_EQ(erik->accessMask(2), hostapi::Access::Read | hostapi::Access::Change);
  EXPECT_EQ(petra->accessMask(2), hostapi::Access::Read);
  EXPECT_EQ(anna->accessMask(3), hostapi::Access::All);
  EXPECT_EQ(erik->accessMask(3), 0);
  EXPECT_EQ(anna->accessMask(99), 0) << "an unknown policy grants nothing";

  saveReport("erik", 2, "sales report");
  auto read = openFile(database("petra"), Mode::Existing | Mode::Create);
  EXPECT_EQ(read->contents(), Variant(QByteArray("sales report")));
  read->setName(QStringLiteral("Petra's"));
  EXPECT_EQ(test::errorNumber([&] { read->save(); }), ErrorNumber::PermissionDenied);
  // Nobody may move a file into a policy where they cannot change it.
  auto moving = openFile(database("erik"), Mode::Existing | Mode::Create);
  moving->setPolicy(3);
  EXPECT_EQ(test::errorNumber([&] { moving->save(); }), ErrorNumber::PermissionDenied);
  // Anna is no seller, but her management report is hers alone.
  auto annaOnSales = openFile(database("anna"), Mode::Existing | Mode::Create);
  EXPECT_EQ(test::errorNumber([&] { annaOnSales->save(); }), ErrorNumber::PermissionDenied);
  const QString managed = QStringLiteral("{00000000-0000-0000-0000-000000000003}");
  saveReport("anna", 3, "board report", managed);
  EXPECT_EQ(test::errorNumber([&] { openFile(database("erik"), Mode::Existing, managed); }),
            ErrorNumber::PermissionDenied);
  EXPECT_EQ(openFile(database("anna"), Mode::Existing, managed)->contents(), Variant(QByteArray("board report")));
}

TEST_P(HostFileTest, LateBoundFilesAreUsedAsTheAddInUsesThem) {
  ObjectRef attributes = std::make_shared<nuvo::NamedValuesObject>(QStringLiteral("FileOpenAttributes"));
  Args key{QStringLiteral("guid")};
  attributes->set(QStringLiteral("Item"), key, kGuid);
  ObjectRef file = std::make_shared<nuvo::HostFileObject>();
  file->invoke(QStringLiteral("Open"), {Variant(database("anna")), kReport, 3, Variant(attributes)});
  file->set(QStringLiteral("Name"), QStringLiteral("Late"));
  file->invoke(QStringLiteral("SetProperty"), {QStringLiteral("C"), QStringLiteral("person")});
  file->set(QStringLiteral("Contents"), QStringLiteral("text becomes UTF-8"));
  file->invoke(QStringLiteral("Save"));
  auto again = openFile(database("anna"), Mode::Existing);
  EXPECT_EQ(again->name(), QStringLiteral("Late"));
  EXPECT_EQ(again->getProperty(QStringLiteral("C")), QStringLiteral("person"));
  EXPECT_EQ(again->contents(), Variant(QByteArray("text becomes UTF-8")));
}

TEST_P(HostFileTest, AFailedSaveWritesNothing) {
  saveReport("anna", 1, "first version");
  // The database refuses one property row of the next save.
  auto engine = open("en", "anna");
  if (GetParam() == nuvo::Dialect::SQLite) {
    engine->sql().exec(QStringLiteral("CREATE TRIGGER refuse BEFORE INSERT ON nv_fileproperty WHEN NEW.name = 'X' "
                                      "BEGIN SELECT RAISE(ABORT, 'refused'); END"));
  } else {
    engine->sql().exec(QStringLiteral("ALTER TABLE nv_fileproperty ADD CONSTRAINT refuse CHECK (name <> 'X')"));
  }
  auto file = openFile(std::make_shared<nuvo::DatabaseObject>(engine), Mode::Existing | Mode::Create);
  file->setName(QStringLiteral("Second"));
  file->setContents(QByteArray("second version"));
  file->setProperty(QStringLiteral("X"), QStringLiteral("refused"));
  EXPECT_EQ(test::errorNumber([&] { file->save(); }), ErrorNumber::InvalidCall);
  auto stored = openFile(database("anna"), Mode::Existing);
  EXPECT_EQ(stored->name(), QStringLiteral("Customers by city"));
  EXPECT_EQ(stored->contents(), Variant(QByteArray("first version")));
  EXPECT_EQ(stored->getProperty(QStringLiteral("C")), QStringLiteral("company"));
}

TEST_P(HostFileTest, DocumentsMoveBytesBetweenValuesAndFiles) {
  nuvo::DocumentObject document;
  EXPECT_TRUE(document.contents().isEmpty());
  const QByteArray bytes("<?xml version=\"1.0\"?>\n<application/>\n\0tail", 40);
  document.setContents(bytes);
  const QString path = dir.file(QStringLiteral("report.xml"));
  document.saveToFile(path);
  nuvo::DocumentObject loaded;
  loaded.loadFromFile(path);
  EXPECT_EQ(loaded.contents(), Variant(bytes));
  loaded.setContents(QString::fromUtf8("Åsa"));
  EXPECT_EQ(loaded.contents(), Variant(QString::fromUtf8("Åsa").toUtf8()));
  EXPECT_EQ(test::errorNumber([&] { loaded.loadFromFile(dir.file("missing.xml")); }), ErrorNumber::FileNotFound);
  EXPECT_EQ(test::errorNumber([&] { loaded.saveToFile(dir.file("no/such/folder.xml")); }), ErrorNumber::PathNotFound);
  EXPECT_EQ(test::errorNumber([&] { loaded.setContents(3.5); }), ErrorNumber::TypeMismatch);
  // The failed load kept what the document had.
  EXPECT_EQ(loaded.contents(), Variant(QString::fromUtf8("Åsa").toUtf8()));
}

} // namespace

KORDEL_ON_BOTH_DATABASES(HostFileTest);

#include "host/BatchUi.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/HostToolsObject.h"
#include "host/IniTranslator.h"
#include "host/PrinterList.h"
#include "host/QtUi.h"
#include "host/RegistryKeyObject.h"
#include "host/SettingsStore.h"

#include "engine/preview/Presenters.h"
#include "engine/preview/PreviewWindow.h"
#include "engine/print/LayoutPrinter.h"

#include "core/Dictionary.h"
#include "core/Error.h"
#include "support/ScriptedUi.h"
#include "support/TempDir.h"

#include <QApplication>
#include <QRegularExpression>

#include <gtest/gtest.h>

using kordel::Error;
using kordel::ObjectRef;
using kordel::Variant;
using kordel::host::HostApplication;
using kordel::test::TempDir;
namespace host = kordel::host;

namespace {

// Sets an environment variable for one test and puts the old value back.
class ScopedEnv {
public:
  ScopedEnv(const char *name, const QString &value)
      : name_(name), had_(qEnvironmentVariableIsSet(name)), old_(qgetenv(name)) {
    qputenv(name, value.toUtf8());
  }
  ~ScopedEnv() {
    if (had_)
      qputenv(name_, old_);
    else
      qunsetenv(name_);
  }

private:
  const char *name_;
  bool had_;
  QByteArray old_;
};

class HostApplicationTest : public ::testing::Test {
protected:
  std::shared_ptr<HostApplication> makeApp(const QString &language = QStringLiteral("sv")) {
    return std::make_shared<HostApplication>(
        std::make_shared<host::SettingsStore>(dir.file(QStringLiteral("registry.ini"))),
        std::make_shared<host::FileLog>(dir.file(QStringLiteral("orvex.log"))), language);
  }

  TempDir dir;
};

} // namespace

TEST_F(HostApplicationTest, CreatesEachHostObjectByProgId) {
  const auto app = makeApp();
  const auto create = [&](const char *progId) {
    return app->invoke(QStringLiteral("CreateObject"), {QString::fromLatin1(progId)}).toObject();
  };
  EXPECT_TRUE(std::dynamic_pointer_cast<host::IniTranslator>(create("Skarnholt.Translator")));
  EXPECT_TRUE(std::dynamic_pointer_cast<host::RegistryKeyObject>(create("Orvex.Registry")));
  EXPECT_TRUE(std::dynamic_pointer_cast<host::HostToolsObject>(create("orvex.hosttools")));
  EXPECT_TRUE(std::dynamic_pointer_cast<host::PrinterList>(create("Orvex.Printers")));
  EXPECT_TRUE(std::dynamic_pointer_cast<kordel::Dictionary>(create("Scripting.Dictionary")));
  EXPECT_NE(create("Scripting.Dictionary"), create("Scripting.Dictionary")) << "each call makes a new object";
  // The layout engine's report object, as the add-in and scripts make it.
  const auto layout = create("DDActiveReports2.ActiveReport");
  EXPECT_EQ(layout->typeName(), "ActiveReport");
  EXPECT_EQ(layout->get("Sections").rawObject()->get("Count"), Variant(0));
  EXPECT_TRUE(std::dynamic_pointer_cast<kordel::engine::LayoutPrinter>(create("DDActiveReports2.Printer")));
}

TEST_F(HostApplicationTest, TheEnginesPreviewAndMessagesGoThroughTheInstalledUi) {
  const auto app = makeApp();
  auto ui = std::make_shared<kordel::test::ScriptedUi>();
  kordel::hostapi::installUi(ui);
  const ObjectRef report = app->createObject(QStringLiteral("DDActiveReports2.ActiveReport"));
  report->get(QStringLiteral("Sections")).toObject()->invoke(QStringLiteral("Add"), {"Detail", 0, 6, 300});
  report->set(QStringLiteral("Caption"), Variant("Host preview"));
  int pages = 0;
  QString title;
  ui->modalHandler = [&](QWidget &window) {
    const auto *preview = qobject_cast<kordel::engine::PreviewWindow *>(&window);
    ASSERT_TRUE(preview);
    pages = preview->pageCount();
    title = window.windowTitle();
  };
  report->invoke(QStringLiteral("Show"), {true});
  EXPECT_EQ(pages, 1);
  EXPECT_EQ(title, QStringLiteral("Host preview"));

  kordel::engine::presentMessage(QStringLiteral("Printing"), QStringLiteral("The printer is gone"));
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_EQ(ui->boxes[0].title, QStringLiteral("Printing"));
  EXPECT_EQ(ui->boxes[0].text, QStringLiteral("The printer is gone"));
  EXPECT_EQ(ui->boxes[0].flags, kordel::hostapi::MsgBox::Exclamation);

  // The command line has no windows to show.
  kordel::hostapi::installUi(std::make_shared<host::BatchUi>());
  EXPECT_THROW(report->invoke(QStringLiteral("Show"), {true}), Error);
  kordel::hostapi::installUi(nullptr);
}

TEST_F(HostApplicationTest, AnUnknownProgIdRaises429NamingIt) {
  const auto app = makeApp();
  try {
    app->createObject(QStringLiteral("Orvex.Spreadsheet"));
    FAIL() << "no error";
  } catch (const Error &error) {
    EXPECT_EQ(error.number(), 429);
    EXPECT_TRUE(error.description().contains(QStringLiteral("Orvex.Spreadsheet")));
  }

  app->registerProgId(QStringLiteral("Orvex.Spreadsheet"), [] { return std::make_shared<kordel::Dictionary>(); });
  EXPECT_TRUE(std::dynamic_pointer_cast<kordel::Dictionary>(app->createObject(QStringLiteral("ORVEX.SPREADSHEET"))));
}

TEST_F(HostApplicationTest, RegistryObjectsShareTheSettingsFile) {
  const auto app = makeApp();
  const auto writer =
      std::dynamic_pointer_cast<host::RegistryKeyObject>(app->createObject(QStringLiteral("Orvex.Registry")));
  writer->setKey(QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt"));
  writer->write(QStringLiteral("A"), QStringLiteral("1"));
  const auto reader =
      std::dynamic_pointer_cast<host::RegistryKeyObject>(app->createObject(QStringLiteral("Orvex.Registry")));
  reader->setKey(QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt"));
  EXPECT_EQ(reader->read(QStringLiteral("A"), {}).toString(), QStringLiteral("1"));
  EXPECT_EQ(host::SettingsStore(dir.file(QStringLiteral("registry.ini")))
                .read(QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt"), QStringLiteral("a")),
            QStringLiteral("1"));
}

TEST_F(HostApplicationTest, MousePointerDrivesTheWaitCursorInBalance) {
  kordel::hostapi::installUi(std::make_shared<host::QtUi>());
  const auto app = makeApp();
  app->set(QStringLiteral("MousePointer"), Variant(11));
  app->setMousePointer(11);
  EXPECT_EQ(app->get(QStringLiteral("MousePointer")).toLong(), 11);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  app->setMousePointer(0);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(app->mousePointer(), 0);
  kordel::hostapi::installUi(nullptr);

  app->setMousePointer(11); // without a Ui only the shape is kept
  EXPECT_EQ(app->mousePointer(), 11);
}

TEST_F(HostApplicationTest, LanguageAndLogAreReachableLateBound) {
  const auto app = makeApp(QStringLiteral("sv"));
  EXPECT_EQ(app->get(QStringLiteral("Language")).toString(), QStringLiteral("sv"));
  const ObjectRef log = app->get(QStringLiteral("ApplicationLog")).toObject();
  ASSERT_TRUE(log);
  log->invoke(QStringLiteral("WriteLogEntry"),
              {2, QStringLiteral("Standard Report"), QStringLiteral("X.Y"), QStringLiteral("5"), QStringLiteral("t")});
  EXPECT_TRUE(
      kordel::test::readFile(dir.file(QStringLiteral("orvex.log"))).contains("\tError\tStandard Report\tX.Y\t5\tt\n"));
  EXPECT_TRUE(app->get(QStringLiteral("Database")).isNothing());

  ScopedEnv language("ORVEX_LANGUAGE", QStringLiteral("sv"));
  EXPECT_EQ(makeApp(QString())->language(), QStringLiteral("sv"));
}

TEST(HostToolsObject, MakesGuidsAndSplitsFileNames) {
  host::HostToolsObject tools;
  const QString guid = tools.invoke(QStringLiteral("NewGuid")).toString();
  EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\}$"))
                  .match(guid)
                  .hasMatch())
      << guid.toStdString();
  EXPECT_NE(tools.newGuid(), guid);

  struct Case {
    QString path, folder, name, extension;
  };
  const Case cases[] = {
      {QStringLiteral("/tmp/out/report.PDF"), QStringLiteral("/tmp/out/"), QStringLiteral("report.PDF"),
       QStringLiteral("PDF")},
      {QStringLiteral("C:\\Export\\r.v1.html"), QStringLiteral("C:\\Export\\"), QStringLiteral("r.v1.html"),
       QStringLiteral("html")},
      {QStringLiteral("/tmp/dir.d/noext"), QStringLiteral("/tmp/dir.d/"), QStringLiteral("noext"), QString()},
      {QStringLiteral("plain.txt"), QString(), QStringLiteral("plain.txt"), QStringLiteral("txt")},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(tools.invoke(QStringLiteral("FilePath"), {c.path}).toString(), c.folder);
    EXPECT_EQ(tools.invoke(QStringLiteral("FileName"), {c.path}).toString(), c.name);
    EXPECT_EQ(tools.invoke(QStringLiteral("FileExtension"), {c.path}).toString(), c.extension);
  }
}

TEST(HostPaths, EnvironmentMovesTheFolders) {
  ScopedEnv config("ORVEX_CONFIG_DIR", QStringLiteral("/tmp/cfg"));
  ScopedEnv data("ORVEX_DATA_DIR", QStringLiteral("/tmp/data"));
  EXPECT_EQ(host::HostPaths::registryFile(), QStringLiteral("/tmp/cfg/registry.ini"));
  {
    ScopedEnv noLog("ORVEX_LOG_FILE", QString());
    EXPECT_EQ(host::HostPaths::logFile(), QStringLiteral("/tmp/data/orvex.log"));
  }
  ScopedEnv log("ORVEX_LOG_FILE", QStringLiteral("/tmp/elsewhere.log"));
  EXPECT_EQ(host::HostPaths::logFile(), QStringLiteral("/tmp/elsewhere.log"));
}

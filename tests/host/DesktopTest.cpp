// The desktop client offscreen on a demo database with the add-in loaded:
// the navigator, list windows (filter, sort, search, selection), the host's
// object model as the add-in reads it, the Reports menus printing,
// previewing and making reports, and About.

#include "desktop/AboutDialog.h"
#include "desktop/ListWindow.h"
#include "desktop/MainWindow.h"
#include "desktop/RecordListModel.h"
#include "desktop/RecordWindow.h"
#include "desktop/ReportsMenu.h"
#include "desktop/ReportsOverview.h"

#include "cli/DataCommands.h"

#include "host/AddinHost.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/SettingsStore.h"

#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"

#include "engine/preview/PreviewWindow.h"
#include "hostapi/Addin.h"
#include "hostapi/Classes.h"
#include "hostapi/Filters.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"
#include "support/CupsTestQueues.h"
#include "support/PdfTools.h"
#include "support/ScriptedUi.h"
#include "support/SqliteColumn.h"
#include "support/TempDir.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::host;
using namespace kordel::host::desktop;

namespace {

const QString kCompanyList = QStringLiteral("Company list");

class DesktopTest : public ::testing::Test {
protected:
  void SetUp() override {
    ui = std::make_shared<test::ScriptedUi>();
    hostapi::installUi(ui);
    app = std::make_shared<HostApplication>(std::make_shared<SettingsStore>(dir.file("registry.ini")),
                                            std::make_shared<FileLog>(dir.file("orvex.log")), QStringLiteral("en"));
    addins = std::make_unique<AddinHost>(*app);
    addins->loadPlugins(HostPaths::addinFolder());
    factory = addins->connectReportFactory(QString::fromLatin1(hostapi::kAddinProgId));
    database = dir.file("demo.db");
    cli::makeDemoDatabase(*app, database, 12, 7);
    cli::openDatabase(*app, database, nuvo::OpenMode::ReadWrite);
    window = std::make_unique<MainWindow>(*app, factory, database);
  }
  void TearDown() override {
    window.reset();
    addins->disconnectAll();
    hostapi::installUi(nullptr);
  }

  QStringList column(const QString &sql) const { return test::sqliteColumn(database, sql); }

  static QStringList shownColumn(const RecordListModel &model, int column) {
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
      texts << model.data(model.index(row, column), Qt::DisplayRole).toString();
    return texts;
  }

  // The action of a report's sub menu in a window's Reports menu.
  static QAction *reportAction(QWidget &content, const QString &report, const char *action) {
    auto *menu = content.findChild<ReportsMenu *>(QStringLiteral("MnuReports"));
    menu->Fill();
    for (QAction *entry : menu->actions())
      if (entry->menu() && entry->text() == report)
        return entry->menu()->findChild<QAction *>(QString::fromLatin1(action));
    return nullptr;
  }

  test::TempDir dir;
  std::shared_ptr<test::ScriptedUi> ui;
  std::shared_ptr<HostApplication> app;
  std::unique_ptr<AddinHost> addins;
  std::shared_ptr<hostapi::IReportFactory> factory;
  QString database;
  std::unique_ptr<MainWindow> window;
};

TEST_F(DesktopTest, AListWindowShowsItsClassUnderAFilterSortedAndSearched) {
  QStringList classes;
  for (int i = 0; i < window->navigator().topLevelItemCount(); ++i)
    classes << window->navigator().topLevelItem(i)->text(0);
  EXPECT_EQ(classes, (QStringList{"Company", "Coworker", "Deal", "History", "Person", "Product"}));

  ListWindow *list = window->OpenList(QStringLiteral("company"));
  ASSERT_NE(list, nullptr);
  RecordListModel &model = list->model();
  EXPECT_EQ(model.rowCount(), 12);
  EXPECT_EQ(model.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), "Name");
  auto &count = *list->findChild<QLabel *>(QStringLiteral("LblCount"));
  EXPECT_EQ(count.text(), "12 records");

  // A saved filter, by its local name in the drop-down.
  auto &filters = *list->findChild<QComboBox *>(QStringLiteral("CboFilter"));
  const int customers = filters.findText(QStringLiteral("Customers"));
  ASSERT_GE(customers, 0);
  filters.setCurrentIndex(customers);
  list->CboFilter_Click();
  const QStringList customerNames = column("SELECT name FROM company WHERE category = 1");
  EXPECT_EQ(model.rowCount(), customerNames.size());
  EXPECT_EQ(count.text(), QStringLiteral("%1 records").arg(customerNames.size()));
  EXPECT_EQ(list->explorer()->activeFilter()->name(), "customers");

  // Sorted by a click on the column head, both ways, without regard to case.
  filters.setCurrentIndex(0);
  list->CboFilter_Click();
  list->table().horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
  const QStringList byName = column("SELECT name FROM company ORDER BY LOWER(name), idcompany");
  EXPECT_EQ(shownColumn(model, 0), byName);
  list->table().horizontalHeader()->setSortIndicator(0, Qt::DescendingOrder);
  EXPECT_EQ(shownColumn(model, 0).first(), byName.last());

  // The search narrows what is listed, in the order of the sort.
  const QString city = column("SELECT city FROM company ORDER BY idcompany").first();
  list->findChild<QLineEdit *>(QStringLiteral("TxtSearch"))->setText(city.toUpper());
  list->TxtSearch_Change();
  const QStringList inCity = column(QStringLiteral("SELECT name FROM company WHERE city = '%1'").arg(city));
  EXPECT_EQ(model.rowCount(), inCity.size());
  EXPECT_LT(int(list->explorer()->listedIds().size()), list->explorer()->records()->count());
}

TEST_F(DesktopTest, TheHostsObjectModelFollowsTheWindows) {
  ListWindow *companies = window->OpenList(QStringLiteral("company"));
  ListWindow *persons = window->OpenList(QStringLiteral("person"));
  ASSERT_TRUE(companies && persons);
  EXPECT_EQ(app->activeExplorer(), persons->explorer());
  EXPECT_EQ(window->OpenList(QStringLiteral("company")), companies) << "one list window per class";
  EXPECT_EQ(app->activeExplorer(), companies->explorer());
  EXPECT_EQ(app->explorers()->count(), 2);

  const std::vector<int> chosen{companies->model().recordId(1), companies->model().recordId(4)};
  companies->SelectRecords(chosen);
  // As the add-in reads it, late-bound.
  const ObjectRef active = app->get(QStringLiteral("ActiveExplorer")).toObject();
  EXPECT_EQ(active->get(QStringLiteral("Selection")).toObject()->get(QStringLiteral("Count")).toLong(), 2);
  EXPECT_EQ(active->get(QStringLiteral("Class")).toObject()->get(QStringLiteral("Name")).toString(), "company");
  EXPECT_EQ(app->explorers()->item(QStringLiteral("company"))->selection()->count(), 2);

  // The list window's own settings, which the print dialog reads.
  app->settings()->write(QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt\\Orvex\\Explorers\\company"),
                         QStringLiteral("DisableExport"), QStringLiteral("1"));
  const ObjectRef settings = active->get(QStringLiteral("Settings")).toObject();
  EXPECT_EQ(settings->invoke(QStringLiteral("Read"), {QStringLiteral("DisableExport"), Variant(0)}).toLong(), 1);

  RecordWindow *record = window->OpenRecord(QStringLiteral("company"), chosen.front());
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(app->activeExplorer(), nullptr) << "a record window in front";
  const ObjectRef inspector = app->get(QStringLiteral("ActiveInspector")).toObject();
  EXPECT_EQ(inspector->get(QStringLiteral("Record")).toObject()->get(QStringLiteral("ID")).toLong(), chosen.front());
  EXPECT_EQ(app->get(QStringLiteral("Inspectors")).toObject()->get(QStringLiteral("Count")).toLong(), 1);

  window->windowArea().closeAllSubWindows();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(app->explorers()->count(), 0);
  EXPECT_EQ(app->get(QStringLiteral("Inspectors")).toObject()->get(QStringLiteral("Count")).toLong(), 0);
}

// Three companies chosen in the list and "Company list" printed through
// the Reports menu reach a print queue: those three and no others.
TEST_F(DesktopTest, TheReportsMenuPrintsTheSelectedRecords) {
  if (!test::pdfToolsAvailable())
    GTEST_SKIP() << "pdftotext is needed";
  test::TestPrintServer server(dir);
  if (!server.running())
    GTEST_SKIP() << "no print server for the test: " << server.failure().toStdString();
  if (const QString why = server.addPdfPrinterQueue(QStringLiteral("kordel_desktop")); !why.isEmpty())
    GTEST_SKIP() << why.toStdString();
  const test::PdfPrinterOutput output(kCompanyList);

  ListWindow *list = window->OpenList(QStringLiteral("company"));
  list->table().horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
  const QStringList names = shownColumn(list->model(), 0);
  list->SelectRecords({list->model().recordId(0), list->model().recordId(5), list->model().recordId(9)});
  ui->modalHandler = [&](QWidget &dialog) {
    auto &printers = *dialog.findChild<QComboBox *>(QStringLiteral("CbPrinter"));
    printers.setCurrentIndex(printers.findText(QStringLiteral("kordel_desktop")));
    EXPECT_TRUE(dialog.findChild<QRadioButton *>(QStringLiteral("Opt1"))->isChecked()) << "the selection";
    dialog.findChild<QPushButton *>(QStringLiteral("CmdPrint"))->click();
  };
  QAction *print = reportAction(*list, kCompanyList, "MnuReportPrint");
  ASSERT_NE(print, nullptr);
  print->trigger();

  const QString pdf = output.waitForFile();
  ASSERT_FALSE(pdf.isEmpty()) << server.errorLog().toStdString();
  const QString text = test::pdfPageTexts(pdf).join(u'\n');
  QFile::remove(pdf);
  const QStringList chosen{names[0], names[5], names[9]};
  for (const QString &name : chosen)
    EXPECT_TRUE(text.contains(name)) << name.toStdString() << " missing in " << text.toStdString();
  for (const QString &name : names)
    if (!chosen.join(u'|').contains(name)) {
      EXPECT_FALSE(text.contains(name)) << name.toStdString() << " was not selected";
    }
}

TEST_F(DesktopTest, APreviewFromARecordWindowShowsThatRecord) {
  const QStringList names = column("SELECT name FROM company ORDER BY idcompany");
  const QStringList ids = column("SELECT idcompany FROM company ORDER BY idcompany");
  RecordWindow *record = window->OpenRecord(QStringLiteral("company"), ids[3].toInt());
  ASSERT_NE(record, nullptr);
  bool shown = false, othersShown = false;
  ui->modalHandler = [&](QWidget &preview) {
    auto *pages = qobject_cast<engine::PreviewWindow *>(&preview);
    ASSERT_NE(pages, nullptr);
    shown = pages->find(names[3]);
    othersShown = pages->find(names[4]) || pages->find(names[0]);
  };
  QAction *previewAction = reportAction(*record, kCompanyList, "MnuReportPreview");
  ASSERT_NE(previewAction, nullptr);
  previewAction->trigger();
  EXPECT_TRUE(shown) << ui->boxes.size();
  EXPECT_FALSE(othersShown);
}

TEST_F(DesktopTest, ReportsAreMadeRenamedAndDeletedThroughTheMenus) {
  ListWindow *list = window->OpenList(QStringLiteral("person"));
  int windows = 0;
  ui->modalHandler = [&](QWidget &dialog) {
    ++windows;
    if (dialog.objectName() == QLatin1String("DlgReportProperties")) {
      dialog.findChild<QLineEdit *>(QStringLiteral("TbName"))->setText(QStringLiteral("Phone list"));
      dialog.findChild<QPushButton *>(QStringLiteral("CmdOK"))->click();
    }
    // The designer: saved and closed.
    if (dialog.objectName() == QLatin1String("DlgReportDesigner"))
      dialog.findChild<QAction *>(QStringLiteral("MnuFileSave"))->trigger();
  };
  auto *menu = list->findChild<ReportsMenu *>(QStringLiteral("MnuReports"));
  menu->Fill();
  menu->findChild<QAction *>(QStringLiteral("MnuReportNew"))->trigger();
  EXPECT_EQ(windows, 2) << "the report properties, then the designer";
  EXPECT_TRUE(ui->boxes.empty()) << ui->boxes.front().text.toStdString();
  ASSERT_NE(reportAction(*list, QStringLiteral("Phone list"), "MnuReportRename"), nullptr)
      << "the new report is in the person list's menu";
  EXPECT_EQ(column("SELECT name FROM nv_file WHERE name = 'Phone list'").size(), 1);

  ui->inputAnswers.push_back(QStringLiteral("Person phone list"));
  reportAction(*list, QStringLiteral("Phone list"), "MnuReportRename")->trigger();
  EXPECT_EQ(column("SELECT name FROM nv_file WHERE name LIKE '%phone list'"), QStringList{"Person phone list"});

  ui->boxAnswers.push_back(hostapi::MsgBox::No);
  reportAction(*list, QStringLiteral("Person phone list"), "MnuReportDelete")->trigger();
  EXPECT_EQ(column("SELECT name FROM nv_file WHERE name = 'Person phone list'").size(), 1) << "no: kept";
  ui->boxAnswers.push_back(hostapi::MsgBox::Yes);
  reportAction(*list, QStringLiteral("Person phone list"), "MnuReportDelete")->trigger();
  EXPECT_TRUE(column("SELECT name FROM nv_file WHERE name = 'Person phone list'").isEmpty());
  EXPECT_EQ(reportAction(*list, QStringLiteral("Person phone list"), "MnuReportDelete"), nullptr);

  ReportsOverview *overview = window->ShowReports();
  QStringList listed;
  for (int i = 0; i < overview->list().topLevelItemCount(); ++i)
    listed << overview->list().topLevelItem(i)->text(0) + u'|' + overview->list().topLevelItem(i)->text(1);
  EXPECT_EQ(listed, (QStringList{"Company history|Company", "Company list|Company", "Deals by value|Deal"}));
}

TEST_F(DesktopTest, AboutTellsVersionQtDatabaseAndFoldersAndCopiesThem) {
  AboutDialog about(*app, database);
  const QString facts = about.Facts();
  EXPECT_TRUE(facts.contains(QCoreApplication::applicationVersion()));
  EXPECT_TRUE(facts.contains(QString::fromLatin1(qVersion())));
  EXPECT_TRUE(facts.contains(database));
  EXPECT_TRUE(facts.contains(HostPaths::registryFile()));
  about.CmdCopy_Click();
  EXPECT_EQ(QApplication::clipboard()->text(), facts);
}

} // namespace

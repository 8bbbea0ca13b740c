// The print dialog on the demo database and a private print scheduler:
// the printers and their bins, the choice kept per report, the copies,
// the width check and the runs it hands on through OnPrint.

#include "DemoFixture.h"
#include "WidgetTools.h"

#include "common/Settings.h"
#include "common/ResourceManager.h"
#include "data/ContextManager.h"
#include "dialogs/DlgPageSetup.h"
#include "document/Report.h"
#include "common/ApplicationManager.h"
#include "hostapi/Layout.h"
#include "hostapi/Printers.h"
#include "hostapi/ReportContext.h"
#include "host/SettingsObject.h"
#include "host/SettingsStore.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"
#include "support/CupsTestQueues.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::DemoHostedTest;
using test::child;

namespace {

const QString kReportName = QStringLiteral("Print dialog report");

struct RaisedRun {
  std::int32_t mode;
  std::shared_ptr<hostapi::ReportContext> context;
};

class PageSetupDialogTest : public DemoHostedTest {
protected:
  void SetUp() override {
    DemoHostedTest::SetUp();
    report = std::make_shared<Report>();
    report->LoadContents(Variant());
    ASSERT_TRUE(report->Create(QStringLiteral("company")));
    report->SetName(kReportName);
    // The rows come from the class's list window, all of them.
    const auto engine = std::dynamic_pointer_cast<nuvo::DatabaseObject>(app->database())->engine();
    explorer = std::make_shared<nuvo::ExplorerObject>(engine, QStringLiteral("company"));
    explorer->setSettings(
        std::make_shared<host::SettingsObject>(app->settings(), QStringLiteral("Explorers\\company")));
    app->explorerList().open(explorer);
  }
  std::unique_ptr<DlgPageSetup> dialog() {
    auto manager = std::make_shared<ContextManager>();
    manager->SetApplication(app);
    manager->Initialize(QStringLiteral("company"), nullptr);
    auto made = std::make_unique<DlgPageSetup>();
    made->SetReport(report);
    made->SetContextManager(manager);
    made->Form_Load();
    made->show();
    QApplication::processEvents();
    // KORDEL_SCREENSHOT_DIR=FOLDER keeps a picture of the dialog.
    if (const QString folder = qEnvironmentVariable("KORDEL_SCREENSHOT_DIR"); !folder.isEmpty())
      made->grab().save(folder + QStringLiteral("/page-setup.png"));
    QObject::connect(made.get(), &DlgPageSetup::OnPrint, made.get(),
                     [this](std::int32_t mode, std::shared_ptr<Report>, std::shared_ptr<hostapi::ReportContext> context,
                            bool &result) {
                       runs.push_back({mode, context});
                       result = runResult;
                     });
    return made;
  }
  QString stored(const char *name) {
    return ReadReportSetting(kReportName, QStringLiteral("PageSetup"), QString::fromLatin1(name), QString()).toString();
  }

  std::shared_ptr<Report> report;
  std::shared_ptr<nuvo::ExplorerObject> explorer;
  std::vector<RaisedRun> runs;
  bool runResult = false;
};

TEST_F(PageSetupDialogTest, PrintersAndBinsAreListedAndTheChoiceIsKeptPerReport) {
  test::TestPrintServer server(dir);
  if (!server.running())
    GTEST_SKIP() << "no print server for the test: " << server.failure().toStdString();
  const QString why = server.addQueueWithBins(QStringLiteral("kordel_trays"));
  if (!why.isEmpty())
    GTEST_SKIP() << why.toStdString();

  auto form = dialog();
  auto &printers = child<QComboBox>(*form, "CbPrinter");
  auto &bins = child<QComboBox>(*form, "CbPaper");
  const QString pdf = QString::fromLatin1(hostapi::kBuiltInPdfPrinterName);
  ASSERT_GE(printers.findText(pdf), 0);
  ASSERT_GE(printers.findText("kordel_trays"), 0);

  printers.setCurrentIndex(printers.findText(pdf));
  EXPECT_EQ(bins.count(), 0);
  EXPECT_FALSE(bins.isEnabled()) << "a printer without bins";
  child<QPushButton>(*form, "CmdPreview").click();
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_EQ(runs[0].mode, 1);
  EXPECT_EQ(stored("DeviceName"), pdf);
  EXPECT_EQ(stored("PaperBinName"), "");
  EXPECT_TRUE(form->isVisible()) << "a run that did not end well keeps the dialog";

  printers.setCurrentIndex(printers.findText("kordel_trays"));
  ASSERT_EQ(bins.count(), 3);
  EXPECT_TRUE(bins.isEnabled());
  EXPECT_EQ(bins.currentIndex(), 0);
  bins.setCurrentIndex(1);
  const QString lower = bins.currentText();
  runResult = true;
  child<QPushButton>(*form, "CmdPrint").click();
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[1].mode, 0);
  EXPECT_EQ(stored("DeviceName"), "kordel_trays");
  EXPECT_EQ(stored("PaperBinName"), lower);
  const ObjectRef printer = runs[1].context->getProperty("sysprop__printerobject").toObject();
  ASSERT_TRUE(printer);
  EXPECT_EQ(printer->get("DeviceName").toString(), "kordel_trays");
  EXPECT_FALSE(form->isVisible()) << "a run that ended well closes it";

  // The next dialog for the report offers the same choice again.
  auto again = dialog();
  EXPECT_EQ(child<QComboBox>(*again, "CbPrinter").currentText(), "kordel_trays");
  EXPECT_EQ(child<QComboBox>(*again, "CbPaper").currentText(), lower);
}

TEST_F(PageSetupDialogTest, CopiesAreClampedAndPreviewTakesOne) {
  auto form = dialog();
  auto &copies = child<QLineEdit>(*form, "TxtCopies");
  EXPECT_EQ(copies.text(), "1");
  for (const auto &[text, expected] :
       {std::pair{"abc", 1}, {"", 1}, {"0", 1}, {"-4", 1}, {"7", 7}, {"5000", 999}, {"99999", 1}}) {
    copies.setText(QString::fromLatin1(text));
    EXPECT_EQ(form->Copies(), expected) << text;
  }
  copies.setText("5000");
  copies.setFocus();
  QTest::keyClick(&copies, Qt::Key_Tab);
  EXPECT_EQ(copies.text(), "999") << "shown once the field loses the focus";

  // The two runs may share one context: each is read as it is raised.
  child<QPushButton>(*form, "CmdPrint").click();
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_EQ(runs[0].context->getProperty("sysprop__copies").toLong(), 999);
  child<QPushButton>(*form, "CmdPreview").click();
  ASSERT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[1].context->getProperty("sysprop__copies").toLong(), 1) << "preview ignores the field";
}

TEST_F(PageSetupDialogTest, AReportWiderThanThePaperIsPrintedOnlyIfTheUserSaysSo) {
  auto form = dialog();
  const ObjectRef printer = CreateObject(QString::fromLatin1(hostapi::kLayoutPrinterProgId));
  auto &printers = child<QComboBox>(*form, "CbPrinter");
  printers.setCurrentIndex(printers.findText(QString::fromLatin1(hostapi::kBuiltInPdfPrinterName)));
  child<QRadioButton>(*form, "RbOrientationPortrait").click();
  EXPECT_EQ(report->Orientation(), 1);
  printer->set("DeviceName", printers.currentText());
  printer->set("Orientation", 1);
  const std::int32_t paper = printer->get("PaperWidth").toLong();
  report->SetMarginLeft(500);
  report->SetMarginRight(400);
  auto &print = child<QPushButton>(*form, "CmdPrint");

  report->SetPrintWidth(paper + 113 - 900);
  print.click();
  EXPECT_TRUE(ui->boxes.empty()) << "113 twips over the paper pass";
  ASSERT_EQ(runs.size(), 1u);

  report->SetPrintWidth(paper + 114 - 900);
  ui->boxAnswers = {7};
  print.click();
  ASSERT_EQ(ui->boxes.size(), 1u) << "only the question, no message after the no";
  EXPECT_EQ(ui->boxes[0].flags, 68);
  EXPECT_EQ(runs.size(), 1u);
  EXPECT_TRUE(form->isVisible());

  ui->boxAnswers = {6};
  print.click();
  EXPECT_EQ(runs.size(), 2u);
  EXPECT_EQ(runs[1].mode, 0);

  child<QPushButton>(*form, "CmdPreview").click();
  EXPECT_EQ(ui->boxes.size(), 2u) << "no check before a preview";
  EXPECT_EQ(runs.back().mode, 1);
}

TEST_F(PageSetupDialogTest, PrintToFileAsksForTheFileAndExports) {
  auto form = dialog();
  auto &toFile = child<QCheckBox>(*form, "ChkPrintToFile");
  ASSERT_TRUE(toFile.isVisible());
  toFile.setChecked(true);
  const QString target = dir.path() + "/out.pdf";
  ui->fileAnswers = {QString(), target};
  auto &print = child<QPushButton>(*form, "CmdPrint");
  print.click();
  EXPECT_TRUE(runs.empty()) << "a cancelled file dialog runs nothing";
  EXPECT_TRUE(ui->boxes.empty());
  print.click();
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_EQ(runs[0].mode, 2);
  EXPECT_EQ(runs[0].context->getProperty("sysprop__exportfile").toString(), target);
  ASSERT_EQ(ui->fileDialogs.size(), 2u);
}

// Each access key reaches one control in both languages, and the dialog
// is worked from the keyboard alone: Alt+L turns the page, Enter prints,
// Escape closes.
TEST_F(PageSetupDialogTest, TheKeyboardAloneWorksItInBothLanguages) {
  for (const char *language : {"en", "sv"}) {
    StopTranslation();
    StartTranslation(language);
    auto form = dialog();
    auto &tabs = child<QTabBar>(*form, "TabPrintSource");
    for (int tab = 0; tab < tabs.count(); ++tab) {
      tabs.setCurrentIndex(tab);
      EXPECT_EQ(test::mnemonicClashes(*form), QStringList()) << language << " tab " << tab;
    }
    tabs.setCurrentIndex(0);
    // Keys through the window, as the platform delivers them, so that
    // access keys are looked up as shortcuts.
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    QTest::keyClick(form->windowHandle(), Qt::Key_L, Qt::AltModifier);
    QTest::qWait(300); // an access key clicks a button as the mouse does, a moment later
    EXPECT_TRUE(child<QRadioButton>(*form, "RbOrientationLandscape").isChecked()) << language;
    runs.clear();
    runResult = true;
    QTest::keyClick(form->windowHandle(), Qt::Key_Return);
    ASSERT_EQ(runs.size(), 1u) << language;
    EXPECT_EQ(runs[0].mode, 0);
    EXPECT_FALSE(form->isVisible());

    auto again = dialog();
    again->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(again.get()));
    QTest::keyClick(again->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(again->isVisible());
    EXPECT_EQ(again->result(), QDialog::Rejected);
  }
}

// "DisableExport" of the application or of the class's list window takes
// print to file away; a check mark left on it exports nothing.
TEST_F(PageSetupDialogTest, DisableExportOfTheHostOrTheListWindowTakesPrintToFileAway) {
  const QString root = QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt\\Orvex\\");
  const auto printToFileOffered = [&] {
    auto form = dialog();
    auto &toFile = child<QCheckBox>(*form, "ChkPrintToFile");
    toFile.setChecked(true);
    runs.clear();
    child<QPushButton>(*form, "CmdPrint").click();
    EXPECT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs.empty() ? -1 : runs[0].mode, toFile.isVisible() ? 2 : 0);
    return toFile.isVisible();
  };
  ui->fileAnswers = {dir.path() + "/a.pdf", dir.path() + "/b.pdf"};
  EXPECT_TRUE(printToFileOffered());
  app->settings()->write(root + "Application", "DisableExport", "1");
  EXPECT_FALSE(printToFileOffered());
  app->settings()->write(root + "Application", "DisableExport", "0");
  app->settings()->write(root + "Explorers\\company", "DisableExport", "1");
  EXPECT_FALSE(printToFileOffered());
  app->settings()->write(root + "Explorers\\company", "DisableExport", "0");
  EXPECT_TRUE(printToFileOffered());
}

} // namespace

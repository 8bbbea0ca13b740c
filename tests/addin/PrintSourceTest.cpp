// The print source control on the demo database: the rows of a list window
// (selection, all, a filter) with their counts, a fixed range, and the sub
// pages paired with filters of their classes, given by the caller or
// remembered per report. Shown offscreen and driven with mouse and keys;
// KORDEL_SCREENSHOT_DIR=FOLDER keeps a picture of each tab in each language.

#include "DemoFixture.h"
#include "WidgetTools.h"

#include "common/ResourceManager.h"
#include "common/Settings.h"
#include "data/ContextManager.h"
#include "dialogs/PrintSource.h"
#include "document/Page.h"
#include "document/Report.h"
#include "hostapi/Classes.h"
#include "hostapi/Filters.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"
#include "hostapi/ReportContext.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"
#include "support/ErrorCapture.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QRadioButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTabBar>
#include <QTest>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using test::child;

namespace {

const QString kPersons = QStringLiteral("{SOURCE-PERSONS}");
const QString kDeals = QStringLiteral("{SOURCE-DEALS}");
const QString kHistory = QStringLiteral("{SOURCE-HISTORY}");
const QString kNotes = QStringLiteral("{SOURCE-NOTES}");
const QString kReportName = QStringLiteral("Companies with everything");

QStringList comboTexts(QComboBox &combo) {
  QStringList result;
  for (int i = 0; i < combo.count(); ++i)
    result << combo.itemText(i);
  return result;
}

// Each row as "text|filter".
QStringList rows(QTreeWidget &list) {
  QStringList result;
  for (int i = 0; i < list.topLevelItemCount(); ++i)
    result << list.topLevelItem(i)->text(0) + u'|' + list.topLevelItem(i)->text(1);
  return result;
}

void clickRow(QTreeWidget &list, int row) {
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.topLevelItem(row)).center());
}

void clickOption(QRadioButton &option) {
  QTest::mouseClick(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
}

QString storedSubFilter(const QString &guid) {
  return ReadReportSetting(kReportName, QStringLiteral("SubFilters"), guid, QString()).toString();
}

} // namespace

class PrintSourceTest : public test::DemoHostedTest {
protected:
  void SetUp() override {
    DemoHostedTest::SetUp();
    report = std::make_shared<Report>();
    report->LoadContents(Variant());
    ASSERT_TRUE(report->Create(QStringLiteral("company")));
    report->SetName(kReportName);
    for (const auto &[guid, name, source] :
         {std::tuple{kPersons, "Persons", "person"}, {kDeals, "Deals", "deal"}, {kHistory, "History", "history"}})
      ASSERT_TRUE(report->AddPage(guid, name, source, report->Guid(), Variant()));
    ASSERT_TRUE(report->AddPage(kNotes, "Notes", "history", kPersons, Variant()));
  }

  std::shared_ptr<nuvo::ExplorerObject> openExplorer(const QString &cls) {
    const auto engine = std::dynamic_pointer_cast<nuvo::DatabaseObject>(app->database())->engine();
    auto explorer = std::make_shared<nuvo::ExplorerObject>(engine, cls);
    app->explorerList().open(explorer);
    return explorer;
  }
  std::shared_ptr<hostapi::Filter> savedFilter(const QString &cls, const QString &name) {
    return app->classes()->item(cls)->filters()->lookup(name, hostapi::FilterLookup::ByName);
  }
  std::shared_ptr<ContextManager> manager(const QString &cls, std::shared_ptr<hostapi::ReportContext> context) {
    auto made = std::make_shared<ContextManager>();
    made->SetApplication(app);
    made->Initialize(cls, std::move(context));
    return made;
  }
  // A control activated for the report and shown.
  std::unique_ptr<PrintSource> source(std::shared_ptr<ContextManager> manager) {
    auto made = std::make_unique<PrintSource>();
    made->resize(420, 260);
    made->Activate(report, std::move(manager));
    made->show();
    QApplication::processEvents();
    return made;
  }
  int countOf(const std::shared_ptr<hostapi::Filter> &filter) {
    auto records = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("Nuvo.Records"));
    records->open(Variant("company"), filter, nullptr, 0);
    return records->count();
  }
  int countOf(const QString &companyFilter) { return countOf(savedFilter("company", companyFilter)); }
  void reopenDatabase(const QString &file, const QString &language) {
    nuvo::DatabaseAddress address;
    address.file = file;
    app->setDatabase(std::make_shared<nuvo::DatabaseObject>(nuvo::Engine::open(address, language, "anna")));
  }

  std::shared_ptr<Report> report;
};

TEST_F(PrintSourceTest, AnActiveListWindowOffersItsSelectionAllRowsOrAFilterWithLiveCounts) {
  auto explorer = openExplorer("company");
  const std::vector<int> listed = explorer->listedIds();
  ASSERT_GE(listed.size(), 3u);
  explorer->select({listed[0], listed[2]});
  auto contexts = manager("company", nullptr);
  const auto control = source(contexts);
  auto &opt1 = child<QRadioButton>(*control, "Opt1");
  auto &opt2 = child<QRadioButton>(*control, "Opt2");
  auto &opt3 = child<QRadioButton>(*control, "Opt3");
  auto &filters = child<QComboBox>(*control, "CboFilters1");

  EXPECT_TRUE(opt1.isVisible() && opt1.isEnabled() && opt1.isChecked());
  EXPECT_EQ(opt1.text(), "&Selected records (2)");
  EXPECT_EQ(opt2.text(), QStringLiteral("&All records in the list (%1)").arg(listed.size()));
  EXPECT_TRUE(opt2.isEnabled() && !opt2.isChecked());
  EXPECT_FALSE(child<QLabel>(*control, "lblContextName").isVisible());
  EXPECT_EQ(comboTexts(filters).mid(0, 3), QStringList({"Customers", "Prospects", "Companies in Sweden"}));
  EXPECT_FALSE(filters.isEnabled()) << "only with the filter chosen";
  // The window shows all its records: the first filter, with its count.
  EXPECT_EQ(filters.currentText(), "Customers");
  EXPECT_EQ(opt3.text(), QStringLiteral("Records of a &filter (%1)").arg(countOf("customers")));

  clickOption(opt3);
  EXPECT_TRUE(opt3.isChecked());
  EXPECT_TRUE(filters.isEnabled());
  QTest::keyClick(&filters, Qt::Key_Down);
  QTest::keyClick(&filters, Qt::Key_Down);
  ASSERT_EQ(filters.currentText(), "Companies in Sweden");
  const int swedish = countOf("sweden");
  ASSERT_GT(swedish, 0);
  EXPECT_EQ(opt3.text(), QStringLiteral("Records of a &filter (%1)").arg(swedish)) << "the count follows the filter";

  const auto byFilter = control->GetContext();
  const auto range = std::dynamic_pointer_cast<hostapi::Filter>(byFilter->range().rawObject());
  ASSERT_TRUE(range);
  EXPECT_EQ(byFilter->contextClass()->name(), "company");
  EXPECT_EQ(byFilter->getProperty("sysprop__description"), Variant(QStringLiteral("sweden")));
  EXPECT_EQ(countOf(range), swedish);
  filters.setCurrentIndex(filters.findText("Companies in Antarctica"));
  EXPECT_EQ(opt3.text(), "Records of a &filter (0)");
  const Error empty = test::errorOf([&] { control->GetContext(); });
  EXPECT_EQ(empty.number(), ErrorNumber::UserMessage);
  EXPECT_EQ(empty.description(), "The chosen filter has no records.");

  clickOption(opt1);
  EXPECT_FALSE(filters.isEnabled());
  const auto selected = std::dynamic_pointer_cast<hostapi::Pool>(control->GetContext()->range().rawObject());
  ASSERT_TRUE(selected);
  EXPECT_EQ(selected->ids(), std::vector<int>({listed[0], listed[2]}));
  QTest::keyClick(&opt1, Qt::Key_Down);
  ASSERT_TRUE(opt2.isChecked()) << "the arrow keys move between the choices";
  const auto all = std::dynamic_pointer_cast<hostapi::Pool>(control->GetContext()->range().rawObject());
  ASSERT_TRUE(all);
  EXPECT_EQ(all->ids(), listed);

  // The choice is checked again on each call: the selection may have gone.
  clickOption(opt1);
  explorer->select({});
  const Error gone = test::errorOf([&] { control->GetContext(); });
  EXPECT_EQ(gone.number(), ErrorNumber::UserMessage);
  EXPECT_EQ(gone.description(), "No records are selected.");
}

TEST_F(PrintSourceTest, WithoutASelectionOrRowsTheNextChoiceIsTakenAndAnotherWindowOffersOnlyFilters) {
  auto explorer = openExplorer("company");
  explorer->setActiveFilter(savedFilter("company", "sweden"));
  {
    const auto control = source(manager("company", nullptr));
    EXPECT_TRUE(child<QRadioButton>(*control, "Opt1").isVisible());
    EXPECT_FALSE(child<QRadioButton>(*control, "Opt1").isEnabled());
    EXPECT_EQ(child<QRadioButton>(*control, "Opt1").text(), "&Selected records (0)");
    EXPECT_TRUE(child<QRadioButton>(*control, "Opt2").isChecked());
    EXPECT_EQ(child<QComboBox>(*control, "CboFilters1").currentText(), "Customers")
        << "the window's filter is looked for by its stored name among the shown ones";
  }
  explorer->setActiveFilter(savedFilter("company", "customers"));
  {
    const auto control = source(manager("company", nullptr));
    EXPECT_EQ(child<QComboBox>(*control, "CboFilters1").currentText(), "Customers") << "found but for case";
    EXPECT_EQ(child<QRadioButton>(*control, "Opt3").text(),
              QStringLiteral("Records of a &filter (%1)").arg(countOf("customers")));
  }
  explorer->setActiveFilter(savedFilter("company", "antarctica"));
  {
    const auto control = source(manager("company", nullptr));
    EXPECT_FALSE(child<QRadioButton>(*control, "Opt2").isEnabled());
    EXPECT_TRUE(child<QRadioButton>(*control, "Opt3").isChecked());
    EXPECT_TRUE(child<QComboBox>(*control, "CboFilters1").isEnabled());
  }
  explorer->setActiveFilter(nullptr);
  openExplorer("person");
  const auto control = source(manager("company", nullptr));
  auto &opt3 = child<QRadioButton>(*control, "Opt3");
  auto &filters = child<QComboBox>(*control, "CboFilters1");
  EXPECT_FALSE(child<QRadioButton>(*control, "Opt1").isVisible());
  EXPECT_FALSE(child<QRadioButton>(*control, "Opt2").isVisible());
  EXPECT_TRUE(opt3.isChecked() && opt3.isEnabled());
  EXPECT_EQ(filters.y(), 0) << "on the first row";
  EXPECT_LT(opt3.y(), filters.height());
  EXPECT_EQ(filters.currentIndex(), 0);
  const auto context = control->GetContext();
  EXPECT_EQ(context->getProperty("sysprop__description"), Variant(QStringLiteral("customers")));
  EXPECT_EQ(countOf(std::dynamic_pointer_cast<hostapi::Filter>(context->range().rawObject())), countOf("customers"));
}

TEST_F(PrintSourceTest, AFixedRangeIsTheOnlyChoiceNamedBesideIt) {
  auto given = std::dynamic_pointer_cast<hostapi::ReportContext>(app->createObject("Nuvo.ReportContext"));
  given->setRange(Variant(ObjectRef(savedFilter("company", "customers"))));
  given->setContextClass(app->classes()->item("company"));
  auto contexts = manager("company", given);
  const auto control = source(contexts);
  auto &opt1 = child<QRadioButton>(*control, "Opt1");
  EXPECT_TRUE(opt1.isVisible() && opt1.isEnabled() && opt1.isChecked());
  EXPECT_EQ(opt1.text(), "");
  EXPECT_EQ(child<QLabel>(*control, "lblContextName").text(), contexts->Name());
  EXPECT_FALSE(child<QRadioButton>(*control, "Opt2").isVisible());
  EXPECT_FALSE(child<QComboBox>(*control, "CboFilters1").isVisible());
  const auto context = control->GetContext();
  EXPECT_EQ(context, given);
  EXPECT_EQ(context->range().rawObject(), given->range().rawObject());
}

TEST_F(PrintSourceTest, AFilterNameThatOccursTwiceIsListedOnce) {
  // A copy of the demo database with a second company filter and a second
  // person filter under names already shown.
  const QString copy = dir.file("twice.db");
  ASSERT_TRUE(QFile::copy(databaseFile(), copy));
  {
    auto db = QSqlDatabase::addDatabase("QSQLITE", "twice");
    db.setDatabaseName(copy);
    ASSERT_TRUE(db.open());
    QSqlQuery sql(db);
    for (const auto &[cls, name, text] :
         {std::tuple{"company", "customers2", "Customers"}, {"person", "withemail2", "With e-mail"}}) {
      ASSERT_TRUE(sql.exec(QStringLiteral("INSERT INTO nv_filter (class, name, position, items) VALUES ('%1', '%2', "
                                          "99, '[]')")
                               .arg(cls, name)));
      ASSERT_TRUE(sql.exec(QStringLiteral("INSERT INTO nv_text (owner, language, text) VALUES ('filter:%1.%2', 'en', "
                                          "'%3')")
                               .arg(cls, name, text)));
    }
    db.close();
  }
  QSqlDatabase::removeDatabase("twice");
  reopenDatabase(copy, "en");
  openExplorer("company");
  const auto control = source(manager("company", nullptr));
  const QStringList shown = comboTexts(child<QComboBox>(*control, "CboFilters1"));
  EXPECT_EQ(shown.count("Customers"), 1);
  EXPECT_EQ(control->FilterNames().value("Customers"), "customers") << "the first of the name";
  child<QTabBar>(*control, "TabPrintSource").setCurrentIndex(1);
  auto &list = child<QTreeWidget>(*control, "LvwMappings");
  clickRow(list, 0);
  EXPECT_EQ(comboTexts(child<QComboBox>(*control, "CboFilters2")),
            QStringList({"(no filter)", "With e-mail", "Persons in Sweden", "Named Nobody"}));
}

TEST_F(PrintSourceTest, SubPagesTakeGivenFiltersOrTheLastOnesChosenWhichStayWhenNoneIsChosen) {
  openExplorer("company");
  WriteReportSetting(kReportName, "SubFilters", kPersons, "withemail");
  WriteReportSetting(kReportName, "SubFilters", kHistory, "gone since");
  WriteReportSetting(kReportName, "SubFilters", kNotes, "Phone calls"); // a shown name is found too
  auto contexts = manager("company", nullptr);
  contexts->SetProperty(kDeals, Variant(ObjectRef(savedFilter("deal", "won"))));
  const auto nameless = std::dynamic_pointer_cast<hostapi::Filter>(app->createObject("Nuvo.Filter"));
  contexts->SetProperty("Notes", Variant(ObjectRef(nameless)));
  const auto control = source(contexts);
  QTest::keyClick(&child<QTabBar>(*control, "TabPrintSource"), Qt::Key_Right);
  auto &list = child<QTreeWidget>(*control, "LvwMappings");
  auto &choice = child<QComboBox>(*control, "CboFilters2");

  EXPECT_EQ(rows(list), QStringList({"Persons|With e-mail", "Deals|Won deals", "History|(no filter)",
                                     "Notes|(filter given by the caller)"}));
  EXPECT_EQ(control->ProvidedFilters().keys().size(), 2);
  EXPECT_FALSE(choice.isEnabled());

  clickRow(list, 1);
  EXPECT_EQ(comboTexts(choice), QStringList({"Won deals"}));
  EXPECT_FALSE(choice.isEnabled()) << "a given filter cannot be changed";
  clickRow(list, 3);
  EXPECT_EQ(comboTexts(choice), QStringList({"(filter given by the caller)"}));

  // With the keyboard: the history row, then its filter.
  QTest::keyClick(&list, Qt::Key_Up);
  ASSERT_EQ(list.currentItem()->text(0), "History");
  EXPECT_TRUE(choice.isEnabled());
  EXPECT_EQ(choice.currentText(), "(no filter)");
  QTest::keyClick(&choice, Qt::Key_Down);
  EXPECT_EQ(list.currentItem()->text(1), "Phone calls");
  // The persons page back to no filter.
  clickRow(list, 0);
  EXPECT_EQ(choice.currentText(), "With e-mail");
  choice.setCurrentIndex(0);
  EXPECT_EQ(list.topLevelItem(0)->text(1), "(no filter)");

  const auto context = control->GetContext();
  const auto calls = std::dynamic_pointer_cast<hostapi::Filter>(context->getProperty(kHistory).rawObject());
  ASSERT_TRUE(calls);
  EXPECT_EQ(calls->name(), "calls");
  EXPECT_EQ(storedSubFilter(kHistory), "calls");
  EXPECT_TRUE(context->getProperty(kPersons).isEmpty());
  EXPECT_EQ(storedSubFilter(kPersons), "withemail") << "no filter leaves the stored one";
  EXPECT_EQ(context->getProperty(kDeals).rawObject(), contexts->GetProperty(kDeals).rawObject());
  EXPECT_EQ(storedSubFilter(kDeals), "") << "a given filter is not remembered";
  EXPECT_EQ(context->getProperty("Notes").rawObject(), nameless);
  EXPECT_EQ(storedSubFilter(kNotes), "Phone calls");

  // The next print offers the choices again.
  const auto next = source(manager("company", nullptr));
  EXPECT_EQ(rows(child<QTreeWidget>(*next, "LvwMappings")),
            QStringList({"Persons|With e-mail", "Deals|(no filter)", "History|Phone calls", "Notes|Phone calls"}));
}

TEST_F(PrintSourceTest, AReportOfOnePageHasAnEmptySecondTab) {
  report = std::make_shared<Report>();
  report->LoadContents(Variant());
  ASSERT_TRUE(report->Create(QStringLiteral("company")));
  openExplorer("company");
  const auto control = source(manager("company", nullptr));
  auto &tabs = child<QTabBar>(*control, "TabPrintSource");
  QTest::keyClick(&tabs, Qt::Key_Right);
  EXPECT_TRUE(child<QWidget>(*control, "FmePrint2").isVisible());
  EXPECT_FALSE(child<QWidget>(*control, "FmePrint1").isVisible());
  auto &list = child<QTreeWidget>(*control, "LvwMappings");
  EXPECT_EQ(list.topLevelItemCount(), 0);
  EXPECT_FALSE(child<QComboBox>(*control, "CboFilters2").isEnabled());
}

TEST_F(PrintSourceTest, BothTabsInEnglishAndSwedish) {
  for (const QString language : {"en", "sv"}) {
    StopTranslation();
    StartTranslation(language);
    reopenDatabase(databaseFile(), language);
    auto explorer = openExplorer("company");
    explorer->select({explorer->listedIds().front()});
    WriteReportSetting(kReportName, "SubFilters", kPersons, "withemail");
    QDialog dialog;
    auto *control = new PrintSource(&dialog);
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(control);
    dialog.resize(460, 280);
    control->Activate(report, manager("company", nullptr));
    dialog.show();
    QApplication::processEvents();
    auto &tabs = child<QTabBar>(*control, "TabPrintSource");
    if (language == "sv") {
      EXPECT_EQ(tabs.tabText(1), "Unders&idor");
      EXPECT_EQ(child<QRadioButton>(*control, "Opt1").text(), "Markerad&e poster (1)");
      EXPECT_EQ(control->NoFilterText(), "(inget urval)");
    }
    for (int tab = 0; tab < tabs.count(); ++tab) {
      tabs.setCurrentIndex(tab);
      QApplication::processEvents();
      auto &list = child<QTreeWidget>(*control, "LvwMappings");
      EXPECT_GE(list.columnWidth(0) + list.columnWidth(1), list.width() - 10) << "the columns share the width";
      for (QWidget *shown : control->findChildren<QWidget *>()) {
        if (!shown->objectName().isEmpty() && !shown->objectName().startsWith("qt_") && shown->isVisible()) {
          EXPECT_GE(shown->width(), shown->minimumSizeHint().width()) << shown->objectName().toStdString();
        }
      }
      const QString folder = qEnvironmentVariable("KORDEL_SCREENSHOT_DIR", dir.path());
      EXPECT_TRUE(dialog.grab().save(QStringLiteral("%1/print-source-%2-%3.png").arg(folder).arg(tab).arg(language)));
    }
  }
}

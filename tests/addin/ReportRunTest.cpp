// The report run against a demo database: a company page with a sub page
// of persons exported, previewed and printed through the report object;
// sub pages that follow their parent rows and hide when empty; stripes
// over page ends; one Extensions for the whole tree; and the failures a
// user meets.

#include "DemoFixture.h"
#include "LayoutSketch.h"
#include "WidgetTools.h"
#include "host/StoredRecord.h"
#include "support/CupsTestQueues.h"
#include "support/PdfTools.h"

#include "addin/CustomReport.h"
#include "core/Dictionary.h"
#include "data/Records.h"
#include "document/Page.h"
#include "document/Report.h"
#include "document/ReportFields.h"
#include "document/SortFields.h"
#include "common/Globals.h"
#include "common/Settings.h"
#include "engine/model/LayoutReport.h"
#include "engine/preview/PreviewWindow.h"
#include "engine/render/Page.h"
#include "engine/render/PageDocument.h"
#include "hostapi/Filters.h"
#include "hostapi/Layout.h"
#include "hostapi/Pool.h"
#include "hostapi/Printers.h"
#include "hostapi/Records.h"
#include "hostapi/ReportContext.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"
#include "runtime/ActiveDunderReport.h"
#include "runtime/Extensions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QThread>
#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using engine::SectionType;
using kordel::test::DemoHostedTest;
using kordel::test::LayoutSketch;

namespace {

const QString kPersons = QStringLiteral("{RUN-PERSONS}");
constexpr int kStripeColor = 0xE0E0E0; // &HBBGGRR, a light grey

QString pdfText(const QString &path) {
  QProcess tool;
  tool.start(QStringLiteral("pdftotext"), {path, QStringLiteral("-")});
  if (!tool.waitForFinished(60000) || tool.exitCode() != 0)
    return QStringLiteral("(pdftotext failed on %1)").arg(path);
  return QString::fromUtf8(tool.readAllStandardOutput());
}

// The lines of a text that are not empty, trimmed.
QStringList lines(const QString &text) {
  QStringList result;
  for (const QString &line : text.split(QRegularExpression(QStringLiteral("[\\n\\f]"))))
    if (!line.trimmed().isEmpty())
      result << line.trimmed();
  return result;
}

class ReportRunTest : public DemoHostedTest {
protected:
  void SetUp() override {
    DemoHostedTest::SetUp();
    report = std::make_shared<Report>();
    report->LoadContents(Variant());
    ASSERT_TRUE(report->Create("company"));
    report->SetName(QStringLiteral("Companies and persons"));
    ASSERT_TRUE(report->AddPage(kPersons, "Persons", "person", report->Guid(), Variant()));
    const auto top = report->Page();
    top->Fields()->Add("name", "name", "");
    top->SortFields()->Add("name", kSortAscending);
    const auto persons = report->LookupPage(kPersons);
    persons->Fields()->Add("lastname", "lastname", "");
    persons->SortFields()->Add("lastname", kSortAscending);
  }

  void setLayouts(const LayoutSketch &top, const LayoutSketch &persons) {
    report->Page()->SetLayoutTemplate(Variant(top.bytes()));
    report->LookupPage(kPersons)->SetLayoutTemplate(Variant(persons.bytes()));
  }

  // The companies' list window, the range a print without context uses.
  void openCompanyList() {
    const auto engine = std::dynamic_pointer_cast<nuvo::DatabaseObject>(app->database())->engine();
    app->explorerList().open(std::make_shared<nuvo::ExplorerObject>(engine, QStringLiteral("company")));
  }

  // A top layout with the company name and the persons below it.
  static LayoutSketch companiesWithPersons() {
    return std::move(LayoutSketch().section("Detail", SectionType::Detail, 600).field("name").subReport(kPersons, 600));
  }

  std::shared_ptr<hostapi::Pool> pool(const std::vector<int> &ids) {
    auto made = std::dynamic_pointer_cast<hostapi::Pool>(app->createObject("Nuvo.Pool"));
    for (int id : ids)
      made->add(id);
    return made;
  }
  std::shared_ptr<hostapi::ReportContext> context(const Variant &range) {
    auto made = std::dynamic_pointer_cast<hostapi::ReportContext>(app->createObject("Nuvo.ReportContext"));
    made->setContextClass(app->classes()->item("company"));
    made->setName(QStringLiteral("All companies"));
    made->setRange(range);
    return made;
  }
  std::shared_ptr<hostapi::ReportContext> allCompanies() {
    return context(Variant(ObjectRef(std::dynamic_pointer_cast<Object>(app->createObject("Nuvo.Filter")))));
  }
  // Texts of a field of a class's records, in the engine's order, under a
  // condition, asked of the engine directly.
  QStringList texts(const QString &cls, const QString &path, const QString &field = {}, const Variant &value = {}) {
    auto filter = std::dynamic_pointer_cast<hostapi::Filter>(app->createObject("Nuvo.Filter"));
    if (!field.isEmpty())
      filter->addCondition(field, value, hostapi::ConditionOp::Equal, 0);
    auto records = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("Nuvo.Records"));
    records->open(Variant(cls), filter, nullptr, 0);
    QStringList result;
    for (int i = 0; i < records->count(); ++i)
      result << records->at(i)->text(path);
    return result;
  }
  std::vector<int> companyIdsByName() {
    auto records = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("Nuvo.Records"));
    records->open(Variant(QStringLiteral("company")), nullptr, nullptr, 0);
    std::vector<std::pair<QString, int>> byName;
    for (int i = 0; i < records->count(); ++i)
      byName.emplace_back(records->at(i)->text("name").toLower(), records->at(i)->id());
    std::stable_sort(byName.begin(), byName.end());
    std::vector<int> ids;
    for (const auto &entry : byName)
      ids.push_back(entry.second);
    return ids;
  }

  bool exportTo(const QString &file, const std::shared_ptr<hostapi::ReportContext> &ctx) {
    ctx->setProperty(QStringLiteral("sysprop__exportfile"), file);
    bool result = false;
    customReport.RunReport(2, report, ctx, result);
    return result;
  }

  // A run driven directly, to look at the engine's pages afterwards.
  std::shared_ptr<engine::LayoutReport> runDirectly(const std::shared_ptr<hostapi::ReportContext> &ctx) {
    ctx->setProperty(QStringLiteral("sysprop__printerobject"),
                     Variant(app->createObject(QString::fromLatin1(hostapi::kLayoutPrinterProgId))));
    auto records = std::make_shared<Records>();
    records->OpenRecords(report->Page(), ctx, nullptr);
    auto extensions = std::make_shared<Extensions>();
    extensions->SetContext(ctx);
    run = ActiveDunderReport::create();
    run->SetPage(report->Page());
    run->SetRecords(records);
    run->SetExtensions(extensions);
    run->SetContext(ctx);
    run->LoadLayout(report->Page()->LayoutTemplate());
    run->layoutReport()->invoke(QStringLiteral("Run"), {false});
    return std::dynamic_pointer_cast<engine::LayoutReport>(run->layoutReport());
  }

  QStringList shownTexts() const {
    QStringList shown;
    for (const auto &box : ui->boxes)
      shown << box.text;
    return shown;
  }

  std::shared_ptr<Report> report;
  CustomReport customReport;
  std::shared_ptr<ActiveDunderReport> run;
};

TEST_F(ReportRunTest, EachCompanyIsFollowedByExactlyItsPersonsInTheirOrder) {
  setLayouts(companiesWithPersons(), LayoutSketch()
                                         .section("ReportHeader", SectionType::ReportHeader)
                                         .label("Persons:")
                                         .section("Detail", SectionType::Detail)
                                         .field("lastname", 600));
  const QString file = dir.file("companies.pdf");
  ASSERT_TRUE(exportTo(file, allCompanies())) << shownTexts().join('\n').toStdString();

  QStringList expected;
  for (int id : companyIdsByName()) {
    expected << texts("company", "name", "idcompany", id);
    QStringList persons = texts("person", "lastname", "company", id);
    std::stable_sort(persons.begin(), persons.end(),
                     [](const QString &a, const QString &b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
    if (!persons.isEmpty())
      expected << QStringLiteral("Persons:") << persons;
  }
  ASSERT_GE(expected.size(), 12);
  EXPECT_EQ(lines(pdfText(file)), expected);
}

TEST_F(ReportRunTest, AnEmptySubPageHidesOnlyWhenItsPageSaysSo) {
  setLayouts(companiesWithPersons(), LayoutSketch()
                                         .section("ReportHeader", SectionType::ReportHeader)
                                         .label("Persons:")
                                         .section("Detail", SectionType::Detail)
                                         .field("lastname", 600));
  const auto nobody = app->classes()->item("person")->filters()->lookup("nobody", hostapi::FilterLookup::ByName);
  ASSERT_TRUE(nobody);
  const int companies = int(companyIdsByName().size());

  const auto shown = allCompanies();
  shown->setProperty(kPersons, Variant(ObjectRef(nobody)));
  ASSERT_TRUE(exportTo(dir.file("shown.txt"), shown));
  EXPECT_EQ(QString::fromUtf8(test::readFile(dir.file("shown.txt"))).count(QStringLiteral("Persons:")), companies)
      << "without hiding, the header of the empty sub page prints under every company";

  report->LookupPage(kPersons)->SetHideEmptyPage(true);
  const auto hidden = allCompanies();
  hidden->setProperty(QStringLiteral("Persons"), Variant(ObjectRef(nobody))); // a sub filter by page name
  ASSERT_TRUE(exportTo(dir.file("hidden.txt"), hidden));
  const QString text = QString::fromUtf8(test::readFile(dir.file("hidden.txt")));
  EXPECT_FALSE(text.contains(QStringLiteral("Persons:")));
  EXPECT_TRUE(text.contains(texts("company", "name").first()));

  // In one run, hidden sections come back for every parent with children:
  // only the Swedish companies keep persons under this sub filter.
  const auto mixed = allCompanies();
  mixed->setProperty(
      kPersons,
      Variant(ObjectRef(app->classes()->item("person")->filters()->lookup("sweden", hostapi::FilterLookup::ByName))));
  ASSERT_TRUE(exportTo(dir.file("mixed.txt"), mixed));
  const QStringList swedish = texts("company", "name", "country", QStringLiteral("Sweden"));
  ASSERT_GT(swedish.size(), 0);
  ASSERT_LT(swedish.size(), companies);
  const QStringList rows = lines(QString::fromUtf8(test::readFile(dir.file("mixed.txt"))));
  int headed = 0;
  for (const QString &name : texts("company", "name")) {
    const qsizetype at = rows.indexOf(name);
    ASSERT_GE(at, 0) << name.toStdString();
    const bool shown = at + 1 < rows.size() && rows[at + 1] == QStringLiteral("Persons:");
    EXPECT_EQ(shown, swedish.contains(name)) << name.toStdString();
    headed += shown;
  }
  EXPECT_EQ(headed, swedish.size());
}

TEST_F(ReportRunTest, ASubPageInTheReportHeaderShowsTheFirstRowsChildren) {
  setLayouts(LayoutSketch()
                 .section("ReportHeader", SectionType::ReportHeader, 600)
                 .label("First company's persons:")
                 .subReport(kPersons, 0, 6000, 300)
                 .section("Detail", SectionType::Detail)
                 .field("name"),
             LayoutSketch().section("Detail", SectionType::Detail).field("lastname", 600));
  ASSERT_TRUE(exportTo(dir.file("header.pdf"), allCompanies())) << shownTexts().join('\n').toStdString();
  QStringList persons = texts("person", "lastname", "company", companyIdsByName().front());
  ASSERT_FALSE(persons.isEmpty());
  std::stable_sort(persons.begin(), persons.end(),
                   [](const QString &a, const QString &b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
  const QStringList printed = lines(pdfText(dir.file("header.pdf")));
  ASSERT_GT(printed.size(), persons.size());
  EXPECT_EQ(printed.mid(1, persons.size()), persons) << printed.join('\n').toStdString();
}

TEST_F(ReportRunTest, OneExtensionsServesTheTopPageAndItsSubPages) {
  setLayouts(
      LayoutSketch(companiesWithPersons())
          .reportScript(QStringLiteral("Sub Detail_Format\n"
                                       "  Extensions.Dictionary(\"company\") = Extensions.Dictionary(\"company\") + 1\n"
                                       "End Sub\n")),
      LayoutSketch()
          .section("Detail", SectionType::Detail)
          .field("lastname", 600)
          .label("", 4000)
          .sectionScript(QStringLiteral("Sub OnFormat\n"
                                        "  Label1.Caption = \"of company \" & Extensions.Dictionary(\"company\")\n"
                                        "End Sub\n")));
  ASSERT_TRUE(exportTo(dir.file("shared.txt"), allCompanies()));
  const QString text = QString::fromUtf8(test::readFile(dir.file("shared.txt")));
  const std::vector<int> ids = companyIdsByName();
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const int persons = int(texts("person", "lastname", "company", ids[i]).size());
    EXPECT_EQ(text.count(QStringLiteral("of company %1\n").arg(i + 1)) +
                  text.count(QStringLiteral("of company %1;").arg(i + 1)),
              persons)
        << "company " << i + 1 << "\n"
        << text.toStdString();
  }
}

// Rows striped by Detail_BeforePrint, read from the engine's pages: the
// background rectangles of the stripe colour against the rows' texts.
std::vector<std::vector<bool>> stripesByPage(const engine::PageDocument &pages) {
  std::vector<std::vector<bool>> result;
  for (int p = 0; p < pages.pageCount(); ++p) {
    const engine::Page &page = pages.page(p);
    std::set<engine::Twips> stripeTops;
    std::vector<bool> rows;
    for (const auto &item : page.items()) {
      if (const auto *rect = std::get_if<engine::RectItem>(&item);
          rect && rect->fill && qRed(*rect->fill) == 0xE0 && qBlue(*rect->fill) == 0xE0)
        stripeTops.insert(rect->box.y);
      if (const auto *run = std::get_if<engine::TextRun>(&item))
        rows.push_back(stripeTops.count(run->box.y) > 0);
    }
    result.push_back(rows);
  }
  return result;
}

TEST_F(ReportRunTest, StripesAlternateOverPageEndsOrStartEachPage) {
  // Tall rows: three a page.
  setLayouts(
      std::move(LayoutSketch().section("Detail", SectionType::Detail, 4000).field("name").backColor(kStripeColor)),
      LayoutSketch().section("Detail", SectionType::Detail).field("lastname"));
  report->Page()->SetStripeDetail(true);
  report->Page()->SetStripeFirst(false);
  auto layout = runDirectly(allCompanies());
  const auto running = stripesByPage(*layout->pages());
  ASSERT_GE(running.size(), 2u);
  std::vector<bool> all;
  for (const auto &page : running)
    all.insert(all.end(), page.begin(), page.end());
  ASSERT_EQ(all.size(), companyIdsByName().size());
  for (std::size_t i = 0; i < all.size(); ++i)
    EXPECT_EQ(all[i], i % 2 == 1) << "row " << i << ": without stripe-first the alternation runs over page ends";

  report->Page()->SetStripeFirst(true);
  layout = runDirectly(allCompanies());
  for (const auto &page : stripesByPage(*layout->pages()))
    for (std::size_t i = 0; i < page.size(); ++i)
      EXPECT_EQ(page[i], i % 2 == 0) << "row " << i << " of a page: stripe-first starts every page with a stripe";

  report->Page()->SetStripeDetail(false);
  layout = runDirectly(allCompanies());
  for (const auto &page : stripesByPage(*layout->pages()))
    for (bool striped : page)
      EXPECT_FALSE(striped) << "without stripes the layout's own back style stands";
}

TEST_F(ReportRunTest, ExportsByTheFileExtensionInAnyCase) {
  setLayouts(companiesWithPersons(), LayoutSketch().section("Detail", SectionType::Detail).field("lastname", 600));
  const QString firstCompany = texts("company", "name").first();

  EXPECT_TRUE(exportTo(dir.file("upper.PDF"), allCompanies()));
  EXPECT_TRUE(pdfText(dir.file("upper.PDF")).contains(firstCompany));

  // The HTML exporter takes a base name and a folder instead of a file.
  EXPECT_TRUE(exportTo(dir.file("web.htm"), allCompanies()));
  EXPECT_TRUE(QString::fromUtf8(test::readFile(dir.file("web.htm"))).contains(firstCompany.toHtmlEscaped()));

  EXPECT_FALSE(exportTo(dir.file("picture.jpg"), allCompanies())) << "an unknown extension exports nothing";
  EXPECT_FALSE(QFile::exists(dir.file("picture.jpg")));
  EXPECT_TRUE(ui->boxes.empty()) << shownTexts().join('\n').toStdString();

  const auto noFile = allCompanies();
  bool result = true;
  customReport.RunReport(2, report, noFile, result);
  EXPECT_FALSE(result) << "an export without a file name ends quietly with no result";
}

TEST_F(ReportRunTest, FailuresReachTheUserAndWriteNothing) {
  setLayouts(companiesWithPersons(), LayoutSketch().section("Detail", SectionType::Detail).field("lastname", 600));

  // A range without rows, on the road from a print call.
  const auto empty = context(Variant(ObjectRef(pool({}))));
  empty->setProperty(QStringLiteral("sysprop__exportfile"), dir.file("empty.pdf"));
  customReport.PrintLoadedReport(report, false, false, empty);
  EXPECT_FALSE(QFile::exists(dir.file("empty.pdf")));
  ASSERT_EQ(ui->boxes.size(), 1u);

  // A target folder that does not exist.
  EXPECT_FALSE(exportTo(dir.file("missing/out.pdf"), allCompanies()));
  ASSERT_EQ(ui->boxes.size(), 2u);
  EXPECT_TRUE(ui->boxes.back().text.contains(QStringLiteral("missing"))) << ui->boxes.back().text.toStdString();

  // A printer that is named but does not exist falls back to the default
  // printer; the report still runs.
  const auto named = allCompanies();
  named->setProperty(QStringLiteral("sysprop__printername"), QStringLiteral("No such printer"));
  EXPECT_TRUE(exportTo(dir.file("fallback.pdf"), named));
  EXPECT_TRUE(named->getProperty(QStringLiteral("sysprop__printerobject")).isObject());
}

} // namespace

namespace {

TEST_F(ReportRunTest, TheBandIsCutToThePaperOnlyWhenItReachesIt) {
  setLayouts(std::move(LayoutSketch().section("Detail", SectionType::Detail).field("name")),
             LayoutSketch().section("Detail", SectionType::Detail).field("lastname"));
  report->SetMarginLeft(1000);
  report->SetMarginRight(900);
  auto layout = runDirectly(allCompanies());
  const float paper = layout->printer()->get(QStringLiteral("PaperWidth")).toSingle();
  ASSERT_GT(paper, 5000);

  report->SetPrintWidth(std::int32_t(paper) - 1900 - 1);
  layout = runDirectly(allCompanies());
  EXPECT_FLOAT_EQ(layout->printWidth, 9360) << "a band that fits keeps the layout's width";

  report->SetPrintWidth(std::int32_t(paper) - 1900);
  layout = runDirectly(allCompanies());
  EXPECT_FLOAT_EQ(layout->printWidth, paper - 1900 - 10) << "a band that reaches the paper's edge is cut";
  EXPECT_FLOAT_EQ(layout->pageSettings()->leftMargin, 1000);
  EXPECT_FLOAT_EQ(layout->pageSettings()->rightMargin, 900);
}

} // namespace

namespace {

// The preview: its window shows the run's pages and the user prints from
// it; the last printed page closes it, and the run learns of the print
// through the settings.
TEST_F(ReportRunTest, APrintFromThePreviewClosesItAndCountsAsPrinted) {
  setLayouts(companiesWithPersons(), LayoutSketch().section("Detail", SectionType::Detail).field("lastname", 600));
  test::ScopedHome home(dir.file("home"));
  const QString printed = home.documentsFolder() + QStringLiteral("/Companies and persons.pdf");

  int shownPages = 0;
  bool closedByPrint = false;
  ui->modalHandler = [&](QWidget &window) {
    auto *preview = qobject_cast<engine::PreviewWindow *>(&window);
    ASSERT_TRUE(preview);
    shownPages = preview->pageCount();
    EXPECT_EQ(preview->windowTitle(), QStringLiteral("Companies and persons"));
    EXPECT_TRUE(preview->find(texts("company", "name").last()));
    preview->print();
    closedByPrint = !preview->isVisible();
  };
  const auto viaOwnPdfPrinter = allCompanies();
  viaOwnPdfPrinter->setProperty(QStringLiteral("sysprop__printername"),
                                QString::fromLatin1(hostapi::kBuiltInPdfPrinterName));
  bool result = false;
  customReport.RunReport(1, report, viaOwnPdfPrinter, result);
  EXPECT_TRUE(result) << shownTexts().join('\n').toStdString();
  EXPECT_GE(shownPages, 1);
  EXPECT_TRUE(closedByPrint);
  EXPECT_EQ(addin::ReadSetting(addin::kSettingsRoot, QStringLiteral("PrintProgress"), 0).toLong(), shownPages);
  EXPECT_TRUE(pdfText(printed).contains(texts("company", "name").first())) << printed.toStdString();

  // Closed without printing: nothing printed, and "0" is what the run finds.
  ui->modalHandler = [](QWidget &window) { window.close(); };
  customReport.RunReport(1, report, allCompanies(), result);
  EXPECT_FALSE(result);
  EXPECT_EQ(addin::ReadSetting(addin::kSettingsRoot, QStringLiteral("PrintProgress"), 9).toString(),
            QStringLiteral("0"));
}

TEST_F(ReportRunTest, PrintingAtOnceGoesToTheResolvedPrinterUnderTheReportsName) {
  setLayouts(companiesWithPersons(), LayoutSketch().section("Detail", SectionType::Detail).field("lastname", 600));
  test::ScopedHome home(dir.file("home"));
  const auto ctx = allCompanies();
  ctx->setProperty(QStringLiteral("sysprop__printername"), QString::fromLatin1(hostapi::kBuiltInPdfPrinterName));
  ctx->setProperty(QStringLiteral("sysprop__copies"), 1);
  bool result = false;
  customReport.RunReport(0, report, ctx, result);
  EXPECT_TRUE(result) << shownTexts().join('\n').toStdString();
  const QString printed = home.documentsFolder() + QStringLiteral("/Companies and persons.pdf");
  EXPECT_TRUE(pdfText(printed).contains(texts("company", "name").first())) << printed.toStdString();

  // A second print of the same report keeps the first file.
  customReport.RunReport(0, report, allCompanies(), result);
  EXPECT_TRUE(QFile::exists(home.documentsFolder() + QStringLiteral("/Companies and persons (2).pdf")));
}

// The window place the run keeps: maximised unless a normal place was
// stored, which the next run restores.
TEST_F(ReportRunTest, ThePreviewWindowKeepsItsPlaceInTheSettings) {
  setLayouts(std::move(LayoutSketch().section("Detail", SectionType::Detail).field("name")),
             LayoutSketch().section("Detail", SectionType::Detail).field("lastname"));
  const QString key = addin::kSettingsRoot + QStringLiteral("\\ReportWindow");
  QRect seen;
  bool maximised = false;
  ui->modalHandler = [&](QWidget &window) {
    maximised = window.isMaximized() || window.windowState().testFlag(Qt::WindowMaximized);
    seen = window.geometry();
    window.close();
  };
  bool result = false;
  customReport.RunReport(1, report, allCompanies(), result);
  EXPECT_TRUE(maximised) << "no stored place: the window opens maximised";

  addin::WriteSetting(key, QStringLiteral("WindowState"), QStringLiteral("0"));
  addin::WriteSetting(key, QStringLiteral("Left"), QStringLiteral("1500"));
  addin::WriteSetting(key, QStringLiteral("Top"), QStringLiteral("1200"));
  addin::WriteSetting(key, QStringLiteral("Width"), QStringLiteral("9000"));
  addin::WriteSetting(key, QStringLiteral("Height"), QStringLiteral("7500"));
  customReport.RunReport(1, report, allCompanies(), result);
  EXPECT_FALSE(maximised);
  EXPECT_EQ(seen.width(), 9000 / 15) << "twips at 96 dots an inch";
  EXPECT_EQ(addin::ReadSetting(key, QStringLiteral("WindowState"), 2).toLong(), 0);
  EXPECT_NEAR(addin::ReadSetting(key, QStringLiteral("Width"), 0).toDouble(), 9000, 15);
}

} // namespace

namespace {

// The road from a print call: the user is asked (in the print dialog)
// only when the call or the context leaves something open; a preview
// wins over an export file.
TEST_F(ReportRunTest, ThePrintRoadAsksOnlyWhenSomethingIsOpen) {
  setLayouts(companiesWithPersons(), LayoutSketch().section("Detail", SectionType::Detail).field("lastname", 600));
  const QString firstCompany = texts("company", "name").first();

  customReport.PrintLoadedReport(report, false, false, nullptr);
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_TRUE(ui->boxes.back().text.contains(QStringLiteral("101003")))
      << "no context and no list window of the class: nothing to print";

  // With the class's list window open, a print without a context asks
  // for the rows and the printer; print to file writes what was chosen.
  openCompanyList();
  QStringList dialogs;
  int previews = 0;
  std::function<void(QWidget &)> onDialog;
  ui->modalHandler = [&](QWidget &window) {
    if (window.objectName() == QStringLiteral("DlgPageSetup")) {
      dialogs << window.objectName();
      onDialog(window);
    } else {
      ++previews;
    }
    window.close();
  };
  host::StoredRecord record;
  record.WriteProperty("guid", report->Guid());
  record.WriteProperty("C", "company");
  record.WriteProperty("name", report->Name());
  record.WriteProperty("category", "");
  record.WriteProperty("contents", report->SaveContents());
  customReport.Class_ReadProperties(record);
  onDialog = [&](QWidget &window) {
    auto &printers = test::child<QComboBox>(window, "CbPrinter");
    printers.setCurrentIndex(printers.findText(QString::fromLatin1(hostapi::kBuiltInPdfPrinterName)));
    test::child<QCheckBox>(window, "ChkPrintToFile").setChecked(true);
    ui->fileAnswers.push_back(dir.file("chosen.pdf"));
    test::child<QPushButton>(window, "CmdPrint").click();
  };
  customReport.IReport_PrintOut(false, nullptr);
  EXPECT_EQ(dialogs.size(), 1);
  EXPECT_TRUE(pdfText(dir.file("chosen.pdf")).contains(firstCompany)) << shownTexts().join('\n').toStdString();

  // A call that asks for the dialog gets it even with a complete context;
  // a preview from the dialog ignores the context's export file.
  const auto exportContext = allCompanies();
  exportContext->setProperty(QStringLiteral("sysprop__exportfile"), dir.file("road.pdf"));
  onDialog = [&](QWidget &window) { test::child<QPushButton>(window, "CmdPreview").click(); };
  customReport.PrintLoadedReport(report, false, true, exportContext);
  EXPECT_EQ(dialogs.size(), 2);
  EXPECT_EQ(previews, 1);
  EXPECT_FALSE(QFile::exists(dir.file("road.pdf")));

  customReport.PrintLoadedReport(report, true, false, exportContext);
  EXPECT_EQ(previews, 2);
  EXPECT_FALSE(QFile::exists(dir.file("road.pdf"))) << "a preview ignores the export file";

  customReport.PrintLoadedReport(report, false, false, exportContext);
  EXPECT_EQ(dialogs.size(), 2) << "nothing left open: no dialog";
  EXPECT_TRUE(pdfText(dir.file("road.pdf")).contains(firstCompany));
  EXPECT_EQ(ui->boxes.size(), 1u) << shownTexts().join('\n').toStdString();
}

// A print chosen in the dialog reaches a real print queue.
TEST_F(ReportRunTest, APrintFromTheDialogReachesThePrintQueue) {
  if (!test::pdfToolsAvailable())
    GTEST_SKIP() << "pdftotext is needed";
  test::TestPrintServer server(dir);
  if (!server.running())
    GTEST_SKIP() << "no print server for the test: " << server.failure().toStdString();
  if (const QString why = server.addPdfPrinterQueue(QStringLiteral("kordel_dialog")); !why.isEmpty())
    GTEST_SKIP() << why.toStdString();
  setLayouts(companiesWithPersons(), LayoutSketch().section("Detail", SectionType::Detail).field("lastname", 600));
  openCompanyList();
  const test::PdfPrinterOutput output(report->Name());

  bool closedByTheRun = false;
  ui->modalHandler = [&](QWidget &window) {
    auto &printers = test::child<QComboBox>(window, "CbPrinter");
    printers.setCurrentIndex(printers.findText(QStringLiteral("kordel_dialog")));
    test::child<QLineEdit>(window, "TxtCopies").setText(QStringLiteral("2"));
    test::child<QRadioButton>(window, "Opt2").setChecked(true);
    test::child<QPushButton>(window, "CmdPrint").click();
    closedByTheRun = static_cast<QDialog &>(window).result() == QDialog::Accepted;
  };
  customReport.PrintLoadedReport(report, false, false, nullptr);
  EXPECT_TRUE(closedByTheRun) << shownTexts().join('\n').toStdString();

  const QString pdf = output.waitForFile();
  ASSERT_FALSE(pdf.isEmpty()) << server.errorLog().toStdString();
  const QString text = pdfText(pdf);
  QFile::remove(pdf);
  EXPECT_TRUE(text.contains(texts("company", "name").first())) << text.toStdString();
  EXPECT_EQ(ReadReportSetting(report->Name(), QStringLiteral("PageSetup"), QStringLiteral("DeviceName"), QString())
                .toString(),
            QStringLiteral("kordel_dialog"));
}

} // namespace

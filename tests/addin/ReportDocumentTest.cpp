#include "DemoFixture.h"
#include "LayoutSketch.h"

#include "common/ApplicationManager.h"
#include "document/Page.h"
#include "document/Pages.h"
#include "document/PropertyStorage.h"
#include "document/Report.h"
#include "document/ReportFields.h"
#include "document/SortFields.h"
#include "document/StringCollection.h"
#include "engine/format/LayoutFormat.h"
#include "engine/model/LayoutReport.h"
#include "support/ErrorCapture.h"
#include "support/TempDir.h"

using namespace kordel;
using namespace kordel::addin;
using kordel::test::DemoHostedTest;
using kordel::test::errorOf;

namespace {

std::shared_ptr<Report> newReport(const QString &source) {
  auto report = std::make_shared<Report>();
  report->LoadContents(Variant());
  EXPECT_TRUE(report->IsNew());
  EXPECT_TRUE(report->Create(source));
  return report;
}

std::shared_ptr<Report> reload(const Variant &contents) {
  auto report = std::make_shared<Report>();
  report->LoadContents(contents);
  return report;
}

QByteArray layoutWithScript(const QString &script) {
  return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Layout>\n  <Section Name=\"Detail\">\n"
                        "    <Script><![CDATA[%1]]></Script>\n  </Section>\n</Layout>\n")
      .arg(script)
      .toUtf8();
}

} // namespace

using ReportDocumentTest = DemoHostedTest;

TEST_F(ReportDocumentTest, ANewReportReadsItsDefaults) {
  Report report;
  report.LoadContents(Variant());
  EXPECT_TRUE(report.IsNew());
  EXPECT_EQ(report.MarginLeft(), 1134);
  EXPECT_EQ(report.MarginBottom(), 1134);
  EXPECT_EQ(report.Orientation(), 1);
  EXPECT_EQ(report.PrintWidth(), 0);
  EXPECT_EQ(report.PaperSize(), 9);
  EXPECT_EQ(report.ScriptLanguage(), "VBScript");
  EXPECT_EQ(report.PageCount(), 0);

  report.SetPrintWidth(5000);
  EXPECT_EQ(report.PaperSize(), -1); // a width without a paper size is custom paper
  report.SetPaperSize(-1);
  report.SetPrintWidth(0);
  EXPECT_EQ(report.PaperSize(), -1);
  report.SetScriptLanguage("JSCRIPT");
  EXPECT_EQ(report.ScriptLanguage(), "JSCRIPT");
  report.SetScriptLanguage("Python");
  EXPECT_EQ(report.ScriptLanguage(), "VBScript");
}

TEST_F(ReportDocumentTest, ATreeOfPagesSurvivesTheHostContents) {
  auto report = newReport("company");
  EXPECT_FALSE(report->IsNew());
  const QString topGuid = report->Guid();
  EXPECT_TRUE(topGuid.startsWith(u'{'));
  EXPECT_EQ(report->Page()->Name(), "Company");
  EXPECT_EQ(report->Class()->name(), "company");
  EXPECT_EQ(report->CreatedBy(), "Anna Lindqvist");
  EXPECT_FALSE(report->Page()->Edited());

  const QString hostile = QString::fromUtf8("Kunder & partner \"A\" <2026>\r\nÅsa's Žluťoučký");
  report->SetName(hostile);
  report->SetMarginTop(567);
  ASSERT_TRUE(report->AddPage("{PERSONS}", "Persons", "person", topGuid, Variant()));
  ASSERT_TRUE(report->AddPage("{HISTORY}", "History", "person.history", "{PERSONS}", Variant()));
  auto top = report->Page();
  top->Fields()->Add("name", "name", "");
  top->Fields()->Add("vbscript:[city] & \"!\"", "[city] & \"!\"", "-");
  top->SortFields()->Add("name", kSortDescending);
  top->SetLayoutTemplate(layoutWithScript("Sub Detail_Format\nEnd Sub"));
  top->SetHideEmptyPage(true);
  EXPECT_EQ(report->LookupPage("{HISTORY}")->Parent()->Guid(), "{PERSONS}");
  EXPECT_EQ(report->LookupPage("{PERSONS}")->Class()->name(), "person");
  EXPECT_TRUE(report->Modified());

  const Variant contents = report->SaveContents();
  ASSERT_TRUE(contents.isByteArray());
  EXPECT_FALSE(report->Storage()->Modified());

  auto loaded = reload(contents);
  EXPECT_EQ(loaded->Name(), hostile);
  EXPECT_EQ(loaded->MarginTop(), 567);
  EXPECT_EQ(loaded->Guid(), topGuid);
  EXPECT_EQ(loaded->PageCount(), 3);
  EXPECT_TRUE(loaded->PageExists("{HISTORY}"));
  auto page = loaded->Page();
  EXPECT_FALSE(page->Modified());
  EXPECT_TRUE(page->HideEmptyPage());
  ASSERT_EQ(page->Fields()->Count(), 2);
  EXPECT_EQ(page->Fields()->Item(2)->Expression, "[city] & \"!\"");
  EXPECT_EQ(page->Fields()->Item(2)->DefaultValue, "-");
  EXPECT_EQ(page->SortFields()->SortField("name")->SortOrder, kSortDescending);
  ASSERT_EQ(page->Pages()->Count(), 1);
  EXPECT_EQ(page->Pages()->Item(1)->Pages()->Item(1)->Source(), "person.history");
  EXPECT_EQ(loaded->LookupPage("{HISTORY}")->Class()->name(), "history");
  EXPECT_EQ(page->LayoutTemplate().toBytes(), layoutWithScript("Sub Detail_Format\nEnd Sub"));
  EXPECT_FALSE(page->IsNew());
  EXPECT_TRUE(loaded->IsValid());
}

TEST_F(ReportDocumentTest, CreateOnAnUnknownClassReportsAndKeepsWhatItWrote) {
  auto report = std::make_shared<Report>();
  report->LoadContents(Variant());
  EXPECT_FALSE(report->Create("spaceship"));
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_TRUE(ui->boxes[0].text.contains("Report.Create"));
  EXPECT_EQ(report->Storage()->GetSetting("settings", "source"), "spaceship");
  EXPECT_FALSE(report->Storage()->GetSetting("system", "createdtime").isEmpty());
  EXPECT_TRUE(report->IsNew());
}

TEST_F(ReportDocumentTest, ValidationNamesTheFirstProblem) {
  auto report = newReport("company");
  auto top = report->Page();
  top->Fields()->Add("VBSCRIPT:anything", "not a field at all", "");
  EXPECT_TRUE(report->IsValid());
  top->Fields()->Add("nosuchfield", "nosuchfield", "");
  const Error error = errorOf([&] { report->Validate(); });
  EXPECT_EQ(error.number(), ErrorNumber::UserMessage);
  EXPECT_EQ(error.description(), "The report uses fields that do not exist in this database.");
  EXPECT_FALSE(report->IsValid());

  report->Storage()->PutSetting("settings", "source", "gone");
  EXPECT_EQ(errorOf([&] { report->Validate(); }).description(), "The report's class does not exist in this database.");
  EXPECT_TRUE(ui->boxes.empty()); // validation reports nothing itself
}

TEST_F(ReportDocumentTest, LayoutsPassTheScriptCheckOnEveryRead) {
  auto report = newReport("company");
  auto page = report->Page();
  EXPECT_TRUE(page->IsNew());
  EXPECT_TRUE(page->LayoutTemplate().isEmpty());

  const QByteArray safe = layoutWithScript("Sub Detail_Format\n  Extensions.Timestamp(\"yyyy\")\nEnd Sub");
  page->SetLayoutTemplate(safe);
  EXPECT_EQ(page->LayoutTemplate().toBytes(), safe);

  const QByteArray unsafe = layoutWithScript("Set shell = CreateObject(\"WScript.Shell\")");
  page->SetLayoutTemplate(unsafe);
  const QByteArray checked = page->LayoutTemplate().toBytes();
  EXPECT_NE(checked, unsafe);
  EXPECT_FALSE(checked.contains("WScript.Shell\")"));
  EXPECT_TRUE(checked.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Layout>\n  <Section Name=\"Detail\">"));
  // The store keeps what the designer wrote.
  EXPECT_EQ(report->Storage()->GetResource(page->Guid()).toBytes(), unsafe);

  // Two equal blocked scripts: the first pass replaces both, the second
  // finds nothing left to replace and refuses the layout.
  QByteArray twice = unsafe;
  twice.replace("</Layout>", "  <Section Name=\"Footer\"><Script><![CDATA[Set shell = "
                             "CreateObject(\"WScript.Shell\")]]></Script></Section>\n</Layout>");
  page->SetLayoutTemplate(twice);
  const Error error = errorOf([&] { page->LayoutTemplate(); });
  EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  EXPECT_EQ(error.source(), "Failed to block unsafe script.");

  page->SetLayoutTemplate(QByteArray("not xml at all: CreateObject(\"WScript.Shell\")"));
  EXPECT_EQ(page->LayoutTemplate().toBytes(), QByteArray("not xml at all: CreateObject(\"WScript.Shell\")"));
}

TEST_F(ReportDocumentTest, EveryScriptTheEngineWritesReachesTheCheckWhole) {
  // Windows line ends, a bare CR and "]]>" once split a script into pieces
  // of which only the first was checked, while the engine ran them all.
  const QString report =
      QStringLiteral("' ]]> \r\nSub OnReportStart\r\nEnd Sub\rSet sh = CreateObject(\"WScript.Shell\")");
  const QString detail = QStringLiteral("Sub Detail_Format\r\n  x = 1\r\nEnd Sub\r\nExecute \"sh.Run \"\"sh\"\"\"\r\n");
  const QByteArray layout = test::LayoutSketch()
                                .reportScript(report)
                                .section(QStringLiteral("Detail"), engine::SectionType::Detail)
                                .sectionScript(detail)
                                .bytes();
  auto page = newReport("company")->Page();
  page->SetLayoutTemplate(layout);
  const auto loaded = engine::LayoutReport::create();
  engine::loadLayout(*loaded, page->LayoutTemplate().toBytes());
  EXPECT_EQ(loaded->script, QString(report).replace("CreateObject(\"WScript.Shell\")", "Nothing"));
  EXPECT_EQ(loaded->detail()->script, QString(detail).replace("Execute \"sh.Run \"\"sh\"\"\"", "Err.Raise 70"));
}

TEST_F(ReportDocumentTest, APageTreeThatIsNoTreeIsRefusedNamingThePage) {
  // Documents whose sub pages lead back up the tree once overflowed the
  // stack of every load: a top page listing itself, a sub page listing its
  // parent, and the first again with the store's namespace prefix.
  for (const char *finding : {"page-cycle-self.xml", "page-cycle-parent.xml", "page-cycle-mutant.xml"}) {
    const QByteArray contents = test::readFile(QStringLiteral(KORDEL_FINDINGS_DIR "/") + QLatin1String(finding));
    ASSERT_FALSE(contents.isEmpty()) << finding;
    const auto report = std::make_shared<Report>();
    const Error error = errorOf([&] { report->LoadContents(Variant(contents)); });
    EXPECT_EQ(error.number(), ErrorNumber::InvalidFileFormat) << finding;
    EXPECT_EQ(error.description(),
              "The report document is damaged: the page \"Companies\" ({E3336E1B-CB9C-4A34-A0F2-3A3BB22CAC49}) is "
              "listed as a sub page of itself or of a page below it.")
        << finding;
  }

  // A page listed under two pages, and a tree deeper than pages may nest,
  // written into a document the way a hand or another program could.
  auto report = newReport("company");
  QString parent = report->Guid();
  for (int level = 2; level <= kMaxPageDepth; ++level) {
    const QString guid = QStringLiteral("{LEVEL-%1}").arg(level);
    ASSERT_TRUE(report->AddPage(guid, QStringLiteral("Level %1").arg(level), "person", parent, Variant()));
    parent = guid;
  }
  EXPECT_FALSE(report->AddPage("{TOO-DEEP}", "Level 33", "person", parent, Variant()));
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_TRUE(ui->boxes[0].text.contains("Pages nest at most 32 levels deep")) << ui->boxes[0].text.toStdString();
  EXPECT_FALSE(report->LookupPage("{TOO-DEEP}"));
  const Variant deepest = report->SaveContents();
  EXPECT_EQ(reload(deepest)->LookupPage(parent)->Name(), "Level 32");

  const test::TempDir dir;
  const auto refusal = [&](const std::function<void(PropertyStorage &)> &damage) {
    auto damaged = reload(deepest);
    damage(*damaged->Storage());
    damaged->Storage()->Save(dir.file("damaged.xml"));
    const auto again = std::make_shared<Report>();
    return errorOf([&] { again->LoadContents(Variant(test::readFile(dir.file("damaged.xml")))); });
  };
  const Error twice = refusal(
      [](PropertyStorage &store) { store.PutSetting(QStringLiteral("pages\\{LEVEL-3}\\subpages"), "2", "{LEVEL-5}"); });
  EXPECT_EQ(twice.number(), ErrorNumber::InvalidFileFormat);
  EXPECT_TRUE(twice.description().contains("\"Level 5\" ({LEVEL-5}) is listed as a sub page more than once"))
      << twice.description().toStdString();
  const Error deep = refusal([&](PropertyStorage &store) {
    store.PutSetting(QStringLiteral("pages\\%1\\subpages").arg(parent), "1", "{TOO-DEEP}");
    store.PutSetting(QStringLiteral("pages\\{TOO-DEEP}"), "name", "Level 33");
  });
  EXPECT_EQ(deep.number(), ErrorNumber::InvalidFileFormat);
  EXPECT_TRUE(deep.description().contains("more than 32 levels deep at the page \"Level 33\" ({TOO-DEEP})"))
      << deep.description().toStdString();
}

TEST_F(ReportDocumentTest, PagePropertiesKeepTheirOddReadRules) {
  auto report = newReport("company");
  ASSERT_TRUE(report->AddPage("{SUB}", "Persons", "person", report->Guid(), Variant()));
  auto top = report->Page();
  auto sub = report->LookupPage("{SUB}");
  report->SetPrintWidth(9000);
  EXPECT_EQ(top->Width(), 9000);
  EXPECT_EQ(sub->Width(), 0);
  top->SetWidth(7000);
  EXPECT_EQ(report->PrintWidth(), 7000);

  PropertyStorage &store = *report->Storage();
  const QString section = "pages\\" + top->Guid();
  store.PutSetting(section, "hideemptypage", "yes");
  EXPECT_TRUE(top->HideEmptyPage());
  store.PutSetting(section, "edited", "2");
  EXPECT_TRUE(top->Edited());
  store.PutSetting(section, "edited", "no");
  EXPECT_EQ(errorOf([&] { top->Edited(); }).number(), ErrorNumber::TypeMismatch);
  EXPECT_NE(errorOf([&] { report->GetPageByIndex(1); }).number(), 0);
}

TEST_F(ReportDocumentTest, DeletingAPageWithTwoSubPagesStopsHalfway) {
  auto report = newReport("company");
  const QString top = report->Guid();
  ASSERT_TRUE(report->AddPage("{ONE}", "Persons", "person", top, Variant()));
  ASSERT_TRUE(report->AddPage("{ONE-A}", "History", "person.history", "{ONE}", Variant()));
  ASSERT_TRUE(report->AddPage("{TWO}", "Deals", "deal", top, Variant()));
  ASSERT_TRUE(report->AddPage("{TWO-A}", "History", "deal.history", "{TWO}", Variant()));
  ASSERT_TRUE(report->AddPage("{TWO-B}", "Persons", "deal.person", "{TWO}", Variant()));

  report->LookupPage("{ONE}")->Delete(); // one sub page: all goes
  EXPECT_FALSE(report->PageExists("{ONE}"));
  EXPECT_FALSE(report->PageExists("{ONE-A}"));
  EXPECT_EQ(report->Page()->Pages()->Count(), 1);
  EXPECT_TRUE(ui->boxes.empty());

  report->LookupPage("{TWO}")->Delete(); // two: the walk runs past the end
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_TRUE(ui->boxes[0].text.contains("Page.Delete"));
  EXPECT_TRUE(report->PageExists("{TWO}"));
  EXPECT_EQ(report->Page()->Pages()->Count(), 1);

  report->Page()->Delete(); // the top page has no parent to leave
  EXPECT_EQ(ui->boxes.size(), 2u);
  EXPECT_FALSE(report->PageExists(top));
}

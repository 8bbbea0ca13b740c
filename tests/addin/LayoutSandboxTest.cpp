// Hostile layout scripts, in both languages and in every place a layout
// script stands (the report's script, a section's script, a sub page's
// script and a field expression), run by the add-in over the demo data as a
// user's report runs. Each attempt to reach beyond the report is refused
// with "Permission denied" and leaves nothing behind; runaway and greedy
// scripts are stopped by the run's one budget; re-entering the run is
// refused at once; and the process lives on.
//
// The top page's layout is loaded as it stands, past the text filter that a
// stored report's layouts go through, because the guard that holds is the
// run time's: a script the filter misses must do no harm either. (A sub
// page's layout is read through the filter.)

#include "DemoFixture.h"
#include "LayoutSketch.h"

#include "addin/CustomReport.h"
#include "data/Records.h"
#include "document/Page.h"
#include "document/Report.h"
#include "document/ReportFields.h"
#include "engine/model/LayoutReport.h"
#include "engine/run/RunSettings.h"
#include "hostapi/Layout.h"
#include "hostapi/Records.h"
#include "hostapi/ReportContext.h"
#include "runtime/ActiveDunderReport.h"
#include "runtime/Extensions.h"

#include "core/Error.h"
#include "core/ScriptRights.h"
#include "support/ErrorCapture.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using engine::SectionType;
using kordel::test::DemoHostedTest;
using kordel::test::LayoutSketch;

namespace {

const QString kPersons = QStringLiteral("{SANDBOX-PERSONS}");

enum class Place { ReportScript, SectionScript, SubPageScript, FieldExpression };

struct Attempt {
  const char *what;
  Place place;
  const char *language;
  // A statement, or an expression for a field expression; %1 is a file in
  // the test's folder that must not come to exist.
  const char *code;
};

// The code as its place holds it: inside an event procedure, or as a field.
LayoutSketch layoutWith(Place place, const QString &language, const QString &code, bool topLayout) {
  const bool js = language == QLatin1String("JScript");
  const auto procedure = [&](const QString &name) {
    return js ? QStringLiteral("function %1() {\n%2;\n}\n").arg(name, code)
              : QStringLiteral("Sub %1()\n%2\nEnd Sub\n").arg(name, code);
  };
  LayoutSketch layout;
  layout.section("Detail", SectionType::Detail, 600).field(topLayout ? "name" : "lastname");
  if (topLayout)
    layout.subReport(kPersons, 600);
  if (place == Place::SectionScript && topLayout)
    layout.sectionScript(procedure(QStringLiteral("OnFormat")));
  if (place == Place::FieldExpression && topLayout)
    layout.field(QLatin1Char('=') + code, 3000);
  const bool scriptHere = (place == Place::ReportScript && topLayout) || (place == Place::SubPageScript && !topLayout);
  layout.reportScript(scriptHere ? procedure(QStringLiteral("ActiveReport_ReportStart")) : QString(), language);
  return layout;
}

class LayoutSandboxTest : public DemoHostedTest {
protected:
  void SetUp() override {
    DemoHostedTest::SetUp();
    savedLimits = engine::runSettings().scriptLimits;
    report = std::make_shared<Report>();
    report->LoadContents(Variant());
    ASSERT_TRUE(report->Create("company"));
    report->SetName(QStringLiteral("Sandbox"));
    ASSERT_TRUE(report->AddPage(kPersons, "Persons", "person", report->Guid(), Variant()));
    report->Page()->Fields()->Add("name", "name", "");
    report->LookupPage(kPersons)->Fields()->Add("lastname", "lastname", "");
  }
  void TearDown() override {
    engine::runSettings().scriptLimits = savedLimits;
    run.reset();
    DemoHostedTest::TearDown();
  }

  std::shared_ptr<hostapi::ReportContext> allCompanies() {
    auto context = std::dynamic_pointer_cast<hostapi::ReportContext>(app->createObject("Nuvo.ReportContext"));
    context->setContextClass(app->classes()->item("company"));
    context->setName(QStringLiteral("All companies"));
    context->setRange(Variant(ObjectRef(std::dynamic_pointer_cast<Object>(app->createObject("Nuvo.Filter")))));
    context->setProperty(QStringLiteral("sysprop__printerobject"),
                         Variant(app->createObject(QString::fromLatin1(hostapi::kLayoutPrinterProgId))));
    return context;
  }

  // Runs the report with the top layout as given, past the text filter, as
  // the add-in's run-time objects run it. Returns the error that ended the
  // run; the problems are in the engine report's run errors.
  std::optional<Error> runDirectly(const LayoutSketch &top, const LayoutSketch &persons, const QString &language) {
    report->SetScriptLanguage(language);
    report->LookupPage(kPersons)->SetLayoutTemplate(Variant(persons.bytes()));
    const auto context = allCompanies();
    auto records = std::make_shared<Records>();
    records->OpenRecords(report->Page(), context, nullptr);
    auto extensions = std::make_shared<Extensions>();
    extensions->SetContext(context);
    run = ActiveDunderReport::create();
    run->SetPage(report->Page());
    run->SetRecords(records);
    run->SetExtensions(extensions);
    run->SetContext(context);
    run->LoadLayout(Variant(top.bytes()));
    try {
      run->layoutReport()->invoke(QStringLiteral("Run"), {false});
    } catch (...) {
      return pendingError();
    }
    return std::nullopt;
  }

  std::optional<Error> attempt(const Attempt &a) {
    const QString language = QString::fromLatin1(a.language);
    const QString code = QString::fromLatin1(a.code).arg(forbiddenFile());
    return runDirectly(layoutWith(a.place, language, code, true), layoutWith(a.place, language, code, false), language);
  }

  QStringList problems() const {
    return std::dynamic_pointer_cast<engine::LayoutReport>(run->layoutReport())->runErrors();
  }
  int pageCount() const {
    return run->layoutReport()->get(QStringLiteral("Pages")).toObject()->get(QStringLiteral("Count")).toLong();
  }
  QString forbiddenFile() const { return dir.file("written-by-a-layout-script"); }

  std::shared_ptr<Report> report;
  std::shared_ptr<ActiveDunderReport> run;
  script::RunBudget::Limits savedLimits;
};

// Every place and language, with what a report may never do.
const Attempt kEscapes[] = {
    {"a layout saved to a file", Place::ReportScript, "VBScript", "rpt.SaveLayout \"%1\", 2"},
    {"a layout saved to a file", Place::SectionScript, "JScript", "rpt.SaveLayout(\"%1\", 2)"},
    {"a layout saved to a file", Place::SubPageScript, "VBScript", "rpt.SaveLayout \"%1\", 2"},
    {"a layout saved to a file", Place::FieldExpression, "VBScript", "rpt.SaveLayout(\"%1\", 2)"},
    {"a layout saved to a file", Place::FieldExpression, "JScript", "rpt.SaveLayout(\"%1\", 2)"},
    {"a host object made", Place::ReportScript, "VBScript", "Set t = CreateObject(\"Orvex.HostTools\")"},
    {"an exporter made", Place::SectionScript, "JScript",
     "var x = new ActiveXObject(\"DDActiveReports2.PDFExport\"); x.FileName = \"%1\"; x.Export(rpt.Pages)"},
    {"a host object made through the host", Place::SectionScript, "JScript",
     "Extensions.Application.CreateObject(\"Orvex.Registry\")"},
    {"a forged log entry", Place::SubPageScript, "JScript", "Extensions.Application.ApplicationLog.LogEvent(\"%1\")"},
    {"a host object made through the host", Place::FieldExpression, "VBScript",
     "Extensions.Application.CreateObject(\"Nuvo.File\")"},
    {"a forged log entry", Place::SectionScript, "VBScript", "Extensions.Application.ApplicationLog.LogEvent \"%1\""},
    {"a report factory registered", Place::ReportScript, "JScript",
     "Extensions.Application.RegisterReportFactory(\"%1\")"},
    {"code from a string", Place::ReportScript, "VBScript", "rpt.Script = \"Sub X()\" & vbCrLf & \"End Sub\""},
    {"the run started again", Place::SectionScript, "VBScript", "rpt.Run"},
    {"the run started again", Place::SubPageScript, "JScript", "rpt.Run()"},
    {"the layout replaced while it formats", Place::SectionScript, "VBScript",
     "rpt.LoadLayout rpt.SaveLayout(\"\", 2)"},
    {"the event sink cut off", Place::ReportScript, "VBScript", "Set rpt.EventSink = Nothing"},
    {"the printer chosen", Place::SectionScript, "JScript", "rpt.Printer.DeviceName = \"%1\""},
    {"pages printed", Place::ReportScript, "VBScript", "rpt.PrintReport False"},
    {"a sub report replaced", Place::ReportScript, "VBScript", "Set rpt.Sections(0).Controls(1).Report = Nothing"},
};

TEST_F(LayoutSandboxTest, ScriptsThatReachBeyondTheReportAreRefusedWherevertheyStand) {
  const int logLinesBefore = int(logLines().size());
  for (const Attempt &a : kEscapes) {
    SCOPED_TRACE(QStringLiteral("%1 in %2 (place %3)").arg(a.what, a.language).arg(int(a.place)).toStdString());
    const auto ended = attempt(a);
    ASSERT_FALSE(ended) << ended->description().toStdString();
    const QStringList seen = problems();
    ASSERT_FALSE(seen.isEmpty());
    EXPECT_TRUE(seen.first().contains(QStringLiteral("Permission denied")) && seen.first().contains("(70)"))
        << seen.first().toStdString();
    // The run went on to the end.
    EXPECT_GE(pageCount(), 1);
    EXPECT_FALSE(QFile::exists(forbiddenFile()));
  }
  for (const QString &line : logLines().mid(logLinesBefore))
    EXPECT_FALSE(line.contains(forbiddenFile()) && !line.contains(QStringLiteral("Layout run of")))
        << line.toStdString();
}

TEST_F(LayoutSandboxTest, WhatAReportNeedsStaysOpenToItsScripts) {
  const auto ended =
      runDirectly(LayoutSketch()
                      .section("Detail", SectionType::Detail, 600)
                      .field("name")
                      .reportScript("Sub ActiveReport_ReportStart()\n"
                                    "  Set d = CreateObject(\"Scripting.Dictionary\")\n"
                                    "  Set f = Extensions.Application.CreateObject(\"Nuvo.Filter\")\n"
                                    "  Set r = CreateObject(\"Nuvo.Records\")\n"
                                    "  r.Open \"company\", f, Nothing, 0\n"
                                    "  d.Add \"count\", r.Count\n"
                                    "  rpt.PrintWidth = rpt.PrintWidth\n"
                                    "  Extensions.SetProperty \"seen\", d(\"count\") & \" \" & rpt.Printer.Copies\n"
                                    "End Sub\n"),
                  LayoutSketch().section("Detail", SectionType::Detail).field("lastname"), QStringLiteral("VBScript"));
  ASSERT_FALSE(ended) << ended->description().toStdString();
  EXPECT_TRUE(problems().isEmpty()) << problems().join('\n').toStdString();
  auto companies = std::dynamic_pointer_cast<hostapi::Records>(app->createObject("Nuvo.Records"));
  companies->open(Variant(QStringLiteral("company")), nullptr, nullptr, 0);
  const auto extensions = std::dynamic_pointer_cast<Extensions>(run->GetExtensions());
  EXPECT_EQ(extensions->Property(QStringLiteral("seen")).toString(), QStringLiteral("%1 1").arg(companies->count()));
}

TEST_F(LayoutSandboxTest, OneBudgetOfTimeStopsTheRunNotEachRow) {
  engine::runSettings().scriptLimits.time = std::chrono::milliseconds(300);
  for (const char *language : {"VBScript", "JScript"}) {
    SCOPED_TRACE(language);
    const bool js = QLatin1String(language) == QLatin1String("JScript");
    const QString endless = js ? QStringLiteral("function OnFormat() { for (;;) {} }")
                               : QStringLiteral("Sub OnFormat()\n  Do\n  Loop\nEnd Sub");
    const auto ended = runDirectly(LayoutSketch()
                                       .section("Detail", SectionType::Detail)
                                       .field("name")
                                       .sectionScript(endless)
                                       .reportScript(QString(), QString::fromLatin1(language)),
                                   LayoutSketch().section("Detail", SectionType::Detail).field("lastname"),
                                   QString::fromLatin1(language));
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->number(), script::ScriptErrorNumber::Timeout);
    EXPECT_TRUE(ended->description().contains(QStringLiteral("OnFormat of section Detail, row 1")))
        << ended->description().toStdString();
    // The first row spent the budget; no row after it was tried.
    EXPECT_EQ(problems().size(), 1) << problems().join('\n').toStdString();
  }
}

TEST_F(LayoutSandboxTest, GreedyScriptsRunOutOfMemoryAndTheProcessLivesOn) {
  // Room enough that only the cap of one value is met (a sanitizer keeps
  // freed memory a while, which the run's budget would count).
  engine::runSettings().scriptLimits.memoryBytes = qint64(4) << 30;
  // One string over the cap raises Out of memory in the script, which may
  // handle it.
  auto ended =
      runDirectly(LayoutSketch()
                      .section("Detail", SectionType::Detail)
                      .field("name")
                      .reportScript("Sub ActiveReport_ReportStart()\n"
                                    "  s = String(1000000, \"x\")\n"
                                    "  Do\n    s = s & s\n  Loop\nEnd Sub\n"),
                  LayoutSketch().section("Detail", SectionType::Detail).field("lastname"), QStringLiteral("VBScript"));
  ASSERT_FALSE(ended) << ended->description().toStdString();
  ASSERT_EQ(problems().size(), 1);
  EXPECT_TRUE(problems().first().contains("(7)")) << problems().first().toStdString();

  // Many values under the cap that together hold more than the run allows
  // stop the run.
  engine::runSettings().scriptLimits.memoryBytes = qint64(96) << 20;
  engine::runSettings().scriptLimits.time = std::chrono::seconds(60);
  for (const char *language : {"VBScript", "JScript"}) {
    SCOPED_TRACE(language);
    const bool js = QLatin1String(language) == QLatin1String("JScript");
    const QString hoard = js ? QStringLiteral("var kept = [];\nfunction ActiveReport_ReportStart() {\n"
                                              "  var s = new Array(1 << 20).join('x');\n"
                                              "  for (var i = 0; ; ++i) kept.push(s + i);\n}\n")
                             : QStringLiteral("Dim kept()\nSub ActiveReport_ReportStart()\n  ReDim kept(10000)\n"
                                              "  s = String(4000000, \"x\")\n"
                                              "  For i = 0 To 10000\n    kept(i) = s & i\n  Next\nEnd Sub\n");
    ended = runDirectly(LayoutSketch()
                            .section("Detail", SectionType::Detail)
                            .field("name")
                            .reportScript(hoard, QString::fromLatin1(language)),
                        LayoutSketch().section("Detail", SectionType::Detail).field("lastname"),
                        QString::fromLatin1(language));
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->number(), ErrorNumber::OutOfMemory) << ended->description().toStdString();
  }
}

TEST_F(LayoutSandboxTest, DeepRecursionIsAnErrorOfTheScriptNotACrash) {
  for (const char *language : {"VBScript", "JScript"}) {
    SCOPED_TRACE(language);
    const bool js = QLatin1String(language) == QLatin1String("JScript");
    const QString deep = js ? QStringLiteral("function f(n) { return f(n + 1); }\n"
                                             "function ActiveReport_ReportStart() { f(0); }\n")
                            : QStringLiteral("Function F(n)\n  F = F(n + 1)\nEnd Function\n"
                                             "Sub ActiveReport_ReportStart()\n  F 0\nEnd Sub\n");
    const auto ended = runDirectly(LayoutSketch()
                                       .section("Detail", SectionType::Detail)
                                       .field("name")
                                       .reportScript(deep, QString::fromLatin1(language)),
                                   LayoutSketch().section("Detail", SectionType::Detail).field("lastname"),
                                   QString::fromLatin1(language));
    ASSERT_FALSE(ended) << ended->description().toStdString();
    ASSERT_EQ(problems().size(), 1);
    EXPECT_TRUE(problems().first().startsWith(QStringLiteral("ActiveReport_ReportStart")))
        << problems().first().toStdString();
    EXPECT_GE(pageCount(), 1);
  }
}

// Should a layout script ever hold an exporter, it writes nothing with it.
TEST_F(LayoutSandboxTest, NoExporterWritesForALayoutScript) {
  runDirectly(LayoutSketch().section("Detail", SectionType::Detail).field("name"),
              LayoutSketch().section("Detail", SectionType::Detail).field("lastname"), QStringLiteral("VBScript"));
  const Variant pages = run->layoutReport()->get(QStringLiteral("Pages"));
  for (const hostapi::ExportType &type : hostapi::kExportTypes) {
    SCOPED_TRACE(type.extension);
    const ObjectRef exporter = app->createObject(QString::fromLatin1(type.progId));
    const QString target = forbiddenFile() + u'.' + QLatin1String(type.extension);
    if (type.progId == hostapi::kHtmlExportProgId) {
      exporter->set(QStringLiteral("FileNamePrefix"), QStringLiteral("page"));
      exporter->set(QStringLiteral("HtmlOutputPath"), dir.path());
    } else {
      exporter->set(QStringLiteral("FileName"), target);
    }
    const LayoutScriptScope asALayoutScript;
    EXPECT_EQ(test::errorNumber([&] { exporter->invoke(QStringLiteral("Export"), {pages}); }),
              ErrorNumber::PermissionDenied);
    EXPECT_FALSE(QFile::exists(target));
  }
}

// The add-in's own objects hold the report the same way: an event handler
// that reloads the layout in the middle of a run is refused at once.
TEST_F(LayoutSandboxTest, NothingChangesTheRunningReportUnderItsFeet) {
  runDirectly(LayoutSketch().section("Detail", SectionType::Detail).field("name"),
              LayoutSketch().section("Detail", SectionType::Detail).field("lastname"), QStringLiteral("VBScript"));
  const ObjectRef layout = run->layoutReport();
  const Variant saved = layout->invoke(QStringLiteral("SaveLayout"), {QString(), 2});
  const auto engineReport = std::dynamic_pointer_cast<engine::LayoutReport>(layout);
  engineReport->holdForRun();
  for (const auto &change : std::vector<std::function<void()>>{
           [&] { layout->invoke(QStringLiteral("LoadLayout"), {saved}); },
           [&] { layout->invoke(QStringLiteral("Run"), {false}); },
           [&] { layout->set(QStringLiteral("Script"), QStringLiteral("Sub X()\nEnd Sub")); },
           [&] { layout->get(QStringLiteral("Sections")).toObject()->invoke(QStringLiteral("Remove"), {0}); },
           [&] {
             layout->get(QStringLiteral("Detail"))
                 .toObject()
                 ->get(QStringLiteral("Controls"))
                 .toObject()
                 ->invoke(QStringLiteral("Add"), {QStringLiteral("DDActiveReports2.Label")});
           },
       }) {
    try {
      change();
      ADD_FAILURE() << "a held report took a change";
    } catch (...) {
      const Error error = pendingError();
      EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
      EXPECT_TRUE(error.description().contains(QStringLiteral("The report is running")))
          << error.description().toStdString();
    }
  }
  engineReport->releaseFromRun();
  EXPECT_NO_THROW(layout->invoke(QStringLiteral("LoadLayout"), {saved}));
}

// Documents found to crash the host: a layout script that runs the report
// again from its global code, and one that does so once from ReportStart.
TEST_F(LayoutSandboxTest, StoredReportsThatRunThemselvesAgainAreRefusedAndExportTheirPages) {
  for (const char *finding : {"run-recursive.xml", "run-reentry.xml"}) {
    SCOPED_TRACE(finding);
    QFile file(QStringLiteral(KORDEL_FINDINGS_DIR "/") + QLatin1String(finding));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto stored = std::make_shared<Report>();
    stored->LoadContents(Variant(QString::fromUtf8(file.readAll())));
    const auto context = allCompanies();
    const QString out = dir.file(QLatin1String(finding) + QStringLiteral(".txt"));
    context->setProperty(QStringLiteral("sysprop__exportfile"), out);
    CustomReport customReport;
    bool result = false;
    customReport.RunReport(2, stored, context, result);
    EXPECT_TRUE(result);
    EXPECT_TRUE(QFile::exists(out));
    bool refused = false;
    for (const QString &line : logLines())
      refused = refused || (line.contains(QStringLiteral("Layout run of")) && line.contains(QStringLiteral("(70)")));
    EXPECT_TRUE(refused) << logLines().join('\n').toStdString();
  }
}

} // namespace

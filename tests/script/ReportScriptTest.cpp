// One report script written in VBScript and in JScript, run against the
// same objects as a report run drives them: both languages set the same
// texts on the controls, leave the same values behind and end the rows
// through the ByRef eof of ActiveReport_FetchData.

#include "script/ReportRunModel.h"
#include "script/ScriptTestSupport.h"

#include "core/VbDate.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

const char *const kVBScript = R"VB(
Dim shown, total

Sub ActiveReport_ReportStart()
  shown = 0
  total = 0
  Records.MoveFirst
  rpt.Sections("PageHeader").Controls("title").Text = "Customers of " & Extensions.Properties("FilterName")
End Sub

Sub ActiveReport_FetchData(eof)
  If Records.EOF Then
    eof = True
    Exit Sub
  End If
  Dim name, amount, city, label
  name = Trim(Records.Value("name"))
  amount = Records.Value("amount")
  On Error Resume Next
  city = Records.Value("city")
  If Err.Number <> 0 Then city = "-"
  On Error GoTo 0
  If amount >= 1000 Then
    label = UCase(Left(name, 1)) & Mid(name, 2) & " *"
  ElseIf amount < 0 Then
    label = name & " (credit)"
  Else
    label = name
  End If
  total = total + amount
  shown = shown + 1
  With rpt.Sections("Detail").Controls
    .Item("name").Text = Records.RecordIndex & ". " & label
    .Item("city").Text = UCase(city)
    .Item("stamp").Text = Extensions.Timestamp("yyyy-mm-dd")
  End With
  Extensions.SetProperty "total", total
  Extensions.SetProperty "shown", shown
  eof = False
  Records.MoveNext
End Sub

Sub ActiveReport_ReportEnd()
  rpt.Sections("ReportFooter").Controls("summary").Text = shown & " rows, total " & total
End Sub
)VB";

const char *const kJScript = R"JS(
var shown, total;

function ActiveReport_ReportStart() {
  shown = 0;
  total = 0;
  Records.MoveFirst();
  rpt.Sections("PageHeader").Controls("title").Text = "Customers of " + Extensions.Properties("FilterName");
}

function ActiveReport_FetchData(eof) {
  if (Records.EOF)
    return true;
  var name = Records.Value("name").trim();
  var amount = Records.Value("amount");
  var city, label;
  try {
    city = Records.Value("city");
  } catch (e) {
    city = "-";
  }
  if (amount >= 1000)
    label = name.charAt(0).toUpperCase() + name.substr(1) + " *";
  else if (amount < 0)
    label = name + " (credit)";
  else
    label = name;
  total += amount;
  shown++;
  var controls = rpt.Sections("Detail").Controls;
  controls.Item("name").Text = Records.RecordIndex + ". " + label;
  controls.Item("city").Text = city.toUpperCase();
  controls.Item("stamp").Text = Extensions.Timestamp("yyyy-mm-dd");
  Extensions.SetProperty("total", total);
  Extensions.SetProperty("shown", shown);
  Records.MoveNext();
  return false;
}

function ActiveReport_ReportEnd() {
  rpt.Sections("ReportFooter").Controls("summary").Text = shown + " rows, total " + total;
}
)JS";

std::vector<TestRecords::Row> customerRows() {
  return {
      {{"name", QStringLiteral("  anna  ")}, {"amount", 1250}, {"city", QStringLiteral("Umeå")}},
      {{"name", QStringLiteral("Bo")}, {"amount", -40}},
      {{"name", QStringLiteral("cilla")}, {"amount", 300}, {"city", QStringLiteral("Lund")}},
  };
}

// What a run leaves: the detail texts after each fetched row, the texts of
// the other sections, the values the script kept, and how the rows ended.
struct RunResult {
  std::vector<QStringList> details;
  QString title;
  QString summary;
  QString total;
  QString shown;
  Variant lastEof;
  int fetches = 0;
};

RunResult runReport(const QString &language, const char *code) {
  TestReportRun run(customerRows());
  run.extensions->clock = dateFromParts(2024, 3, 9);
  run.extensions->setProperty(QStringLiteral("FilterName"), QStringLiteral("Kunder"));
  const auto engine = script::createScriptEngine(language);
  engine->addNamedItem(QStringLiteral("Extensions"), run.extensions);
  engine->addNamedItem(QStringLiteral("Records"), run.records);
  engine->addNamedItem(QStringLiteral("rpt"), run.report);
  engine->addCode(QString::fromUtf8(code));

  RunResult result;
  Args none;
  engine->call(QStringLiteral("ActiveReport_ReportStart"), none);
  // The engine asks for rows until the script says there are no more; a
  // guard ends a script that never says so.
  for (int guard = 0; guard < 10; ++guard) {
    Args eof{Variant(false)};
    engine->call(QStringLiteral("ActiveReport_FetchData"), eof);
    ++result.fetches;
    result.lastEof = eof[0];
    if (eof[0].toBool())
      break;
    result.details.push_back({run.name->text.toText(), run.city->text.toText(), run.stamp->text.toText()});
  }
  engine->call(QStringLiteral("ActiveReport_ReportEnd"), none);
  result.title = run.title->text.toText();
  result.summary = run.summary->text.toText();
  result.total = run.extensions->properties->value(QStringLiteral("TOTAL")).toText();
  result.shown = run.extensions->properties->value(QStringLiteral("shown")).toText();
  return result;
}

TEST(ReportScript, BothLanguagesGiveTheSameRunOfTheSameObjects) {
  useUnitedStatesRegion();
  const RunResult vb = runReport(QStringLiteral("VBScript"), kVBScript);
  const RunResult js = runReport(QStringLiteral("JScript"), kJScript);

  const std::vector<QStringList> expected{
      {"1. Anna *", QString::fromUtf8("UMEÅ"), "2024-03-09"},
      {"2. Bo (credit)", "-", "2024-03-09"},
      {"3. cilla", "LUND", "2024-03-09"},
  };
  for (const RunResult *result : {&vb, &js}) {
    SCOPED_TRACE(result == &vb ? "VBScript" : "JScript");
    EXPECT_EQ(result->details, expected);
    EXPECT_EQ(result->title, QStringLiteral("Customers of Kunder"));
    EXPECT_EQ(result->summary, QStringLiteral("3 rows, total 1510"));
    EXPECT_EQ(result->total, QStringLiteral("1510"));
    EXPECT_EQ(result->shown, QStringLiteral("3"));
    // Three rows and the fetch that found the end; eof came back True.
    EXPECT_EQ(result->fetches, 4);
    EXPECT_EQ(result->lastEof, Variant(true));
  }
}

} // namespace
} // namespace kordel::test

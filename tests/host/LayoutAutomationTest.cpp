// Automation scripts, run by the orvex program, that build a layout with
// the engine's report object, run it with rows of their own script, export
// the pages with each of the engine's exporters and print them.

#include "support/OrvexProcess.h"
#include "support/TempDir.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

const char *kScript = R"vbs(
Set rpt = CreateObject("DDActiveReports2.ActiveReport")
Set detail = rpt.Sections.Add("Detail", 0, 6, 300)
Set name = detail.Controls.Add("DDActiveReports2.Field")
name.DataField = "name"
name.Width = 3000
rpt.Script = "Dim n" & vbCrLf & _
  "Sub ActiveReport_DataInitialize" & vbCrLf & "  rpt.Fields.Add ""name""" & vbCrLf & "End Sub" & vbCrLf & _
  "Sub ActiveReport_FetchData(eof)" & vbCrLf & "  n = n + 1" & vbCrLf & _
  "  If n <= 3 Then" & vbCrLf & "    rpt.Fields(""name"").Value = ""Row "" & n" & vbCrLf & "    eof = False" & vbCrLf & _
  "  End If" & vbCrLf & "End Sub"
rpt.Run
WScript.Echo "pages " & rpt.Pages.Count
folder = WScript.Arguments(0)
For Each kind In Array("Pdf", "Xls", "Rtf", "Text", "Tiff")
  Set exporter = CreateObject("Orvex." & kind & "Export")
  exporter.FileName = folder & "/out." & LCase(kind)
  exporter.Export rpt.Pages
Next
Set html = CreateObject("Orvex.HtmlExport")
html.FileNamePrefix = "out"
html.HtmlOutputPath = folder
html.Export rpt.Pages
Set unknown = CreateObject("Orvex.JpegExport")
)vbs";

TEST(LayoutAutomationTest, AScriptBuildsRunsAndExportsALayout) {
  kordel::test::TempDir dir;
  const QString out = dir.file("out");
  ASSERT_TRUE(QDir().mkpath(out));
  ASSERT_TRUE(kordel::test::writeFile(dir.file("layout.vbs"), kScript));
  const kordel::test::OrvexRun run = kordel::test::runOrvex(dir, {"script", dir.file("layout.vbs"), out});
  EXPECT_EQ(run.out, "pages 1\n");
  EXPECT_EQ(run.exitCode, 1) << "the last line asks for an exporter no one makes";
  EXPECT_TRUE(run.err.contains("(429)")) << run.err.toStdString();

  for (const char *file : {"out.pdf", "out.xls", "out.rtf", "out.text", "out.tiff", "out.html"})
    EXPECT_GT(QFile(out + "/" + file).size(), 0) << file;
  EXPECT_TRUE(kordel::test::readFile(out + "/out.text").contains("Row 1\nRow 2\nRow 3"))
      << kordel::test::readFile(out + "/out.text").toStdString();
  QProcess text;
  text.start("pdftotext", {out + "/out.pdf", "-"});
  ASSERT_TRUE(text.waitForFinished(30000));
  EXPECT_TRUE(text.readAllStandardOutput().contains("Row 3"));
}

} // namespace

namespace {

const char *kPrintScript = R"vbs(
Set printer = CreateObject("DDActiveReports2.Printer")
WScript.Echo printer.DeviceName
Set rpt = CreateObject("DDActiveReports2.ActiveReport")
Set header = rpt.Sections.Add("ReportHeader", 0, 0, 400)
Set label = header.Controls.Add("DDActiveReports2.Label")
label.Caption = "Printed by a script"
label.Width = 4000
rpt.documentName = "Automated run"
rpt.Printer.DeviceName = printer.DeviceName
rpt.PrintReport False
WScript.Echo "pages " & rpt.Pages.Count
rpt.Show True
)vbs";

} // namespace

// Without a print server the built-in PDF printer takes the job into the
// documents folder; the command line shows no preview.
TEST(LayoutAutomationTest, AScriptPrintsToTheBuiltInPdfPrinter) {
  kordel::test::TempDir dir;
  ASSERT_TRUE(kordel::test::writeFile(dir.file("print.vbs"), kPrintScript));
  const kordel::test::OrvexRun run = kordel::test::runOrvex(dir, {"script", dir.file("print.vbs")},
                                                            {{"HOME", dir.path()},
                                                             {"XDG_CONFIG_HOME", dir.file(".config")},
                                                             {"CUPS_SERVER", dir.file("nobody-listens.sock")}});
  EXPECT_EQ(run.out, "Orvex PDF\npages 1\n");
  EXPECT_EQ(run.exitCode, 1) << "the last line asks for a preview";
  EXPECT_TRUE(run.err.contains("(5)")) << run.err.toStdString();

  const QString pdf = dir.file("Documents/Automated run.pdf");
  ASSERT_TRUE(QFile::exists(pdf)) << QDir(dir.file("Documents")).entryList().join(',').toStdString();
  QProcess text;
  text.start("pdftotext", {pdf, "-"});
  ASSERT_TRUE(text.waitForFinished(30000));
  EXPECT_TRUE(text.readAllStandardOutput().contains("Printed by a script"));
}

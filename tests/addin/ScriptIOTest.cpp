#include "DemoFixture.h"
#include "LayoutSketch.h"

#include "common/Settings.h"
#include "document/Page.h"
#include "document/Report.h"
#include "hostapi/Database.h"
#include "hostapi/Layout.h"
#include "scriptio/ScriptIO.h"
#include "scriptio/ScriptTextFile.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace kordel::test {

using addin::Page;
using addin::Report;
using addin::ScriptIO;
using addin::ScriptTextFile;
using engine::SectionType;

const QString kPersons = QStringLiteral("{SCRIPT-PERSONS}");
const QString kHistory = QStringLiteral("{SCRIPT-HISTORY}");

// A report of companies, their persons and each person's history, every
// layout with a report script and section scripts.
class ScriptIOTest : public DemoHostedTest {
protected:
  void SetUp() override {
    DemoHostedTest::SetUp();
    qputenv("XDG_CACHE_HOME", dir.file(QStringLiteral("cache")).toUtf8());
    report = std::make_shared<Report>();
    report->LoadContents(Variant());
    ASSERT_TRUE(report->Create("company"));
    report->SetName(QStringLiteral("Companies: persons"));
    ASSERT_TRUE(report->AddPage(kPersons, "Persons", "person", report->Guid(), Variant()));
    ASSERT_TRUE(report->AddPage(kHistory, "Person history", "person.history", kPersons, Variant()));
    for (const auto &page : pages()) {
      const QString tag = page->Name().left(3);
      page->SetLayoutTemplate(
          Variant(LayoutSketch()
                      .reportScript("Sub ActiveReport_ReportStart\n  start = \"" + tag + "\"\nEnd Sub")
                      .section("Header", SectionType::PageHeader)
                      .section("Detail", SectionType::Detail)
                      .sectionScript("Sub Detail_Format\n  n = n + 1 ' " + tag + "\nEnd Sub")
                      .section("Footer", SectionType::PageFooter)
                      .sectionScript("Sub Footer_Format\nEnd Sub")
                      .bytes()));
    }
  }
  void TearDown() override {
    qunsetenv("XDG_CACHE_HOME");
    DemoHostedTest::TearDown();
  }

  std::vector<std::shared_ptr<Page>> pages() const {
    return {report->Page(), report->LookupPage(kPersons), report->LookupPage(kHistory)};
  }
  std::vector<QByteArray> layouts() const {
    std::vector<QByteArray> result;
    for (const auto &page : pages())
      result.push_back(page->LayoutTemplate().rawBytes());
    return result;
  }

  ScriptIO scriptIO() const {
    ScriptIO made;
    made.SetReport(report);
    made.SetReportName(report->Name());
    return made;
  }

  // The whole file as the add-in writes it: the header from Export and
  // each page's block, as the export's page walk writes them.
  QByteArray exportFile(const QString &path) {
    ui->fileAnswers.push_back(path);
    ScriptIO io = scriptIO();
    io.Export();
    QByteArray file = readFile(path);
    const QString pagesPath = path + QStringLiteral(".pages");
    {
      ScriptTextFile stream(pagesPath, ScriptTextFile::Mode::Create);
      for (const auto &page : pages())
        EXPECT_TRUE(io.ExportPageScript(page, stream));
      stream.WriteLine(io.marker_ + QStringLiteral("</report>"));
    }
    file += readFile(pagesPath);
    EXPECT_TRUE(writeFile(path, file));
    return file;
  }

  // Import through the file dialog, then each page's own import step on the
  // document the file gave.
  bool importFile(ScriptIO &io, const QString &path) {
    ui->fileAnswers.push_back(path);
    return io.Import();
  }
  bool applyPages(ScriptIO &io) {
    bool all = true;
    for (const auto &page : pages())
      all = io.ImportPageScript(page) && all;
    return all;
  }

  ObjectRef layoutOf(const std::shared_ptr<Page> &page) const {
    const ObjectRef layout = app->createObject(QString::fromLatin1(hostapi::kLayoutReportProgId));
    layout->invoke(QStringLiteral("LoadLayout"), {page->LayoutTemplate()});
    return layout;
  }
  QString sectionScript(const std::shared_ptr<Page> &page, const QString &section) const {
    return layoutOf(page)
        ->get(QStringLiteral("Sections"))
        .toObject()
        ->invoke(QStringLiteral("Item"), {section})
        .toObject()
        ->get(QStringLiteral("Script"))
        .toString();
  }

  QString dumpPath() const { return dir.file(QStringLiteral("cache/orvex/dump-scripting.xml")); }
  void askForDump() { addin::WriteSetting(addin::kSettingsRoot, QStringLiteral("DumpImportedScripts"), "1"); }

  QStringList boxTexts() const {
    QStringList texts;
    for (const auto &box : ui->boxes)
      texts << box.text;
    return texts;
  }

  std::shared_ptr<Report> report;
};

namespace {

QString databaseName(const std::shared_ptr<host::HostApplication> &app) { return app->database()->name(); }

TEST_F(ScriptIOTest, VBScriptFileCarriesEveryPageAndScriptAndComesBackWithoutIndentation) {
  const QString path = dir.file(QStringLiteral("scripts.vbs"));
  const QByteArray file = exportFile(path);

  // The export's own page walk finds no page: the header stands alone and
  // the failure is reported.
  ASSERT_EQ(ui->fileDialogs.size(), 1u);
  EXPECT_EQ(ui->fileDialogs[0].fileName, QStringLiteral("Companies persons"));
  EXPECT_TRUE(ui->fileDialogs[0].filter.contains(QStringLiteral("*.vbs")));
  EXPECT_TRUE(boxTexts().join(u'\n').contains(QStringLiteral("ScriptIO.ExportReportScript")));

  const QStringList lines = QString::fromLatin1(file).split(QStringLiteral("\r\n"));
  const QString guid = report->Guid();
  const QStringList expectedStart{
      "'/// <report name=\"Companies: persons\" database=\"" + databaseName(app) + "\" language=\"VBScript\">",
      "'/// <page guid=\"" + guid + "\" name=\"" + report->Page()->Name() + "\">",
      "'/// <section name=\"ActiveReport Document\">",
      "Sub ActiveReport_ReportStart",
      "  start = \"" + report->Page()->Name().left(3) + "\"",
      "End Sub",
      "'/// </section>",
      "'/// <section name=\"Detail\">",
  };
  EXPECT_EQ(lines.mid(0, expectedStart.size()), expectedStart);
  EXPECT_EQ(lines.count(QStringLiteral("'/// </page>")), 3);
  EXPECT_EQ(lines.count(QStringLiteral("'/// </section>")), 9);
  EXPECT_TRUE(lines.contains("'/// <page guid=\"" + kHistory + "\" name=\"Person history\">"));
  EXPECT_FALSE(lines.contains(QStringLiteral("'/// <section name=\"Header\">"))) << "a section without script";
  EXPECT_EQ(lines.at(lines.size() - 2), QStringLiteral("'/// </report>"));
  EXPECT_TRUE(file.endsWith("\r\n"));

  // A user edits the sub-sub page's detail script and adds a block for a
  // section its layout lacks, which follows the detail block.
  QString edited = QString::fromLatin1(file);
  const QString historyDetail = "  n = n + 1 ' Per\r\n";
  ASSERT_EQ(edited.count(historyDetail), 2); // persons and person history
  const qsizetype at = edited.lastIndexOf(historyDetail);
  edited.replace(at, historyDetail.size(),
                 QStringLiteral("    n = n + 2\r\n'/// </section>\r\n'/// <section name=\"Nowhere\">\r\nn = 0\r\n"));
  ASSERT_TRUE(writeFile(path, edited.toLatin1()));
  const auto before = layouts();

  askForDump();
  ui->boxes.clear();
  ScriptIO io = scriptIO();
  EXPECT_FALSE(importFile(io, path)) << "the import's page walk finds no page either";
  EXPECT_EQ(layouts(), before);
  EXPECT_TRUE(boxTexts().join(u'\n').contains(QStringLiteral("DlgImportScript.ImportReportScript")));
  EXPECT_EQ(ui->fileDialogs.back().title, QStringLiteral("Import scripts"));

  // The parsed document, as the dump shows it: the root is named after the
  // database, and each script begins with a line feed.
  const QString dump = QString::fromUtf8(readFile(dumpPath()));
  EXPECT_TRUE(dump.contains("<report name=\"" + databaseName(app) + "\" database=\"\" language=\"\">"))
      << dump.toStdString();
  EXPECT_TRUE(dump.contains("<page guid=\"" + kHistory + "\" name=\"Person\">")) << "the name is cut at its blank";

  // Each page's own step applies what the file holds.
  ASSERT_TRUE(applyPages(io));
  const auto history = report->LookupPage(kHistory);
  EXPECT_EQ(layoutOf(history)->get(QStringLiteral("Script")).toString(),
            QStringLiteral("\nSub ActiveReport_ReportStart\nstart = \"Per\"\nEnd Sub"));
  EXPECT_EQ(sectionScript(history, QStringLiteral("Detail")), QStringLiteral("\nn = 0\nEnd Sub"))
      << "the unknown section's script lands in the section before it";
  EXPECT_EQ(sectionScript(history, QStringLiteral("Footer")), QStringLiteral("\nSub Footer_Format\nEnd Sub"));
  EXPECT_EQ(sectionScript(history, QStringLiteral("Header")), QString());
  EXPECT_EQ(sectionScript(report->LookupPage(kPersons), QStringLiteral("Detail")),
            QStringLiteral("\nSub Detail_Format\nn = n + 1 ' Per\nEnd Sub"));
}

TEST_F(ScriptIOTest, JScriptFileIsWrittenWithItsOwnMarkerAndReadsAsNoPages) {
  report->SetScriptLanguage(QStringLiteral("JScript"));
  const QString path = dir.file(QStringLiteral("scripts.js"));
  const QByteArray file = exportFile(path);
  EXPECT_TRUE(ui->fileDialogs[0].filter.contains(QStringLiteral("*.js")));
  EXPECT_TRUE(file.startsWith("/// <report name=\"Companies: persons\""));
  EXPECT_TRUE(file.contains("\r\n/// <page guid=\"" + kPersons.toLatin1() + "\" name=\"Persons\">\r\n"));
  EXPECT_TRUE(file.endsWith("/// </report>\r\n"));
  EXPECT_FALSE(file.contains("'///"));

  QByteArray edited = file;
  edited.replace("start = ", "begin = ");
  ASSERT_TRUE(writeFile(path, edited));
  const auto before = layouts();
  askForDump();
  ScriptIO io = scriptIO();
  EXPECT_FALSE(importFile(io, path));
  EXPECT_TRUE(applyPages(io));
  EXPECT_EQ(layouts(), before) << "the reader looks for the VBScript marker only";
  EXPECT_FALSE(readFile(dumpPath()).contains("<page")) << readFile(dumpPath()).toStdString();
  EXPECT_EQ(report->ScriptLanguage(), QStringLiteral("JScript"));
}

TEST_F(ScriptIOTest, DamagedFilesChangeNoLayoutAndSayWhatIsWrong) {
  const QString path = dir.file(QStringLiteral("good.vbs"));
  const QString good = QString::fromLatin1(exportFile(path));
  const auto before = layouts();
  askForDump();
  const auto importText = [&](const QString &name, const QString &text) {
    const QString damaged = dir.file(name);
    EXPECT_TRUE(writeFile(damaged, text.toLatin1()));
    ui->boxes.clear();
    ScriptIO io = scriptIO();
    EXPECT_FALSE(importFile(io, damaged)) << name.toStdString();
    EXPECT_EQ(layouts(), before) << name.toStdString();
    return boxTexts().join(u'\n');
  };

  // A page of another report has no effect.
  QString unknown = good;
  unknown.replace(kPersons, QStringLiteral("{NOT-IN-THIS-REPORT}"));
  unknown.replace(report->Guid(), QStringLiteral("{NEITHER}"));
  unknown.replace(kHistory, QStringLiteral("{NOR-THIS}"));
  importText(QStringLiteral("unknown.vbs"), unknown);
  EXPECT_TRUE(readFile(dumpPath()).contains("guid=\"{NOT-IN-THIS-REPORT}\""));
  ScriptIO other = scriptIO();
  ui->fileAnswers.push_back(dir.file(QStringLiteral("unknown.vbs")));
  other.Import();
  EXPECT_TRUE(applyPages(other));
  EXPECT_EQ(layouts(), before) << "even each page's own step finds nothing to apply";

  // A script that cannot be kept names its line.
  QString broken = good;
  const qsizetype at = broken.indexOf(QStringLiteral("End Sub"));
  broken.insert(at, QStringLiteral("bad = \x01\r\n"));
  const int line = broken.left(at).count(QStringLiteral("\r\n")) + 3; // the closing tag after the bad line
  const QString said = importText(QStringLiteral("broken.vbs"), broken);
  EXPECT_TRUE(said.contains(QStringLiteral("DlgImportScript.ConvertSection"))) << said.toStdString();
  EXPECT_TRUE(said.contains(QStringLiteral("line %1 of").arg(line))) << said.toStdString();

  // A file cut in the middle of a script keeps what it has.
  const QString cut = good.left(good.indexOf(QStringLiteral("End Sub")));
  importText(QStringLiteral("cut.vbs"), cut);
  EXPECT_TRUE(readFile(dumpPath()).contains("script=\"&#10;Sub ActiveReport_ReportStart&#10;start = "))
      << readFile(dumpPath()).toStdString();

  // No report line at all.
  const QString none = importText(QStringLiteral("none.vbs"), QStringLiteral("Sub Main\r\nEnd Sub\r\n"));
  EXPECT_TRUE(none.contains(QStringLiteral("none.vbs holds no report line"))) << none.toStdString();

  // A missing file.
  ui->boxes.clear();
  ScriptIO io = scriptIO();
  EXPECT_FALSE(importFile(io, dir.file(QStringLiteral("gone.vbs"))));
  EXPECT_TRUE(boxTexts().join(u'\n').contains(QStringLiteral("DlgImportScript.CmdBrowse_Click")));
  EXPECT_EQ(layouts(), before);
}

TEST_F(ScriptIOTest, TheParsedCopyIsKeptOnlyWhenAskedForAndAnUnwritableCopyStopsTheImport) {
  const QString path = dir.file(QStringLiteral("scripts.vbs"));
  exportFile(path);
  ScriptIO io = scriptIO();
  EXPECT_FALSE(importFile(io, path));
  EXPECT_FALSE(QFile::exists(dumpPath()));

  askForDump();
  ASSERT_TRUE(writeFile(dir.file(QStringLiteral("cache")), "a file where the folder should be"));
  ui->boxes.clear();
  ScriptIO blocked = scriptIO();
  EXPECT_FALSE(importFile(blocked, path));
  const QString said = boxTexts().join(u'\n');
  EXPECT_TRUE(said.contains(QStringLiteral("DlgImportScript.Convert"))) << said.toStdString();
  EXPECT_FALSE(said.contains(QStringLiteral("ImportReportScript"))) << "the import stops at the copy";
}

TEST_F(ScriptIOTest, CancelledDialogsWriteAndChangeNothing) {
  const auto before = layouts();
  ScriptIO io = scriptIO();
  io.Export();
  EXPECT_FALSE(io.Import());
  EXPECT_EQ(ui->fileDialogs.size(), 2u);
  EXPECT_TRUE(ui->boxes.empty());
  EXPECT_EQ(layouts(), before);
  EXPECT_TRUE(QDir(dir.path()).entryList(QStringList{QStringLiteral("*.vbs")}).isEmpty());
}

} // namespace
} // namespace kordel::test

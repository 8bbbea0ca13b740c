#include "cli/Commands.h"

#include "cli/AboutCommand.h"
#include "cli/DataCommands.h"
#include "cli/DesignCommand.h"
#include "cli/ReportCommands.h"
#include "cli/RunCommands.h"
#include "cli/ScriptCommand.h"

#include "desktop/DesktopMain.h"

#include "core/Error.h"

#include <algorithm>

namespace kordel::host::cli {

namespace {

OptionSyntax languageOption() {
  return {QStringLiteral("--lang"), QStringLiteral("LANG"),
          QStringLiteral("the language of the add-in's texts and the database's names (en, sv)")};
}

OptionSyntax databaseOption() {
  return {QStringLiteral("--db"), QStringLiteral("DATABASE"),
          QStringLiteral("a database file or a postgresql:// address; without it, demo.db in the data folder")};
}

// The options of export, print and preview: the report, its range, the
// sub filters, the language and the database, with the mode's own.
std::vector<OptionSyntax> runOptions(std::vector<OptionSyntax> own) {
  std::vector<OptionSyntax> options{{QStringLiteral("--report"), QStringLiteral("NAME"), QStringLiteral("the report")}};
  options.insert(options.end(), own.begin(), own.end());
  const std::vector<OptionSyntax> shared{
      {QStringLiteral("--filter"), QStringLiteral("NAME"),
       QStringLiteral("RANGE: a saved filter of the report's class")},
      {QStringLiteral("--ids"), QStringLiteral("1,2,3"), QStringLiteral("RANGE: the records of these ids")},
      {QStringLiteral("--all"), QString(), QStringLiteral("RANGE: every record of the report's class")},
      {QStringLiteral("--explorer"), QStringLiteral("CLASS"),
       QStringLiteral("RANGE: a list window of the class, with all it lists or --select")},
      {QStringLiteral("--select"), QStringLiteral("1,2"),
       QStringLiteral("the records selected in --explorer's window")},
      {QStringLiteral("--subfilter"), QStringLiteral("PAGE=FILTER"),
       QStringLiteral("narrows a sub page (name or guid) to a saved filter; once a page"), true},
      languageOption(),
      databaseOption(),
  };
  options.insert(options.end(), shared.begin(), shared.end());
  return options;
}

const QString kRange = QStringLiteral("RANGE is exactly one of --filter, --ids, --all and --explorer.");

// orvex open: the desktop client on a database.
int openDesktop(HostApplication &app, const Arguments &arguments) {
  if (!windowsReachTheUser())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("orvex"),
               QStringLiteral("The desktop client needs a display: none is set (DISPLAY or WAYLAND_DISPLAY), or "
                              "the window platform (QT_QPA_PLATFORM) draws offscreen; `orvex --help` lists the "
                              "commands that work without one"));
  return desktop::runDesktop(app, arguments.value(QStringLiteral("--db")), arguments.value(QStringLiteral("--lang")));
}

std::vector<Command> makeCommands() {
  return {
      {{QStringLiteral("open"),
        QStringLiteral("open the desktop client (what `orvex` alone does)"),
        QStringLiteral("[FILE] [--db DATABASE] [--lang LANG]"),
        QStringLiteral("Opens the desktop client on a database: its classes, list and record windows, and\n"
                       "the Reports menus that print, preview and design reports. Without a database it\n"
                       "opens the default one, made with demo data on the first start. It needs a display."),
        {databaseOption(), languageOption()},
        {}},
       openDesktop},
      {{QStringLiteral("about"),
        QStringLiteral("show the version, the language and where settings, log and databases live"),
        QString(),
        QStringLiteral("Shows the version, the language and where settings, log and databases live."),
        {languageOption()},
        {}},
       about},
      {{QStringLiteral("demo"),
        QStringLiteral("make a demo database"),
        QStringLiteral("[--db DATABASE] [--companies N] [--seed S]"),
        QStringLiteral("Makes a demo database of companies, their persons, deals and history, with three\n"
                       "ready reports. The same seed gives the same data. A file that is there already is\n"
                       "never replaced, and an interrupted run leaves no database behind."),
        {{QStringLiteral("--db"), QStringLiteral("DATABASE"),
          QStringLiteral("the file or postgresql:// address to make; without it, demo.db in the data folder")},
         {QStringLiteral("--companies"), QStringLiteral("N"), QStringLiteral("how many companies (1000)")},
         {QStringLiteral("--seed"), QStringLiteral("S"), QStringLiteral("the seed of the data (1)")},
         languageOption()},
        {}},
       demo},
      {{QStringLiteral("reports"),
        QStringLiteral("list the reports of a database"),
        QStringLiteral("[--db DATABASE]"),
        QStringLiteral("Lists the reports of a database, each with its class."),
        {languageOption(), databaseOption()},
        {}},
       reports},
      {{QStringLiteral("report-export"),
        QStringLiteral("write a report's document to a file"),
        QStringLiteral("NAME FILE [--db DATABASE]"),
        QStringLiteral("Writes the document of the report NAME, its pages and layouts, to FILE."),
        {languageOption(), databaseOption()},
        {QStringLiteral("NAME"), QStringLiteral("FILE")}},
       reportExport},
      {{QStringLiteral("report-import"),
        QStringLiteral("store a document file as a new report"),
        QStringLiteral("FILE [--name NAME] [--db DATABASE]"),
        QStringLiteral("Stores the report document in FILE as a new report. A document that does not\n"
                       "parse, a class the database lacks or a name that is taken is refused."),
        {{QStringLiteral("--name"), QStringLiteral("NAME"), QStringLiteral("the report's name; else the document's")},
         languageOption(),
         databaseOption()},
        {QStringLiteral("FILE")}},
       reportImport},
      {{QStringLiteral("script"),
        QStringLiteral("run an automation script"),
        QStringLiteral("[--db DATABASE] [--language VBScript|JScript] FILE [ARGUMENTS]..."),
        QStringLiteral("Runs a VBScript (.vbs) or JScript (.js) file with WScript and the host's\n"
                       "Application. The words after FILE are the script's arguments."),
        {databaseOption(),
         {QStringLiteral("--language"), QStringLiteral("LANGUAGE"),
          QStringLiteral("VBScript or JScript; else by the file's extension")},
         languageOption()},
        {QStringLiteral("FILE")},
        true},
       script},
      {{QStringLiteral("export"),
        QStringLiteral("run a report into a PDF, XLS, XLSX, HTML, RTF, TXT or TIFF file"),
        QStringLiteral("--report NAME --out FILE RANGE [OPTION]..."),
        QStringLiteral("Runs a report for a range of records and writes it to FILE; the extension gives\n"
                       "the type: pdf, xls, xlsx, html (htm), rtf, txt or tiff. A workbook (xls, xlsx)\n"
                       "holds the report's values as a table, one row per record; --xls-layout pages\n"
                       "lays out the texts as the printed pages show them instead.\n") +
            kRange,
        runOptions({{QStringLiteral("--out"), QStringLiteral("FILE"), QStringLiteral("the file to write")},
                    {QStringLiteral("--xls-layout"), QStringLiteral("table|pages"),
                     QStringLiteral("a workbook's layout: the values as a table (the default) or the printed "
                                    "pages")}}),
        {}},
       exportReport},
      {{QStringLiteral("print"),
        QStringLiteral("run a report and print it"),
        QStringLiteral("--report NAME [RANGE] [OPTION]..."),
        QStringLiteral("Runs a report for a range of records and prints it: on the printer named, else on\n"
                       "the one the report last printed on, else on the default printer.\n"
                       "Without a range, or with --dialog, the print dialog opens (it needs a display):\n"
                       "printer, copies, margins and the rows of the report's class are chosen there.\n") +
            kRange,
        runOptions({{QStringLiteral("--printer"), QStringLiteral("NAME"),
                     QStringLiteral("a print queue, or \"Orvex PDF\" for a file in the documents folder")},
                    {QStringLiteral("--copies"), QStringLiteral("N"), QStringLiteral("how many copies")},
                    {QStringLiteral("--dialog"), QString(),
                     QStringLiteral("opens the print dialog on the range, to choose before printing")}}),
        {}},
       printReport},
      {{QStringLiteral("preview"),
        QStringLiteral("run a report and show it in the preview window"),
        QStringLiteral("--report NAME RANGE [OPTION]..."),
        QStringLiteral("Runs a report for a range of records and shows it in the preview window until\n"
                       "the window is closed; it needs a display.\n") +
            kRange,
        runOptions({}),
        {}},
       previewReport},
      {{QStringLiteral("design"),
        QStringLiteral("open the report designer on a report"),
        QStringLiteral("--report NAME | --new --class CLASS [--name NAME] [OPTION]..."),
        QStringLiteral("Opens the designer window on a stored report, or on a new report of a class,\n"
                       "whose name, paper and script language are asked for first.\n"
                       "Each save in the designer writes the report back at once; the command ends when\n"
                       "the window closes. It needs a display."),
        {{QStringLiteral("--report"), QStringLiteral("NAME"), QStringLiteral("the report to design")},
         {QStringLiteral("--new"), QString(), QStringLiteral("make a new report")},
         {QStringLiteral("--class"), QStringLiteral("CLASS"), QStringLiteral("the class of the new report's records")},
         {QStringLiteral("--name"), QStringLiteral("NAME"), QStringLiteral("the new report's name")},
         languageOption(),
         databaseOption()},
        {}},
       designReport},
  };
}

// The number of single-character insertions, deletions and substitutions
// that turn one word into the other.
qsizetype editDistance(const QString &from, const QString &to) {
  std::vector<qsizetype> row(to.size() + 1);
  for (qsizetype j = 0; j <= to.size(); ++j)
    row[j] = j;
  for (qsizetype i = 1; i <= from.size(); ++i) {
    qsizetype diagonal = row[0];
    row[0] = i;
    for (qsizetype j = 1; j <= to.size(); ++j) {
      const qsizetype above = row[j];
      const qsizetype substitution = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
      row[j] = std::min({above + 1, row[j - 1] + 1, substitution});
      diagonal = above;
    }
  }
  return row[to.size()];
}

} // namespace

const std::vector<Command> &commands() {
  static const std::vector<Command> table = makeCommands();
  return table;
}

const Command *findCommand(const QString &name) {
  for (const Command &command : commands())
    if (command.syntax.name == name)
      return &command;
  return nullptr;
}

QString nearestCommand(const QString &word) {
  const QString folded = word.toLower();
  QString nearest;
  qsizetype best = std::max<qsizetype>(2, folded.size() / 3) + 1;
  for (const Command &command : commands()) {
    const qsizetype distance = editDistance(folded, command.syntax.name);
    if (distance < best) {
      best = distance;
      nearest = command.syntax.name;
    }
  }
  return nearest;
}

} // namespace kordel::host::cli

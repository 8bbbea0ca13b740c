// orvex export, print and preview, run as a user runs them on a demo
// database: every ready report exported to each of the six file types and
// read back by a reader of that type, the ranges and sub filters choosing
// the records, the language of the add-in's texts, the refusals before a
// run and the failures of one, printing to the built-in PDF printer and to
// a print queue of the test's own, and the preview window opened and
// closed.

#include "cli/Commands.h"

#include "engine/preview/PreviewWindow.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/SettingsStore.h"
#include "hostapi/Ui.h"

#include "support/PdfTools.h"
#include "support/SqliteColumn.h"
#include "support/XlsReader.h"
#include "support/CupsTestQueues.h"
#include "support/OrvexProcess.h"
#include "support/PrivateCupsd.h"
#include "support/TempDir.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTimer>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <cups/cups.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <set>

using namespace kordel;
using kordel::test::OrvexRun;
using kordel::test::TempDir;

namespace {

const QString kCompanyList = QStringLiteral("Company list");
const QString kDeals = QStringLiteral("Deals by value");
const QString kHistory = QStringLiteral("Company history");

// A report whose page has no layout, on the class product.
const QByteArray kPriceList = R"(<?xml version="1.0"?>
<application><section name="system"><property name="name" value="Price list"/></section>
<section name="settings"><property name="toppage" value="{0B6A53A4-2F61-4C36-9D8E-7A1C29F0D4B2}"/>
<property name="source" value="product"/></section><section name="pages">
<section name="{0B6A53A4-2F61-4C36-9D8E-7A1C29F0D4B2}"><property name="name" value="Products"/>
<property name="source" value="product"/><section name="fields"><section name="name">
<property name="name" value="name"/><property name="expression" value="name"/></section></section>
</section></section></application>)";

QStringList column(const QString &database, const QString &sql) { return test::sqliteColumn(database, sql); }

// Text as a reader of the file gives it, with ligatures and the like
// spelled out, so that names can be looked for as they are stored.
QString plain(const QString &text) { return text.normalized(QString::NormalizationForm_KC); }

// The names that are missing from the text.
QStringList missing(const QString &text, const QStringList &names) {
  QStringList absent;
  for (const QString &name : names)
    if (!plain(text).contains(name))
      absent << name;
  return absent;
}

// The cells of a text export: one row a line, the cells split at ";".
std::vector<QStringList> textRows(const QString &path) {
  std::vector<QStringList> rows;
  for (const QString &line : QString::fromUtf8(test::readFile(path)).split(u'\n', Qt::SkipEmptyParts))
    rows.push_back(line.trimmed().split(u';'));
  return rows;
}

std::set<QString> firstCells(const std::vector<QStringList> &rows) {
  std::set<QString> cells;
  for (const QStringList &row : rows)
    cells.insert(row.front());
  return cells;
}

// The files converted by the office suite's converter into the folder, in
// the format; false when it cannot run.
bool convertWithOffice(const QStringList &files, const QString &format, const QString &folder) {
  const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
  TempDir home;
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("HOME"), home.path());
  process.setProcessEnvironment(environment);
  process.start(soffice, QStringList{QStringLiteral("--headless"), QStringLiteral("--convert-to"), format,
                                     QStringLiteral("--outdir"), folder} +
                             files);
  return process.waitForFinished(240000) && process.exitCode() == 0;
}

// One demo database for the whole file, with the ready reports and a
// report without a layout, and the data the tests expect to see.
struct DemoData {
  TempDir dir;
  QString database = dir.file(QStringLiteral("demo.db"));
  QStringList companies; // by id, from 1
  QStringList deals;
  QStringList persons; // last names
  QString setupFailure;

  DemoData() {
    const OrvexRun demo = test::runOrvex(dir, {"demo", "--db", database, "--companies", "12", "--seed", "7"});
    const QString priceList = dir.file(QStringLiteral("price-list.xml"));
    test::writeFile(priceList, kPriceList);
    const OrvexRun imported = test::runOrvex(dir, {"report-import", priceList, "--db", database});
    if (demo.exitCode != 0 || imported.exitCode != 0)
      setupFailure = demo.err + imported.err;
    companies = column(database, QStringLiteral("SELECT name FROM company ORDER BY idcompany"));
    deals = column(database, QStringLiteral("SELECT name FROM deal"));
    persons = column(database, QStringLiteral("SELECT DISTINCT lastname FROM person"));
  }
};

class RunCommands : public ::testing::Test {
protected:
  static void SetUpTestSuite() { data_ = new DemoData; }
  static void TearDownTestSuite() {
    delete data_;
    data_ = nullptr;
  }

  void SetUp() override {
    ASSERT_TRUE(data_->setupFailure.isEmpty()) << data_->setupFailure.toStdString();
    ASSERT_EQ(data_->companies.size(), 12);
  }

  static const DemoData &data() { return *data_; }

  // orvex with the arguments on the demo database.
  static OrvexRun orvex(QStringList arguments, const QMap<QString, QString> &environment = {}) {
    arguments << QStringLiteral("--db") << data_->database;
    return test::runOrvex(data_->dir, arguments, environment);
  }

  // Exports the report for all its records into the test's folder; the
  // file's path. The run must succeed and say how many pages it wrote.
  QString exportAll(const QString &report, const QString &extension, int *pages = nullptr) {
    const QString path = out_.file(report + u'.' + extension);
    const OrvexRun run = orvex({"export", "--report", report, "--all", "--out", path});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(QFileInfo::exists(path)) << path.toStdString();
    const QRegularExpression wrote(QStringLiteral("Wrote %1: (\\d+) pages?\n").arg(QRegularExpression::escape(path)));
    const auto match = wrote.match(run.err);
    EXPECT_TRUE(match.hasMatch()) << run.err.toStdString();
    if (pages)
      *pages = match.captured(1).toInt();
    return path;
  }

  TempDir out_;

private:
  static DemoData *data_;
};

DemoData *RunCommands::data_ = nullptr;

// ---- The six file types, read back ----

TEST_F(RunCommands, PdfHoldsEveryRecordOnAsManyPagesAsTheCommandSays) {
  if (!test::pdfToolsAvailable())
    GTEST_SKIP() << "pdftotext and pdfinfo are needed";
  for (const QString &report : {kCompanyList, kDeals, kHistory}) {
    int pages = 0;
    const QString pdf = exportAll(report, QStringLiteral("pdf"), &pages);
    const QString text = test::pdfPageTexts(pdf).join(u'\n');
    EXPECT_EQ(test::pdfInfoValue(pdf, QStringLiteral("Pages")).toInt(), pages) << report.toStdString();
    const QStringList expected = report == kDeals ? data().deals : data().companies;
    EXPECT_EQ(missing(text, expected), QStringList()) << report.toStdString();
  }
}

TEST_F(RunCommands, TextFilesHoldTheRecordsAsCells) {
  const auto companies = firstCells(textRows(exportAll(kCompanyList, QStringLiteral("txt"))));
  for (const QString &company : data().companies)
    EXPECT_TRUE(companies.count(company)) << company.toStdString();
  EXPECT_EQ(missing(QString::fromUtf8(test::readFile(exportAll(kHistory, QStringLiteral("txt")))), data().persons),
            QStringList());
  const auto deals = firstCells(textRows(exportAll(kDeals, QStringLiteral("txt"))));
  for (const QString &deal : data().deals)
    EXPECT_TRUE(deals.count(deal)) << deal.toStdString();
}

TEST_F(RunCommands, HtmlIsWellFormedWithEveryNameEscaped) {
  for (const QString &report : {kCompanyList, kHistory}) {
    QXmlStreamReader html(test::readFile(exportAll(report, QStringLiteral("html"))));
    QString text;
    while (!html.atEnd())
      text += html.readNext() == QXmlStreamReader::Characters ? html.text().toString() : QStringLiteral("\n");
    EXPECT_FALSE(html.hasError()) << html.errorString().toStdString();
    // Names such as "Dalsjö & Partners AB" come back only when the
    // ampersand was escaped.
    EXPECT_EQ(missing(text, data().companies), QStringList()) << report.toStdString();
  }
}

TEST_F(RunCommands, TiffHasOneImageAPage) {
  if (QStandardPaths::findExecutable(QStringLiteral("tiffinfo")).isEmpty())
    GTEST_SKIP() << "tiffinfo is needed";
  for (const QString &report : {kCompanyList, kDeals, kHistory}) {
    int pages = 0;
    const QString tiff = exportAll(report, QStringLiteral("tiff"), &pages);
    QProcess info;
    info.start(QStringLiteral("tiffinfo"), {tiff});
    ASSERT_TRUE(info.waitForFinished(60000));
    EXPECT_EQ(info.exitCode(), 0);
    EXPECT_EQ(QString::fromUtf8(info.readAllStandardOutput()).count(QStringLiteral("TIFF Directory")), pages)
        << report.toStdString();
  }
}

// The values of a sheet's rows below its heading (the title and the column
// heads), each row's cells joined by "|": texts as shown, numbers and
// dates as the values they hold.
std::multiset<QString> bodyRows(const test::FlatSheet &sheet, int fromColumn, int columns) {
  std::multiset<QString> rows;
  for (std::size_t i = 2; i < sheet.rows.size(); ++i) {
    QStringList cells;
    for (int column = fromColumn; column < fromColumn + columns; ++column) {
      const auto &row = sheet.rows[i];
      const test::FlatCell cell = column < int(row.size()) ? row[std::size_t(column)] : test::FlatCell{};
      cells << (cell.type == QLatin1String("string") || cell.type.isEmpty() ? cell.text : cell.type + ':' + cell.value);
    }
    rows.insert(cells.join(u'|'));
  }
  return rows;
}

// What one list of rows has and the other lacks, each row marked with the
// side it is on.
QStringList difference(const std::multiset<QString> &sheet, const std::multiset<QString> &database) {
  QStringList different;
  std::vector<QString> only;
  std::set_difference(sheet.begin(), sheet.end(), database.begin(), database.end(), std::back_inserter(only));
  for (const QString &row : only)
    different << "sheet only: " + row;
  only.clear();
  std::set_difference(database.begin(), database.end(), sheet.begin(), sheet.end(), std::back_inserter(only));
  for (const QString &row : only)
    different << "database only: " + row;
  return different;
}

std::multiset<QString> joinedRows(const QString &database, const QString &sql) {
  std::multiset<QString> rows;
  QStringList values = column(database, sql);
  for (const QString &row : values)
    rows.insert(row);
  return rows;
}

// A workbook of a demo report is a table of the database's values: the
// title and column heads once at the top, kept in view, then a row per
// record (and per group and total), numbers and dates typed, notes whole in
// one cell, no page furniture. The printed look is still there on request.
TEST_F(RunCommands, WorkbooksHoldTheDemoReportsAsTablesOfTheDatabasesValues) {
  if (QStandardPaths::findExecutable(QStringLiteral("soffice")).isEmpty())
    GTEST_SKIP() << "soffice is needed to read the workbooks back";
  const QString &db = data().database;
  const auto deals = joinedRows(db, "SELECT d.name || '|' || c.name || '|float:' || (d.value / 10000) "
                                    "FROM deal d JOIN company c ON c.idcompany = d.company");
  const auto events = joinedRows(db, "SELECT 'date:' || replace(date, ' ', 'T') || '|' || note FROM history "
                                     "WHERE person IS NOT NULL");
  const QStringList totals = column(db, "SELECT 'float:' || (sum(value) / 10000) FROM deal");
  for (const QString extension : {"xls", "xlsx"}) {
    SCOPED_TRACE(extension.toStdString());
    const QString converted = out_.file(extension);
    QDir().mkpath(converted);
    ASSERT_TRUE(convertWithOffice(
        {exportAll(kDeals, extension), exportAll(kHistory, extension), exportAll(kCompanyList, extension)},
        QStringLiteral("fods"), converted));
    const auto sheetOf = [&](const QString &report) {
      return test::parseFlatSheet(test::readFile(converted + '/' + report + ".fods"));
    };

    if (extension == QLatin1String("xls")) {
      QString error;
      const auto book = test::readWorkbook(out_.file(kDeals + ".xls"), &error);
      ASSERT_TRUE(book) << error.toStdString();
      EXPECT_EQ(book->frozenRows, 2) << "the title and the column heads stay in view";
    }
    test::FlatSheet sheet = sheetOf(kDeals);
    EXPECT_EQ(sheet.rows[0][0].text, kDeals);
    EXPECT_EQ(sheet.rows[1][2].text, "Value");
    ASSERT_EQ(sheet.rows.size(), 2 + deals.size() + 1) << "a row per deal and the total";
    const test::FlatCell total = sheet.rows.back()[2];
    EXPECT_EQ(total.type + ':' + total.value, totals.value(0));
    sheet.rows.pop_back();
    EXPECT_EQ(difference(bodyRows(sheet, 0, 3), deals), QStringList());

    sheet = sheetOf(kHistory);
    std::multiset<QString> historyRows;
    // Date, type, the persons' last names, note.
    for (const QString &row : bodyRows(sheet, 2, 4))
      if (row.startsWith("date:"))
        historyRows.insert(row.section(u'|', 0, 0) + '|' + row.section(u'|', 3, 3));
    EXPECT_EQ(difference(historyRows, events), QStringList()) << "every event a row with its date and whole note";

    sheet = sheetOf(kCompanyList);
    std::multiset<QString> firstColumn;
    for (const auto &row : sheet.rows) {
      for (const test::FlatCell &cell : row)
        EXPECT_FALSE(cell.text.startsWith("Page ")) << cell.text.toStdString();
      if (!row.empty())
        firstColumn.insert(row[0].text);
    }
    for (const QString &company : data().companies)
      EXPECT_EQ(firstColumn.count(company), 1u) << company.toStdString();
  }

  // The pages as printed: the page footers among the rows.
  const QString pages = out_.file(QStringLiteral("pages.xls"));
  ASSERT_EQ(orvex({"export", "--report", kDeals, "--all", "--out", pages, "--xls-layout", "pages"}).exitCode, 0);
  ASSERT_TRUE(convertWithOffice({pages}, QStringLiteral("fods"), out_.path()));
  int dealPages = 0;
  exportAll(kDeals, QStringLiteral("txt"), &dealPages);
  int footers = 0;
  for (const QStringList &row : test::parseFlatSpreadsheet(test::readFile(out_.file("pages.fods"))))
    footers += row.join(u' ').contains(QRegularExpression("Page\\s+\\d+\\s+of\\s+\\d+"));
  EXPECT_EQ(footers, dealPages);
}

TEST_F(RunCommands, TheWordProcessorReadsTheRecordsBack) {
  if (QStandardPaths::findExecutable(QStringLiteral("soffice")).isEmpty())
    GTEST_SKIP() << "soffice is needed to read RTF back";
  const QString converted = out_.file(QStringLiteral("converted"));
  QDir().mkpath(converted);
  ASSERT_TRUE(
      convertWithOffice({exportAll(kCompanyList, QStringLiteral("rtf")), exportAll(kHistory, QStringLiteral("rtf"))},
                        QStringLiteral("txt:Text"), converted));
  for (const QString &report : {kCompanyList, kHistory})
    EXPECT_EQ(missing(QString::fromUtf8(test::readFile(converted + "/" + report + ".txt")), data().companies),
              QStringList())
        << report.toStdString();
}

// ---- Ranges and sub filters ----

TEST_F(RunCommands, EachKindOfRangePrintsExactlyItsRecords) {
  const QStringList &all = data().companies;
  const QStringList customers =
      column(data().database, QStringLiteral("SELECT name FROM company WHERE category = 1 ORDER BY idcompany"));
  ASSERT_FALSE(customers.isEmpty());
  ASSERT_LT(customers.size(), all.size());

  const struct {
    QStringList range;
    QStringList expected;
  } cases[] = {
      {{"--ids", "1,3,999"}, {all[0], all[2]}},
      {{"--filter", "customers"}, customers},
      {{"--filter", "Customers"}, customers}, // the local name
      {{"--all"}, all},
      {{"--explorer", "company"}, all},
      {{"--explorer", "Company", "--select", "4, 2"}, {all[1], all[3]}},
  };
  for (const auto &range : cases) {
    const QString path = out_.file(QStringLiteral("companies.txt"));
    const OrvexRun run = orvex(QStringList{"export", "--report", kCompanyList, "--out", path} + range.range);
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QStringLiteral("for %1 record").arg(range.expected.size()))) << run.err.toStdString();
    const auto printed = firstCells(textRows(path));
    for (const QString &company : all)
      EXPECT_EQ(printed.count(company), std::size_t(range.expected.contains(company)))
          << company.toStdString() << " with " << range.range.join(u' ').toStdString();
  }
}

TEST_F(RunCommands, SubFiltersNarrowTheSubPageNamedByNameOrGuid) {
  // Three companies that fit on one page, whose persons have an e-mail
  // address or not.
  const QString companies = QStringLiteral("4,8,12");
  const QString database = data().database;
  const auto persons = [&](const char *condition) {
    return column(database,
                  QStringLiteral("SELECT firstname || ';' || lastname FROM person WHERE company IN (%1) AND %2")
                      .arg(companies, QLatin1String(condition)));
  };
  const QStringList withEmail = persons("email IS NOT NULL");
  const QStringList withoutEmail = persons("email IS NULL");
  ASSERT_FALSE(withEmail.isEmpty());
  ASSERT_FALSE(withoutEmail.isEmpty());

  const QString document = out_.file(QStringLiteral("company-list.xml"));
  ASSERT_EQ(orvex({"report-export", kCompanyList, document}).exitCode, 0);
  const QRegularExpression personsPage(
      QStringLiteral(R"(<section name="\{([0-9A-F-]+)\}"><property name="name" value="Persons"/>)"));
  const QString guid = personsPage.match(QString::fromUtf8(test::readFile(document))).captured(1);
  ASSERT_FALSE(guid.isEmpty());

  for (const QString &subFilter :
       {QStringLiteral("persons=With e-mail"), guid.toLower() + QStringLiteral("=withemail")}) {
    const QString path = out_.file(QStringLiteral("persons.txt"));
    const OrvexRun run =
        orvex({"export", "--report", kCompanyList, "--ids", companies, "--subfilter", subFilter, "--out", path});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    std::set<QString> printed;
    for (const QStringList &row : textRows(path))
      if (row.size() == 3)
        printed.insert(row[0] + u';' + row[1]);
    for (const QString &person : withEmail)
      EXPECT_TRUE(printed.count(person)) << person.toStdString() << " with " << subFilter.toStdString();
    for (const QString &person : withoutEmail)
      EXPECT_FALSE(printed.count(person)) << person.toStdString() << " with " << subFilter.toStdString();
  }
}

TEST_F(RunCommands, TheLanguageIsTheAddinsAndTheDatabases) {
  const QString path = out_.file(QStringLiteral("kunder.pdf"));
  OrvexRun run = orvex({"export", "--report", kCompanyList, "--filter", "Kunder", "--lang", "sv", "--out", path});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_TRUE(run.err.contains(QStringLiteral("records of Företag"))) << run.err.toStdString();

  // The add-in's message, under its Swedish title, on one line.
  run = orvex({"export", "--report", "Price list", "--all", "--lang", "sv", "--out", path});
  EXPECT_EQ(run.exitCode, 1);
  const QStringList lines = run.err.trimmed().split(u'\n');
  ASSERT_EQ(lines.size(), 2) << run.err.toStdString();
  EXPECT_TRUE(lines[0].startsWith(QStringLiteral("Exporting \"Price list\""))) << lines[0].toStdString();
  EXPECT_TRUE(lines[1].startsWith(QStringLiteral("Kordel rapporter: "))) << lines[1].toStdString();
}

// ---- Refusals and failures ----

TEST_F(RunCommands, WhatCannotRunIsRefusedOnOneLineBeforeAnythingIsWritten) {
  const QString pdf = out_.file(QStringLiteral("never.pdf"));
  const struct {
    QStringList arguments;
    const char *reason;
    const char *number;
  } cases[] = {
      {{"export", "--report", "No such report", "--all", "--out", pdf}, "There is no report", "(53)"},
      {{"export", "--report", kCompanyList, "--out", pdf}, "Give the records to print", "(5)"},
      {{"export", "--report", kCompanyList, "--all", "--ids", "1", "--out", pdf}, "not both --all and --ids", "(5)"},
      {{"export", "--report", kCompanyList, "--filter", "bankrupt", "--out", pdf}, "\"Prospects\"", "(5)"},
      {{"export", "--report", kCompanyList, "--all", "--subfilter", "Deals=won", "--out", pdf},
       "its sub pages are \"Persons\"",
       "(5)"},
      {{"export", "--report", kCompanyList, "--all", "--subfilter", "Companies=sweden", "--out", pdf},
       "main page",
       "(5)"},
      {{"export", "--report", kCompanyList, "--all", "--out", out_.file("list.jpg")}, "pdf, xls, xlsx, html", "(5)"},
      {{"export", "--report", kCompanyList, "--all", "--out", pdf, "--xls-layout", "pages"}, "an .xls or .xlsx", "(5)"},
      {{"export", "--report", kCompanyList, "--all", "--out", out_.file("l.xls"), "--xls-layout", "flat"},
       "table or pages",
       "(5)"},
      {{"export", "--report", kCompanyList, "--all", "--out", out_.file("gone/list.pdf")}, "no folder", "(76)"},
      {{"export", "--report", kCompanyList, "--ids", "900,901", "--out", pdf}, "no records of Company", "(101002)"},
      {{"export", "--report", kCompanyList, "--filter", "antarctica", "--out", pdf}, "no records", "(101002)"},
      {{"export", "--report", kCompanyList, "--explorer", "deal", "--out", pdf}, "the report prints Company", "(5)"},
      {{"export", "--report", kCompanyList, "--all", "--lang", "tlh", "--out", pdf}, "en, sv", "(5)"},
      {{"print", "--report", kCompanyList, "--all", "--printer", "Basement laser"}, "\"Orvex PDF\"", "(5)"},
      {{"print", "--report", kCompanyList, "--all", "--copies", "0"}, "from 1", "(5)"},
      {{"preview", "--report", kCompanyList, "--all", "--out", pdf}, "'--out' is unknown", "(5)"},
  };
  for (const auto &refused : cases) {
    const OrvexRun run = orvex(refused.arguments);
    const QString what = refused.arguments.join(u' ');
    EXPECT_EQ(run.exitCode, 1) << what.toStdString();
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("orvex: "))) << run.err.toStdString();
    EXPECT_EQ(run.err.count(u'\n'), 1) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QLatin1String(refused.reason))) << run.err.toStdString();
    EXPECT_TRUE(run.err.trimmed().endsWith(QLatin1String(refused.number))) << run.err.toStdString();
  }
  EXPECT_EQ(QDir(out_.path()).entryList(QDir::Files | QDir::NoDotAndDotDot), QStringList());
}

TEST_F(RunCommands, AFailedRunLeavesTheFileThatWasThere) {
  const QString path = out_.file(QStringLiteral("prices.pdf"));
  ASSERT_TRUE(test::writeFile(path, "last week's prices"));
  const OrvexRun run = orvex({"export", "--report", "Price list", "--all", "--out", path});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(run.err.contains(QStringLiteral("Kordel Reports: "))) << run.err.toStdString();
  EXPECT_EQ(test::readFile(path), "last week's prices");
  EXPECT_EQ(QDir(out_.path()).entryList(QDir::Files), QStringList{"prices.pdf"}) << "no partial file beside it";
}

TEST_F(RunCommands, AReportWhoseClassWasDroppedIsRefused) {
  // The class is dropped from a copy of the database with SQL, as the
  // database has no call that drops one.
  const QString copy = out_.file(QStringLiteral("dropped.db"));
  ASSERT_TRUE(QFile::copy(data().database, copy));
  {
    auto db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("drop-class"));
    db.setDatabaseName(copy);
    ASSERT_TRUE(db.open());
    QSqlQuery query(db);
    for (const char *sql :
         {"DELETE FROM nv_filter WHERE class = 'product'", "DELETE FROM nv_option WHERE class = 'product'",
          "DELETE FROM nv_field WHERE class = 'product'",
          "DELETE FROM nv_text WHERE owner = 'class:product' OR owner LIKE 'field:product.%' OR "
          "owner LIKE 'filter:product.%'",
          "DELETE FROM nv_class WHERE name = 'product'", "DROP TABLE product"})
      ASSERT_TRUE(query.exec(QString::fromLatin1(sql))) << sql;
  }
  QSqlDatabase::removeDatabase(QStringLiteral("drop-class"));
  const OrvexRun run = test::runOrvex(
      data().dir, {"export", "--report", "Price list", "--all", "--out", out_.file("p.pdf"), "--db", copy});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err.trimmed(), QStringLiteral("orvex: The report \"Price list\" is built on the class \"product\", "
                                              "which this database lacks (5)"));
}

// The cells of a text export, quotes undone.
QStringList textCells(const QString &text) {
  QStringList cells;
  QString cell;
  bool quoted = false;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar c = text[i];
    if (quoted && c == u'"' && i + 1 < text.size() && text[i + 1] == u'"') {
      cell += c;
      ++i;
    } else if (c == u'"') {
      quoted = !quoted;
    } else if (!quoted && (c == u';' || c == u'\n')) {
      cells << cell;
      cell.clear();
    } else {
      cell += c;
    }
  }
  cells << cell;
  return cells;
}

QString collapsed(const QString &text) { return plain(text).simplified(); }

// A PDF's text in reading order, each block's lines together, so that a
// value wrapped in its column reads as one.
QString pdfReadingText(const QString &path) {
  QProcess tool;
  tool.start(QStringLiteral("pdftotext"), {QStringLiteral("-enc"), QStringLiteral("UTF-8"), path, QStringLiteral("-")});
  tool.waitForFinished(60000);
  return QString::fromUtf8(tool.readAllStandardOutput());
}

// What the text export holds whole, the demo reports' own PDF prints whole
// too: long names wrap in their column rather than lose their end.
TEST_F(RunCommands, TheDemoReportsPrintEveryValueWhole) {
  if (!test::pdfToolsAvailable())
    GTEST_SKIP() << "pdftotext is needed";
  for (const QString report : {"Company list", "Deals by value", "Company history"}) {
    const QString txt = out_.file(report + ".txt");
    const QString pdf = out_.file(report + ".pdf");
    ASSERT_EQ(orvex({"export", "--report", report, "--all", "--out", txt}).exitCode, 0);
    ASSERT_EQ(orvex({"export", "--report", report, "--all", "--out", pdf}).exitCode, 0);
    const QString printed = collapsed(pdfReadingText(pdf));
    QStringList cut;
    for (const QString &cell : textCells(QString::fromUtf8(test::readFile(txt))))
      if (!cell.trimmed().isEmpty() && !printed.contains(collapsed(cell)))
        cut << cell;
    EXPECT_TRUE(cut.isEmpty()) << report.toStdString() << " cuts: " << cut.join(u'|').toStdString();
  }
}

// ---- Printing ----

TEST_F(RunCommands, TheBuiltInPdfPrinterWritesIntoTheDocumentsFolder) {
  if (!test::pdfToolsAvailable())
    GTEST_SKIP() << "pdftotext is needed";
  const QString documents = out_.file(QStringLiteral("Documents"));
  const OrvexRun run = orvex({"print", "--report", kDeals, "--filter", "won", "--printer", "orvex pdf"},
                             {{"HOME", out_.path()}, {"XDG_DOCUMENTS_DIR", documents}});
  ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_TRUE(run.err.contains(QStringLiteral("on Orvex PDF: the printer took the job"))) << run.err.toStdString();
  const QStringList files = QDir(documents).entryList({QStringLiteral("*.pdf")}, QDir::Files);
  ASSERT_EQ(files.size(), 1);
  const QString text = test::pdfPageTexts(documents + u'/' + files.front()).join(u'\n');
  const QString database = data().database;
  const QStringList won = column(database, QStringLiteral("SELECT name FROM deal WHERE stage = 5"));
  EXPECT_EQ(missing(text, won), QStringList());
  for (const QString &lost : column(database, QStringLiteral("SELECT name FROM deal WHERE stage = 6")))
    if (!won.contains(lost)) { // deals of different stages may share a name
      EXPECT_FALSE(plain(text).contains(lost)) << lost.toStdString();
    }
}

TEST_F(RunCommands, AQueueOfThePrintSystemGetsTheJobWithItsCopies) {
  if (!test::pdfToolsAvailable() || test::pdfPrinterBackend().isEmpty() || test::pdfPrinterPpd().isEmpty())
    GTEST_SKIP() << "the PDF printer and pdftotext are needed";
  if (geteuid() != 0)
    GTEST_SKIP() << "the PDF printer's backend runs only under a scheduler started as root";
  // The scheduler's filters run as a user of their own, which must reach
  // the spool and temporary folders.
  ::chmod(QFile::encodeName(out_.path()).constData(), 0755);
  QDir().mkpath(out_.file(QStringLiteral("tmp")));
  ::chmod(QFile::encodeName(out_.file(QStringLiteral("tmp"))).constData(), 01777);
  test::PrivateCupsd cupsd(out_.path());
  if (!cupsd.running())
    GTEST_SKIP() << "no print server for the test: " << cupsd.failure().toStdString();
  QString error;
  if (!test::addQueue(cupsd, QStringLiteral("kordel_reports"), QStringLiteral("cups-pdf:/"), test::pdfPrinterPpd(),
                      {QStringLiteral("-o"), QStringLiteral("pdftops-renderer-default=pdftocairo")}, error))
    GTEST_SKIP() << "the PDF printer queue cannot be set up: " << error.toStdString();
  const test::ScopedCupsServer server(cupsd.socket());
  const test::PdfPrinterOutput output(kCompanyList);

  const OrvexRun run =
      orvex({"print", "--report", kCompanyList, "--ids", "2,7", "--printer", "kordel_reports", "--copies", "2"},
            {{"CUPS_SERVER", cupsd.socket()}});
  ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_TRUE(run.err.contains(QStringLiteral("on kordel_reports, 2 copies"))) << run.err.toStdString();

  cups_job_t *jobs = nullptr;
  const int count = cupsGetJobs2(CUPS_HTTP_DEFAULT, &jobs, "kordel_reports", 0, CUPS_WHICHJOBS_ALL);
  ASSERT_EQ(count, 1);
  const int jobId = jobs[0].id;
  cupsFreeJobs(count, jobs);
  const test::JobAttributes job = test::waitForJobEnd(jobId);
  ASSERT_EQ(job.state, IPP_JSTATE_COMPLETED) << job.stateMessage.toStdString();
  EXPECT_EQ(job.copies, 2);

  const QStringList written = output.written();
  ASSERT_EQ(written.size(), 1) << written.join(u',').toStdString();
  const QString text = test::pdfPageTexts(written.front()).join(u'\n');
  QFile::remove(written.front());
  const QStringList &companies = data().companies;
  EXPECT_EQ(missing(text, {companies[1], companies[6]}), QStringList());
  EXPECT_FALSE(plain(text).contains(companies[0]));
}

// ---- The preview window ----

// In the test's own process, so that the test can reach the window and
// close it as a user does.
TEST_F(RunCommands, PreviewShowsTheReportsPagesUntilTheWindowIsClosed) {
  const TempDir home;
  auto application = std::make_shared<host::HostApplication>(
      std::make_shared<host::SettingsStore>(home.file(QStringLiteral("registry.ini"))),
      std::make_shared<host::FileLog>(home.file(QStringLiteral("orvex.log"))), QStringLiteral("en"));
  int pages = 0;
  bool found = false;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
      auto *preview = qobject_cast<engine::PreviewWindow *>(widget);
      if (!preview || !preview->isVisible())
        continue;
      watch.stop();
      pages = preview->pageCount();
      found = preview->find(data().companies[4]);
      preview->close();
    }
  });
  watch.start(20);
  const host::cli::Command *preview = host::cli::findCommand(QStringLiteral("preview"));
  const int exitCode =
      preview->run(*application, host::cli::Arguments::parse(preview->syntax, {"--report", kCompanyList, "--ids", "5,6",
                                                                               "--db", data().database}));
  watch.stop();
  hostapi::installUi(nullptr);
  EXPECT_EQ(exitCode, 0);
  EXPECT_GE(pages, 1);
  EXPECT_TRUE(found) << "the window shows the records of the range";
}

// Without a display, or on a window platform that draws offscreen, a
// preview would open where nobody can close it; the command refuses instead.
TEST_F(RunCommands, PreviewWithoutADisplayIsRefused) {
  const QMap<QString, QString> nowhere[] = {
      {{"QT_QPA_PLATFORM", ""}, {"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}},
      {{"QT_QPA_PLATFORM", "offscreen"}, {"DISPLAY", ":0"}},
      {{"QT_QPA_PLATFORM", "minimal"}, {"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}},
  };
  for (const auto &environment : nowhere) {
    const OrvexRun run = orvex({"preview", "--report", kCompanyList, "--all"}, environment);
    EXPECT_EQ(run.exitCode, 1) << environment.value("QT_QPA_PLATFORM").toStdString();
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("orvex: The preview needs a display"))) << run.err.toStdString();
  }
}

} // namespace

// Text files written from pages: lines in reading order, the delimiters
// and the empty-line switch in each combination, checked against the exact
// file content; values that would shift columns or run as formulas, also
// as a spreadsheet program reads them; and what a failed export leaves.

#include "OfficeConversion.h"

#include "engine/export/TextExporter.h"
#include "engine/export/TextExporterObject.h"
#include "engine/render/PagesObject.h"

#include "support/ErrorCapture.h"
#include "support/TempDir.h"

#include <QDir>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::TempDir;

namespace {

// Page one: a heading line whose second run stands 10 twips lower, a row
// with an empty run between its texts, a total a gap further down and a
// line of blanks another gap below. Page two: two Unicode lines. Runs are
// stored out of reading order.
PageDocument smallDocument() {
  PageDocument document;
  const int font = document.internFont(PageFont{});
  Page first(11906, 16838);
  first.addText({1000, 2500, 2000, 250}, QStringLiteral("Total"), font);
  first.addText({4000, 1010, 2000, 250}, QStringLiteral("Qty"), font);
  first.addText({1000, 1000, 2000, 250}, QStringLiteral("Name"), font);
  first.addText({1000, 1300, 2000, 250}, QStringLiteral("Apple"), font);
  first.addText({2500, 1300, 1000, 250}, QString(), font);
  first.addText({4000, 1300, 2000, 250}, QStringLiteral("3"), font, kBlack, TextAlign::Right);
  first.addText({4000, 2500, 2000, 250}, QStringLiteral("10"), font);
  first.addText({1000, 3000, 2000, 250}, QStringLiteral("  "), font);
  first.addLine({1000, 2000, 6000, 2000, Stroke{}});
  document.append(first);
  Page second(11906, 16838);
  second.addText({1000, 1290, 3000, 250}, QStringLiteral("Ελληνικά"), font);
  second.addText({1000, 1000, 3000, 250}, QStringLiteral("Sida två, Žluťoučký"), font);
  document.append(second);
  return document;
}

TEST(TextExport, DefaultsWriteGapsAsEmptyLinesAndATabLineBetweenPages) {
  EXPECT_EQ(TextExporter().text(smallDocument()), QStringLiteral("Name;Qty\n"
                                                                 "Apple;3\n"
                                                                 "\n"
                                                                 "Total;10\n"
                                                                 "\n"
                                                                 "\n"
                                                                 "\t\n"
                                                                 "Sida två, Žluťoučký\n"
                                                                 "Ελληνικά\n"));
}

TEST(TextExport, SuppressedEmptyLinesLeaveOnlyLinesWithText) {
  TextExporter exporter;
  exporter.setSuppressEmptyLines(true);
  EXPECT_EQ(exporter.text(smallDocument()), QStringLiteral("Name;Qty\n"
                                                           "Apple;3\n"
                                                           "Total;10\n"
                                                           "\t\n"
                                                           "Sida två, Žluťoučký\n"
                                                           "Ελληνικά\n"));
}

TEST(TextExport, OwnDelimitersAreWrittenInPlaceOfTheDefaults) {
  TextExporter exporter;
  exporter.setTextDelimiter(QStringLiteral(" | "));
  exporter.setPageDelimiter(QStringLiteral("--- page ---"));
  EXPECT_EQ(exporter.text(smallDocument()), QStringLiteral("Name | Qty\n"
                                                           "Apple | 3\n"
                                                           "\n"
                                                           "Total | 10\n"
                                                           "\n"
                                                           "\n"
                                                           "--- page ---\n"
                                                           "Sida två, Žluťoučký\n"
                                                           "Ελληνικά\n"));
  exporter.setSuppressEmptyLines(true);
  exporter.setTextDelimiter(QString());
  exporter.setPageDelimiter(QString());
  EXPECT_EQ(exporter.text(smallDocument()), QStringLiteral("NameQty\n"
                                                           "Apple3\n"
                                                           "Total10\n"
                                                           "Sida två, Žluťoučký\n"
                                                           "Ελληνικά\n"))
      << "an empty page delimiter writes no line";
}

TEST(TextExport, RunsWithin30TwipsShareALineThatDoesNotDrift) {
  PageDocument document;
  const int font = document.internFont(PageFont{});
  Page page(11906, 16838);
  page.addText({3000, 1030, 1000, 20}, QStringLiteral("b"), font);
  page.addText({1000, 1000, 1000, 20}, QStringLiteral("a"), font);
  page.addText({2000, 1055, 1000, 20}, QStringLiteral("c"), font);
  page.addText({3000, 1085, 1000, 20}, QStringLiteral("d"), font);
  page.addText({1000, 1231, 1000, 20}, QStringLiteral("f"), font);
  page.addText({3000, 1200, 1000, 20}, QStringLiteral("e"), font);
  document.append(page);
  TextExporter exporter;
  exporter.setSuppressEmptyLines(true);
  // c is 25 twips below b but 55 below a, where the line begins: a line of
  // its own, which d 30 twips lower joins; f 31 twips below e does not.
  EXPECT_EQ(exporter.text(document), QStringLiteral("a;b\nc;d\ne\nf\n"));
}

// Values that would shift the columns or run as formulas, and numbers,
// in the order they are written; then a line of three plain values.
const QStringList kAwkward{QStringLiteral("Acme; Co"), QStringLiteral("15\" screen"), QStringLiteral("two\nlines"),
                           QStringLiteral("=1+2"),     QStringLiteral("+A1*2"),       QStringLiteral("-5-3"),
                           QStringLiteral("@SUM(A1)"), QStringLiteral("\t=A1"),       QStringLiteral("-3.5"),
                           QStringLiteral("+7"),       QStringLiteral("plain")};

PageDocument awkwardDocument() {
  PageDocument document;
  const int font = document.internFont(PageFont{});
  Page page(16838, 11906);
  Twips x = 200;
  for (const QString &value : kAwkward) {
    page.addText({x, 1000, 1400, 250}, value, font);
    x += 1500;
  }
  x = 200;
  for (const QString &value : {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}) {
    page.addText({x, 1300, 1400, 250}, value, font);
    x += 1500;
  }
  document.append(page);
  return document;
}

// A cell of delimited values and whether it stood in quotes.
using Cell = std::pair<QString, bool>;

// Delimited values: rows of cells, quoted cells with their quotes doubled
// and their line breaks kept.
std::vector<std::vector<Cell>> readDelimited(const QString &text, QChar delimiter) {
  std::vector<std::vector<Cell>> rows(1);
  Cell cell;
  bool inQuotes = false;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar c = text[i];
    if (inQuotes) {
      if (c == u'"' && i + 1 < text.size() && text[i + 1] == u'"')
        cell.first += text[++i];
      else if (c == u'"')
        inQuotes = false;
      else
        cell.first += c;
    } else if (c == u'"') {
      inQuotes = cell.second = true;
    } else if (c == delimiter || c == u'\n') {
      rows.back().push_back(std::exchange(cell, Cell{}));
      if (c == u'\n')
        rows.emplace_back();
    } else {
      cell.first += c;
    }
  }
  if (rows.back().empty())
    rows.pop_back();
  return rows;
}

TEST(TextExport, ValuesThatWouldShiftColumnsOrRunAsFormulasAreQuoted) {
  TextExporter exporter;
  exporter.setSuppressEmptyLines(true);
  EXPECT_EQ(exporter.text(awkwardDocument()),
            QStringLiteral("\"Acme; Co\";\"15\"\" screen\";\"two\nlines\";\"'=1+2\";\"'+A1*2\";\"'-5-3\";\"'@SUM(A1)\";"
                           "\"'\t=A1\";-3.5;+7;plain\n"
                           "a;b;c\n"));
  exporter.setTextDelimiter(QStringLiteral(","));
  EXPECT_TRUE(exporter.text(awkwardDocument()).startsWith(QStringLiteral("Acme; Co,\"15\"\" screen\",")))
      << "only the delimiter in use needs quotes";
}

TEST(TextExport, ASpreadsheetProgramReadsEachValueInItsColumnAsTextOrNumber) {
  if (test::officeConverter().isEmpty())
    GTEST_SKIP() << "soffice is needed to read the file as a spreadsheet";
  TempDir dir;
  const QString path = dir.file(QStringLiteral("values.txt"));
  TextExporter exporter;
  exporter.setSuppressEmptyLines(true);
  exporter.exportDocument(awkwardDocument(), path);
  // Read with ";" between values and formulas evaluated, written back with
  // "|" between cells and text cells quoted.
  const QString converted = test::convertWithOffice(path, QStringLiteral("csv:Text - txt - csv (StarCalc):124,34,76,1"),
                                                    dir.file(QStringLiteral("out")),
                                                    QStringLiteral("Text - txt - csv (StarCalc):59,34,76,1"));
  ASSERT_FALSE(converted.isEmpty());
  const auto rows = readDelimited(QString::fromUtf8(test::readFile(converted)), u'|');
  ASSERT_EQ(rows.size(), 2u) << test::readFile(converted).toStdString();
  const std::vector<Cell> &cells = rows[0];
  ASSERT_EQ(cells.size(), std::size_t(kAwkward.size())) << test::readFile(converted).toStdString();
  for (qsizetype i = 0; i < kAwkward.size(); ++i) {
    const QString &value = kAwkward[i];
    const Cell &cell = cells[std::size_t(i)];
    SCOPED_TRACE(value.toStdString());
    if (value == QLatin1String("-3.5") || value == QLatin1String("+7")) {
      EXPECT_FALSE(cell.second) << "a number, not text";
      EXPECT_EQ(cell.first.toDouble(), value.toDouble());
    } else if (QStringLiteral("=+-@\t").contains(value.front())) {
      EXPECT_TRUE(cell.second);
      EXPECT_EQ(cell.first, QLatin1Char('\'') + value) << "text, not a formula's result";
    } else {
      EXPECT_TRUE(cell.second);
      EXPECT_EQ(cell.first, value);
    }
  }
  // The second line's cells, padded to the first's.
  const std::vector<Cell> second(rows[1].begin(), rows[1].begin() + std::min<std::size_t>(rows[1].size(), 3));
  EXPECT_EQ(second, (std::vector<Cell>{{"a", true}, {"b", true}, {"c", true}}));
  for (std::size_t i = 3; i < rows[1].size(); ++i)
    EXPECT_EQ(rows[1][i], Cell()) << i;
}

TEST(TextExport, FileIsUtf8WithoutByteOrderMark) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("report.txt"));
  TextExporter().exportDocument(smallDocument(), path);
  const QByteArray bytes = test::readFile(path);
  EXPECT_TRUE(bytes.startsWith("Name;Qty\n"));
  EXPECT_EQ(bytes, TextExporter().text(smallDocument()).toUtf8());
  EXPECT_FALSE(bytes.contains('\r'));
}

TEST(TextExport, LateBoundSettingsInTheirOrderOfUse) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("late.txt"));
  auto exporter = std::make_shared<TextExporterObject>();
  exporter->set(QStringLiteral("FileName"), Variant(path));
  exporter->set(QStringLiteral("TextDelimiter"), Variant(";"));
  exporter->set(QStringLiteral("PageDelimiter"), Variant("\t"));
  exporter->set(QStringLiteral("SuppressEmptyLines"), Variant(true));
  EXPECT_TRUE(exporter->get(QStringLiteral("SuppressEmptyLines")).toBool());
  auto pages = std::make_shared<PagesObject>(std::make_shared<PageDocument>(smallDocument()));
  exporter->invoke(QStringLiteral("Export"), {Variant(pages)});
  EXPECT_EQ(QString::fromUtf8(test::readFile(path)), QStringLiteral("Name;Qty\n"
                                                                    "Apple;3\n"
                                                                    "Total;10\n"
                                                                    "\t\n"
                                                                    "Sida två, Žluťoučký\n"
                                                                    "Ελληνικά\n"));
}

TEST(TextExport, FailuresRaiseAndLeaveEarlierFilesAlone) {
  TempDir dir;
  EXPECT_EQ(test::errorNumber(
                [&] { TextExporter().exportDocument(smallDocument(), dir.file(QStringLiteral("missing/a.txt"))); }),
            ErrorNumber::PathNotFound);
  EXPECT_TRUE(QDir(dir.path()).isEmpty());

  const QString path = dir.file(QStringLiteral("report.txt"));
  ASSERT_TRUE(test::writeFile(path, "earlier"));
  EXPECT_EQ(test::errorNumber([&] { TextExporter().exportDocument(PageDocument(), path); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::readFile(path), "earlier");
  EXPECT_EQ(test::errorNumber([&] { TextExporter().exportDocument(smallDocument(), dir.path()); }),
            ErrorNumber::PermissionDenied)
      << "the target is a folder";
}

} // namespace

// Text files written from pages: lines in reading order, the delimiters
// and the empty-line switch in each combination, checked against the exact
// file content, and what a failed export leaves.

#include "engine/export/TextExporter.h"
#include "engine/export/TextExporterObject.h"
#include "engine/render/PagesObject.h"

#include "support/ErrorCapture.h"
#include "support/TempDir.h"

#include <QDir>

#include <gtest/gtest.h>

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

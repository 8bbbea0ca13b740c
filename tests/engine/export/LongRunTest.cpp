// Long runs to PDF: a run's pages leave memory as it finishes them and the
// PDF goes out page by page, so that a run ten times as long peaks at the
// same memory; page X of Y and a total still come out right. A run told
// that its pages go to a PDF writes it while it runs, and that PDF is the
// one the usual export writes.

#include "support/PdfTools.h"
#include "support/Sanitizers.h"
#include "support/TempDir.h"

#include "engine/export/ExportFile.h"
#include "engine/export/PdfExporter.h"
#include "engine/export/pdf/PdfPrewriter.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/render/PageDocument.h"

#include "core/Object.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <functional>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace kordel;
using namespace kordel::engine;

namespace {

// Makes the rows as the run fetches them, so that the rows themselves
// take no memory: number n, "Customer n", and amount n.
class CountingRows : public Object {
public:
  CountingRows(std::shared_ptr<LayoutReport> report, int rows) : report_(std::move(report)), rows_(rows) {}

  // Something done before the row of that number is fetched.
  void beforeRow(int row, std::function<void()> action) {
    actionRow_ = row;
    action_ = std::move(action);
  }

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<CountingRows>("ActiveReport_DataInitialize",
                             [](CountingRows &s, Args &) {
                               for (const char *name : {"number", "name", "amount"})
                                 s.report_->fields()->add(QString::fromLatin1(name));
                               return Variant();
                             }),
        method<CountingRows>("ActiveReport_FetchData",
                             [](CountingRows &s, Args &a) {
                               if (s.next_ >= s.rows_)
                                 return Variant();
                               const int n = ++s.next_;
                               if (n == s.actionRow_)
                                 s.action_();
                               const auto &fields = *s.report_->fields();
                               fields.item(Variant(0))->value = Variant(n);
                               fields.item(Variant(1))->value = QStringLiteral("Customer %1").arg(n);
                               fields.item(Variant(2))->value = Variant(n);
                               a[0] = Variant(false);
                               return Variant();
                             }),
    }};
    return table;
  }

private:
  std::shared_ptr<LayoutReport> report_;
  int rows_;
  int next_ = 0;
  int actionRow_ = 0;
  std::function<void()> action_;
};

std::shared_ptr<Field> addField(Section &section, const QString &dataField, float left, float width) {
  auto field = std::static_pointer_cast<Field>(section.controls()->add("DDActiveReports2.Field"));
  field->dataField = dataField;
  field->left = left;
  field->width = width;
  field->canGrow = false;
  return field;
}

// A list of customers with "Page X of Y" below each page and the sum of
// the amounts at the end.
std::shared_ptr<LayoutReport> customerList() {
  auto report = LayoutReport::create();
  auto &sections = *report->sections();
  auto &pageHeader = *sections.add("PageHeader", 0, SectionType::PageHeader, 300);
  auto &detail = *sections.add("Detail", 1, SectionType::Detail, 250);
  auto &pageFooter = *sections.add("PageFooter", 2, SectionType::PageFooter, 300);
  auto &reportFooter = *sections.add("ReportFooter", 3, SectionType::ReportFooter, 300);
  auto heading = std::static_pointer_cast<Label>(pageHeader.controls()->add("DDActiveReports2.Label"));
  heading->caption = QStringLiteral("Customers");
  heading->width = 3000;
  addField(detail, "number", 0, 1200);
  addField(detail, "name", 1300, 3000);
  addField(detail, "amount", 4400, 1500);
  auto page = addField(pageFooter, "", 0, 1500);
  page->countKind = 4;
  page->runningKind = 2;
  page->outputFormat = "Page #";
  auto pages = addField(pageFooter, "", 1600, 1500);
  pages->countKind = 4;
  pages->outputFormat = "of #";
  auto total = addField(reportFooter, "amount", 0, 3000);
  total->countKind = 1;
  total->outputFormat = "0";
  return report;
}

// The customer list run over that many rows.
std::shared_ptr<LayoutReport> ranList(int rows, const QString &exportAhead = {}) {
  auto report = customerList();
  const auto rowSource = std::make_shared<CountingRows>(report, rows); // the report keeps no hold on it
  report->setEventSink(rowSource);
  report->exportAhead = exportAhead;
  report->run();
  return report;
}

// The run of that many rows and its PDF.
int runToPdf(int rows, const QString &path) {
  const auto report = ranList(rows);
  PdfExporter().exportDocument(*report->pages(), path);
  return report->pages()->pageCount();
}

// Whether the two files show the same pages: the same text, and the first,
// a middle and the last page drawn alike.
void expectSamePages(const QString &path, const QString &other, const QString &folder) {
  const QStringList texts = test::pdfPageTexts(path);
  ASSERT_GT(texts.size(), 2);
  EXPECT_EQ(texts, test::pdfPageTexts(other));
  for (const int page : {1, int(texts.size()) / 2, int(texts.size())}) {
    const QImage drawn = test::renderedPdfPage(path, page, 50, folder);
    EXPECT_FALSE(drawn.isNull());
    EXPECT_TRUE(drawn == test::renderedPdfPage(other, page, 50, folder)) << "page " << page;
  }
  test::expectSoundPdfStructure(path);
}

// The peak memory, in kilobytes, of a child process that runs that many
// rows to a PDF; -1 when it failed.
long childPeakKilobytes(int rows, const QString &path) {
  int pipeEnds[2];
  if (::pipe(pipeEnds) != 0)
    return -1;
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(pipeEnds[0]);
    long peak = -1;
    try {
      runToPdf(rows, path);
      rusage usage{};
      ::getrusage(RUSAGE_SELF, &usage);
      peak = usage.ru_maxrss;
    } catch (...) {
    }
    const ssize_t written = ::write(pipeEnds[1], &peak, sizeof peak);
    ::_exit(written == ssize_t(sizeof peak) ? 0 : 1);
  }
  ::close(pipeEnds[1]);
  long peak = -1;
  if (child < 0 || ::read(pipeEnds[0], &peak, sizeof peak) != ssize_t(sizeof peak))
    peak = -1;
  ::close(pipeEnds[0]);
  if (child > 0)
    ::waitpid(child, nullptr, 0);
  return peak;
}

TEST(LongRun, TenThousandRowsCountTheirPagesAndAddUpInThePdf) {
  test::TempDir dir;
  const QString path = dir.file(QStringLiteral("customers.pdf"));
  const int pages = runToPdf(10000, path);
  const QStringList texts = test::pdfPageTexts(path);
  ASSERT_EQ(texts.size(), pages);
  ASSERT_GT(pages, 100);
  const QRegularExpression footer(QStringLiteral("Page (\\d+)\\s+of (\\d+)"));
  for (const int page : {0, pages / 2, pages - 1}) {
    const auto match = footer.match(texts[page]);
    ASSERT_TRUE(match.hasMatch()) << texts[page].toStdString();
    EXPECT_EQ(match.captured(1).toInt(), page + 1);
    EXPECT_EQ(match.captured(2).toInt(), pages);
  }
  EXPECT_TRUE(texts[0].contains(QStringLiteral("Customer 1\n")) || texts[0].contains(QStringLiteral("Customer 1 ")));
  EXPECT_TRUE(texts.back().contains(QStringLiteral("Customer 10000")));
  EXPECT_TRUE(texts.back().contains(QStringLiteral("50005000"))) << "the sum of 1 to 10,000";
}

TEST(LongRun, APdfWrittenWhileTheRunGoesOnIsTheUsualOne) {
  test::TempDir dir;
  // A second run drops the first one's pages with the PDF written for them.
  ranList(2000, QStringLiteral("PDF"));
  const auto report = ranList(3000, QStringLiteral("pdf"));
  const PageDocument &pages = *report->pages();
  const auto ahead = std::dynamic_pointer_cast<pdf::PdfPrewriter>(pages.pagesAhead());
  ASSERT_TRUE(ahead);

  const QString written = dir.file(QStringLiteral("ahead.pdf"));
  {
    ExportFile file(written, QStringLiteral("LongRun"));
    ASSERT_TRUE(ahead->exportTo(pages, file, QStringLiteral("Customers"), QString()));
    file.commit();
  }
  EXPECT_FALSE(ahead->exportTo(
      pages, *std::make_unique<ExportFile>(dir.file(QStringLiteral("again.pdf")), QStringLiteral("LongRun")), QString(),
      QString()))
      << "pages written ahead make one export";
  // The export finds the PDF written ahead used and writes its own.
  const QString usual = dir.file(QStringLiteral("usual.pdf"));
  PdfExporter().exportDocument(pages, usual);
  expectSamePages(written, usual, dir.path());
  EXPECT_TRUE(test::pdfPageTexts(written).back().contains(QStringLiteral("Page %1").arg(pages.pageCount())));
}

TEST(LongRun, AnExportWhileTheRunGoesOnLeavesTheRestOfTheRunToTheUsualRoad) {
  test::TempDir dir;
  auto report = customerList();
  const auto rowSource = std::make_shared<CountingRows>(report, 10000);
  const QString early = dir.file(QStringLiteral("early.pdf"));
  int earlyPages = 0;
  rowSource->beforeRow(1000, [&] {
    const PageDocument &pages = *report->pages();
    earlyPages = pages.pageCount();
    const auto ahead = std::dynamic_pointer_cast<pdf::PdfPrewriter>(pages.pagesAhead());
    ASSERT_TRUE(ahead);
    ExportFile file(early, QStringLiteral("LongRun"));
    EXPECT_TRUE(ahead->exportTo(pages, file, QString(), QString()));
    file.commit();
  });
  report->setEventSink(rowSource);
  report->exportAhead = QStringLiteral("PDF");
  report->run(); // more pages than may wait for the writing thread follow
  ASSERT_GT(earlyPages, 0);
  EXPECT_EQ(test::pdfPageTexts(early).size(), earlyPages);

  const QString path = dir.file(QStringLiteral("whole.pdf"));
  PdfExporter().exportDocument(*report->pages(), path);
  const QStringList texts = test::pdfPageTexts(path);
  ASSERT_EQ(texts.size(), report->pages()->pageCount());
  EXPECT_TRUE(texts.back().contains(QStringLiteral("Customer 10000")));
}

TEST(LongRun, ARunThatCannotWriteAheadLeavesTheWholeExportToTheExporter) {
  test::TempDir dir;
  const QString usual = dir.file(QStringLiteral("usual.pdf"));
  runToPdf(1500, usual);
  const QByteArray temporaryFolder = qgetenv("TMPDIR");
  qputenv("TMPDIR", dir.file(QStringLiteral("no such folder")).toLocal8Bit());
  const auto report = ranList(1500, QStringLiteral("PDF"));
  qputenv("TMPDIR", temporaryFolder);
  if (temporaryFolder.isEmpty())
    qunsetenv("TMPDIR");
  const QString path = dir.file(QStringLiteral("exported.pdf"));
  PdfExporter().exportDocument(*report->pages(), path);
  expectSamePages(path, usual, dir.path());
}

TEST(LongRun, TenTimesTheRowsPeakAtTheSameMemory) {
  if (test::kUnderAddressSanitizer)
    GTEST_SKIP() << "the address sanitizer keeps freed memory in quarantine";
  test::TempDir dir;
  const long small = childPeakKilobytes(20000, dir.file(QStringLiteral("small.pdf")));
  const long large = childPeakKilobytes(200000, dir.file(QStringLiteral("large.pdf")));
  ASSERT_GT(small, 0);
  ASSERT_GT(large, 0);
  std::printf("[ memory   ] peak of 20,000 rows %ld KB, of 200,000 rows %ld KB\n", small, large);
  // Beyond the pages, what a longer run may fill is bounded: the caches of
  // shaped lines (1 MB) and a few bytes a band showing.
  EXPECT_LT(large - small, 8 * 1024) << "the pages of a long run stay out of memory";
}

} // namespace

// Printing pages through a scheduler of the test's own: a PDF printer queue
// whose output is read back with pdftotext and pdfinfo, a queue with paper
// bins whose jobs show the options sent, and the errors for queues that do
// not exist.

#include "support/CupsTestQueues.h"

#include "engine/print/PagePrinter.h"
#include "engine/print/PaperBins.h"

#include "support/PdfTools.h"
#include "support/ErrorCapture.h"
#include "support/PrivateCupsd.h"
#include "support/TempDir.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cups/cups.h>

#include <memory>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::TempDir;

namespace {

constexpr Twips kA4Short = 11906;
constexpr Twips kA4Long = 16838;

PageDocument twoPages() {
  PageDocument document;
  const int font = document.internFont(PageFont{});
  Page first(kA4Short, kA4Long);
  first.addText({1440, 1440, 8000, 300}, QStringLiteral("Quarterly invoices"), font);
  document.append(first);
  Page second(kA4Short, kA4Long);
  second.addText({1440, 1440, 8000, 300}, QStringLiteral("Totals carried over"), font);
  document.append(second);
  return document;
}

class PagePrinting : public ::testing::Test {
protected:
  void SetUp() override {
    server_ = std::make_unique<test::TestPrintServer>(dir_);
    if (!server_->running())
      GTEST_SKIP() << "no print server for the test: " << server_->failure().toStdString();
  }

  void TearDown() override { server_.reset(); }

  QStringList clientTemporaryFiles() const { return server_->clientTemporaryFiles(); }

  TempDir dir_;
  std::unique_ptr<test::TestPrintServer> server_;
};

TEST_F(PagePrinting, PrintsTheTextOfAllPagesToAPdfPrinter) {
  if (!test::pdfToolsAvailable())
    GTEST_SKIP() << "pdftotext, pdfinfo and pdffonts are needed";
  if (const QString why = server_->addPdfPrinterQueue(QStringLiteral("kordel_pdf")); !why.isEmpty())
    GTEST_SKIP() << why.toStdString();

  const test::PdfPrinterOutput output(QStringLiteral("Kordel invoice run"));

  PrintSettings settings;
  settings.queue = QStringLiteral("kordel_pdf");
  settings.jobName = QStringLiteral("Kordel invoice run");
  settings.copies = 2;
  const int job = PagePrinter(settings).printDocument(twoPages());
  ASSERT_GT(job, 0);
  EXPECT_TRUE(clientTemporaryFiles().isEmpty()) << clientTemporaryFiles().join(u',').toStdString();

  const test::JobAttributes attributes = test::waitForJobEnd(job);
  ASSERT_EQ(attributes.state, IPP_JSTATE_COMPLETED)
      << attributes.stateMessage.toStdString() << server_->errorLog().toStdString();
  EXPECT_EQ(attributes.name, settings.jobName);
  EXPECT_EQ(attributes.copies, 2);
  EXPECT_EQ(attributes.orientation, 3);

  const QStringList written = output.written();
  ASSERT_EQ(written.size(), 1) << written.join(u',').toStdString();
  const QString pdf = written.front();
  const QStringList pages = test::pdfPageTexts(pdf);
  const QString pagesCount = test::pdfInfoValue(pdf, QStringLiteral("Pages"));
  QFile::remove(pdf);

  // The printer writes one copy; the number of copies is the job's.
  EXPECT_EQ(pagesCount, QStringLiteral("2"));
  ASSERT_EQ(pages.size(), 2);
  EXPECT_TRUE(pages[0].contains(QStringLiteral("Quarterly invoices"))) << pages[0].toStdString();
  EXPECT_TRUE(pages[1].contains(QStringLiteral("Totals carried over"))) << pages[1].toStdString();
}

TEST_F(PagePrinting, PaperBinsComeInTheDriversOrderAndGoWithTheJob) {
  const QString why = server_->addQueueWithBins(QStringLiteral("kordel_bins"));
  ASSERT_TRUE(why.isEmpty()) << why.toStdString();
  const auto bins = printerPaperBins(QStringLiteral("kordel_bins"));
  ASSERT_EQ(bins.size(), 3u);
  // The driver's names when the print system can fetch the printer's
  // translations, else the keywords the scheduler gives the bins.
  const std::pair<QString, QString> names[] = {{QStringLiteral("Upper Tray"), QStringLiteral("top")},
                                               {QStringLiteral("Lower Tray"), QStringLiteral("bottom")},
                                               {QStringLiteral("Manual Feed"), QStringLiteral("manual")}};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(bins[i].first, i + 1);
    EXPECT_TRUE(bins[i].second == names[i].first || bins[i].second == names[i].second) << bins[i].second.toStdString();
  }

  PrintSettings settings;
  settings.queue = QStringLiteral("kordel_bins");
  settings.paperBin = 2;
  PageDocument document = twoPages();
  Page landscape(kA4Long, kA4Short);
  landscape.addText({1440, 1440, 8000, 300}, QStringLiteral("Totals carried over"), 0);
  document.append(landscape);
  const test::JobAttributes fromLower = test::jobAttributes(PagePrinter(settings).printPages(document, 2, 2));
  EXPECT_EQ(fromLower.mediaSource, QStringLiteral("bottom"));
  EXPECT_EQ(fromLower.orientation, 4) << "a landscape first page prints landscape";
  EXPECT_EQ(fromLower.copies, 1);

  settings.paperBin = 0;
  settings.orientation = PrintOrientation::Portrait;
  const test::JobAttributes anyBin = test::jobAttributes(PagePrinter(settings).printPages(document, 2, 2));
  EXPECT_EQ(anyBin.mediaSource, QString());
  EXPECT_EQ(anyBin.orientation, 3);
  EXPECT_TRUE(clientTemporaryFiles().isEmpty());

  settings.paperBin = 4;
  EXPECT_EQ(test::errorNumber([&] { PagePrinter(settings).printDocument(document); }),
            ErrorNumber::SubscriptOutOfRange);
}

TEST_F(PagePrinting, AQueueWithoutBinsHasNone) {
  QString error;
  ASSERT_TRUE(server_->cupsd().addQueue(QStringLiteral("kordel_plain"), error)) << error.toStdString();
  EXPECT_TRUE(printerPaperBins(QStringLiteral("kordel_plain")).empty());
}

TEST_F(PagePrinting, UnknownQueuesAndBadSettingsRaiseClearErrors) {
  PrintSettings settings;
  settings.queue = QStringLiteral("no_such_queue");
  const Error unknown = test::errorOf([&] { PagePrinter(settings).printDocument(twoPages()); });
  EXPECT_EQ(unknown.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(unknown.description().contains(QStringLiteral("\"no_such_queue\"")))
      << unknown.description().toStdString();
  ASSERT_STRNE(cupsLastErrorString(), "");
  EXPECT_TRUE(unknown.description().contains(QString::fromUtf8(cupsLastErrorString())))
      << unknown.description().toStdString();
  EXPECT_EQ(test::errorNumber([&] { printerPaperBins(QStringLiteral("no_such_queue")); }), ErrorNumber::InvalidCall);
  EXPECT_TRUE(clientTemporaryFiles().isEmpty());

  QString error;
  ASSERT_TRUE(server_->cupsd().addQueue(QStringLiteral("kordel_plain"), error)) << error.toStdString();
  settings.queue = QStringLiteral("kordel_plain");
  settings.copies = 0;
  EXPECT_EQ(test::errorNumber([&] { PagePrinter(settings).printDocument(twoPages()); }), ErrorNumber::InvalidCall);
  settings.copies = 1;
  EXPECT_EQ(test::errorNumber([&] { PagePrinter(settings).printPages(twoPages(), 1, 2); }),
            ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(test::errorNumber([&] { PagePrinter(settings).printDocument(PageDocument()); }), ErrorNumber::InvalidCall);
}

} // namespace

// The report object's printing and preview: PrintReport on the built-in PDF
// printer and on a queue of a scheduler of the test's own (read back with
// pdftotext), ActiveReport_PrintProgress to the event sink and the
// report's script, Show through the modal presenter, Close from the last
// page's event, the run's end after the printing and the preview, failures
// shown in a message, and the window's place.

#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/preview/Presenters.h"
#include "engine/preview/PreviewWindow.h"
#include "engine/render/PageDocument.h"

#include "support/PdfTools.h"
#include "support/CupsTestQueues.h"
#include "support/ErrorCapture.h"
#include "support/PrivateCupsd.h"
#include "support/TempDir.h"

#include <QAction>
#include <QDir>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include <gtest/gtest.h>

#include <cups/cups.h>

#include <cmath>
#include <functional>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::TempDir;

namespace {

constexpr int kRows = 120; // three pages of A4

// The add-in's run-time object in small: it hands out rows, notes the pages
// the printer reports and closes the report at the last one, as the add-in
// does after a print from the preview.
class PrintingSink : public Object {
public:
  explicit PrintingSink(const std::shared_ptr<LayoutReport> &report) : report_(report) {}

  std::vector<int> printed;
  bool previewOpenAtLastPage = false;
  // What ActiveReport_Terminate found: how often it came, the pages printed
  // by then, whether a preview was still open and the window's left edge.
  int terminated = 0;
  std::size_t printedAtTerminate = 0;
  bool previewOpenAtTerminate = false;
  double leftAtTerminate = 0;
  // How many rows to hand out, and what to do as each is handed out.
  int rows = kRows;
  std::function<void(int row)> atRow;

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<PrintingSink>("ActiveReport_FetchData",
                             [](PrintingSink &s, Args &a) {
                               if (s.next_ >= s.rows)
                                 return Variant();
                               s.report_.lock()->fields()->add("name")->value =
                                   QStringLiteral("Customer %1").arg(++s.next_);
                               if (s.atRow)
                                 s.atRow(s.next_);
                               a[0] = Variant(false);
                               return Variant();
                             }),
        method<PrintingSink>("ActiveReport_PrintProgress",
                             [](PrintingSink &s, Args &a) {
                               const auto report = s.report_.lock();
                               s.printed.push_back(a[0].toLong());
                               if (s.printed.back() == report->get("Pages").toObject()->get("Count").toLong()) {
                                 s.previewOpenAtLastPage = report->preview() != nullptr;
                                 report->invoke("Close");
                               }
                               return Variant();
                             }),
        method<PrintingSink>("ActiveReport_Terminate",
                             [](PrintingSink &s, Args &) {
                               const auto report = s.report_.lock();
                               ++s.terminated;
                               s.printedAtTerminate = s.printed.size();
                               s.previewOpenAtTerminate = report->preview() != nullptr;
                               s.leftAtTerminate = report->get("Left").toDouble();
                               return Variant();
                             }),
    }};
    return table;
  }

private:
  std::weak_ptr<LayoutReport> report_;
  int next_ = 0;
};

// What the report's script tells it.
class Probe : public Object {
public:
  QStringList notes;

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<Probe>("Note",
                      [](Probe &p, Args &a) {
                        p.notes << a[0].toString();
                        return Variant();
                      }),
    }};
    return table;
  }
};

std::shared_ptr<LayoutReport> customerList() {
  auto report = LayoutReport::create();
  auto &sections = *report->sections();
  auto addLabel = [](Section &section, const QString &caption) {
    auto label = std::static_pointer_cast<Label>(section.controls()->add("DDActiveReports2.Label"));
    label->caption = caption;
    label->width = 4000;
  };
  addLabel(*sections.add("ReportHeader", 0, SectionType::ReportHeader, 400), QStringLiteral("Quarterly list"));
  auto &detail = *sections.add("Detail", 1, SectionType::Detail, 300);
  auto field = std::static_pointer_cast<Field>(detail.controls()->add("DDActiveReports2.Field"));
  field->dataField = "name";
  field->width = 4000;
  addLabel(*sections.add("ReportFooter", 2, SectionType::ReportFooter, 400), QStringLiteral("Grand total"));
  // The script counts pages during the run and reports them with each
  // printed page: the run's own scripts answer the printing.
  report->script = QStringLiteral("Dim pages\n"
                                  "Sub ActiveReport_PageStart\n  pages = pages + 1\nEnd Sub\n"
                                  "Sub ActiveReport_PrintProgress(page)\n  Probe.Note page & \"/\" & pages\nEnd Sub\n");
  report->documentName = QStringLiteral("Quarterly list");
  report->caption = QStringLiteral("Quarterly list preview");
  return report;
}

class ReportOutput : public ::testing::Test {
protected:
  void SetUp() override {
    report_->setEventSink(sink_);
    report_->addNamedItem("Probe", probe_);
  }

  void TearDown() override {
    setModalPresenter(nullptr);
    setMessagePresenter(nullptr);
  }

  QStringList pdfFiles() const { return documents_.entryList({QStringLiteral("*.pdf")}, QDir::Files); }

  TempDir dir_;
  // No print server answers, so the built-in printer is the default.
  test::ScopedCupsServer noServer_{dir_.file(QStringLiteral("nobody-listens.sock"))};
  test::ScopedHome home_{dir_.path()};
  QDir documents_{home_.documentsFolder()};
  std::shared_ptr<LayoutReport> report_ = customerList();
  std::shared_ptr<PrintingSink> sink_ = std::make_shared<PrintingSink>(report_);
  std::shared_ptr<Probe> probe_ = std::make_shared<Probe>();
};

TEST_F(ReportOutput, PrintReportRunsPrintsAndReportsEachPageToSinkAndScript) {
  EXPECT_EQ(test::errorNumber([&] { report_->invoke("PrintReport", {true}); }), ErrorNumber::InvalidCall)
      << "there is no print dialog";
  EXPECT_FALSE(report_->pages()) << "nothing ran";

  report_->invoke("PrintReport", {false});
  ASSERT_TRUE(report_->runErrors().isEmpty()) << report_->runErrors().join(u'\n').toStdString();
  EXPECT_EQ(report_->get("Pages").toObject()->get("Count").toLong(), 3);
  EXPECT_EQ(sink_->printed, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(probe_->notes, (QStringList{"1/3", "2/3", "3/3"}));
  EXPECT_FALSE(sink_->previewOpenAtLastPage);
  EXPECT_EQ(sink_->terminated, 1);
  EXPECT_EQ(sink_->printedAtTerminate, 3u) << "the run ends after the printing";
  ASSERT_EQ(pdfFiles(), QStringList{"Quarterly list.pdf"});
  if (test::pdfToolsAvailable()) {
    const QStringList pages = test::pdfPageTexts(documents_.filePath(QStringLiteral("Quarterly list.pdf")));
    ASSERT_EQ(pages.size(), 3);
    EXPECT_TRUE(pages[0].contains(QStringLiteral("Quarterly list")));
    EXPECT_TRUE(pages[0].contains(QStringLiteral("Customer 1")));
    EXPECT_TRUE(pages[2].contains(QStringLiteral("Grand total")));
  }

  // The pages that are there print again without a new run.
  const auto printedPages = report_->pages();
  report_->printReport(false);
  EXPECT_EQ(report_->pages(), printedPages);
  EXPECT_EQ(sink_->printed.size(), 6u);
  EXPECT_EQ(pdfFiles().size(), 2);
  EXPECT_EQ(sink_->terminated, 1) << "no run, no end of one";
}

TEST_F(ReportOutput, ARunThatFailsToPrintStillEnds) {
  ASSERT_TRUE(test::writeFile(home_.documentsFolder(), "in the way"));
  EXPECT_EQ(test::errorNumber([&] { report_->printReport(false); }), ErrorNumber::PathNotFound);
  EXPECT_TRUE(sink_->printed.empty());
  EXPECT_EQ(sink_->terminated, 1);
  EXPECT_EQ(report_->get("Pages").toObject()->get("Count").toLong(), 3) << "the pages are kept to try again";
}

TEST_F(ReportOutput, ShowPresentsThePagesAndAPrintFromItClosesItAtTheLastPage) {
  bool presented = false;
  setModalPresenter([&](QWidget &window) {
    presented = true;
    auto *preview = qobject_cast<PreviewWindow *>(&window);
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->windowTitle(), QStringLiteral("Quarterly list preview"));
    EXPECT_EQ(report_->preview(), preview);
    preview->show();
    ASSERT_TRUE(preview->isVisible());
    EXPECT_EQ(preview->pageCount(), 0) << "the pages are made once the window is up";
    QCoreApplication::processEvents(); // the window's run, from its event loop
    EXPECT_FALSE(preview->running());
    EXPECT_EQ(preview->pageCount(), 3);
    EXPECT_TRUE(preview->print());
    EXPECT_FALSE(preview->isVisible()) << "closed from the last page's event";
    EXPECT_EQ(preview->statusText(), QStringLiteral("Printed page 3 of 3"));
  });
  report_->invoke("Show", {true});
  EXPECT_TRUE(presented);
  EXPECT_EQ(report_->preview(), nullptr);
  EXPECT_EQ(sink_->printed, (std::vector<int>{1, 2, 3}));
  EXPECT_TRUE(sink_->previewOpenAtLastPage);
  EXPECT_EQ(probe_->notes, (QStringList{"1/3", "2/3", "3/3"})) << "the run's scripts answer the preview's print";
  EXPECT_EQ(pdfFiles(), QStringList{"Quarterly list.pdf"});
  EXPECT_EQ(report_->get("Pages").toObject()->get("Count").toLong(), 3);
  EXPECT_EQ(sink_->terminated, 1);
  EXPECT_EQ(sink_->printedAtTerminate, 3u);
  EXPECT_FALSE(sink_->previewOpenAtTerminate) << "the run ends when the preview has closed";
  report_->close(); // with no preview open: nothing
}

TEST_F(ReportOutput, APreviewClosedWithoutPrintingPrintsNothing) {
  setModalPresenter([](QWidget &window) {
    window.show();
    window.close();
  });
  report_->show(true);
  EXPECT_TRUE(sink_->printed.empty());
  EXPECT_TRUE(pdfFiles().isEmpty());
}

TEST_F(ReportOutput, ThePreviewTellsOfTheRunsProblems) {
  auto field = std::static_pointer_cast<Field>(report_->detail()->controls()->add("DDActiveReports2.Field"));
  field->dataField = QStringLiteral("=1 / 0");
  QString shown;
  setModalPresenter([&](QWidget &window) {
    window.show();
    QCoreApplication::processEvents();
    shown = static_cast<PreviewWindow &>(window).runProblemsText();
    window.close();
  });
  report_->show(true);
  EXPECT_TRUE(shown.startsWith(QStringLiteral("The run had %1 problems. The first: field %2 in section Detail")
                                   .arg(report_->runErrors().size())
                                   .arg(field->name)))
      << shown.toStdString();
}

TEST_F(ReportOutput, TheWindowShowsPagesWhileTheRunMakesMoreAndClosingItStopsTheRun) {
  sink_->rows = 4000; // a hundred pages
  int takenIn = 0;
  bool running = false;
  bool printable = true;
  sink_->atRow = [&](int row) {
    if (row != 2000)
      return;
    const PreviewWindow *preview = report_->preview();
    ASSERT_TRUE(preview);
    takenIn = preview->pageCount();
    running = preview->running();
    printable = preview->findChild<QAction *>(QStringLiteral("CmdPrint"))->isEnabled();
    report_->close();
  };
  report_->show(true); // the default presenter, with the window's own loop
  EXPECT_TRUE(running);
  EXPECT_GE(takenIn, 1) << "the first page shows as soon as it is made";
  EXPECT_LT(takenIn, 50);
  EXPECT_FALSE(printable) << "printing waits for the last page";
  EXPECT_EQ(report_->preview(), nullptr);
  EXPECT_EQ(sink_->terminated, 0) << "a stopped run ends as a failed one";
  EXPECT_EQ(report_->get("Pages").toObject()->get("Count").toLong(), 0);

}

TEST_F(ReportOutput, APrintFailureIsShownAndTheWindowStaysOpen) {
  // A file where the documents folder should be: the built-in printer
  // cannot write.
  ASSERT_TRUE(test::writeFile(home_.documentsFolder(), "in the way"));
  std::vector<std::pair<QString, QString>> messages;
  setMessagePresenter([&](const QString &title, const QString &text) { messages.emplace_back(title, text); });
  setModalPresenter([&](QWidget &window) {
    auto &preview = static_cast<PreviewWindow &>(window);
    preview.show();
    EXPECT_FALSE(preview.print());
    EXPECT_TRUE(preview.isVisible());
    preview.close();
  });
  report_->show(true);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].first, QStringLiteral("Quarterly list preview"));
  EXPECT_TRUE(messages[0].second.contains(home_.documentsFolder())) << messages[0].second.toStdString();
  EXPECT_TRUE(sink_->printed.empty()) << "no progress for a job that was not taken";
  EXPECT_EQ(sink_->terminated, 1);
}

TEST_F(ReportOutput, OnlyOneModalPreviewAtATime) {
  EXPECT_EQ(test::errorNumber([&] { report_->invoke("Show", {false}); }), ErrorNumber::InvalidCall);
  int nested = 0;
  setModalPresenter([&](QWidget &) { nested = test::errorNumber([&] { report_->invoke("Show", {true}); }); });
  report_->show(true);
  EXPECT_EQ(nested, ErrorNumber::InvalidCall);
}

TEST_F(ReportOutput, TheDefaultPresenterRunsTheWindowsOwnLoopUntilItCloses) {
  QTimer::singleShot(0, [this] {
    ASSERT_TRUE(report_->preview());
    EXPECT_TRUE(report_->preview()->isVisible());
    report_->close();
  });
  report_->show(true);
  EXPECT_EQ(report_->preview(), nullptr);
}

TEST_F(ReportOutput, TheWindowTakesThePlaceGivenAndTheReportKeepsItsLast) {
  const qreal pixelsPerTwip = QGuiApplication::primaryScreen()->logicalDotsPerInchX() / 1440.0;
  const auto pixels = [&](double twips) { return int(std::lround(twips * pixelsPerTwip)); };
  report_->set("WindowState", Variant(0));
  report_->set("Left", Variant(1440.0));
  report_->set("Top", Variant(720.0));
  report_->set("Width", Variant(9600.0));
  report_->set("Height", Variant(7200.0));
  const QRect moved(150, 90, 720, 540);
  setModalPresenter([&](QWidget &window) {
    EXPECT_EQ(window.geometry(), QRect(pixels(1440), pixels(720), pixels(9600), pixels(7200)));
    window.show();
    window.setGeometry(moved);
    window.close();
  });
  report_->show(true);
  EXPECT_EQ(report_->get("WindowState").toLong(), 0);
  EXPECT_NEAR(report_->get("Left").toDouble(), moved.x() / pixelsPerTwip, 1);
  EXPECT_NEAR(report_->get("Top").toDouble(), moved.y() / pixelsPerTwip, 1);
  EXPECT_NEAR(report_->get("Width").toDouble(), moved.width() / pixelsPerTwip, 1);
  EXPECT_NEAR(report_->get("Height").toDouble(), moved.height() / pixelsPerTwip, 1);
  EXPECT_NEAR(sink_->leftAtTerminate, moved.x() / pixelsPerTwip, 1) << "the run's end sees the window's last place";

  report_->set("WindowState", Variant(2));
  bool maximised = false;
  setModalPresenter([&](QWidget &window) {
    window.show();
    maximised = window.isMaximized();
    window.close();
  });
  report_->show(true);
  EXPECT_TRUE(maximised);
  EXPECT_EQ(report_->get("WindowState").toLong(), 2);
  EXPECT_NEAR(report_->get("Width").toDouble(), moved.width() / pixelsPerTwip, 1)
      << "a maximised window keeps the place it comes back to";

  EXPECT_EQ(test::errorNumber([&] { report_->set("WindowState", Variant(3)); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(report_->get("WindowState").toLong(), 2);
}

// Printing from the preview to a queue of a print server: the job reaches
// the PDF printer behind it with every page.
TEST(ReportOutputOnAServer, APrintFromThePreviewReachesThePdfPrinterQueue) {
  if (!test::pdfToolsAvailable())
    GTEST_SKIP() << "pdftotext and pdfinfo are needed";
  TempDir dir;
  test::TestPrintServer server(dir);
  if (!server.running())
    GTEST_SKIP() << "no print server for the test: " << server.failure().toStdString();
  if (const QString why = server.addPdfPrinterQueue(QStringLiteral("kordel_pdf")); !why.isEmpty())
    GTEST_SKIP() << why.toStdString();
  const test::PdfPrinterOutput output(QStringLiteral("Kordel preview print"));

  auto report = customerList();
  auto sink = std::make_shared<PrintingSink>(report);
  report->setEventSink(sink);
  report->addNamedItem("Probe", std::make_shared<Probe>());
  report->printer()->setDeviceName(QStringLiteral("kordel_pdf"));
  report->documentName = QStringLiteral("Kordel preview print");
  bool closed = false;
  setModalPresenter([&](QWidget &window) {
    window.show();
    static_cast<PreviewWindow &>(window).print();
    closed = !window.isVisible();
  });
  report->show(true);
  setModalPresenter(nullptr);
  EXPECT_TRUE(closed);
  EXPECT_EQ(sink->printed, (std::vector<int>{1, 2, 3}));
  EXPECT_TRUE(server.clientTemporaryFiles().isEmpty());

  cups_job_t *jobs = nullptr;
  const int count = cupsGetJobs2(CUPS_HTTP_DEFAULT, &jobs, "kordel_pdf", 0, CUPS_WHICHJOBS_ALL);
  ASSERT_EQ(count, 1);
  const int jobId = jobs[0].id;
  cupsFreeJobs(count, jobs);
  const test::JobAttributes job = test::waitForJobEnd(jobId);
  ASSERT_EQ(job.state, IPP_JSTATE_COMPLETED) << job.stateMessage.toStdString() << server.errorLog().toStdString();
  EXPECT_EQ(job.name, QStringLiteral("Kordel preview print"));

  const QStringList written = output.written();
  ASSERT_EQ(written.size(), 1) << written.join(u',').toStdString();
  const QString pdf = written.front();
  const QStringList pages = test::pdfPageTexts(pdf);
  QFile::remove(pdf);
  ASSERT_EQ(pages.size(), 3);
  EXPECT_TRUE(pages[0].contains(QStringLiteral("Quarterly list"))) << pages[0].toStdString();
  EXPECT_TRUE(pages[2].contains(QStringLiteral("Grand total"))) << pages[2].toStdString();
}

} // namespace

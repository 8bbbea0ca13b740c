// The report object's printing and preview: PrintReport, Show, Close and
// the preview window's place.

#include "engine/model/LayoutReport.h"

#include "engine/preview/Presenters.h"
#include "engine/preview/PreviewWindow.h"
#include "engine/print/PagePrinter.h"
#include "engine/render/PageDocument.h"
#include "engine/run/ReportRun.h"

#include "core/Error.h"

namespace kordel::engine {

// A printing or a preview: its pages and the run whose scripts answer its
// events. When the output ran the layout itself, the run's
// ActiveReport_Terminate waits for the output's end, so that its handlers
// see what was printed and where the window was.
struct LayoutReport::Output {
  std::shared_ptr<PageDocument> pages;
  std::unique_ptr<ReportRun> events;
  bool terminatePending = false;
};

namespace {

const QString kPrintProgress = QStringLiteral("ActiveReport_PrintProgress");
const QString kTerminate = QStringLiteral("ActiveReport_Terminate");

PrintSettings printSettingsOf(const LayoutPrinter &printer, const QString &jobName) {
  PrintSettings settings;
  settings.queue = printer.deviceName();
  settings.jobName = jobName;
  settings.copies = printer.copies();
  // Portrait leaves the pages' own shape to decide, so that pages a layout
  // made landscape print so.
  if (printer.orientation() == LayoutPrinter::kLandscape)
    settings.orientation = PrintOrientation::Landscape;
  settings.paperBin = printer.paperBin() == LayoutPrinter::kPrintersOwnBin ? 0 : printer.paperBin();
  return settings;
}

float twips(const Variant &value) { return value.toSingle(); }

// A side of the preview window's place, in twips; setting it moves a
// preview whose run is still making its pages.
Member placeProperty(const char *name, float WindowPlace::*side) {
  return property<LayoutReport>(
      name, [side](LayoutReport &r) { return r.windowPlace.*side; },
      [side](LayoutReport &r, const Variant &v) {
        r.windowPlace.*side = twips(v);
        r.placeRunningPreview();
      });
}

} // namespace

LayoutReport::LayoutReport() = default;

LayoutReport::~LayoutReport() = default;

std::unique_ptr<ReportRun> LayoutReport::runOntoNewPages(bool terminateAtEnd, bool keepValues) {
  return runOnto(std::make_shared<PageDocument>(), terminateAtEnd, keepValues);
}

std::unique_ptr<ReportRun> LayoutReport::runOnto(std::shared_ptr<PageDocument> pages, bool terminateAtEnd,
                                                 bool keepValues) {
  pages_ = std::move(pages);
  pages_->setKeepsValues(keepValues);
  runErrors_.clear();
  auto run = std::make_unique<ReportRun>(*this, *pages_);
  try {
    run->run(terminateAtEnd);
  } catch (...) {
    pages_->clear(); // a run that failed leaves no pages, not the first of them
    throw;
  }
  pages_->setTitle(documentName.isEmpty() ? caption : documentName); // as the run's scripts left them
  return run;
}

std::unique_ptr<LayoutReport::Output> LayoutReport::startOutput() {
  auto output = std::make_unique<Output>();
  if (pages_) {
    // Pages of an earlier Run, which has ended: a run of their own answers
    // the events.
    output->events = std::make_unique<ReportRun>(*this, *pages_);
  } else {
    // Pages for the printer or the preview alone, which no export reads.
    output->events = runOntoNewPages(false, false);
    output->terminatePending = true;
  }
  output->pages = pages_;
  return output;
}

void LayoutReport::endOutput(Output &output, bool afterFailure) {
  if (!output.terminatePending)
    return;
  output.terminatePending = false;
  Args none;
  if (!afterFailure) {
    output.events->raiseEvent(kTerminate, none);
    return;
  }
  // The failure that ended the output is the one to report.
  try {
    output.events->raiseEvent(kTerminate, none);
  } catch (...) {
  }
}

void LayoutReport::printReport(bool prompt) {
  if (prompt)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("ActiveReport.PrintReport"),
               QStringLiteral("The engine offers no print dialog; choose the printer before printing and call "
                              "PrintReport with False"));
  // An event handler may drop the last reference the caller held.
  const ObjectRef keepAlive = shared_from_this();
  if (output_) {
    if (!output_->events)
      raiseError(ErrorNumber::InvalidCall, QStringLiteral("ActiveReport.PrintReport"),
                 QStringLiteral("The preview is still making its pages"));
    printPages(*output_); // from the preview, whose end ends the output
    return;
  }
  const std::unique_ptr<Output> output = startOutput();
  try {
    printPages(*output);
  } catch (...) {
    endOutput(*output, true);
    throw;
  }
  endOutput(*output, false);
}

void LayoutReport::printPages(Output &output) {
  const std::shared_ptr<PageDocument> pages = output.pages;
  PagePrinter(printSettingsOf(*printer_, documentName.isEmpty() ? caption : documentName)).printDocument(*pages);
  const int count = pages->pageCount();
  for (int page = 1; page <= count; ++page) {
    if (preview_)
      preview_->showPrintProgress(page, count);
    Args args{Variant(page)};
    output.events->raiseEvent(kPrintProgress, args);
  }
}

void LayoutReport::show(bool modal) {
  const QString source = QStringLiteral("ActiveReport.Show");
  if (!modal)
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("The preview opens only modally; call Show with True"));
  if (output_)
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("The preview of this report is open already"));
  const ObjectRef keepAlive = shared_from_this();
  // Pages of an earlier Run are shown as they are, a run of their own
  // answering the events; else the layout runs while the window is open.
  const bool runFirst = !pages_;
  output_ = std::make_unique<Output>();
  output_->pages = runFirst ? std::make_shared<PageDocument>() : pages_;
  if (!runFirst)
    output_->events = std::make_unique<ReportRun>(*this, *pages_);
  try {
    presentPreview(runFirst);
  } catch (...) {
    const std::unique_ptr<Output> output = std::move(output_);
    endOutput(*output, true);
    throw;
  }
  const std::unique_ptr<Output> output = std::move(output_);
  endOutput(*output, false);
}

void LayoutReport::presentPreview(bool runFirst) {
  PreviewWindow window(output_->pages);
  if (!caption.isEmpty())
    window.setWindowTitle(caption);
  window.setPrintHandler([this] { printReport(false); });
  if (runFirst) {
    window.setPendingRun([this, &window] {
      // Pages for the preview alone, which no export reads.
      const std::shared_ptr<PageDocument> pages = output_->pages;
      pages->setPageListener([&window] { window.pageAdded(); });
      try {
        output_->events = runOnto(pages, false, false);
      } catch (...) {
        pages->setPageListener(nullptr);
        throw;
      }
      pages->setPageListener(nullptr);
      output_->terminatePending = true;
      window.showRunProblems(runErrors_);
    });
  } else {
    window.showRunProblems(runErrors_);
  }
  applyWindowPlace(window, windowPlace);
  preview_ = &window;
  presentModal(window);
  // A presenter that never showed the window still gets the run.
  window.completeRun();
  windowPlace = windowPlaceOf(window);
  if (const std::exception_ptr failure = window.runFailure())
    std::rethrow_exception(failure);
}

PreviewWindow *LayoutReport::preview() const { return preview_; }

void LayoutReport::placeRunningPreview() {
  // The window opens before the run whose first events say where it goes.
  if (preview_ && preview_->running())
    applyWindowPlace(*preview_, windowPlace);
}

void LayoutReport::close() {
  if (preview_)
    preview_->close();
}

// The members of printing and the preview, on top of the layout's.
const MemberTable &LayoutReport::memberTable() const {
  using R = LayoutReport;
  static const MemberTable table{
      {
          fullRightsOnly(method<R>("PrintReport",
                                   [](R &r, Args &a) {
                                     expectArgs(a, 1, 1);
                                     r.refuseWhileHeld(QStringLiteral("PrintReport"));
                                     r.printReport(a[0].toBool());
                                     return Variant();
                                   })),
          fullRightsOnly(method<R>("Show",
                                   [](R &r, Args &a) {
                                     expectArgs(a, 1, 1);
                                     r.refuseWhileHeld(QStringLiteral("Show"));
                                     r.show(a[0].toBool());
                                     return Variant();
                                   })),
          method<R>("Close",
                    [](R &r, Args &a) {
                      expectArgs(a, 0, 0);
                      r.close();
                      return Variant();
                    }),
          property<R>(
              "WindowState", [](R &r) { return std::int16_t(r.windowPlace.state); },
              [](R &r, const Variant &v) {
                const int state = v.toInteger();
                if (state < WindowPlace::kNormal || state > WindowPlace::kMaximised)
                  raiseError(ErrorNumber::InvalidCall, QStringLiteral("ActiveReport.WindowState"),
                             QStringLiteral("The window state is 0 (normal), 1 (minimised) or 2 (maximised), not %1")
                                 .arg(state));
                r.windowPlace.state = state;
                r.placeRunningPreview();
              }),
          placeProperty("Left", &WindowPlace::left),
          placeProperty("Top", &WindowPlace::top),
          placeProperty("Width", &WindowPlace::width),
          placeProperty("Height", &WindowPlace::height),
      },
      &layoutMemberTable()};
  return table;
}

} // namespace kordel::engine

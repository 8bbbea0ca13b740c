#pragma once

#include "engine/preview/PageSearch.h"

#include <QElapsedTimer>
#include <QWidget>

#include <exception>
#include <functional>
#include <memory>
#include <optional>

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QScrollArea;
class QSpinBox;
class QToolBar;

namespace kordel::engine {

class PageDocument;
class PageView;
class ThumbnailModel;

// The preview of a report's pages: one page at a time at a zoom (a
// percent, the page's width or the whole page in the window), thumbnails
// of all pages beside it, page navigation, text search with the hit
// marked, and a print button. Keys: PgUp and PgDn page, Ctrl+Home and
// Ctrl+End to the first and last page, Ctrl+F to the search box, F3 the
// next hit, Ctrl+P print, Ctrl+plus and Ctrl+minus zoom.
//
// Everything the buttons do is a public member as well, so callers drive
// the window without clicks. Pages count from 1 here, as the user sees
// them.
//
// A window may open before its pages are made: the run that makes them
// waits in the window and starts when the window is first shown (or when
// completeRun asks for it). Meanwhile the window shows the pages made so
// far, the page count growing with "…" after it and the progress in the
// status line, and answers the user between pages; printing waits for the
// end. Closing the window stops the run.
class PreviewWindow : public QWidget {
  Q_OBJECT
public:
  explicit PreviewWindow(std::shared_ptr<const PageDocument> document, QWidget *parent = nullptr);
  ~PreviewWindow() override;

  // What pageAdded raises when the window has been closed while its run
  // makes pages: the run stops.
  class Closed : public std::exception {
  public:
    const char *what() const noexcept override { return "The preview was closed while its pages were made"; }
  };

  // The run that makes the document's pages, to start when the window is
  // first shown. It calls pageAdded after each page it adds.
  void setPendingRun(std::function<void()> run);
  // Runs the pending run to its end now, if it has not run; nothing
  // otherwise. A failure of the run closes the window and is kept for
  // runFailure; a close of the window stops the run (runStopped).
  void completeRun();
  bool running() const { return running_; }
  // The error that ended the run early; empty when it ended well or was
  // stopped by a close.
  std::exception_ptr runFailure() const { return runFailure_; }
  bool runStopped() const { return runStopped_; }
  // Takes in the page the run has just added; now and then it brings the
  // window up to date and lets it answer the user. Raises Closed once the
  // window has been closed during the run.
  void pageAdded();

  // What the print button does. It may raise; the window shows the error.
  void setPrintHandler(std::function<void()> handler) { printHandler_ = std::move(handler); }

  int pageCount() const;
  // The page shown, from 1; 0 for a document without pages.
  int currentPage() const;
  // Shows the page; numbers outside the document go to the nearest page.
  void goToPage(int page);
  void firstPage() { goToPage(1); }
  void previousPage() { goToPage(currentPage() - 1); }
  void nextPage() { goToPage(currentPage() + 1); }
  void lastPage() { goToPage(pageCount()); }

  // The zoom in percent: 100 shows the page at its real size on the screen.
  int zoom() const;
  // Kept between kMinZoom and kMaxZoom.
  void setZoom(int percent);
  void zoomIn();
  void zoomOut();
  // The page's width fills the window, or the whole page is seen; both
  // follow the window's size until the zoom is set.
  void fitWidth();
  void fitPage();

  // Finds the next place that holds the text, without regard to case: after
  // the last hit, or from the top of the page shown, going round the
  // document. Shows the hit's page with the hit marked and returns true;
  // false, with the mark gone and a note in the status line, when the
  // document holds the text nowhere.
  bool find(const QString &text);
  const std::optional<TextHit> &lastHit() const { return hit_; }

  // Prints through the print handler, busy meanwhile. True when it printed;
  // false when there is no handler or printing failed, which the message
  // presenter has then shown.
  bool print();
  // Notes in the status line that a page has gone to the printer.
  void showPrintProgress(int page, int pageCount);
  QString statusText() const;
  // A bar above the status line that tells how many problems the run had
  // (script errors, failed field expressions) and the first; every one in
  // its tool tip. Hidden when there are none.
  void showRunProblems(const QStringList &problems);
  QString runProblemsText() const;

  // The widget that shows the page, for callers that look at what is shown.
  const PageView &pageView() const { return *pageView_; }

  static constexpr int kMinZoom = 10;
  static constexpr int kMaxZoom = 800;

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;
  void showEvent(QShowEvent *event) override;

private:
  enum class ZoomMode { Percent, FitWidth, FitPage };

  void buildActions();
  void buildToolBar(QToolBar &toolBar);
  void applyZoom();
  qreal pixelsPerTwipAt100() const;
  void updateNavigation();
  void setStatus(const QString &text);
  void zoomEdited();
  // Brings the thumbnails, the page count and the page shown up to date
  // with the document.
  void takeInPages();
  // " of N " beside the page box, with "…" while the run makes pages.
  QString pageTotalText() const;

  std::shared_ptr<const PageDocument> document_;
  std::function<void()> printHandler_;
  ThumbnailModel *thumbnails_ = nullptr;
  QListView *thumbnailList_ = nullptr;
  QScrollArea *scrollArea_ = nullptr;
  PageView *pageView_ = nullptr;
  QSpinBox *pageBox_ = nullptr;
  QLabel *pageTotal_ = nullptr;
  QComboBox *zoomBox_ = nullptr;
  QLineEdit *findBox_ = nullptr;
  QLabel *status_ = nullptr;
  QLabel *problems_ = nullptr;
  QAction *firstAction_ = nullptr;
  QAction *previousAction_ = nullptr;
  QAction *nextAction_ = nullptr;
  QAction *lastAction_ = nullptr;
  QAction *zoomInAction_ = nullptr;
  QAction *zoomOutAction_ = nullptr;
  QAction *fitWidthAction_ = nullptr;
  QAction *fitPageAction_ = nullptr;
  QAction *findAction_ = nullptr;
  QAction *findNextAction_ = nullptr;
  QAction *printAction_ = nullptr;
  ZoomMode zoomMode_ = ZoomMode::FitWidth;
  int zoomPercent_ = 100;
  std::optional<TextHit> hit_;
  QString searched_;
  bool printing_ = false;
  bool progressShown_ = false;
  std::function<void()> pendingRun_;
  bool running_ = false;
  bool runAnswersUser_ = false; // the window was open when the run started
  bool runStopped_ = false;
  std::exception_ptr runFailure_;
  QElapsedTimer sinceTakenIn_;
};

} // namespace kordel::engine

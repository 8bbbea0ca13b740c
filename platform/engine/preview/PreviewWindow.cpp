#include "engine/preview/PreviewWindow.h"

#include "engine/preview/PageView.h"
#include "engine/preview/PreviewText.h"
#include "engine/preview/PrinterIcon.h"
#include "engine/preview/Presenters.h"
#include "engine/preview/ThumbnailModel.h"
#include "engine/render/PageDocument.h"

#include "core/Error.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QSplitter>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace kordel::engine {

namespace {

constexpr int kZoomSteps[] = {10, 25, 50, 75, 100, 125, 150, 200, 300, 400, 600, 800};
// Grey room around the page, in pixels.
constexpr int kPageMargin = 12;
constexpr int kThumbnailWidth = 110;
// How often a window whose pages are being made takes them in and answers
// the user, in milliseconds.
constexpr qint64 kTakeInInterval = 100;

QAction *makeAction(QWidget &window, const QString &name, const QString &text, const QIcon &icon,
                    const QList<QKeySequence> &keys) {
  auto *action = new QAction(icon, text, &window);
  action->setObjectName(name);
  action->setShortcuts(keys);
  action->setShortcutContext(Qt::WindowShortcut);
  window.addAction(action);
  return action;
}

QAction *makeAction(QWidget &window, const QString &name, const QString &text, QStyle::StandardPixmap icon,
                    const QList<QKeySequence> &keys) {
  return makeAction(window, name, text, window.style()->standardIcon(icon), keys);
}

} // namespace

PreviewWindow::PreviewWindow(std::shared_ptr<const PageDocument> document, QWidget *parent)
    : QWidget(parent), document_(std::move(document)) {
  setObjectName(QStringLiteral("PreviewWindow"));
  setWindowTitle(previewText("Preview"));

  thumbnails_ = new ThumbnailModel(document_, kThumbnailWidth, this);
  thumbnailList_ = new QListView;
  thumbnailList_->setObjectName(QStringLiteral("ListThumbnails"));
  thumbnailList_->setModel(thumbnails_);
  thumbnailList_->setIconSize(thumbnails_->thumbnailSize());
  thumbnailList_->setUniformItemSizes(true);
  thumbnailList_->setSpacing(6);
  thumbnailList_->setViewMode(QListView::ListMode);
  thumbnailList_->setFlow(QListView::TopToBottom);
  thumbnailList_->setSelectionMode(QAbstractItemView::SingleSelection);
  thumbnailList_->setMinimumWidth(kThumbnailWidth + 40);
  connect(thumbnailList_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex &current) {
            if (current.isValid())
              goToPage(current.row() + 1);
          });

  pageView_ = new PageView(document_);
  pageView_->setObjectName(QStringLiteral("PageView"));
  auto *pageFrame = new QWidget;
  auto *frameLayout = new QVBoxLayout(pageFrame);
  frameLayout->setContentsMargins(kPageMargin, kPageMargin, kPageMargin, kPageMargin);
  frameLayout->addWidget(pageView_, 0, Qt::AlignHCenter | Qt::AlignTop);
  scrollArea_ = new QScrollArea;
  scrollArea_->setObjectName(QStringLiteral("ScrollPages"));
  scrollArea_->setWidget(pageFrame);
  scrollArea_->setWidgetResizable(true);
  scrollArea_->setBackgroundRole(QPalette::Dark);
  scrollArea_->viewport()->installEventFilter(this);

  auto *splitter = new QSplitter(Qt::Horizontal);
  splitter->addWidget(thumbnailList_);
  splitter->addWidget(scrollArea_);
  splitter->setStretchFactor(1, 1);

  buildActions();
  auto *toolBar = new QToolBar;
  toolBar->setObjectName(QStringLiteral("ToolBar"));
  buildToolBar(*toolBar);

  status_ = new QLabel;
  status_->setObjectName(QStringLiteral("LblStatus"));
  status_->setContentsMargins(6, 2, 6, 2);

  problems_ = new QLabel;
  problems_->setObjectName(QStringLiteral("LblRunProblems"));
  problems_->setContentsMargins(6, 4, 6, 4);
  problems_->setAutoFillBackground(true);
  problems_->setStyleSheet(QStringLiteral("QLabel { background: #fff4c2; color: #5a4500; }"));
  problems_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  problems_->hide();

  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(toolBar);
  layout->addWidget(splitter, 1);
  layout->addWidget(problems_);
  layout->addWidget(status_);

  if (const QScreen *screen = QGuiApplication::primaryScreen())
    resize(screen->availableGeometry().size() * 3 / 4);
  if (pageCount() == 0)
    setStatus(previewText("The report has no pages"));
  goToPage(1);
  applyZoom();
}

PreviewWindow::~PreviewWindow() = default;

void PreviewWindow::buildActions() {
  firstAction_ = makeAction(*this, QStringLiteral("CmdFirstPage"), previewText("First page"),
                            QStyle::SP_MediaSkipBackward, {QKeySequence(Qt::CTRL | Qt::Key_Home)});
  previousAction_ = makeAction(*this, QStringLiteral("CmdPreviousPage"), previewText("Previous page"),
                               QStyle::SP_MediaSeekBackward, {QKeySequence(Qt::Key_PageUp)});
  nextAction_ = makeAction(*this, QStringLiteral("CmdNextPage"), previewText("Next page"), QStyle::SP_MediaSeekForward,
                           {QKeySequence(Qt::Key_PageDown)});
  lastAction_ = makeAction(*this, QStringLiteral("CmdLastPage"), previewText("Last page"), QStyle::SP_MediaSkipForward,
                           {QKeySequence(Qt::CTRL | Qt::Key_End)});
  zoomOutAction_ = makeAction(*this, QStringLiteral("CmdZoomOut"), previewText("Zoom out"), QStyle::SP_ArrowDown,
                              {QKeySequence::ZoomOut});
  zoomInAction_ = makeAction(*this, QStringLiteral("CmdZoomIn"), previewText("Zoom in"), QStyle::SP_ArrowUp,
                             {QKeySequence::ZoomIn, QKeySequence(Qt::CTRL | Qt::Key_Equal)});
  fitWidthAction_ = makeAction(*this, QStringLiteral("CmdFitWidth"), previewText("Page width"),
                               QStyle::SP_TitleBarMaxButton, {QKeySequence(Qt::CTRL | Qt::Key_2)});
  fitPageAction_ = makeAction(*this, QStringLiteral("CmdFitPage"), previewText("Whole page"),
                              QStyle::SP_TitleBarNormalButton, {QKeySequence(Qt::CTRL | Qt::Key_1)});
  findAction_ = makeAction(*this, QStringLiteral("CmdFind"), previewText("Find"), QStyle::SP_FileDialogContentsView,
                           {QKeySequence::Find});
  findNextAction_ = makeAction(*this, QStringLiteral("CmdFindNext"), previewText("Find next"),
                               QStyle::SP_FileDialogContentsView, {QKeySequence::FindNext});
  printAction_ =
      makeAction(*this, QStringLiteral("CmdPrint"), previewText("Print"), printerIcon(), {QKeySequence::Print});

  connect(firstAction_, &QAction::triggered, this, [this] { firstPage(); });
  connect(previousAction_, &QAction::triggered, this, [this] { previousPage(); });
  connect(nextAction_, &QAction::triggered, this, [this] { nextPage(); });
  connect(lastAction_, &QAction::triggered, this, [this] { lastPage(); });
  connect(zoomInAction_, &QAction::triggered, this, [this] { zoomIn(); });
  connect(zoomOutAction_, &QAction::triggered, this, [this] { zoomOut(); });
  connect(fitWidthAction_, &QAction::triggered, this, [this] { fitWidth(); });
  connect(fitPageAction_, &QAction::triggered, this, [this] { fitPage(); });
  connect(findAction_, &QAction::triggered, this, [this] {
    findBox_->setFocus(Qt::ShortcutFocusReason);
    findBox_->selectAll();
  });
  connect(findNextAction_, &QAction::triggered, this, [this] { find(findBox_->text()); });
  connect(printAction_, &QAction::triggered, this, [this] { print(); });
}

void PreviewWindow::buildToolBar(QToolBar &toolBar) {
  toolBar.setToolButtonStyle(Qt::ToolButtonIconOnly);
  toolBar.addAction(firstAction_);
  toolBar.addAction(previousAction_);
  pageBox_ = new QSpinBox;
  pageBox_->setObjectName(QStringLiteral("TxtPage"));
  pageBox_->setRange(std::min(1, pageCount()), pageCount());
  pageBox_->setKeyboardTracking(false);
  pageBox_->setToolTip(previewText("Page number"));
  connect(pageBox_, &QSpinBox::valueChanged, this, [this](int page) { goToPage(page); });
  toolBar.addWidget(pageBox_);
  pageTotal_ = new QLabel(pageTotalText());
  pageTotal_->setObjectName(QStringLiteral("LblPageCount"));
  toolBar.addWidget(pageTotal_);
  toolBar.addAction(nextAction_);
  toolBar.addAction(lastAction_);
  toolBar.addSeparator();

  toolBar.addAction(zoomOutAction_);
  zoomBox_ = new QComboBox;
  zoomBox_->setObjectName(QStringLiteral("CboZoom"));
  zoomBox_->setEditable(true);
  zoomBox_->setInsertPolicy(QComboBox::NoInsert);
  for (const int step : kZoomSteps)
    zoomBox_->addItem(QStringLiteral("%1%").arg(step), step);
  zoomBox_->setToolTip(previewText("Zoom"));
  connect(zoomBox_, &QComboBox::activated, this, [this](int index) { setZoom(zoomBox_->itemData(index).toInt()); });
  connect(zoomBox_->lineEdit(), &QLineEdit::editingFinished, this, [this] { zoomEdited(); });
  toolBar.addWidget(zoomBox_);
  toolBar.addAction(zoomInAction_);
  toolBar.addAction(fitWidthAction_);
  toolBar.addAction(fitPageAction_);
  toolBar.addSeparator();

  findBox_ = new QLineEdit;
  findBox_->setObjectName(QStringLiteral("TxtFind"));
  findBox_->setPlaceholderText(previewText("Find text"));
  findBox_->setClearButtonEnabled(true);
  findBox_->setMaximumWidth(220);
  connect(findBox_, &QLineEdit::returnPressed, this, [this] { find(findBox_->text()); });
  toolBar.addWidget(findBox_);
  toolBar.addAction(findNextAction_);
  toolBar.addSeparator();
  toolBar.addAction(printAction_);
}

// ---- Pages ----

int PreviewWindow::pageCount() const { return thumbnails_->rowCount(); }

QString PreviewWindow::pageTotalText() const {
  return QStringLiteral(" %1 ").arg((running_ ? previewText("of %1…") : previewText("of %1")).arg(pageCount()));
}

int PreviewWindow::currentPage() const { return pageCount() == 0 ? 0 : pageView_->pageIndex() + 1; }

void PreviewWindow::goToPage(int page) {
  if (pageCount() == 0) {
    updateNavigation();
    return;
  }
  const int index = std::clamp(page, 1, pageCount()) - 1;
  if (index != pageView_->pageIndex()) {
    pageView_->setPageIndex(index);
    // A page that does not fit the window is seen from its top.
    scrollArea_->verticalScrollBar()->setValue(0);
    if (zoomMode_ != ZoomMode::Percent)
      applyZoom(); // pages of another shape fit anew
  }
  updateNavigation();
}

void PreviewWindow::updateNavigation() {
  const int page = currentPage();
  const int count = pageCount();
  firstAction_->setEnabled(page > 1);
  previousAction_->setEnabled(page > 1);
  nextAction_->setEnabled(page < count);
  lastAction_->setEnabled(page < count);
  findNextAction_->setEnabled(count > 0);
  printAction_->setEnabled(count > 0 && !printing_ && !running_);
  {
    const QSignalBlocker blocker(pageBox_);
    pageBox_->setValue(page);
  }
  if (count > 0) {
    const QSignalBlocker blocker(thumbnailList_->selectionModel());
    const QModelIndex index = thumbnails_->index(page - 1);
    thumbnailList_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    thumbnailList_->scrollTo(index);
  }
}

// ---- Pages made while the window is open ----

void PreviewWindow::setPendingRun(std::function<void()> run) { pendingRun_ = std::move(run); }

void PreviewWindow::showEvent(QShowEvent *event) {
  QWidget::showEvent(event);
  // The run starts once the window is on the screen, from its event loop.
  if (pendingRun_)
    QTimer::singleShot(0, this, [this] { completeRun(); });
}

void PreviewWindow::completeRun() {
  if (!pendingRun_ || running_)
    return;
  const std::function<void()> run = std::exchange(pendingRun_, {});
  running_ = true;
  runAnswersUser_ = isVisible();
  sinceTakenIn_.start();
  setStatus(previewText("Making the pages…"));
  updateNavigation();
  try {
    run();
  } catch (const Closed &) {
    runStopped_ = true;
  } catch (...) {
    runFailure_ = std::current_exception();
  }
  running_ = false;
  // The window must outlive whatever the last pages hold: nothing may
  // leave this function, which the event loop calls.
  try {
    thumbnails_->update(true); // the page counts are filled in now
    takeInPages();
    pageView_->refresh();
    setStatus(pageCount() == 0 ? previewText("The report has no pages") : QString());
  } catch (...) {
  }
  if (runFailure_)
    close();
}

void PreviewWindow::pageAdded() {
  if (!running_ || !runAnswersUser_)
    return;
  if (!isVisible())
    throw Closed();
  // The first page at once, the later ones a few times a second.
  if (pageCount() > 0 && sinceTakenIn_.elapsed() < kTakeInInterval)
    return;
  takeInPages();
  QCoreApplication::processEvents();
  sinceTakenIn_.restart();
  if (!isVisible())
    throw Closed();
}

void PreviewWindow::takeInPages() {
  const bool hadPages = pageCount() > 0;
  thumbnails_->update();
  const int count = pageCount();
  if (!hadPages && count > 0) {
    thumbnailList_->setIconSize(thumbnails_->thumbnailSize());
    pageView_->refresh();
    applyZoom();
  }
  {
    const QSignalBlocker blocker(pageBox_);
    pageBox_->setRange(std::min(1, count), count);
  }
  pageTotal_->setText(pageTotalText());
  if (running_)
    setStatus(previewText("Making the pages: %1 so far").arg(count));
  updateNavigation();
}

// ---- Zoom ----

qreal PreviewWindow::pixelsPerTwipAt100() const { return logicalDpiX() / qreal(kTwipsPerInch); }

int PreviewWindow::zoom() const { return int(std::lround(pageView_->scale() / pixelsPerTwipAt100() * 100)); }

void PreviewWindow::setZoom(int percent) {
  zoomMode_ = ZoomMode::Percent;
  zoomPercent_ = std::clamp(percent, kMinZoom, kMaxZoom);
  applyZoom();
}

void PreviewWindow::zoomIn() {
  const int now = zoom();
  const auto *step = std::find_if(std::begin(kZoomSteps), std::end(kZoomSteps), [now](int s) { return s > now; });
  setZoom(step == std::end(kZoomSteps) ? kMaxZoom : *step);
}

void PreviewWindow::zoomOut() {
  const int now = zoom();
  int below = kMinZoom;
  for (const int step : kZoomSteps)
    if (step < now)
      below = step;
  setZoom(below);
}

void PreviewWindow::fitWidth() {
  zoomMode_ = ZoomMode::FitWidth;
  applyZoom();
}

void PreviewWindow::fitPage() {
  zoomMode_ = ZoomMode::FitPage;
  applyZoom();
}

void PreviewWindow::zoomEdited() {
  QString text = zoomBox_->currentText().trimmed();
  text.remove(u'%');
  bool ok = false;
  const int percent = text.trimmed().toInt(&ok);
  if (ok)
    setZoom(percent);
  else
    applyZoom(); // shows the zoom in force again
}

void PreviewWindow::applyZoom() {
  qreal scale = zoomPercent_ / 100.0 * pixelsPerTwipAt100();
  if (zoomMode_ != ZoomMode::Percent && pageCount() > 0) {
    // Measured from the room without scroll bars, so that a scroll bar
    // coming or going does not change the fit and bring itself back.
    const Page page = document_->page(pageView_->pageIndex());
    const QSize room = scrollArea_->maximumViewportSize() - QSize(2 * kPageMargin, 2 * kPageMargin);
    const qreal byHeight = qreal(std::max(room.height(), 1)) / std::max(page.height(), 1);
    qreal byWidth = qreal(std::max(room.width(), 1)) / std::max(page.width(), 1);
    if (zoomMode_ == ZoomMode::FitWidth && byWidth > byHeight) {
      // Taller than the room: the vertical scroll bar takes its part.
      const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, scrollArea_->verticalScrollBar());
      byWidth = qreal(std::max(room.width() - bar, 1)) / std::max(page.width(), 1);
    }
    scale = zoomMode_ == ZoomMode::FitWidth ? byWidth : std::min(byWidth, byHeight);
    // Fitting never goes beyond the zoom's range either.
    scale = std::clamp(scale, kMinZoom / 100.0 * pixelsPerTwipAt100(), kMaxZoom / 100.0 * pixelsPerTwipAt100());
  }
  pageView_->setScale(scale);
  const QSignalBlocker blocker(zoomBox_);
  zoomBox_->setEditText(QStringLiteral("%1%").arg(zoom()));
  zoomInAction_->setEnabled(zoom() < kMaxZoom);
  zoomOutAction_->setEnabled(zoom() > kMinZoom);
  fitWidthAction_->setCheckable(true);
  fitWidthAction_->setChecked(zoomMode_ == ZoomMode::FitWidth);
  fitPageAction_->setCheckable(true);
  fitPageAction_->setChecked(zoomMode_ == ZoomMode::FitPage);
}

bool PreviewWindow::eventFilter(QObject *watched, QEvent *event) {
  if (watched == scrollArea_->viewport() && event->type() == QEvent::Resize && zoomMode_ != ZoomMode::Percent)
    applyZoom();
  return QWidget::eventFilter(watched, event);
}

// ---- Search ----

bool PreviewWindow::find(const QString &text) {
  TextPosition start{std::max(currentPage() - 1, 0), 0, 0};
  // The next hit after the last one while its page is shown; the same text
  // again goes past it, a new text may stand at it.
  if (hit_ && hit_->position.page == pageView_->pageIndex()) {
    start = hit_->position;
    if (text.compare(searched_, Qt::CaseInsensitive) == 0)
      ++start.offset;
  }
  searched_ = text;
  hit_ = findText(*document_, text, start);
  if (!hit_) {
    pageView_->setMark(std::nullopt);
    setStatus(text.isEmpty() ? QString() : previewText("\"%1\" was not found").arg(text));
    return false;
  }
  goToPage(hit_->position.page + 1);
  pageView_->setMark(hit_->box);
  const QRect marked = pageView_->toWidget(hit_->box);
  const QPoint centre = pageView_->mapTo(scrollArea_->widget(), marked.center());
  scrollArea_->ensureVisible(centre.x(), centre.y(), marked.width() / 2 + 40, marked.height() / 2 + 40);
  setStatus(previewText("Found on page %1").arg(hit_->position.page + 1));
  return true;
}

// ---- Printing ----

bool PreviewWindow::print() {
  if (running_)
    return false; // the pages are not all made yet
  completeRun();
  if (!printHandler_ || printing_ || pageCount() == 0)
    return false;
  printing_ = true;
  progressShown_ = false;
  printAction_->setEnabled(false);
  setStatus(previewText("Printing…"));
  QApplication::setOverrideCursor(Qt::WaitCursor);
  std::optional<Error> failure;
  try {
    printHandler_();
  } catch (...) {
    failure = pendingError();
  }
  QApplication::restoreOverrideCursor();
  printing_ = false;
  updateNavigation();
  if (!failure) {
    if (!progressShown_)
      setStatus(previewText("Printed"));
    return true;
  }
  setStatus(previewText("Not printed"));
  // The message is all there is to tell; a presenter that fails to show it
  // must not take the window down.
  try {
    presentMessage(windowTitle(),
                   previewText("The report was not printed.") + QStringLiteral("\n\n") + failure->description());
  } catch (...) {
  }
  return false;
}

void PreviewWindow::showPrintProgress(int page, int count) {
  progressShown_ = true;
  setStatus(previewText("Printed page %1 of %2").arg(page).arg(count));
}

void PreviewWindow::setStatus(const QString &text) { status_->setText(text); }

QString PreviewWindow::statusText() const { return status_->text(); }

void PreviewWindow::showRunProblems(const QStringList &problems) {
  problems_->setVisible(!problems.isEmpty());
  if (problems.isEmpty())
    return;
  constexpr int kListed = 30;
  problems_->setText(
      problems.size() == 1
          ? previewText("The run had a problem: %1").arg(problems.first())
          : previewText("The run had %1 problems. The first: %2").arg(problems.size()).arg(problems.first()));
  QStringList listed = problems.mid(0, kListed);
  if (problems.size() > kListed)
    listed << previewText("... and %1 more, in the application log").arg(problems.size() - kListed);
  problems_->setToolTip(listed.join(u'\n'));
}

QString PreviewWindow::runProblemsText() const { return problems_->isHidden() ? QString() : problems_->text(); }

} // namespace kordel::engine

// The preview window on a document of three pages: what the page view
// shows at a zoom and when fitted, navigation and its bounds by calls and
// keys, text search over the pages, and the print button's outcomes.

#include "engine/preview/PageView.h"
#include "engine/preview/Presenters.h"
#include "engine/preview/PreviewWindow.h"
#include "engine/render/PageDocument.h"

#include "core/Error.h"

#include <QAction>
#include <QComboBox>
#include <QListView>
#include <QScrollArea>
#include <QSpinBox>
#include <QStyle>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

using namespace kordel;
using namespace kordel::engine;

namespace {

constexpr Twips kA4Width = 11906;
constexpr Twips kA4Height = 16838;
// A black square on the first page only, 2 inches from the top left.
constexpr Box kSquare{2880, 2880, 1440, 1440};

std::shared_ptr<PageDocument> threePages() {
  auto document = std::make_shared<PageDocument>();
  const int font = document->internFont(PageFont{});
  Page first(kA4Width, kA4Height);
  first.addText({1440, 1440, 8000, 300}, QStringLiteral("Alpha report"), font);
  first.addRect(RectItem{kSquare, kBlack, std::nullopt, 0});
  document->append(first);
  Page second(kA4Width, kA4Height);
  second.addText({1440, 1440, 8000, 300}, QStringLiteral("Beta section"), font);
  document->append(second);
  Page third(kA4Width, kA4Height);
  third.addText({1440, 1440, 8000, 300}, QStringLiteral("Needle in the hay"), font);
  third.addText({1440, 2000, 8000, 300}, QStringLiteral("another needle"), font);
  document->append(third);
  return document;
}

// Screen pixels per twip at 100 %.
qreal screenScale(const QWidget &widget) { return widget.logicalDpiX() / 1440.0; }

bool isDark(QRgb pixel) { return qGray(pixel) < 80; }

class PreviewWindowTest : public ::testing::Test {
protected:
  void SetUp() override {
    window_.resize(900, 700);
    window_.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window_));
  }

  QImage shown() { return window_.findChild<PageView *>("PageView")->grab().toImage(); }
  QWidget &viewport() const { return *window_.findChild<QScrollArea *>("ScrollPages")->viewport(); }

  std::shared_ptr<PageDocument> document_ = threePages();
  PreviewWindow window_{document_};
};

// The print button shows a printer, not the style's save icon.
TEST_F(PreviewWindowTest, ThePrintButtonShowsAPrinter) {
  const auto *print = window_.findChild<QAction *>("CmdPrint");
  ASSERT_TRUE(print);
  const QImage icon = print->icon().pixmap(32).toImage();
  ASSERT_FALSE(icon.isNull());
  EXPECT_NE(icon, window_.style()->standardIcon(QStyle::SP_DialogSaveButton).pixmap(32).toImage());
}

TEST_F(PreviewWindowTest, ZoomScalesThePageAndFittingFollowsTheWindow) {
  window_.setZoom(100);
  const qreal scale = screenScale(window_);
  EXPECT_EQ(window_.pageView().size(), QSize(std::lround(kA4Width * scale), std::lround(kA4Height * scale)));
  // The square of the first page is painted where the zoom puts it.
  const QPoint centre(std::lround((kSquare.x + kSquare.width / 2) * scale),
                      std::lround((kSquare.y + kSquare.height / 2) * scale));
  EXPECT_TRUE(isDark(shown().pixel(centre)));
  EXPECT_FALSE(isDark(shown().pixel(centre + QPoint(std::lround(kSquare.width * scale), 0))));

  window_.setZoom(50);
  EXPECT_EQ(window_.pageView().width(), std::lround(kA4Width * scale / 2));
  EXPECT_TRUE(isDark(shown().pixel(centre / 2)));

  window_.zoomIn();
  EXPECT_EQ(window_.zoom(), 75);
  window_.zoomOut();
  window_.zoomOut();
  EXPECT_EQ(window_.zoom(), 25);
  window_.setZoom(5000);
  EXPECT_EQ(window_.zoom(), PreviewWindow::kMaxZoom);
  window_.setZoom(1);
  EXPECT_EQ(window_.zoom(), PreviewWindow::kMinZoom);
  window_.zoomOut();
  EXPECT_EQ(window_.zoom(), PreviewWindow::kMinZoom);

  // The page's width takes the window's room, less the grey margin, and
  // keeps doing so when the window grows.
  window_.fitWidth();
  const int room = viewport().width() - window_.pageView().width();
  EXPECT_GE(room, 20);
  EXPECT_LE(room, 28);
  window_.resize(1100, 700);
  QTest::qWait(0);
  EXPECT_EQ(viewport().width() - window_.pageView().width(), room);

  // The whole page fits the window's height, so it is narrower than fitted
  // to the width.
  const int fittedWidth = window_.pageView().width();
  window_.fitPage();
  EXPECT_LE(window_.pageView().height(), viewport().height());
  EXPECT_GE(window_.pageView().height(), viewport().height() - 28);
  EXPECT_LT(window_.pageView().width(), fittedWidth);
  EXPECT_EQ(window_.zoom(), std::lround(window_.pageView().width() / (kA4Width * scale) * 100));
  EXPECT_EQ(window_.findChild<QComboBox *>("CboZoom")->currentText(), QStringLiteral("%1%").arg(window_.zoom()));
}

TEST_F(PreviewWindowTest, NavigationStaysWithinThePagesAndMovesTheThumbnailsAndPageBox) {
  auto *pageBox = window_.findChild<QSpinBox *>("TxtPage");
  auto *thumbnails = window_.findChild<QListView *>("ListThumbnails");
  ASSERT_TRUE(pageBox && thumbnails);
  EXPECT_EQ(window_.pageCount(), 3);
  EXPECT_EQ(thumbnails->model()->rowCount(), 3);
  EXPECT_EQ(window_.currentPage(), 1);
  window_.previousPage();
  EXPECT_EQ(window_.currentPage(), 1);
  window_.goToPage(99);
  EXPECT_EQ(window_.currentPage(), 3);
  EXPECT_EQ(pageBox->value(), 3);
  EXPECT_EQ(thumbnails->currentIndex().row(), 2);
  window_.nextPage();
  EXPECT_EQ(window_.currentPage(), 3);
  window_.goToPage(-4);
  EXPECT_EQ(window_.currentPage(), 1);
  const int squareCentre = int(std::lround((kSquare.x + kSquare.width / 2) * window_.pageView().scale()));
  EXPECT_TRUE(isDark(shown().pixel(squareCentre, squareCentre))) << "the first page shows its square";

  // The page box and the thumbnails move the page as well.
  pageBox->setValue(2);
  EXPECT_EQ(window_.currentPage(), 2);
  EXPECT_FALSE(isDark(shown().pixel(squareCentre, squareCentre))) << "the second page has no square";
  thumbnails->setCurrentIndex(thumbnails->model()->index(2, 0));
  EXPECT_EQ(window_.currentPage(), 3);

  // Keys: PgUp and PgDn page, Ctrl+Home and Ctrl+End jump.
  window_.activateWindow();
  QTest::keyClick(&window_, Qt::Key_PageUp);
  EXPECT_EQ(window_.currentPage(), 2);
  QTest::keyClick(&window_, Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(window_.currentPage(), 1);
  QTest::keyClick(&window_, Qt::Key_PageDown);
  EXPECT_EQ(window_.currentPage(), 2);
  QTest::keyClick(&window_, Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(window_.currentPage(), 3);
}

TEST_F(PreviewWindowTest, SearchFindsTextOnLaterPagesInTurnAndMarksIt) {
  ASSERT_TRUE(window_.find(QStringLiteral("NEEDLE")));
  EXPECT_EQ(window_.currentPage(), 3) << "the page with the hit is shown";
  const TextHit first = *window_.lastHit();
  EXPECT_EQ(first.position.page, 2);
  EXPECT_EQ(first.position.offset, 0);
  ASSERT_TRUE(window_.pageView().mark());
  EXPECT_EQ(*window_.pageView().mark(), first.box);
  EXPECT_EQ(first.box.x, 1440);
  EXPECT_EQ(first.box.y, 1440);
  EXPECT_GT(first.box.width, 300);
  EXPECT_LT(first.box.width, 1500) << "the mark covers the word, not the whole line";

  // The next hit is in the next run, at its offset and to the right of
  // where the run begins.
  ASSERT_TRUE(window_.find(QStringLiteral("needle")));
  const TextHit second = *window_.lastHit();
  EXPECT_EQ(second.position.page, 2);
  EXPECT_EQ(second.position.offset, 8);
  EXPECT_EQ(second.box.y, 2000);
  EXPECT_GT(second.box.x, 1440 + 500);
  EXPECT_NEAR(second.box.width, first.box.width, 120);

  // Round to the first hit again.
  ASSERT_TRUE(window_.find(QStringLiteral("needle")));
  EXPECT_EQ(window_.lastHit()->box, first.box);

  // From the page shown, going round the end of the document.
  window_.goToPage(2);
  ASSERT_TRUE(window_.find(QStringLiteral("alpha")));
  EXPECT_EQ(window_.currentPage(), 1);
  const QImage marked = shown();
  const QRect markRect = window_.pageView().toWidget(window_.lastHit()->box);
  const QRgb markPixel = marked.pixel(markRect.right(), markRect.bottom());
  EXPECT_GT(qRed(markPixel), qBlue(markPixel) + 40) << "the hit is marked in colour";

  EXPECT_FALSE(window_.find(QStringLiteral("gamma")));
  EXPECT_FALSE(window_.lastHit());
  EXPECT_FALSE(window_.pageView().mark());
  EXPECT_EQ(window_.currentPage(), 1) << "a search that finds nothing stays on the page";
  EXPECT_TRUE(window_.statusText().contains(QStringLiteral("\"gamma\" was not found")))
      << window_.statusText().toStdString();
  EXPECT_FALSE(window_.find(QString()));
}

TEST_F(PreviewWindowTest, PrintingReportsFailureThroughTheMessagePresenterAndCarriesOn) {
  EXPECT_FALSE(window_.print()) << "no handler, nothing to print with";

  std::vector<QString> messages;
  setMessagePresenter([&](const QString &, const QString &text) { messages.push_back(text); });
  int calls = 0;
  window_.setPrintHandler([&] {
    ++calls;
    if (calls == 1)
      raiseError(ErrorNumber::PermissionDenied, QStringLiteral("Test"), QStringLiteral("The disk is full"));
  });
  EXPECT_FALSE(window_.print());
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_TRUE(messages[0].contains(QStringLiteral("The disk is full"))) << messages[0].toStdString();
  EXPECT_EQ(window_.statusText(), QStringLiteral("Not printed"));

  // Ctrl+P prints again once the failure is over.
  window_.activateWindow();
  QTest::keyClick(&window_, Qt::Key_P, Qt::ControlModifier);
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(window_.statusText(), QStringLiteral("Printed"));
  EXPECT_EQ(messages.size(), 1u);
  setMessagePresenter(nullptr);
}

TEST(PreviewWindowEmpty, ADocumentWithoutPagesShowsNothingToNavigateOrPrint) {
  PreviewWindow window(std::make_shared<PageDocument>());
  bool printed = false;
  window.setPrintHandler([&] { printed = true; });
  EXPECT_EQ(window.pageCount(), 0);
  EXPECT_EQ(window.currentPage(), 0);
  window.nextPage();
  window.lastPage();
  EXPECT_EQ(window.currentPage(), 0);
  EXPECT_FALSE(window.find(QStringLiteral("anything")));
  EXPECT_FALSE(window.print());
  EXPECT_FALSE(printed);
}

} // namespace

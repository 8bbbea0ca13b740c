// Painting pages onto an image at a tenth of their size in twips: where
// shapes, images and aligned text land, and how dashed lines look.

#include "engine/render/PagePainter.h"
#include "engine/render/TextCanvas.h"

#include "support/ErrorCapture.h"

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::engine;

namespace {

constexpr qreal kScale = 0.1; // 144 dots per inch
constexpr QRgb kWhite = 0xffffffff;

QImage paintPage(const PageDocument &document, int index = 0) {
  const Page page = document.page(index);
  QImage image(int(page.width() * kScale), int(page.height() * kScale), QImage::Format_ARGB32);
  image.fill(kWhite);
  QPainter painter(&image);
  painter.scale(kScale, kScale);
  PagePainter(document).paint(painter, index);
  return image;
}

QRgb pixelAt(const QImage &image, Twips x, Twips y) { return image.pixel(int(x * kScale), int(y * kScale)); }

bool isInk(QRgb pixel) { return qGray(pixel) < 128; }

// The columns, in twips, between which the image has dark pixels in the
// rows of the box; an empty range when there are none.
std::pair<qreal, qreal> inkColumns(const QImage &image, const Box &box) {
  int left = image.width();
  int right = -1;
  for (int y = int(box.y * kScale); y < int((box.y + box.height) * kScale); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (isInk(image.pixel(x, y))) {
        left = std::min(left, x);
        right = std::max(right, x);
      }
  return {left / kScale, (right + 1) / kScale};
}

// The rows, in twips, between which the image has dark pixels.
std::pair<qreal, qreal> inkRows(const QImage &image) {
  int top = image.height();
  int bottom = -1;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (isInk(image.pixel(x, y))) {
        top = std::min(top, y);
        bottom = std::max(bottom, y);
      }
  return {top / kScale, (bottom + 1) / kScale};
}

TEST(PagePainting, PutsShapesAndImagesInTheirBoxes) {
  PageDocument document;
  QImage yellow(2, 2, QImage::Format_ARGB32);
  yellow.fill(qRgb(255, 255, 0));
  const int image = document.internImage(yellow);
  Page page(3000, 3000);
  page.addRect({RectItem{{100, 100, 1000, 1000}, qRgb(255, 0, 0), std::nullopt, 0}});
  page.addEllipse({EllipseItem{{1500, 100, 1000, 1000}, qRgb(0, 0, 255), std::nullopt}});
  page.addLine({100, 1500, 2900, 1500, Stroke{qRgb(0, 128, 0), 40, LineStyle::Solid}});
  page.addImage({100, 2000, 500, 500}, image);
  page.addRect({RectItem{{1500, 2000, 1000, 800}, std::nullopt, Stroke{qRgb(0, 0, 0), 20, LineStyle::Solid}, 0}});
  document.append(page);

  const QImage painted = paintPage(document);
  EXPECT_EQ(pixelAt(painted, 600, 600), qRgb(255, 0, 0));
  EXPECT_EQ(pixelAt(painted, 50, 50), kWhite);
  EXPECT_EQ(pixelAt(painted, 2000, 600), qRgb(0, 0, 255));
  EXPECT_EQ(pixelAt(painted, 1540, 140), kWhite); // outside the ellipse, inside its box
  EXPECT_EQ(pixelAt(painted, 1500, 1500), qRgb(0, 128, 0));
  EXPECT_EQ(pixelAt(painted, 1500, 1600), kWhite);
  EXPECT_EQ(pixelAt(painted, 350, 2250), qRgb(255, 255, 0));
  EXPECT_EQ(pixelAt(painted, 350, 2650), kWhite);
  EXPECT_TRUE(isInk(pixelAt(painted, 2000, 2000))); // border without fill
  EXPECT_EQ(pixelAt(painted, 2000, 2400), kWhite);
}

TEST(PagePainting, DashesAndDotsLeaveGapsThatSolidLinesDoNot) {
  PageDocument document;
  Page page(3000, 1000);
  page.addLine({0, 100, 3000, 100, Stroke{kBlack, 30, LineStyle::Solid}});
  page.addLine({0, 400, 3000, 400, Stroke{kBlack, 30, LineStyle::Dash}});
  page.addLine({0, 700, 3000, 700, Stroke{kBlack, 0, LineStyle::Dot}}); // a hairline
  document.append(page);
  const QImage painted = paintPage(document);

  const auto count = [&](Twips y) {
    int ink = 0;
    for (Twips x = 200; x < 2800; x += 10)
      ink += isInk(pixelAt(painted, x, y)) ? 1 : 0;
    return ink;
  };
  const int all = (2800 - 200) / 10;
  EXPECT_EQ(count(100), all);
  EXPECT_GT(count(400), all / 2); // dashes are twice as long as their gaps
  EXPECT_LT(count(400), all * 4 / 5);
  EXPECT_GT(count(700), all / 5); // dots are half as long as their gaps
  EXPECT_LT(count(700), all / 2);
}

TEST(PagePainting, PlacesTextInItsBoxByAlignmentAndMeasure) {
  PageDocument document;
  PageFont large;
  large.pointSize = 20;
  const int font = document.internFont(large);
  TextCanvas canvas;
  canvas.setFont(large.toQFont());
  const QString text = QStringLiteral("HHHH");
  const qreal width = canvas.lineWidth(text);
  const Box box{500, 300, 3000, 500};
  const std::pair<TextAlign, qreal> cases[] = {{TextAlign::Left, box.x},
                                               {TextAlign::Center, box.x + (box.width - width) / 2},
                                               {TextAlign::Right, box.x + box.width - width}};
  for (const auto &[align, start] : cases) {
    PageDocument single;
    single.internFont(large);
    Page page(4000, 1200);
    page.addText(box, text, font, kBlack, align);
    single.append(page);
    const QImage painted = paintPage(single);
    const auto [left, right] = inkColumns(painted, box);
    // An H's ink starts and ends a little inside its advance.
    EXPECT_NEAR(left, start, 60) << int(align);
    EXPECT_NEAR(right, start + width, 60) << int(align);
    // The top of the box is the top of the line: the capitals' ink starts
    // between the box top and the baseline.
    const auto [top, bottom] = inkRows(painted);
    EXPECT_GE(top, box.y);
    EXPECT_LT(top, box.y + canvas.ascent());
    EXPECT_NEAR(bottom, box.y + canvas.ascent(), 20);
  }
}

TEST(PagePainting, ColoursTextAndRefusesAPageIndexOutOfRange) {
  PageDocument document;
  const int font = document.internFont(PageFont{});
  Page page(2000, 600);
  page.addText({100, 100, 1800, 400}, QStringLiteral("██████"), font, qRgb(255, 0, 0));
  document.append(page);
  const QImage painted = paintPage(document);
  bool red = false;
  for (int x = 0; x < painted.width() && !red; ++x)
    red = painted.pixel(x, int(250 * kScale)) == qRgb(255, 0, 0);
  EXPECT_TRUE(red);

  QImage image(10, 10, QImage::Format_ARGB32);
  QPainter painter(&image);
  EXPECT_EQ(test::errorNumber([&] { PagePainter(document).paint(painter, 1); }), ErrorNumber::SubscriptOutOfRange);
}

} // namespace

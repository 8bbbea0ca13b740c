// Pages as display lists: what they keep, the shared font and image tables,
// the checks on appending, and how much memory a long report takes.

#include "engine/render/PageDocument.h"

#include "support/ErrorCapture.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::errorNumber;

namespace {

constexpr QRgb kBlue = 0xff0000ff;

constexpr Twips kA4Width = 11906;
constexpr Twips kA4Height = 16838;

QImage filledImage(QRgb color, int size = 8) {
  QImage image(size, size, QImage::Format_ARGB32);
  image.fill(color);
  return image;
}

// A page of a plain list report: a title, column headings, 60 detail lines
// of five fields each, a rule under the headings and a page number.
Page listPage(int pageNumber, int font) {
  Page page(kA4Width, kA4Height);
  page.addText({720, 720, 10000, 300}, QStringLiteral("Customers by city"), font);
  const char *headings[] = {"Number", "Name", "City", "Phone", "Turnover"};
  for (int column = 0; column < 5; ++column)
    page.addText({720 + column * 2000, 1200, 1900, 240}, QString::fromLatin1(headings[column]), font);
  page.addLine({720, 1450, 10720, 1450, Stroke{kBlack, 10, LineStyle::Solid}});
  for (int line = 0; line < 60; ++line) {
    const int row = pageNumber * 60 + line;
    const Twips y = 1500 + line * 240;
    page.addText({720, y, 1900, 240}, QString::number(100000 + row), font, kBlack, TextAlign::Right);
    page.addText({2720, y, 1900, 240}, QStringLiteral("Customer %1").arg(row), font);
    page.addText({4720, y, 1900, 240}, QStringLiteral("Göteborg"), font);
    page.addText({6720, y, 1900, 240}, QStringLiteral("+46 31 %1").arg(row % 100000), font);
    page.addText({8720, y, 1900, 240}, QStringLiteral("%1.50").arg(row * 7), font, kBlack, TextAlign::Right);
  }
  page.addText({720, 16000, 10000, 240}, QStringLiteral("Page %1").arg(pageNumber + 1), font, kBlack,
               TextAlign::Center);
  return page;
}

qsizetype textLength(const Page &page) {
  qsizetype length = 0;
  for (const PageItem &item : page.items())
    if (const auto *run = std::get_if<TextRun>(&item))
      length += page.text(*run).size();
  return length;
}

TEST(PageItems, KeepTheirOrderAndTheirTexts) {
  Page page(kA4Width, kA4Height);
  page.addRect({RectItem{{0, 0, 500, 500}, qRgb(200, 200, 200), std::nullopt, 0}});
  page.addText({100, 100, 2000, 240}, QStringLiteral("Åsa Öberg"), 3, qRgb(255, 0, 0), TextAlign::Center);
  page.addLine({0, 0, 100, 100, Stroke{}});
  page.addText({100, 400, 2000, 240}, QString(), 0);
  page.addText({100, 700, 2000, 240}, QStringLiteral("Ελληνικά"), 1);
  page.addEllipse({EllipseItem{{10, 10, 20, 20}, std::nullopt, Stroke{kBlack, 15, LineStyle::Dot}}});
  page.addImage({5, 6, 7, 8}, 2);

  ASSERT_EQ(page.itemCount(), 7);
  const auto &items = page.items();
  EXPECT_TRUE(std::holds_alternative<RectItem>(items[0]));
  const auto &first = std::get<TextRun>(items[1]);
  EXPECT_EQ(page.text(first), QStringLiteral("Åsa Öberg"));
  EXPECT_EQ(first.font, 3);
  EXPECT_EQ(first.color, qRgb(255, 0, 0));
  EXPECT_EQ(first.align, TextAlign::Center);
  EXPECT_EQ(first.box, (Box{100, 100, 2000, 240}));
  EXPECT_TRUE(std::holds_alternative<LineItem>(items[2]));
  EXPECT_EQ(page.text(std::get<TextRun>(items[3])), QString());
  EXPECT_EQ(page.text(std::get<TextRun>(items[4])), QStringLiteral("Ελληνικά"));
  EXPECT_EQ(std::get<EllipseItem>(items[5]).border->style, LineStyle::Dot);
  EXPECT_EQ(std::get<ImageItem>(items[6]).image, 2);
  EXPECT_EQ(std::get<ImageItem>(items[6]).box, (Box{5, 6, 7, 8}));
}

TEST(PageItems, AFontIndexBeyondTheTableLimitIsRefused) {
  Page page(kA4Width, kA4Height);
  EXPECT_EQ(errorNumber([&] { page.addText({}, QStringLiteral("x"), 70000); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { page.addText({}, QStringLiteral("x"), -1); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_TRUE(page.isEmpty());
}

TEST(DocumentTables, EqualFontsShareOneIndex) {
  PageDocument document;
  PageFont body;
  PageFont bold = body;
  bold.bold = true;
  PageFont larger = body;
  larger.pointSize = 12.5f;
  PageFont serif = body;
  serif.family = QStringLiteral("DejaVu Serif");

  const int bodyIndex = document.internFont(body);
  EXPECT_EQ(document.internFont(bold), bodyIndex + 1);
  EXPECT_EQ(document.internFont(larger), bodyIndex + 2);
  EXPECT_EQ(document.internFont(serif), bodyIndex + 3);
  EXPECT_EQ(document.internFont(PageFont{}), bodyIndex);
  EXPECT_EQ(document.internFont(PageFont::fromQFont(bold.toQFont())), bodyIndex + 1);
  EXPECT_EQ(document.fontCount(), 4);
  EXPECT_EQ(document.font(bodyIndex + 2).pointSize, 12.5f);
  EXPECT_EQ(errorNumber([&] { document.font(4); }), ErrorNumber::SubscriptOutOfRange);
}

TEST(DocumentTables, FontsComeBackFromQtFontsWithTheirStyle) {
  QFont font(QStringLiteral("DejaVu Serif"));
  font.setPointSizeF(8.5);
  font.setItalic(true);
  font.setUnderline(true);
  font.setStrikeOut(true);
  const PageFont kept = PageFont::fromQFont(font);
  EXPECT_EQ(kept.family, QStringLiteral("DejaVu Serif"));
  EXPECT_FLOAT_EQ(kept.pointSize, 8.5f);
  EXPECT_FALSE(kept.bold);
  EXPECT_TRUE(kept.italic && kept.underline && kept.strikeout);

  QFont pixels(QStringLiteral("DejaVu Sans"));
  pixels.setPixelSize(16); // screen pixels of 1/96 inch
  EXPECT_FLOAT_EQ(PageFont::fromQFont(pixels).pointSize, 12.0f);
}

TEST(DocumentTables, ImagesAreKeptOnceBySharingOrByContent) {
  PageDocument document;
  const QImage red = filledImage(qRgb(255, 0, 0));
  const int redIndex = document.internImage(red);
  EXPECT_EQ(document.internImage(red), redIndex);                          // the same image
  EXPECT_EQ(document.internImage(filledImage(qRgb(255, 0, 0))), redIndex); // an equal one made anew
  EXPECT_NE(document.internImage(filledImage(qRgb(0, 0, 255))), redIndex);
  EXPECT_NE(document.internImage(filledImage(qRgb(255, 0, 0), 9)), redIndex);
  EXPECT_EQ(document.imageCount(), 3);
  EXPECT_EQ(document.image(redIndex).pixel(0, 0), qRgb(255, 0, 0));
  EXPECT_EQ(errorNumber([&] { document.internImage(QImage()); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(errorNumber([&] { document.image(-1); }), ErrorNumber::SubscriptOutOfRange);
}

TEST(DocumentPages, AreAppendedReadByIndexAndCleared) {
  PageDocument document;
  const int font = document.internFont(PageFont{});
  for (int number = 0; number < 3; ++number) {
    Page page(kA4Width, kA4Height);
    page.addText({0, 0, 1000, 240}, QStringLiteral("page %1").arg(number), font);
    document.append(std::move(page));
  }
  ASSERT_EQ(document.pageCount(), 3);
  const Page second = document.page(1);
  EXPECT_EQ(second.text(std::get<TextRun>(second.items().front())), QStringLiteral("page 1"));
  EXPECT_EQ(errorNumber([&] { document.page(3); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { document.page(-1); }), ErrorNumber::SubscriptOutOfRange);

  document.clear();
  EXPECT_EQ(document.pageCount(), 0);
  EXPECT_EQ(document.fontCount(), 0);
  EXPECT_EQ(document.imageCount(), 0);
}

TEST(DocumentPages, ThatReferToMissingFontsImagesOrHaveNoSizeAreRefused) {
  PageDocument document;
  document.internFont(PageFont{});

  Page unknownFont(kA4Width, kA4Height);
  unknownFont.addText({}, QStringLiteral("x"), 1);
  const Error fontError = test::errorOf([&] { document.append(unknownFont); });
  EXPECT_EQ(fontError.number(), ErrorNumber::SubscriptOutOfRange);
  EXPECT_TRUE(fontError.description().contains(QStringLiteral("font 1"))) << fontError.what();

  Page unknownImage(kA4Width, kA4Height);
  unknownImage.addImage({}, 0);
  EXPECT_EQ(errorNumber([&] { document.append(unknownImage); }), ErrorNumber::SubscriptOutOfRange);

  EXPECT_EQ(errorNumber([&] { document.append(Page(0, kA4Height)); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(errorNumber([&] { document.append(Page()); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(document.pageCount(), 0);
}

// A text run costs its item (sizeof(PageItem), at most 48 bytes) and two
// bytes a character; a page adds its own fixed part. Anything beyond that,
// such as a string object or a heap block per run, breaks the bound.
TEST(PageMemory, ASixtyLinePageTakesItsItemsAndCharactersOnly) {
  PageDocument document;
  const int font = document.internFont(PageFont{});
  document.append(listPage(0, font));
  const Page page = document.page(0);
  const std::size_t bytes = page.approximateBytes();
  const std::size_t bound = std::size_t(page.itemCount()) * 48 + std::size_t(textLength(page)) * 2 + 512;
  std::printf("[ memory   ] a 60-line page of %d items takes %zu bytes (bound %zu)\n", page.itemCount(), bytes, bound);
  EXPECT_LE(bytes, bound);
}

// 2,000 such pages (some 22 KB each, 44 MB in all) keep no more than the
// store's budget in memory; the rest come back from the temporary file as
// they went, values and page counts included.
TEST(PageMemory, PagesBeyondTheBudgetLeaveMemoryAndComeBackWhole) {
  PageDocument document;
  const int font = document.internFont(PageFont{});
  const std::uint32_t band = document.beginBand(BandKind::Detail);
  document.endBand();
  const std::uint32_t control = document.internControl(QStringLiteral("Turnover"), QString());
  for (int number = 0; number < 2000; ++number) {
    Page page = listPage(number, font);
    const std::uint32_t mark = page.textMark();
    page.addText({720, 16400, 4000, 240}, QStringLiteral("Total %1").arg(number), font, kBlue, TextAlign::Right);
    page.markValue(mark, ValueSource{band, control, ValueKind::Number, double(number)}, QStringLiteral("Whole"));
    document.append(std::move(page));
    document.addPageCount(number, PageCountText{{9000, 16000, 1000, 240}, font, kBlack, TextAlign::Left,
                                                QStringLiteral("of #")});
  }
  const std::size_t bytes = document.approximateBytes();
  std::printf("[ memory   ] 2000 pages keep %zu bytes in memory\n", bytes);
  EXPECT_LT(bytes, PageStore::kDefaultMemoryBudget + (1u << 20));

  document.resolvePageCounts([](const QString &format) { return QString(format).replace(u'#', "2000"); });
  for (const int number : {0, 1234, 1999}) {
    const Page page = document.page(number);
    const Page expected = listPage(number, font);
    ASSERT_EQ(page.itemCount(), expected.itemCount() + 2) << number;
    const auto &runs = page.items();
    const auto &total = std::get<TextRun>(runs[runs.size() - 2]);
    EXPECT_EQ(page.text(total), QStringLiteral("Total %1").arg(number));
    EXPECT_EQ(total.color, kBlue);
    EXPECT_EQ(total.align, TextAlign::Right);
    ASSERT_EQ(page.values().size(), 1u);
    EXPECT_EQ(page.values()[0].source().number, double(number));
    EXPECT_EQ(page.text(page.values()[0]), QStringLiteral("Whole"));
    EXPECT_EQ(page.text(std::get<TextRun>(runs.back())), QStringLiteral("of 2000")) << "the count is resolved";
    EXPECT_EQ(page.text(std::get<TextRun>(runs[40])), expected.text(std::get<TextRun>(expected.items()[40])));
  }
}

} // namespace

// TIFF files written from pages, checked with tiffinfo and read back with
// libtiff: one directory a page with its size, resolution and compression,
// ink where the page has text and a filled rectangle and nowhere else, and
// what a failed export leaves behind.

#include "engine/export/TiffExporter.h"
#include "engine/export/TiffExporterObject.h"
#include "engine/render/PagesObject.h"

#include "support/ErrorCapture.h"
#include "support/TempDir.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <tiffio.h>

#include <cmath>
#include <memory>
#include <vector>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::TempDir;

namespace {

constexpr Twips kA4Short = 11906;
constexpr Twips kA4Long = 16838;
const Box kTextBox{1440, 1440, 5000, 300};
const Box kFilledBox{1440, 4320, 2880, 1440};

// Pixels at a resolution, rounded as the exporter rounds.
int pixels(Twips twips, int dotsPerInch) { return int(std::lround(double(twips) * dotsPerInch / kTwipsPerInch)); }

// A4 portrait with a text run and a black rectangle, A4 landscape, A4
// portrait.
std::shared_ptr<PageDocument> threePages() {
  auto document = std::make_shared<PageDocument>();
  const int font = document->internFont(PageFont{});
  Page first(kA4Short, kA4Long);
  first.addText(kTextBox, QStringLiteral("MMMM WWWW MMMM WWWW"), font);
  first.addRect(RectItem{kFilledBox, kBlack, std::nullopt, 0});
  document->append(first);
  Page second(kA4Long, kA4Short);
  second.addText({1440, 1440, 9000, 300}, QStringLiteral("Landscape page"), font);
  document->append(second);
  Page third(kA4Short, kA4Long);
  third.addText({1440, 1440, 9000, 300}, QStringLiteral("Last page"), font);
  document->append(third);
  return document;
}

struct Directory {
  int width = 0;
  int height = 0;
  QString resolution;
  QString compression;
  QString bitsPerSample;
  QString pageNumber;
  QString documentName;
};

// The directories tiffinfo reports, in file order.
std::vector<Directory> tiffInfo(const QString &path) {
  QProcess process;
  process.start(QStringLiteral("tiffinfo"), {path});
  if (!process.waitForFinished(60000) || process.exitCode() != 0) {
    ADD_FAILURE() << "tiffinfo failed: " << process.readAllStandardError().toStdString();
    return {};
  }
  const QString report = QString::fromUtf8(process.readAllStandardOutput());
  static const QRegularExpression size(QStringLiteral(R"(Image Width: (\d+) Image Length: (\d+))"));
  const auto value = [](const QString &section, const QString &key) {
    const QRegularExpression line(QStringLiteral(R"(^\s*%1: (.*)$)").arg(key), QRegularExpression::MultilineOption);
    return line.match(section).captured(1).trimmed();
  };
  std::vector<Directory> directories;
  // What comes before the first directory is no directory.
  const QStringList sections = report.split(QStringLiteral("TIFF Directory at offset")).mid(1);
  for (const QString &section : sections) {
    Directory directory;
    const auto match = size.match(section);
    directory.width = match.captured(1).toInt();
    directory.height = match.captured(2).toInt();
    directory.resolution = value(section, QStringLiteral("Resolution"));
    directory.compression = value(section, QStringLiteral("Compression Scheme"));
    directory.bitsPerSample = value(section, QStringLiteral("Bits/Sample"));
    directory.pageNumber = value(section, QStringLiteral("Page Number"));
    directory.documentName = value(section, QStringLiteral("DocumentName"));
    directories.push_back(directory);
  }
  return directories;
}

// The first page of the file as grey pixels, black 0 and white 255, read
// with libtiff whether it is 1-bit or 8-bit.
QImage readFirstPage(const QString &path) {
  TIFF *tiff = TIFFOpen(path.toUtf8().constData(), "r");
  if (!tiff) {
    ADD_FAILURE() << "libtiff cannot open " << path.toStdString();
    return {};
  }
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint16_t bits = 0;
  std::uint16_t photometric = 0;
  TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
  TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
  TIFFGetField(tiff, TIFFTAG_BITSPERSAMPLE, &bits);
  TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric);
  QImage image(int(width), int(height), QImage::Format_Grayscale8);
  std::vector<unsigned char> row(std::size_t(TIFFScanlineSize(tiff)));
  for (std::uint32_t y = 0; y < height; ++y) {
    if (TIFFReadScanline(tiff, row.data(), y, 0) < 0) {
      ADD_FAILURE() << "row " << y << " cannot be read";
      break;
    }
    uchar *out = image.scanLine(int(y));
    for (std::uint32_t x = 0; x < width; ++x) {
      int level = bits == 1 ? ((row[x / 8] >> (7 - x % 8)) & 1) * 255 : row[x];
      if (photometric == PHOTOMETRIC_MINISWHITE)
        level = 255 - level;
      out[x] = uchar(level);
    }
  }
  TIFFClose(tiff);
  return image;
}

// The dark pixels inside a box of the page, given in twips.
int darkPixels(const QImage &image, const Box &box, int dotsPerInch) {
  int dark = 0;
  for (int y = pixels(box.y, dotsPerInch); y < pixels(box.y + box.height, dotsPerInch); ++y) {
    for (int x = pixels(box.x, dotsPerInch); x < pixels(box.x + box.width, dotsPerInch); ++x)
      dark += qGray(image.pixel(x, y)) < 128 ? 1 : 0;
  }
  return dark;
}

class TiffExport : public ::testing::Test {
protected:
  void SetUp() override {
    if (QStandardPaths::findExecutable(QStringLiteral("tiffinfo")).isEmpty())
      GTEST_SKIP() << "tiffinfo is needed";
  }

  TempDir dir_;
};

TEST_F(TiffExport, WritesOnePageADirectoryAtTwoHundredDpiInGroupFour) {
  const QString path = dir_.file(QStringLiteral("report.tif"));
  test::writeFile(path, "an earlier file");
  TiffExporter().exportDocument(*threePages(), path);

  const auto directories = tiffInfo(path);
  ASSERT_EQ(directories.size(), 3u);
  const int shortSide = pixels(kA4Short, 200);
  const int longSide = pixels(kA4Long, 200);
  EXPECT_EQ(shortSide, 1654);
  const std::pair<int, int> sizes[] = {{shortSide, longSide}, {longSide, shortSide}, {shortSide, longSide}};
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(directories[i].width, sizes[i].first);
    EXPECT_EQ(directories[i].height, sizes[i].second);
    EXPECT_EQ(directories[i].resolution, QStringLiteral("200, 200 pixels/inch"));
    EXPECT_EQ(directories[i].compression, QStringLiteral("CCITT Group 4"));
    EXPECT_EQ(directories[i].bitsPerSample, QStringLiteral("1"));
    EXPECT_EQ(directories[i].pageNumber, QStringLiteral("%1-3").arg(i));
  }
  // Only the target is left in the folder: no temporary file.
  EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("report.tif")});
}

TEST_F(TiffExport, TheLateBoundExporterWritesGreyInLzwAtItsResolution) {
  const QString path = dir_.file(QStringLiteral("grey.tif"));
  TiffExporterObject exporter;
  exporter.set(QStringLiteral("FileName"), path);
  exporter.set(QStringLiteral("Resolution"), 150);
  exporter.set(QStringLiteral("Monochrome"), false);
  EXPECT_EQ(exporter.get(QStringLiteral("Resolution")).toLong(), 150);
  exporter.invoke(QStringLiteral("Export"), {Variant(ObjectRef(std::make_shared<PagesObject>(threePages())))});

  const auto directories = tiffInfo(path);
  ASSERT_EQ(directories.size(), 3u);
  EXPECT_EQ(directories[1].width, pixels(kA4Long, 150));
  EXPECT_EQ(directories[1].height, pixels(kA4Short, 150));
  for (const Directory &directory : directories) {
    EXPECT_EQ(directory.resolution, QStringLiteral("150, 150 pixels/inch"));
    EXPECT_EQ(directory.compression, QStringLiteral("LZW"));
    EXPECT_EQ(directory.bitsPerSample, QStringLiteral("8"));
  }
}

TEST_F(TiffExport, InkStandsWhereTheTextAndTheRectangleAreAndNowhereElse) {
  for (const bool monochrome : {true, false}) {
    SCOPED_TRACE(monochrome ? "monochrome" : "grey");
    const QString path = dir_.file(QStringLiteral("ink.tif"));
    TiffExporter exporter;
    exporter.setMonochrome(monochrome);
    exporter.exportDocument(*threePages(), path);
    const QImage page = readFirstPage(path);
    ASSERT_EQ(page.size(), QSize(pixels(kA4Short, 200), pixels(kA4Long, 200)));

    const int rectArea = pixels(kFilledBox.width, 200) * pixels(kFilledBox.height, 200);
    EXPECT_GT(darkPixels(page, kFilledBox, 200), rectArea * 95 / 100);
    const int text = darkPixels(page, kTextBox, 200);
    EXPECT_GT(text, 200);
    EXPECT_LT(text, pixels(kTextBox.width, 200) * pixels(kTextBox.height, 200) / 2);
    // Between the text and the rectangle, right of both and below them.
    EXPECT_EQ(darkPixels(page, {1440, 2200, 5000, 1800}, 200), 0);
    EXPECT_EQ(darkPixels(page, {7000, 0, kA4Short - 7000, kA4Long}, 200), 0);
    EXPECT_EQ(darkPixels(page, {0, 6200, kA4Short, kA4Long - 6200}, 200), 0);
  }
}

TEST_F(TiffExport, MonochromeKeepsPaleAndThinRulesAndShowsAPaleBackgroundAsDots) {
  PageDocument document;
  document.setTitle(QStringLiteral("Kunder i Göteborg"));
  const int font = document.internFont(PageFont{});
  Page page(kA4Short, kA4Long);
  const Box stripe{1440, 2000, 7200, 300};
  page.addRect(RectItem{stripe, 0xffeeeeee, std::nullopt, 0});
  page.addText({1440, 2000, 4000, 300}, QStringLiteral("A row on a stripe"), font);
  const Twips greyHairline = 3003;
  const Twips thinBlack = 4003; // 3 twips, less than half a dot at 200 dpi
  page.addLine({1440, greyHairline, 8640, greyHairline, Stroke{0xff999999, 0, LineStyle::Solid}});
  page.addLine({1440, thinBlack, 8640, thinBlack, Stroke{kBlack, 3, LineStyle::Solid}});
  document.append(page);
  const QString path = dir_.file(QStringLiteral("rules.tif"));
  TiffExporter().exportDocument(document, path);
  const QImage image = readFirstPage(path);
  ASSERT_FALSE(image.isNull());

  // A dark dot in nearly every column along each rule, within a dot of it.
  for (const Twips rule : {greyHairline, thinBlack}) {
    SCOPED_TRACE(rule);
    const int row = pixels(rule, 200);
    int columns = 0;
    int inked = 0;
    for (int x = pixels(1440, 200); x < pixels(8640, 200); ++x, ++columns) {
      bool dark = false;
      for (int y = row - 1; y <= row + 1; ++y)
        dark = dark || qGray(image.pixel(x, y)) < 128;
      inked += dark ? 1 : 0;
    }
    EXPECT_GE(inked, columns * 95 / 100) << "of " << columns;
  }
  // The stripe right of its text: a light, even pattern of dots.
  const Box pale{6000, stripe.y, 2640, stripe.height};
  const int area = pixels(pale.width, 200) * pixels(pale.height, 200);
  const int dots = darkPixels(image, pale, 200);
  EXPECT_GT(dots, area / 50);
  EXPECT_LT(dots, area / 4);
  EXPECT_EQ(darkPixels(image, {1440, 2400, 7200, 500}, 200), 0) << "below the stripe";

  const auto directories = tiffInfo(path);
  ASSERT_EQ(directories.size(), 1u);
  EXPECT_EQ(directories[0].documentName, QStringLiteral("Kunder i Göteborg"));
}

TEST_F(TiffExport, AMissingFolderRaises76AndLeavesNothing) {
  const QString path = dir_.file(QStringLiteral("missing/report.tif"));
  const Error error = test::errorOf([&] { TiffExporter().exportDocument(*threePages(), path); });
  EXPECT_EQ(error.number(), ErrorNumber::PathNotFound);
  EXPECT_TRUE(error.description().contains(path)) << error.description().toStdString();
  EXPECT_TRUE(QDir(dir_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).isEmpty());
}

TEST_F(TiffExport, BadSettingsAndPagesRaiseClearErrorsAndKeepTheEarlierFile) {
  const QString path = dir_.file(QStringLiteral("kept.tif"));
  test::writeFile(path, "an earlier file");
  TiffExporter exporter;
  EXPECT_EQ(test::errorNumber([&] { exporter.setResolution(99); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { exporter.setResolution(601); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(exporter.resolution(), 200);
  EXPECT_EQ(test::errorNumber([&] { exporter.exportPages(*threePages(), path, 2, 3); }),
            ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(test::errorNumber([&] { exporter.exportDocument(PageDocument(), path); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { exporter.exportDocument(*threePages(), dir_.path()); }),
            ErrorNumber::PermissionDenied);

  TiffExporterObject object;
  object.set(QStringLiteral("FileName"), path);
  EXPECT_EQ(test::errorNumber([&] { object.invoke(QStringLiteral("Export"), {Variant(42)}); }),
            ErrorNumber::ObjectRequired);
  EXPECT_EQ(test::readFile(path), QByteArray("an earlier file"));
  EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("kept.tif")});
}

} // namespace

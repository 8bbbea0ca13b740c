#include "engine/export/TiffExporter.h"

#include "engine/render/GlyphCoverage.h"
#include "engine/render/PagePainter.h"

#include "core/Error.h"
#include "engine/export/ExportFile.h"

#include <QImage>
#include <QPainter>

#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <vector>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("TiffExporter");

// The page as an 8-bit grey image at the resolution, white where nothing
// is painted. For a monochrome image it is painted for black and white
// dots, without smoothing, so that text and lines are black or white and
// only fills and images are grey.
QImage renderPage(const PagePainter &pagePainter, const Page &page, int dotsPerInch, bool monochrome) {
  const qreal scale = qreal(dotsPerInch) / kTwipsPerInch;
  const int width = std::max(1, int(std::lround(page.width() * scale)));
  const int height = std::max(1, int(std::lround(page.height() * scale)));
  QImage image(width, height, QImage::Format_RGB32);
  if (image.isNull())
    raiseError(ErrorNumber::OutOfMemory, kSource,
               QStringLiteral("A page of %1 by %2 pixels does not fit in memory").arg(width).arg(height));
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform,
                         !monochrome);
  painter.scale(scale, scale);
  pagePainter.paint(painter, page);
  painter.end();
  return image.convertToFormat(QImage::Format_Grayscale8);
}

// The ordered dither's thresholds: each 8 by 8 block of a grey level g
// gets black dots in about (255 - g) / 255 of its places, spread evenly, so
// pale fills show as a light pattern. Black stays black, white white.
constexpr std::uint8_t kBayer[8][8] = {{0, 32, 8, 40, 2, 34, 10, 42},  {48, 16, 56, 24, 50, 18, 58, 26},
                                       {12, 44, 4, 36, 14, 46, 6, 38}, {60, 28, 52, 20, 62, 30, 54, 22},
                                       {3, 35, 11, 43, 1, 33, 9, 41},  {51, 19, 59, 27, 49, 17, 57, 25},
                                       {15, 47, 7, 39, 13, 45, 5, 37}, {63, 31, 55, 23, 61, 29, 53, 21}};

bool blackDot(int grey, std::uint32_t x, std::uint32_t y) { return grey < kBayer[y % 8][x % 8] * 4 + 2; }

// libtiff reads and writes the temporary file through these.
tmsize_t readDevice(thandle_t handle, void *buffer, tmsize_t size) {
  return static_cast<QFileDevice *>(handle)->read(static_cast<char *>(buffer), size);
}

tmsize_t writeDevice(thandle_t handle, void *buffer, tmsize_t size) {
  return static_cast<QFileDevice *>(handle)->write(static_cast<const char *>(buffer), size);
}

toff_t seekDevice(thandle_t handle, toff_t offset, int whence) {
  auto *file = static_cast<QFileDevice *>(handle);
  qint64 position = qint64(offset);
  if (whence == SEEK_CUR)
    position += file->pos();
  else if (whence == SEEK_END)
    position += file->size();
  return position >= 0 && file->seek(position) ? toff_t(position) : toff_t(-1);
}

toff_t deviceSize(thandle_t handle) { return toff_t(static_cast<QFileDevice *>(handle)->size()); }

int keepDeviceOpen(thandle_t) { return 0; } // the file is renamed or dropped afterwards

int noMapping(thandle_t, void **, toff_t *) { return 0; }

void noUnmapping(thandle_t, void *, toff_t) {}

// Keeps the last complaint of libtiff for the error raised.
int recordTiffError(TIFF *, void *userData, const char *module, const char *format, va_list arguments) {
  char text[512];
  std::vsnprintf(text, sizeof text, format, arguments);
  *static_cast<QString *>(userData) =
      QString::fromUtf8(module ? module : "") + QStringLiteral(": ") + QString::fromUtf8(text);
  return 1;
}

// A TIFF file being written into an export file; closes the handle with
// the object so that an error on the way frees it.
class TiffWriter {
public:
  TiffWriter(ExportFile &file, const QString &title) : file_(file), title_(title.toUtf8()) {
    TIFFOpenOptions *options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, recordTiffError, &lastError_);
    tiff_ = TIFFClientOpenExt(file.target().toUtf8().constData(), "w", static_cast<QFileDevice *>(&file), readDevice,
                              writeDevice, seekDevice, keepDeviceOpen, deviceSize, noMapping, noUnmapping, options);
    TIFFOpenOptionsFree(options);
    if (!tiff_)
      fail(QStringLiteral("the TIFF output could not be started"));
  }
  ~TiffWriter() { close(); }
  TiffWriter(const TiffWriter &) = delete;
  TiffWriter &operator=(const TiffWriter &) = delete;

  // Adds one page as a directory of its own.
  void writePage(const QImage &grey, int pageNumber, int pageCount, int dotsPerInch, bool monochrome) {
    const auto width = std::uint32_t(grey.width());
    const auto height = std::uint32_t(grey.height());
    TIFFSetField(tiff_, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
    TIFFSetField(tiff_, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff_, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff_, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff_, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff_, TIFFTAG_XRESOLUTION, float(dotsPerInch));
    TIFFSetField(tiff_, TIFFTAG_YRESOLUTION, float(dotsPerInch));
    TIFFSetField(tiff_, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    if (!title_.isEmpty())
      TIFFSetField(tiff_, TIFFTAG_DOCUMENTNAME, title_.constData());
    // The tag holds 16-bit numbers; longer documents stop counting there.
    TIFFSetField(tiff_, TIFFTAG_PAGENUMBER, std::uint16_t(std::min(pageNumber, 65535)),
                 std::uint16_t(std::min(pageCount, 65535)));
    if (monochrome) {
      TIFFSetField(tiff_, TIFFTAG_BITSPERSAMPLE, 1);
      TIFFSetField(tiff_, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
      TIFFSetField(tiff_, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
      TIFFSetField(tiff_, TIFFTAG_ROWSPERSTRIP, height);
    } else {
      TIFFSetField(tiff_, TIFFTAG_BITSPERSAMPLE, 8);
      TIFFSetField(tiff_, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
      TIFFSetField(tiff_, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
      TIFFSetField(tiff_, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
      TIFFSetField(tiff_, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff_, 0));
    }

    std::vector<unsigned char> row(monochrome ? (width + 7) / 8 : width);
    for (std::uint32_t y = 0; y < height; ++y) {
      const uchar *pixels = grey.constScanLine(int(y));
      if (monochrome) {
        std::fill(row.begin(), row.end(), 0);
        for (std::uint32_t x = 0; x < width; ++x) {
          if (blackDot(pixels[x], x, y))
            row[x / 8] |= std::uint8_t(0x80u >> (x % 8));
        }
      } else {
        std::copy(pixels, pixels + width, row.begin());
      }
      if (TIFFWriteScanline(tiff_, row.data(), y, 0) < 0)
        fail(QStringLiteral("page %1 could not be written").arg(pageNumber + 1));
    }
    if (!TIFFWriteDirectory(tiff_))
      fail(QStringLiteral("page %1 could not be finished").arg(pageNumber + 1));
  }

  void finish() {
    if (!TIFFFlush(tiff_))
      fail(QStringLiteral("the TIFF output could not be finished"));
    close();
  }

private:
  void close() {
    if (tiff_)
      TIFFClose(tiff_);
    tiff_ = nullptr;
  }

  // The system's reason where the file refused a write, else libtiff's.
  [[noreturn]] void fail(const QString &what) {
    file_.fail(lastError_.isEmpty() ? what : what + QStringLiteral(" (") + lastError_ + u')');
  }

  ExportFile &file_;
  QByteArray title_;
  QString lastError_;
  TIFF *tiff_ = nullptr;
};

} // namespace

void TiffExporter::setResolution(int dotsPerInch) {
  if (dotsPerInch < kMinimumResolution || dotsPerInch > kMaximumResolution)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The resolution %1 dpi is outside %2 to %3 dpi")
                   .arg(dotsPerInch)
                   .arg(kMinimumResolution)
                   .arg(kMaximumResolution));
  resolution_ = dotsPerInch;
}

void TiffExporter::exportDocument(const PageDocument &document, const QString &path) const {
  exportPages(document, path, 0, document.pageCount() - 1);
}

void TiffExporter::exportPages(const PageDocument &document, const QString &path, int firstPage, int lastPage) const {
  checkPageRange(document, firstPage, lastPage, kSource);

  // Declared in this order so that an error on the way closes the TIFF
  // output first and then drops the unfinished file.
  ExportFile file(path, kSource);
  warnOfMissingGlyphs(document, firstPage, lastPage);
  TiffWriter writer(file, document.title());
  PagePainter pagePainter(document);
  pagePainter.setMonochrome(monochrome_);
  const int pageCount = lastPage - firstPage + 1;
  for (int index = firstPage; index <= lastPage; ++index) {
    const QImage grey = renderPage(pagePainter, document.page(index), resolution_, monochrome_);
    writer.writePage(grey, index - firstPage, pageCount, resolution_, monochrome_);
  }
  writer.finish();
  file.commit();
}

} // namespace kordel::engine

#include "engine/export/TiffExporter.h"

#include "engine/render/PagePainter.h"

#include "core/Error.h"
#include "engine/export/ExportFile.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QTemporaryFile>

#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("TiffExporter");

constexpr QFileDevice::Permissions kNewFilePermissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                         QFileDevice::ReadUser | QFileDevice::WriteUser |
                                                         QFileDevice::ReadGroup | QFileDevice::ReadOther;

// Grey levels below this are black in a monochrome image.
constexpr int kBlackBelow = 128;

// The page as an 8-bit grey image at the resolution, white where nothing
// is painted.
QImage renderPage(const PagePainter &pagePainter, const Page &page, int dotsPerInch) {
  const qreal scale = qreal(dotsPerInch) / kTwipsPerInch;
  const int width = std::max(1, int(std::lround(page.width() * scale)));
  const int height = std::max(1, int(std::lround(page.height() * scale)));
  QImage image(width, height, QImage::Format_RGB32);
  if (image.isNull())
    raiseError(ErrorNumber::OutOfMemory, kSource,
               QStringLiteral("A page of %1 by %2 pixels does not fit in memory").arg(width).arg(height));
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
  painter.scale(scale, scale);
  pagePainter.paint(painter, page);
  painter.end();
  return image.convertToFormat(QImage::Format_Grayscale8);
}

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

// A TIFF file being written into a save file; closes the handle with the
// object so that an error on the way frees it.
class TiffWriter {
public:
  TiffWriter(QFileDevice &file, const QString &path) : path_(path) {
    TIFFOpenOptions *options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, recordTiffError, &lastError_);
    tiff_ = TIFFClientOpenExt(path.toUtf8().constData(), "w", &file, readDevice, writeDevice, seekDevice,
                              keepDeviceOpen, deviceSize, noMapping, noUnmapping, options);
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
          if (pixels[x] < kBlackBelow)
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

  [[noreturn]] void fail(const QString &what) {
    raiseExportWriteError(path_, lastError_.isEmpty() ? what : what + QStringLiteral(" (") + lastError_ + u')',
                          kSource);
  }

  QString path_;
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
  checkExportTarget(path, kSource);

  // The file is written under a temporary name in the target's folder and
  // renamed over the target when complete. Declared in this order so that
  // an error on the way closes the TIFF output first and then removes the
  // unfinished file.
  const QFileInfo target(path);
  QTemporaryFile file(target.absolutePath() + QStringLiteral("/.") + target.fileName() + QStringLiteral(".XXXXXX"));
  if (!file.open())
    raiseExportWriteError(path, file.errorString(), kSource);
  TiffWriter writer(file, path);
  const PagePainter pagePainter(document);
  const int pageCount = lastPage - firstPage + 1;
  for (int index = firstPage; index <= lastPage; ++index) {
    const QImage grey = renderPage(pagePainter, document.page(index), resolution_);
    writer.writePage(grey, index - firstPage, pageCount, resolution_, monochrome_);
  }
  writer.finish();
  // A replaced file keeps its permissions; a new one is readable by all.
  file.setPermissions(target.exists() ? target.permissions() : kNewFilePermissions);
  if (!file.flush())
    raiseExportWriteError(path, file.errorString(), kSource);
  file.close();
  if (std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData()) != 0)
    raiseExportWriteError(path, QString::fromLocal8Bit(std::strerror(errno)), kSource);
  file.setAutoRemove(false);
}

} // namespace kordel::engine

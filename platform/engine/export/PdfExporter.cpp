#include "engine/export/PdfExporter.h"

#include "engine/render/PagePainter.h"

#include "core/Error.h"

#include <QDir>
#include <QFileInfo>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("PdfExporter");

// The PDF page for a page: its size in points, landscape when wider than
// high, without margins so that the painter's origin is the page's corner.
QPageLayout layoutFor(const Page &page) {
  const qreal width = qreal(page.width()) / kTwipsPerPoint;
  const qreal height = qreal(page.height()) / kTwipsPerPoint;
  const bool landscape = width > height;
  const QPageSize size(landscape ? QSizeF(height, width) : QSizeF(width, height), QPageSize::Point, QString(),
                       QPageSize::ExactMatch);
  return QPageLayout(size, landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF(), QPageLayout::Point);
}

void checkTarget(const QString &path) {
  if (path.isEmpty())
    raiseError(ErrorNumber::PathNotFound, kSource, QStringLiteral("No file name was given for the PDF file"));
  const QFileInfo info(path);
  if (!info.absoluteDir().exists())
    raiseError(ErrorNumber::PathNotFound, kSource,
               QStringLiteral("Cannot write %1: the folder %2 does not exist").arg(path, info.absolutePath()));
  if (info.isDir())
    raiseError(ErrorNumber::PermissionDenied, kSource, QStringLiteral("Cannot write %1: it is a folder").arg(path));
}

void checkRange(const PageDocument &document, int firstPage, int lastPage) {
  if (document.pageCount() == 0)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The report has no pages to export"));
  if (firstPage < 0 || lastPage >= document.pageCount() || firstPage > lastPage)
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource,
               QStringLiteral("Pages %1 to %2 are not a range of the report's %3 pages (counted from 0)")
                   .arg(firstPage)
                   .arg(lastPage)
                   .arg(document.pageCount()));
}

[[noreturn]] void raiseWriteError(const QString &path, const QString &reason) {
  raiseError(ErrorNumber::PermissionDenied, kSource, QStringLiteral("Cannot write the file %1: %2").arg(path, reason));
}

} // namespace

void PdfExporter::exportDocument(const PageDocument &document, const QString &path) const {
  exportPages(document, path, 0, document.pageCount() - 1);
}

void PdfExporter::exportPages(const PageDocument &document, const QString &path, int firstPage, int lastPage) const {
  checkRange(document, firstPage, lastPage);
  checkTarget(path);

  // Declared in this order so that an error on the way ends the painter
  // first and then drops the unfinished temporary file.
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly))
    raiseWriteError(path, file.errorString());
  QPdfWriter writer(&file);
  writer.setResolution(kTwipsPerInch); // one device pixel is one twip
  writer.setTitle(title_);
  writer.setCreator(creator_);
  if (!writer.setPageLayout(layoutFor(document.page(firstPage))))
    raiseWriteError(path, QStringLiteral("the page size of page %1 is not usable").arg(firstPage + 1));

  QPainter painter;
  if (!painter.begin(&writer))
    raiseWriteError(path, QStringLiteral("the PDF output could not be started"));
  const PagePainter pagePainter(document);
  for (int index = firstPage; index <= lastPage; ++index) {
    const Page &page = document.page(index);
    if (index > firstPage) {
      if (!writer.setPageLayout(layoutFor(page)) || !writer.newPage())
        raiseWriteError(path, QStringLiteral("page %1 could not be started").arg(index + 1));
    }
    pagePainter.paint(painter, page);
  }
  if (!painter.end())
    raiseWriteError(path, QStringLiteral("the PDF output could not be finished"));
  if (!file.commit())
    raiseWriteError(path, file.errorString());
}

} // namespace kordel::engine

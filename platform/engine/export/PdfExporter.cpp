#include "engine/export/PdfExporter.h"

#include "engine/render/GlyphCoverage.h"
#include "engine/render/PagePainter.h"

#include "core/Error.h"
#include "engine/export/ExportFile.h"

#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>

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

} // namespace

void PdfExporter::exportDocument(const PageDocument &document, const QString &path) const {
  exportPages(document, path, 0, document.pageCount() - 1);
}

void PdfExporter::exportPages(const PageDocument &document, const QString &path, int firstPage, int lastPage) const {
  checkPageRange(document, firstPage, lastPage, kSource);

  // Declared in this order so that an error on the way ends the painter
  // first and then drops the unfinished temporary file.
  ExportFile file(path, kSource);
  warnOfMissingGlyphs(document, firstPage, lastPage);
  QPdfWriter writer(&file);
  writer.setResolution(kTwipsPerInch); // one device pixel is one twip
  writer.setTitle(title_.isEmpty() ? document.title() : title_);
  writer.setCreator(creator_);
  if (!writer.setPageLayout(layoutFor(document.page(firstPage))))
    file.fail(QStringLiteral("the page size of page %1 is not usable").arg(firstPage + 1));

  QPainter painter;
  if (!painter.begin(&writer))
    file.fail(QStringLiteral("the PDF output could not be started"));
  const PagePainter pagePainter(document);
  for (int index = firstPage; index <= lastPage; ++index) {
    const Page &page = document.page(index);
    if (index > firstPage) {
      if (!writer.setPageLayout(layoutFor(page)) || !writer.newPage())
        file.fail(QStringLiteral("page %1 could not be started").arg(index + 1));
    }
    pagePainter.paint(painter, page);
  }
  if (!painter.end())
    file.fail(QStringLiteral("the PDF output could not be finished"));
  file.commit();
}

} // namespace kordel::engine

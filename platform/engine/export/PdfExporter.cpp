#include "engine/export/PdfExporter.h"

#include "engine/export/pdf/FontResolver.h"
#include "engine/export/pdf/PdfPagePainter.h"
#include "engine/export/pdf/PdfSurface.h"
#include "engine/export/pdf/TextShaper.h"
#include "engine/render/GlyphCoverage.h"

#include "engine/export/ExportFile.h"

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("PdfExporter");

} // namespace

void PdfExporter::exportDocument(const PageDocument &document, const QString &path) const {
  exportPages(document, path, 0, document.pageCount() - 1);
}

void PdfExporter::exportPages(const PageDocument &document, const QString &path, int firstPage, int lastPage) const {
  checkPageRange(document, firstPage, lastPage, kSource);

  // Declared in this order so that an error on the way drops the PDF
  // output first and then the unfinished temporary file.
  ExportFile file(path, kSource);
  warnOfMissingGlyphs(document, firstPage, lastPage);
  pdf::PdfSurface output(file, title_.isEmpty() ? document.title() : title_, creator_);
  pdf::FontResolver fonts(document);
  pdf::TextShaper shaper(fonts);
  pdf::PdfPagePainter painter(document, fonts, shaper);
  for (int index = firstPage; index <= lastPage; ++index) {
    const Page &page = document.page(index);
    painter.paint(output.beginPage(page.width(), page.height()), page);
    output.endPage();
  }
  output.finish();
  file.commit();
}

} // namespace kordel::engine

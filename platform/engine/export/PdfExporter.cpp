#include "engine/export/PdfExporter.h"

#include "engine/export/pdf/PdfDocumentWriter.h"
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

  ExportFile file(path, kSource); // dropped unless committed
  warnOfMissingGlyphs(document, firstPage, lastPage);
  pdf::PdfDocumentWriter output(file, document);
  for (int index = firstPage; index <= lastPage; ++index)
    output.writePage(document.page(index));
  output.finish(title_.isEmpty() ? document.title() : title_, creator_);
  file.commit();
}

} // namespace kordel::engine

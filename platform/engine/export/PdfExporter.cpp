#include "engine/export/PdfExporter.h"

#include "engine/export/pdf/PdfDocumentWriter.h"
#include "engine/export/pdf/PdfPrewriter.h"
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
  const QString title = title_.isEmpty() ? document.title() : title_;
  // The whole document, when its run has written it ahead.
  if (firstPage == 0 && lastPage == document.pageCount() - 1) {
    if (const auto ahead = std::dynamic_pointer_cast<pdf::PdfPrewriter>(document.pagesAhead());
        ahead && ahead->exportTo(document, file, title, creator_)) {
      file.commit();
      return;
    }
  }
  warnOfMissingGlyphs(document, firstPage, lastPage);
  pdf::PdfDocumentWriter output(file, document);
  for (int index = firstPage; index <= lastPage; ++index)
    output.writePage(document.page(index));
  output.finish(title, creator_);
  file.commit();
}

} // namespace kordel::engine

#pragma once

#include "engine/text/FontResolver.h"
#include "engine/export/pdf/PdfFile.h"
#include "engine/export/pdf/PdfPageContent.h"
#include "engine/export/pdf/PdfResources.h"

#include <QString>

#include <vector>

namespace kordel::engine::pdf {

// A PDF document written page by page into an export file: each page's
// content goes out as soon as the page is done, so that the document's
// size costs no memory; the page tree, the fonts and the document's
// information (title, creator, date of creation) follow the last page.
class PdfDocumentWriter {
public:
  PdfDocumentWriter(ExportFile &file, const PageDocument &document);

  // Raises 9 for a page that refers to a font or image the document lacks.
  void writePage(const Page &page);
  void finish(const QString &title, const QString &creator);

private:
  PdfFile file_;
  int catalog_;
  int pageTree_;
  text::FontResolver fonts_;
  PdfResources resources_;
  PdfPageContent content_;
  std::vector<int> pages_;
};

} // namespace kordel::engine::pdf

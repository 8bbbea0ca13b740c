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
  // A page written while its run goes on: its content now, without the
  // page counts the run has not resolved yet; completePage adds them as a
  // second content stream and writes the page itself.
  void writePageAhead(const Page &page);
  // The page of that index among those written ahead, with its counts.
  void completePage(int index, const std::vector<PageCountText> &counts);
  int pagesAhead() const { return int(ahead_.size()); }
  void finish(const QString &title, const QString &creator);

private:
  struct PageAhead {
    int content = 0;
    Twips width = 0;
    Twips height = 0;
  };

  void writePageObject(Twips width, Twips height, const QByteArray &contents);
  void takeNewFonts();

  PdfFile file_;
  int catalog_;
  int pageTree_;
  text::FontResolver fonts_;
  PdfResources resources_;
  PdfPageContent content_;
  std::vector<int> pages_;
  std::vector<PageAhead> ahead_;
  const PageDocument &document_;
};

} // namespace kordel::engine::pdf

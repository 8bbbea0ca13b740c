#pragma once

#include "engine/render/PageDocument.h"

#include <QString>

namespace kordel::engine {

// Writes the pages of a document to a PDF file: one PDF page per page, of
// the page's own size, with the fonts' used glyphs embedded, also those of
// the fonts that stand in where a font lacks a character. Characters that
// no installed font has are counted in a warning (warnOfMissingGlyphs). The
// file is written beside the target under another name and takes the
// target's name only when complete, so a failure leaves any earlier file as
// it was and no partial one.
//
// Errors: 76 when the target's folder does not exist, 70 when the file
// cannot be written (see checkExportTarget), 9 for a page range outside the
// document, 5 for a document without pages, 53 when no installed font can be
// loaded for one of the document's fonts.
class PdfExporter {
public:
  // The document's title; empty gives the title of the pages' document.
  void setTitle(const QString &title) { title_ = title; }
  const QString &title() const { return title_; }
  // The program named as the document's creator.
  void setCreator(const QString &creator) { creator_ = creator; }
  const QString &creator() const { return creator_; }

  // All pages.
  void exportDocument(const PageDocument &document, const QString &path) const;
  // The pages from firstPage to lastPage, both included, counted from 0.
  void exportPages(const PageDocument &document, const QString &path, int firstPage, int lastPage) const;

private:
  QString title_;
  QString creator_ = QStringLiteral("Kordel");
};

} // namespace kordel::engine

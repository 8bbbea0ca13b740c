#pragma once

#include "engine/render/PageDocument.h"

#include <QByteArray>
#include <QString>

namespace kordel::engine {

// Writes the pages of a document as one HTML file, UTF-8, with the images
// the pages show beside it as PNG files. Each page is a block of its own
// size in points in which every item stands where it stands on the page:
// text in its font and colour, lines, rectangles and ellipses as bordered
// and filled blocks, images stretched to their boxes. The pages follow one
// another down the page with a gap. All text from the document is escaped,
// so the document can hold any characters without adding markup. Each
// font's family list goes on with the families that show here what the
// font lacks (see GlyphCoverage) and ends with its generic kind (sans-serif,
// serif or monospace), so that other machines show the text as well.
//
// Files: a base name "report" gives report.html and report_1.png,
// report_2.png ... for the images (numbered by the document's image table);
// a base name that already ends in ".html" or ".htm" is the HTML file's
// name, and the images take the name without that ending.
//
// Errors: 76 when the folder does not exist or no folder or base name is
// given, 70 when a file cannot be written (see checkExportTarget), 5 for a
// document without pages.
// Every file is written beside its target under another name, and the files
// take their names only once all of them are written, the HTML file last;
// so a failure leaves no partial file and no HTML file that lacks images.
class HtmlExporter {
public:
  // The document's title; empty gives the title of the pages' document,
  // and when that is empty too, the base name.
  void setTitle(const QString &title) { title_ = title; }
  const QString &title() const { return title_; }

  void exportDocument(const PageDocument &document, const QString &folder, const QString &baseName) const;

  // The names of the files for a base name.
  static QString htmlFileName(const QString &baseName);
  static QString imageFileName(const QString &baseName, int image);

  // The HTML text, with the images referred to by imageFileName.
  QByteArray html(const PageDocument &document, const QString &baseName) const;

private:
  QString title_;
};

} // namespace kordel::engine

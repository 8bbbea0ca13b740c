#pragma once

#include "engine/render/PageDocument.h"

#include <QString>

namespace kordel::engine {

// Writes the pages of a document to one multi-page TIFF file: one image a
// page, of the page's own size at the chosen resolution, with its
// resolution in dots per inch, its page number and the document's title as
// its document name. Monochrome images (the default) are 1-bit and
// compressed as Group 4 fax: text, lines and borders black (see
// PagePainter::setMonochrome), fills and images as an even pattern of dots
// as dense as they are dark. Otherwise the images are 8-bit grey compressed
// with LZW. Characters that no installed font has are counted in a warning
// (warnOfMissingGlyphs). The file is written beside the target under
// another name and takes the target's name only when complete, so a
// failure leaves any earlier file as it was and no partial one.
//
// Errors: 76 when the target's folder does not exist, 70 when the file
// cannot be written (see checkExportTarget), 9 for a page range outside the
// document, 5 for a document without pages and for a resolution outside
// 100 to 600 dpi.
class TiffExporter {
public:
  static constexpr int kDefaultResolution = 200;
  static constexpr int kMinimumResolution = 100;
  static constexpr int kMaximumResolution = 600;

  // Dots per inch, horizontal and vertical.
  void setResolution(int dotsPerInch);
  int resolution() const { return resolution_; }
  void setMonochrome(bool monochrome) { monochrome_ = monochrome; }
  bool monochrome() const { return monochrome_; }

  // All pages.
  void exportDocument(const PageDocument &document, const QString &path) const;
  // The pages from firstPage to lastPage, both included, counted from 0.
  void exportPages(const PageDocument &document, const QString &path, int firstPage, int lastPage) const;

private:
  int resolution_ = kDefaultResolution;
  bool monochrome_ = true;
};

} // namespace kordel::engine

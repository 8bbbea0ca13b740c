#pragma once

#include "engine/export/pdf/Handles.h"
#include "engine/render/Page.h"

#include <QString>

namespace kordel::engine {
class ExportFile;
}

namespace kordel::engine::pdf {

// A PDF document that cairo writes into an export file as it goes: pages
// of their own sizes, drawn in twips, and the document's title, creator and
// date of creation. A write the file refuses stops the writing and is
// reported as the file's failure (error 70) by the next call; cairo never
// sees an exception.
class PdfSurface {
public:
  PdfSurface(ExportFile &file, const QString &title, const QString &creator);
  ~PdfSurface();
  PdfSurface(const PdfSurface &) = delete;
  PdfSurface &operator=(const PdfSurface &) = delete;

  // Starts a page of that size: the context draws on it in twips from its
  // top left corner.
  cairo_t *beginPage(Twips width, Twips height);
  void endPage();
  // Writes the rest of the document into the file.
  void finish();

private:
  static cairo_status_t write(void *closure, const unsigned char *data, unsigned int length) noexcept;
  // Raises 70 when a write failed or cairo met an error; nothing more is
  // written then.
  void check();

  ExportFile &file_;
  bool stopped_ = false; // a write failed, or the document is abandoned
  CairoSurfacePtr surface_;
  CairoPtr context_;
};

} // namespace kordel::engine::pdf

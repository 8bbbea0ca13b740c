#include "engine/export/pdf/PdfSurface.h"

#include "engine/export/ExportFile.h"

#include <QDateTime>

#include <cairo-pdf.h>

namespace kordel::engine::pdf {

PdfSurface::PdfSurface(ExportFile &file, const QString &title, const QString &creator) : file_(file) {
  surface_.reset(cairo_pdf_surface_create_for_stream(&PdfSurface::write, this, 1, 1));
  check();
  cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_TITLE, title.toUtf8().constData());
  cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_CREATOR, creator.toUtf8().constData());
  cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_CREATE_DATE,
                                 QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toUtf8().constData());
  context_.reset(cairo_create(surface_.get()));
  cairo_scale(context_.get(), 1.0 / kTwipsPerPoint, 1.0 / kTwipsPerPoint);
  // Glyphs are placed as shaped, not on a grid of device pixels.
  const CairoFontOptionsPtr options(cairo_font_options_create());
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(context_.get(), options.get());
  check();
}

PdfSurface::~PdfSurface() {
  // An unfinished document is dropped: cairo's closing writes go nowhere.
  stopped_ = true;
}

cairo_status_t PdfSurface::write(void *closure, const unsigned char *data, unsigned int length) noexcept {
  auto *self = static_cast<PdfSurface *>(closure);
  if (self->stopped_)
    return CAIRO_STATUS_WRITE_ERROR;
  try {
    if (self->file_.write(reinterpret_cast<const char *>(data), qint64(length)) == qint64(length))
      return CAIRO_STATUS_SUCCESS;
  } catch (...) {
  }
  self->stopped_ = true;
  return CAIRO_STATUS_WRITE_ERROR;
}

void PdfSurface::check() {
  if (stopped_)
    file_.fail(QStringLiteral("the PDF data could not be written"));
  for (const cairo_status_t status :
       {cairo_surface_status(surface_.get()), context_ ? cairo_status(context_.get()) : CAIRO_STATUS_SUCCESS})
    if (status != CAIRO_STATUS_SUCCESS) {
      stopped_ = true;
      file_.fail(QStringLiteral("the PDF output failed: %1").arg(QString::fromUtf8(cairo_status_to_string(status))));
    }
}

cairo_t *PdfSurface::beginPage(Twips width, Twips height) {
  cairo_pdf_surface_set_size(surface_.get(), double(width) / kTwipsPerPoint, double(height) / kTwipsPerPoint);
  check();
  return context_.get();
}

void PdfSurface::endPage() {
  cairo_show_page(context_.get());
  check();
}

void PdfSurface::finish() {
  context_.reset();
  cairo_surface_finish(surface_.get());
  check();
}

} // namespace kordel::engine::pdf

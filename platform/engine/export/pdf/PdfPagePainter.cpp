#include "engine/export/pdf/PdfPagePainter.h"

#include "engine/render/TwipsFont.h"

#include <algorithm>
#include <cmath>

namespace kordel::engine::pdf {

namespace {

// Dashes and dots are sized from a unit of at least one screen pixel at
// 96 dots per inch, as on the screen, so that thin dashed lines still show
// their pattern.
constexpr double kMinimumDashUnit = kTwipsPerInch / 96.0;

// cairo draws no line of width 0; a hairline is the thinnest line a page
// can ask for, one twip, which every device shows as its thinnest.
constexpr double kHairlineWidth = 1.0;

// How far the control points of a Bézier curve stand out along the
// tangents for a quarter of an ellipse.
constexpr double kQuarterArc = 0.5522847498;

const cairo_user_data_key_t kImagePixelsKey{};

void setColor(cairo_t *cairo, QRgb color) {
  cairo_set_source_rgba(cairo, qRed(color) / 255.0, qGreen(color) / 255.0, qBlue(color) / 255.0, qAlpha(color) / 255.0);
}

// Solid lines end square and join bevelled; dashes end flat: the ends
// that the other devices draw.
void setStroke(cairo_t *cairo, const Stroke &stroke) {
  setColor(cairo, stroke.color);
  cairo_set_line_width(cairo, stroke.width > 0 ? double(stroke.width) : kHairlineWidth);
  cairo_set_line_join(cairo, CAIRO_LINE_JOIN_BEVEL);
  if (stroke.style == LineStyle::Solid) {
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_SQUARE);
    cairo_set_dash(cairo, nullptr, 0, 0);
    return;
  }
  const double unit = std::max<double>(stroke.width, kMinimumDashUnit);
  const double dash[] = {(stroke.style == LineStyle::Dash ? 4 : 1) * unit, 2 * unit};
  cairo_set_line_cap(cairo, CAIRO_LINE_CAP_BUTT);
  cairo_set_dash(cairo, dash, 2, 0);
}

// A rectangle whose corners are quarter circles of that radius, at most
// half its width and height.
void roundedRectangle(cairo_t *cairo, const Box &box, double radius) {
  const double rx = std::min(radius, box.width / 2.0);
  const double ry = std::min(radius, box.height / 2.0);
  const double left = box.x, top = box.y, right = box.x + box.width, bottom = box.y + box.height;
  const double kx = rx * kQuarterArc, ky = ry * kQuarterArc;
  cairo_new_path(cairo);
  cairo_move_to(cairo, left + rx, top);
  cairo_line_to(cairo, right - rx, top);
  cairo_curve_to(cairo, right - rx + kx, top, right, top + ry - ky, right, top + ry);
  cairo_line_to(cairo, right, bottom - ry);
  cairo_curve_to(cairo, right, bottom - ry + ky, right - rx + kx, bottom, right - rx, bottom);
  cairo_line_to(cairo, left + rx, bottom);
  cairo_curve_to(cairo, left + rx - kx, bottom, left, bottom - ry + ky, left, bottom - ry);
  cairo_line_to(cairo, left, top + ry);
  cairo_curve_to(cairo, left, top + ry - ky, left + rx - kx, top, left + rx, top);
  cairo_close_path(cairo);
}

} // namespace

PdfPagePainter::PdfPagePainter(const PageDocument &document, FontResolver &fonts, TextShaper &shaper)
    : document_(document), fonts_(fonts), shaper_(shaper) {}

const PdfPagePainter::PreparedFont &PdfPagePainter::preparedFont(int index) {
  const PageFont &font = document_.font(index); // raises 9 out of range
  if (preparedFonts_.size() <= std::size_t(index))
    preparedFonts_.resize(std::size_t(index) + 1);
  std::optional<PreparedFont> &prepared = preparedFonts_[std::size_t(index)];
  if (!prepared) {
    // The vertical metrics are those that measured the text for the page.
    const QFontMetricsF metrics = twipsMetrics(twipsFont(font.toQFont()));
    prepared = PreparedFont{fonts_.size(index),  metrics.ascent(), metrics.underlinePos(), metrics.strikeOutPos(),
                            metrics.lineWidth(), font.underline,   font.strikeout};
  }
  return *prepared;
}

cairo_scaled_font_t *PdfPagePainter::scaledFont(cairo_t *cairo, FontFace &face, double size) {
  CairoScaledFontPtr &scaled = scaledFonts_[{&face, size}];
  if (!scaled) {
    cairo_matrix_t fontMatrix, userToDevice;
    cairo_matrix_init_scale(&fontMatrix, size, size);
    cairo_get_matrix(cairo, &userToDevice);
    const CairoFontOptionsPtr options(cairo_font_options_create());
    cairo_get_font_options(cairo, options.get());
    scaled.reset(cairo_scaled_font_create(face.drawingFace(), &fontMatrix, &userToDevice, options.get()));
  }
  return scaled.get();
}

cairo_surface_t *PdfPagePainter::imageSurface(int index) {
  const QImage &image = document_.image(index); // raises 9 out of range
  if (images_.size() <= std::size_t(index))
    images_.resize(std::size_t(index) + 1);
  CairoSurfacePtr &surface = images_[std::size_t(index)];
  if (!surface) {
    // cairo's ARGB32 is Qt's premultiplied ARGB32: 32-bit words in the
    // machine's byte order, rows of whole words. The surface owns the
    // pixels: the PDF output may hold it until the document is finished.
    auto *pixels = new QImage(image.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    surface.reset(cairo_image_surface_create_for_data(pixels->bits(), CAIRO_FORMAT_ARGB32, pixels->width(),
                                                      pixels->height(), int(pixels->bytesPerLine())));
    if (cairo_surface_set_user_data(surface.get(), &kImagePixelsKey, pixels,
                                    [](void *data) { delete static_cast<QImage *>(data); }) != CAIRO_STATUS_SUCCESS)
      delete pixels; // the surface is in error and draws nothing
  }
  return surface.get();
}

void PdfPagePainter::paint(cairo_t *cairo, const Page &page) {
  for (const PageItem &item : page.items()) {
    if (const auto *run = std::get_if<TextRun>(&item))
      paintText(cairo, page, *run);
    else if (const auto *line = std::get_if<LineItem>(&item))
      paintLine(cairo, *line);
    else if (const auto *rect = std::get_if<RectItem>(&item))
      paintRect(cairo, *rect);
    else if (const auto *ellipse = std::get_if<EllipseItem>(&item))
      paintEllipse(cairo, *ellipse);
    else if (const auto *image = std::get_if<ImageItem>(&item))
      paintImage(cairo, *image);
  }
}

void PdfPagePainter::paintText(cairo_t *cairo, const Page &page, const TextRun &run) {
  const PreparedFont &font = preparedFont(run.font);
  const ShapedLine &line = shaper_.shape(run.font, page.text(run));
  double x = run.box.x;
  if (run.align != TextAlign::Left) {
    const double room = run.box.width - line.width;
    x += run.align == TextAlign::Center ? room / 2 : room;
  }
  const double baseline = run.box.y + font.ascent;
  setColor(cairo, run.color);
  std::vector<cairo_glyph_t> glyphs;
  for (const ShapedSegment &segment : line.segments) {
    glyphs.assign(segment.glyphs.cbegin(), segment.glyphs.cend());
    for (cairo_glyph_t &glyph : glyphs) {
      glyph.x += x;
      glyph.y += baseline;
    }
    cairo_set_scaled_font(cairo, scaledFont(cairo, *segment.face, font.size));
    cairo_show_text_glyphs(cairo, segment.utf8.constData(), int(segment.utf8.size()), glyphs.data(), int(glyphs.size()),
                           segment.clusters.data(), int(segment.clusters.size()), cairo_text_cluster_flags_t(0));
  }
  if (!(font.underline || font.strikeout) || line.width <= 0)
    return;
  // Lines through the text as wide as it, in its colour.
  cairo_set_line_width(cairo, font.lineWidth);
  cairo_set_line_cap(cairo, CAIRO_LINE_CAP_BUTT);
  cairo_set_dash(cairo, nullptr, 0, 0);
  for (const auto &[drawn, y] : {std::pair{font.underline, baseline + font.underlinePosition},
                                 std::pair{font.strikeout, baseline - font.strikeOutPosition}}) {
    if (!drawn)
      continue;
    cairo_move_to(cairo, x, y);
    cairo_line_to(cairo, x + line.width, y);
    cairo_stroke(cairo);
  }
}

void PdfPagePainter::paintLine(cairo_t *cairo, const LineItem &line) {
  setStroke(cairo, line.stroke);
  cairo_move_to(cairo, line.x1, line.y1);
  cairo_line_to(cairo, line.x2, line.y2);
  cairo_stroke(cairo);
}

void PdfPagePainter::fillAndStroke(cairo_t *cairo, const std::optional<QRgb> &fill,
                                   const std::optional<Stroke> &border) {
  if (fill) {
    setColor(cairo, *fill);
    cairo_fill_preserve(cairo);
  }
  if (border) {
    setStroke(cairo, *border);
    cairo_stroke_preserve(cairo);
  }
  cairo_new_path(cairo);
}

void PdfPagePainter::paintRect(cairo_t *cairo, const RectItem &rect) {
  if (rect.cornerRadius > 0) {
    roundedRectangle(cairo, rect.box, rect.cornerRadius);
  } else {
    cairo_new_path(cairo);
    cairo_rectangle(cairo, rect.box.x, rect.box.y, rect.box.width, rect.box.height);
  }
  fillAndStroke(cairo, rect.fill, rect.border);
}

void PdfPagePainter::paintEllipse(cairo_t *cairo, const EllipseItem &ellipse) {
  // Four quarter arcs as curves in page units, so that the border keeps
  // its width all round (a scaled circle would stretch it).
  const double rx = ellipse.box.width / 2.0, ry = ellipse.box.height / 2.0;
  const double cx = ellipse.box.x + rx, cy = ellipse.box.y + ry;
  const double kx = rx * kQuarterArc, ky = ry * kQuarterArc;
  cairo_new_path(cairo);
  cairo_move_to(cairo, cx + rx, cy);
  cairo_curve_to(cairo, cx + rx, cy + ky, cx + kx, cy + ry, cx, cy + ry);
  cairo_curve_to(cairo, cx - kx, cy + ry, cx - rx, cy + ky, cx - rx, cy);
  cairo_curve_to(cairo, cx - rx, cy - ky, cx - kx, cy - ry, cx, cy - ry);
  cairo_curve_to(cairo, cx + kx, cy - ry, cx + rx, cy - ky, cx + rx, cy);
  cairo_close_path(cairo);
  fillAndStroke(cairo, ellipse.fill, ellipse.border);
}

void PdfPagePainter::paintImage(cairo_t *cairo, const ImageItem &image) {
  cairo_surface_t *surface = imageSurface(image.image);
  if (image.box.width <= 0 || image.box.height <= 0)
    return; // nothing of it would show
  const int width = cairo_image_surface_get_width(surface);
  const int height = cairo_image_surface_get_height(surface);
  cairo_save(cairo);
  cairo_translate(cairo, image.box.x, image.box.y);
  cairo_scale(cairo, double(image.box.width) / width, double(image.box.height) / height);
  cairo_set_source_surface(cairo, surface, 0, 0);
  cairo_paint(cairo);
  cairo_restore(cairo);
}

} // namespace kordel::engine::pdf

#pragma once

#include "engine/export/pdf/TextShaper.h"
#include "engine/render/PageDocument.h"

#include <map>
#include <optional>
#include <vector>

namespace kordel::engine::pdf {

// Draws the items of pages with cairo on a context whose units are twips,
// placed as PagePainter places them on other devices: the top of a run's
// box is the top of its line and its baseline lies the font's ascent below
// (the ascent as TextCanvas measures it), the alignment uses the shaped
// width, and text is not clipped to its box. Text goes out with its
// clusters, so that every glyph maps back to the characters it shows.
class PdfPagePainter {
public:
  PdfPagePainter(const PageDocument &document, FontResolver &fonts, TextShaper &shaper);

  // Raises 9 for a page that refers to a font or image the document lacks.
  void paint(cairo_t *cairo, const Page &page);

private:
  struct PreparedFont {
    double size = 0;
    double ascent = 0;
    double underlinePosition = 0; // below the baseline
    double strikeOutPosition = 0; // above the baseline
    double lineWidth = 0;
    bool underline = false;
    bool strikeout = false;
  };

  const PreparedFont &preparedFont(int index);
  cairo_scaled_font_t *scaledFont(cairo_t *cairo, FontFace &face, double size);
  cairo_surface_t *imageSurface(int index);

  void paintText(cairo_t *cairo, const Page &page, const TextRun &run);
  void paintLine(cairo_t *cairo, const LineItem &line);
  void paintRect(cairo_t *cairo, const RectItem &rect);
  void paintEllipse(cairo_t *cairo, const EllipseItem &ellipse);
  void paintImage(cairo_t *cairo, const ImageItem &image);
  void fillAndStroke(cairo_t *cairo, const std::optional<QRgb> &fill, const std::optional<Stroke> &border);

  const PageDocument &document_;
  FontResolver &fonts_;
  TextShaper &shaper_;
  std::vector<std::optional<PreparedFont>> preparedFonts_; // by font index, on first use
  std::map<std::pair<FontFace *, double>, CairoScaledFontPtr> scaledFonts_;
  std::vector<CairoSurfacePtr> images_; // by image index, on first use
};

} // namespace kordel::engine::pdf

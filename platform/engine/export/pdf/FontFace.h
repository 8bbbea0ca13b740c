#pragma once

#include "engine/export/pdf/Handles.h"

#include <QByteArray>

#include <memory>

namespace kordel::engine::pdf {

// One face of an installed font file, loaded twice over: for HarfBuzz,
// which shapes text with it in font units, and for cairo, which draws its
// glyphs and embeds the subset of them that a document uses. A face can
// be drawn emboldened or slanted where the file has no bold or italic of
// its own.
class FontFace {
public:
  // The face of that index in the file; nullptr when the file cannot be
  // read as a font.
  static std::unique_ptr<FontFace> load(const QByteArray &file, int index, bool embolden, bool slant);

  // A font at the size of one unit per em unit, for shaping.
  hb_font_t *shapingFont() const { return shapingFont_.get(); }
  cairo_font_face_t *drawingFace() const { return drawingFace_.get(); }
  double unitsPerEm() const { return unitsPerEm_; }
  // Whether the face's character map has c.
  bool hasGlyph(char32_t c) const;

private:
  FontFace(HbFontPtr shapingFont, CairoFontFacePtr drawingFace, double unitsPerEm);

  HbFontPtr shapingFont_;
  CairoFontFacePtr drawingFace_;
  double unitsPerEm_;
};

} // namespace kordel::engine::pdf

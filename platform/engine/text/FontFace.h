#pragma once

#include "engine/text/Handles.h"

#include <QByteArray>

#include <memory>

namespace kordel::engine::text {

// One face of an installed font file, as HarfBuzz reads it: it shapes text
// in font units and gives the glyphs' outlines for embedding. A face can
// be drawn emboldened or slanted where the file has no bold or italic of
// its own.
class FontFace {
public:
  // The face of that index in the file; nullptr when the file cannot be
  // read as a font.
  static std::unique_ptr<FontFace> load(const QByteArray &file, int index, bool embolden, bool slant);

  // A font at the size of one unit per em unit.
  hb_font_t *font() const { return font_.get(); }
  hb_face_t *face() const { return hb_font_get_face(font_.get()); }
  double unitsPerEm() const { return unitsPerEm_; }
  bool embolden() const { return embolden_; }
  bool slant() const { return slant_; }
  // Whether the face's character map has c.
  bool hasGlyph(char32_t c) const;

private:
  FontFace(HbFontPtr font, double unitsPerEm, bool embolden, bool slant);

  HbFontPtr font_;
  double unitsPerEm_;
  bool embolden_;
  bool slant_;
};

} // namespace kordel::engine::text

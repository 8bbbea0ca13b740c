#include "engine/text/FontFace.h"

namespace kordel::engine::text {

FontFace::FontFace(HbFontPtr font, double unitsPerEm, bool embolden, bool slant)
    : font_(std::move(font)), unitsPerEm_(unitsPerEm), embolden_(embolden), slant_(slant) {}

std::unique_ptr<FontFace> FontFace::load(const QByteArray &file, int index, bool embolden, bool slant) {
  hb_blob_t *blob = hb_blob_create_from_file_or_fail(file.constData());
  if (!blob)
    return nullptr;
  hb_face_t *face = hb_face_create(blob, unsigned(index));
  hb_blob_destroy(blob);
  const unsigned unitsPerEm = hb_face_get_upem(face);
  const bool empty = hb_face_get_glyph_count(face) == 0;
  HbFontPtr font(hb_font_create(face)); // scaled to one unit per em unit
  hb_face_destroy(face);
  if (empty || unitsPerEm == 0)
    return nullptr;
  return std::unique_ptr<FontFace>(new FontFace(std::move(font), unitsPerEm, embolden, slant));
}

bool FontFace::hasGlyph(char32_t c) const {
  hb_codepoint_t glyph = 0;
  return hb_font_get_nominal_glyph(font_.get(), c, &glyph) && glyph != 0;
}

} // namespace kordel::engine::text

#include "engine/export/pdf/FontFace.h"

#include <cairo-ft.h>
#include <ft2build.h>
#include FT_FREETYPE_H

namespace kordel::engine::pdf {

namespace {

// The FreeType objects behind a cairo font face. cairo keeps font faces in
// its caches after their last user lets go, so the face is closed only
// when cairo destroys the font face; each face has its own FreeType
// library, so that faces closed at any time touch no shared state.
struct FreeTypeFace {
  FT_Library library = nullptr;
  FT_Face face = nullptr;

  ~FreeTypeFace() {
    if (face)
      FT_Done_Face(face);
    if (library)
      FT_Done_FreeType(library);
  }
};

const cairo_user_data_key_t kFreeTypeFaceKey{};

void closeFreeTypeFace(void *data) { delete static_cast<FreeTypeFace *>(data); }

// cairo's face for the file's face, owning it.
CairoFontFacePtr loadDrawingFace(const QByteArray &file, int index, bool embolden, bool slant) {
  auto freeType = std::make_unique<FreeTypeFace>();
  if (FT_Init_FreeType(&freeType->library) != 0 ||
      FT_New_Face(freeType->library, file.constData(), index, &freeType->face) != 0)
    return nullptr;
  // Outlines as designed: the page is not a grid of pixels.
  CairoFontFacePtr face(cairo_ft_font_face_create_for_ft_face(freeType->face, FT_LOAD_NO_HINTING));
  if (cairo_font_face_status(face.get()) != CAIRO_STATUS_SUCCESS ||
      cairo_font_face_set_user_data(face.get(), &kFreeTypeFaceKey, freeType.get(), closeFreeTypeFace) !=
          CAIRO_STATUS_SUCCESS)
    return nullptr; // the FreeType face goes with freeType, after cairo's face
  freeType.release();
  unsigned synthesize = 0;
  if (embolden)
    synthesize |= CAIRO_FT_SYNTHESIZE_BOLD;
  if (slant)
    synthesize |= CAIRO_FT_SYNTHESIZE_OBLIQUE;
  cairo_ft_font_face_set_synthesize(face.get(), synthesize);
  return face;
}

} // namespace

FontFace::FontFace(HbFontPtr shapingFont, CairoFontFacePtr drawingFace, double unitsPerEm)
    : shapingFont_(std::move(shapingFont)), drawingFace_(std::move(drawingFace)), unitsPerEm_(unitsPerEm) {}

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
  CairoFontFacePtr drawing = loadDrawingFace(file, index, embolden, slant);
  if (!drawing)
    return nullptr;
  return std::unique_ptr<FontFace>(new FontFace(std::move(font), std::move(drawing), unitsPerEm));
}

bool FontFace::hasGlyph(char32_t c) const {
  hb_codepoint_t glyph = 0;
  return hb_font_get_nominal_glyph(shapingFont_.get(), c, &glyph) && glyph != 0;
}

} // namespace kordel::engine::pdf

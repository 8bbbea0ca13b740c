#pragma once

#include "engine/text/FontFace.h"
#include "engine/text/Handles.h"
#include "engine/render/PageFont.h"

#include <QHash>

#include <map>
#include <memory>
#include <tuple>
#include <vector>

namespace kordel::engine::text {

// Characters below this, the bulk of most text, have their lookups kept in
// tables rather than hashes.
constexpr char32_t kFrequentCharacters = 0x800;

// Finds through fontconfig the installed faces that show the text of
// fonts: the face that matches a font's family, weight and
// slant, and for a character that face lacks, the fallback face that
// fontconfig ranks first among those that have it.
//
// Fallback selection: fontconfig's sorted list for a font ranks all
// installed fonts by how near they come to what the font asks for (family
// aliases, weight, slant, then the language of the user). The first of that
// list whose character set has the character shows it, so that a stand-in
// keeps the weight and slant of the font where the system has one alike.
// The list is made once a font, on the first character that needs it; the
// choice is kept for each font and character, and each face file is loaded
// once, on its first use. A character that no installed font has stays
// with the font's own face, which shows its empty box.
class FontResolver {
public:
  // Errors name the given source.
  explicit FontResolver(QString errorSource);
  ~FontResolver();
  FontResolver(const FontResolver &) = delete;
  FontResolver &operator=(const FontResolver &) = delete;

  // Adds a font; its index, counted from 0 in the order of adding.
  int add(const PageFont &font);
  int count() const { return int(requested_.size()); }
  // The face that shows c in the font of that index. Raises 9 for an
  // index out of range and 53 when no installed font can be loaded for
  // the font.
  FontFace &faceFor(int font, char32_t c);
  // The font's size in twips, whole as text is measured.
  double size(int font) const;

private:
  struct Resolved {
    FontFace *face = nullptr;
    FcPatternPtr request;             // what the font asks for, with the system's substitutions
    FcFontSetPtr candidates;          // the sorted list, made on first need
    std::vector<FontFace *> frequent; // by character below kFrequentCharacters, found on first need
  };

  Resolved &resolved(int font);
  FontFace &find(int font, Resolved &resolved, char32_t c);
  FontFace *fallback(Resolved &resolved, char32_t c);
  // The face a font pattern names, loaded on first use; nullptr when the
  // file cannot be loaded.
  FontFace *faceOf(const FcPattern &request, FcPattern &font);

  const PageFont &font(int index) const;

  QString errorSource_;
  std::vector<PageFont> requested_;
  std::vector<std::unique_ptr<Resolved>> fonts_; // by font index, resolved on first use
  std::map<std::tuple<QByteArray, int, bool, bool>, std::unique_ptr<FontFace>> faces_;
  QHash<QPair<int, char32_t>, FontFace *> byCharacter_;
};

} // namespace kordel::engine::text

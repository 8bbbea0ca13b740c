#include "engine/text/FontResolver.h"

#include "engine/render/Page.h"

#include "core/Error.h"

#include <algorithm>
#include <cmath>

namespace kordel::engine::text {

namespace {

int intValue(const FcPattern &pattern, const char *object, int fallback) {
  int value = fallback;
  FcPatternGetInteger(&pattern, object, 0, &value);
  return value;
}

// What a font asks for, completed by the system's configuration.
FcPatternPtr requestFor(const PageFont &font) {
  FcPatternPtr pattern(FcPatternCreate());
  const QByteArray family = font.family.toUtf8();
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8 *>(family.constData()));
  FcPatternAddInteger(pattern.get(), FC_WEIGHT, font.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern.get(), FC_SLANT, font.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
  FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  return pattern;
}

} // namespace

FontResolver::FontResolver(QString errorSource) : errorSource_(std::move(errorSource)) {}

FontResolver::~FontResolver() = default;

int FontResolver::add(const PageFont &font) {
  requested_.push_back(font);
  return int(requested_.size()) - 1;
}

const PageFont &FontResolver::font(int index) const {
  if (index < 0 || std::size_t(index) >= requested_.size())
    raiseError(ErrorNumber::SubscriptOutOfRange, errorSource_, QStringLiteral("There is no font %1").arg(index));
  return requested_[std::size_t(index)];
}

double FontResolver::size(int index) const {
  return std::max(1.0, double(std::lround(font(index).pointSize * kTwipsPerPoint)));
}

FontFace *FontResolver::faceOf(const FcPattern &request, FcPattern &font) {
  FcChar8 *file = nullptr;
  if (FcPatternGetString(&font, FC_FILE, 0, &file) != FcResultMatch)
    return nullptr;
  const int index = intValue(font, FC_INDEX, 0);
  // A family without bold or italic faces gets its regular face drawn
  // thicker or slanted.
  const bool embolden = intValue(request, FC_WEIGHT, FC_WEIGHT_REGULAR) >= FC_WEIGHT_BOLD &&
                        intValue(font, FC_WEIGHT, FC_WEIGHT_REGULAR) < FC_WEIGHT_DEMIBOLD;
  const bool slant = intValue(request, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN &&
                     intValue(font, FC_SLANT, FC_SLANT_ROMAN) == FC_SLANT_ROMAN;
  auto key = std::make_tuple(QByteArray(reinterpret_cast<const char *>(file)), index, embolden, slant);
  auto found = faces_.find(key);
  if (found == faces_.end())
    found = faces_.emplace(key, FontFace::load(std::get<0>(key), index, embolden, slant)).first;
  return found->second.get();
}

FontResolver::Resolved &FontResolver::resolved(int font) {
  const PageFont &pageFont = this->font(font); // raises 9 out of range
  if (fonts_.size() <= std::size_t(font))
    fonts_.resize(std::size_t(font) + 1);
  std::unique_ptr<Resolved> &entry = fonts_[std::size_t(font)];
  if (entry)
    return *entry;
  auto made = std::make_unique<Resolved>();
  made->request = requestFor(pageFont);
  FcResult result = FcResultNoMatch;
  const FcPatternPtr match(FcFontMatch(nullptr, made->request.get(), &result));
  if (match)
    made->face = faceOf(*made->request, *match);
  if (!made->face) {
    // The best match may be a file that does not load; then the first of
    // the ranked list that does.
    made->candidates.reset(FcFontSort(nullptr, made->request.get(), FcTrue, nullptr, &result));
    for (int i = 0; made->candidates && i < made->candidates->nfont && !made->face; ++i)
      made->face = faceOf(*made->request, *made->candidates->fonts[i]);
  }
  if (!made->face)
    raiseError(ErrorNumber::FileNotFound, errorSource_,
               QStringLiteral("No installed font can be loaded for the font \"%1\"").arg(pageFont.family));
  entry = std::move(made);
  return *entry;
}

FontFace *FontResolver::fallback(Resolved &resolved, char32_t c) {
  if (!resolved.candidates) {
    FcResult result = FcResultNoMatch;
    resolved.candidates.reset(FcFontSort(nullptr, resolved.request.get(), FcTrue, nullptr, &result));
  }
  if (!resolved.candidates)
    return nullptr;
  for (int i = 0; i < resolved.candidates->nfont; ++i) {
    FcPattern &candidate = *resolved.candidates->fonts[i];
    FcCharSet *characters = nullptr;
    if (FcPatternGetCharSet(&candidate, FC_CHARSET, 0, &characters) != FcResultMatch ||
        !FcCharSetHasChar(characters, c))
      continue;
    FontFace *face = faceOf(*resolved.request, candidate);
    if (face && face->hasGlyph(c))
      return face;
  }
  return nullptr;
}

FontFace &FontResolver::faceFor(int font, char32_t c) {
  Resolved &own = resolved(font);
  if (c >= kFrequentCharacters)
    return find(font, own, c);
  if (own.frequent.empty())
    own.frequent.resize(kFrequentCharacters);
  FontFace *&known = own.frequent[c];
  if (!known)
    known = &find(font, own, c);
  return *known;
}

FontFace &FontResolver::find(int font, Resolved &resolved, char32_t c) {
  if (resolved.face->hasGlyph(c))
    return *resolved.face;
  const auto key = qMakePair(font, c);
  auto found = byCharacter_.constFind(key);
  if (found == byCharacter_.cend()) {
    FontFace *standIn = fallback(resolved, c);
    found = byCharacter_.insert(key, standIn ? standIn : resolved.face);
  }
  return **found;
}

} // namespace kordel::engine::text

#pragma once

#include "engine/text/FontFace.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <cstdint>
#include <vector>

namespace kordel::engine::pdf {

class PdfFile;

// A face as a PDF document embeds it: a composite font whose character
// codes are the face's glyph numbers, two bytes each, so that shaped text
// goes out glyph for glyph. At the end of the document it is written with
// the widths of the glyphs used, the subset of the face that holds their
// outlines (glyph numbers kept, so that the codes stay valid), and the map
// from glyphs back to the characters they show, so that text copies out of
// the document as it was written.
//
// The map gives each glyph one text: the text of the first cluster that
// showed it alone. A cluster that disagrees (a glyph that shows other
// characters elsewhere, or several glyphs that show one text together)
// needs its text given beside its glyphs where it is drawn.
class EmbeddedFont {
public:
  // The serial number names the font in resources and sets its subset's
  // tag apart from the other subsets of the document.
  EmbeddedFont(text::FontFace &face, int objectNumber, int serial);

  text::FontFace &face() const { return face_; }
  int objectNumber() const { return objectNumber_; }
  // The font's name in the page resources, with its slash.
  const QByteArray &resourceName() const { return resourceName_; }

  // The glyph's advance in thousandths of the em, as the document gives
  // it; the glyph is kept in the subset.
  int use(std::uint32_t glyph);
  // Whether the map gives the glyph that text, giving it when the glyph
  // has none yet.
  bool mapsTo(std::uint32_t glyph, const QString &text);
  bool mapsTo(std::uint32_t glyph, char32_t character);

  // Writes the font's objects, its number included. Raises 53 when the
  // face cannot be subset.
  void write(PdfFile &file) const;

private:
  QByteArray fontProgram(bool &compactOutlines) const;
  QByteArray widths() const;
  QByteArray toUnicode() const;

  text::FontFace &face_;
  int objectNumber_;
  QByteArray resourceName_;
  QByteArray baseFont_;     // subset tag and the face's PostScript name
  std::vector<int> widths_; // by glyph; kUnused for glyphs not used
  // By glyph: the one character it shows, 0 for none yet, or kLongerText
  // for a glyph whose text stands in texts_.
  std::vector<char32_t> characters_;
  QHash<std::uint32_t, QString> texts_;

  static constexpr int kUnused = -1 << 30;
  static constexpr char32_t kLongerText = 0xffffffff;
};

} // namespace kordel::engine::pdf

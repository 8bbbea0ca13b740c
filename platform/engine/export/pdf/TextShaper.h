#pragma once

#include "engine/export/pdf/FontResolver.h"

#include <QCache>
#include <QString>

#include <cairo.h>

#include <optional>
#include <vector>

namespace kordel::engine::pdf {

// A piece of a line in one face and one direction, shaped: its glyphs from
// left to right, placed from the line's start on its baseline in twips,
// and the clusters that map them back to the characters they show. The
// text is in the order of the glyphs: right to left text in reverse.
struct ShapedSegment {
  FontFace *face = nullptr;
  QByteArray utf8;
  std::vector<cairo_glyph_t> glyphs;
  std::vector<cairo_text_cluster_t> clusters;
};

// A line of text shaped in a document's font: its segments from left to
// right and its width in twips.
struct ShapedLine {
  std::vector<ShapedSegment> segments;
  double width = 0;
};

// Shapes lines of text with HarfBuzz in the faces that FontResolver finds.
//
// A line is cut into segments of one face and one direction. Each
// character takes the face that shows it; marks, joiners, variation
// selectors and other characters that print nothing of their own stay
// with the face of the character before, so that a cluster is never torn
// between faces. A character's direction comes from its script: right to
// left scripts (Arabic, Hebrew, ...) against all others, and digits run left
// to right. Characters of no script (blanks, punctuation) go the way of the
// text on both sides where it agrees, else the line's way; to them, digits
// after right to left text count as right to left. Each segment is shaped
// with the whole line around it as context, with the script HarfBuzz
// guesses for it. The line reads in the direction of its first strong
// character: segments of the line's direction keep their order, a run of
// segments against it is turned around. That places the common cases (a
// Latin name or a number in Arabic or Hebrew text) as the full
// bidirectional algorithm would; nested embeddings are beyond it.
//
// The cache: reports print the same texts on page after page (labels,
// names, repeated values), so shaped lines are kept by font and text, least
// recently used first out, bounded by their approximate bytes.
class TextShaper {
public:
  explicit TextShaper(FontResolver &fonts, qsizetype cacheBytes = kDefaultCacheBytes);

  // The line shaped in the document's font of that index; valid until the
  // next call.
  const ShapedLine &shape(int font, const QString &text);

  static constexpr qsizetype kDefaultCacheBytes = 16 * 1024 * 1024;

private:
  struct Piece {
    FontFace *face;
    int begin; // UTF-8 offsets into the line
    int end;
    bool rightToLeft;
  };

  ShapedLine shapeLine(int font, const QString &text);
  std::vector<Piece> split(int font, const QByteArray &utf8, bool &rightToLeftLine);
  ShapedSegment shapePiece(const Piece &piece, const QByteArray &utf8, double scale, double &advance);

  FontResolver &fonts_;
  HbBufferPtr buffer_;
  QCache<QPair<int, QString>, ShapedLine> cache_;
  std::optional<ShapedLine> uncached_; // a line too big for the cache
};

} // namespace kordel::engine::pdf

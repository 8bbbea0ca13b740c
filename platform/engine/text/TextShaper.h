#pragma once

#include "engine/text/FontResolver.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace kordel::engine::text {

// A glyph of a face placed on a line: how far from the line's start and
// how far above its baseline, in twips.
struct ShapedGlyph {
  std::uint32_t id = 0;
  double x = 0;
  double rise = 0;
};

// A group of glyphs that shows a group of characters and cannot be cut
// between them: how many bytes of the segment's text and how many glyphs
// it has.
struct ShapedCluster {
  int bytes = 0;
  int glyphs = 0;
};

// A piece of a line in one face and one direction, shaped: its glyphs from
// left to right and the clusters that map them back to the characters they
// show. The text is in the order of the glyphs: right to left text in
// reverse.
struct ShapedSegment {
  FontFace *face = nullptr;
  QByteArray utf8;
  std::vector<ShapedGlyph> glyphs;
  std::vector<ShapedCluster> clusters;
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
class TextShaper {
public:
  explicit TextShaper(FontResolver &fonts);

  // The line shaped in the resolver's font of that index.
  ShapedLine shape(int font, const QString &text);
  // The width in twips of the line shaped so, without its glyphs.
  double width(int font, const QString &text);

private:
  struct Piece {
    FontFace *face;
    int begin; // UTF-8 offsets into the line
    int end;
    bool rightToLeft;
  };

  std::vector<Piece> split(int font, const QByteArray &utf8, bool &rightToLeftLine);
  std::vector<Piece> splitAscii(int font, const QByteArray &utf8);
  // Shapes the piece into the buffer.
  void shapeInBuffer(const Piece &piece, const QByteArray &utf8);
  ShapedSegment shapePiece(const Piece &piece, const QByteArray &utf8, double scale, double &advance);

  FontResolver &fonts_;
  HbBufferPtr buffer_;
};

} // namespace kordel::engine::text

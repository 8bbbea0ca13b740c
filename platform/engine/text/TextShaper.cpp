#include "engine/text/TextShaper.h"

#include <algorithm>
#include <array>

namespace kordel::engine::text {

namespace {

// How a character steers the direction of the text around it.
enum class Flow { Neutral, LeftToRight, RightToLeft, Digit };

hb_unicode_funcs_t *unicode() { return hb_unicode_funcs_get_default(); }

// What the shaper asks of a character: how it steers the direction and
// whether it belongs to the character before it (marks, joiners,
// variation selectors and controls).
struct CharacterClass {
  Flow flow = Flow::Neutral;
  bool joinsPrevious = false;
};

CharacterClass classify(char32_t c) {
  CharacterClass result;
  switch (hb_unicode_general_category(unicode(), c)) {
  case HB_UNICODE_GENERAL_CATEGORY_DECIMAL_NUMBER: result.flow = Flow::Digit; return result;
  case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
  case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
  case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
  case HB_UNICODE_GENERAL_CATEGORY_FORMAT:
  case HB_UNICODE_GENERAL_CATEGORY_CONTROL: result.joinsPrevious = true; break;
  default: break;
  }
  const hb_script_t script = hb_unicode_script(unicode(), c);
  if (script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED && script != HB_SCRIPT_UNKNOWN)
    result.flow =
        hb_script_get_horizontal_direction(script) == HB_DIRECTION_RTL ? Flow::RightToLeft : Flow::LeftToRight;
  return result;
}

// The characters below U+0800 (Latin, Greek, Cyrillic, Hebrew, Arabic, the
// bulk of report text) are classified once.
CharacterClass classOf(char32_t c) {
  static const std::array<CharacterClass, kFrequentCharacters> frequent = [] {
    std::array<CharacterClass, kFrequentCharacters> classes;
    for (char32_t c = 0; c < kFrequentCharacters; ++c)
      classes[c] = classify(c);
    return classes;
  }();
  return c < kFrequentCharacters ? frequent[c] : classify(c);
}

// The characters of UTF-8 text in reverse order.
QByteArray reversed(const QByteArray &utf8) {
  if (utf8.size() <= 1)
    return utf8;
  QList<uint> characters = QString::fromUtf8(utf8).toUcs4();
  std::reverse(characters.begin(), characters.end());
  return QString::fromUcs4(reinterpret_cast<const char32_t *>(characters.constData()), characters.size()).toUtf8();
}

} // namespace

TextShaper::TextShaper(FontResolver &fonts) : fonts_(fonts), buffer_(hb_buffer_create()) {}

std::vector<TextShaper::Piece> TextShaper::splitAscii(int font, const QByteArray &utf8) {
  // Plain ASCII, the most common text, runs left to right throughout: it
  // only parts where the face changes.
  std::vector<Piece> pieces;
  for (int i = 0; i < utf8.size(); ++i) {
    const char32_t c = char32_t(utf8[i]);
    const bool control = c < 0x20 || c == 0x7f;
    FontFace *face = control && !pieces.empty() ? pieces.back().face : &fonts_.faceFor(font, c);
    if (!pieces.empty() && pieces.back().face == face)
      pieces.back().end = i + 1;
    else
      pieces.push_back(Piece{face, i, i + 1, false});
  }
  return pieces;
}

std::vector<TextShaper::Piece> TextShaper::split(int font, const QByteArray &utf8, bool &rightToLeftLine) {
  rightToLeftLine = false;
  if (std::all_of(utf8.cbegin(), utf8.cend(), [](char c) { return (unsigned char)(c) < 0x80; }))
    return splitAscii(font, utf8);
  // The buffer, before shaping, holds the line's characters with their
  // offsets in the UTF-8 text.
  hb_buffer_t *buffer = buffer_.get();
  hb_buffer_clear_contents(buffer);
  hb_buffer_add_utf8(buffer, utf8.constData(), int(utf8.size()), 0, int(utf8.size()));
  unsigned count = 0;
  const hb_glyph_info_t *characters = hb_buffer_get_glyph_infos(buffer, &count);

  std::vector<CharacterClass> classes(count);
  for (unsigned i = 0; i < count; ++i)
    classes[i] = classOf(characters[i].codepoint);
  for (const CharacterClass &type : classes)
    if (type.flow == Flow::LeftToRight || type.flow == Flow::RightToLeft) {
      rightToLeftLine = type.flow == Flow::RightToLeft;
      break;
    }
  // Which way each strong character and digit pulls the characters of no
  // direction around it: digits pull right to left after right to left
  // text; from the line's edges the line pulls its own way.
  std::vector<signed char> pull(count, 0); // -1 left to right, 1 right to left, 0 none
  bool lastRightToLeft = rightToLeftLine;
  for (unsigned i = 0; i < count; ++i) {
    if (classes[i].flow == Flow::LeftToRight || classes[i].flow == Flow::RightToLeft)
      lastRightToLeft = classes[i].flow == Flow::RightToLeft;
    if (classes[i].flow != Flow::Neutral)
      pull[i] = lastRightToLeft ? 1 : -1;
  }
  const signed char linePull = rightToLeftLine ? 1 : -1;
  std::vector<signed char> pullAfter(count + 1, linePull); // the first pull at or after each character
  for (unsigned i = count; i-- > 0;)
    pullAfter[i] = pull[i] != 0 ? pull[i] : pullAfter[i + 1];

  std::vector<Piece> pieces;
  signed char pullBefore = linePull;
  for (unsigned i = 0; i < count; ++i) {
    const char32_t c = characters[i].codepoint;
    const int begin = int(characters[i].cluster);
    const int end = i + 1 < count ? int(characters[i + 1].cluster) : int(utf8.size());
    const bool joins = !pieces.empty() && classes[i].joinsPrevious;
    FontFace *face = joins ? pieces.back().face : &fonts_.faceFor(font, c);
    // Strong characters go their own way and digits left to right; a mark
    // goes with its character; other characters go the way of the text on
    // both sides where it agrees, else the line's way.
    bool rightToLeft = classes[i].flow == Flow::RightToLeft;
    if (joins)
      rightToLeft = pieces.back().rightToLeft;
    else if (classes[i].flow == Flow::Neutral)
      rightToLeft = (pullBefore == pullAfter[i + 1] ? pullBefore : linePull) > 0;
    if (pull[i] != 0)
      pullBefore = pull[i];
    if (!pieces.empty() && pieces.back().face == face && pieces.back().rightToLeft == rightToLeft)
      pieces.back().end = end;
    else
      pieces.push_back(Piece{face, begin, end, rightToLeft});
  }
  return pieces;
}

void TextShaper::shapeInBuffer(const Piece &piece, const QByteArray &utf8) {
  hb_buffer_t *buffer = buffer_.get();
  hb_buffer_clear_contents(buffer);
  hb_buffer_add_utf8(buffer, utf8.constData(), int(utf8.size()), unsigned(piece.begin),
                     piece.end - piece.begin); // the rest of the line is context
  hb_buffer_set_direction(buffer, piece.rightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  hb_buffer_guess_segment_properties(buffer);
  hb_shape(piece.face->font(), buffer, nullptr, 0);
}

ShapedSegment TextShaper::shapePiece(const Piece &piece, const QByteArray &utf8, double scale, double &advance) {
  hb_buffer_t *buffer = buffer_.get();
  shapeInBuffer(piece, utf8);
  unsigned count = 0;
  const hb_glyph_info_t *infos = hb_buffer_get_glyph_infos(buffer, &count);
  const hb_glyph_position_t *positions = hb_buffer_get_glyph_positions(buffer, nullptr);

  ShapedSegment segment;
  segment.face = piece.face;
  segment.glyphs.reserve(count);
  for (unsigned i = 0; i < count; ++i) {
    segment.glyphs.push_back(
        ShapedGlyph{infos[i].codepoint, advance + positions[i].x_offset * scale, positions[i].y_offset * scale});
    advance += positions[i].x_advance * scale;
  }
  // The clusters in the order of the text: where each begins and ends in
  // the line and how many glyphs show it. Right to left glyphs stand in
  // the opposite order.
  struct Cluster {
    int begin, end, glyphs;
  };
  std::vector<Cluster> clusters;
  const auto logical = [&](unsigned i) { return piece.rightToLeft ? count - 1 - i : i; };
  for (unsigned i = 0; i < count;) {
    const unsigned cluster = infos[logical(i)].cluster;
    unsigned next = i + 1;
    while (next < count && infos[logical(next)].cluster == cluster)
      ++next;
    const int begin = clusters.empty() ? piece.begin : int(cluster);
    const int end = next < count ? int(infos[logical(next)].cluster) : piece.end;
    clusters.push_back(Cluster{begin, end, int(next - i)});
    i = next;
  }
  // The PDF holds text as it stands on the page, from left to right: text
  // readers turn right to left text around for reading, character by
  // character. So a right to left piece gives its clusters, and the
  // characters of each, in reverse.
  if (piece.rightToLeft)
    std::reverse(clusters.begin(), clusters.end());
  segment.clusters.reserve(clusters.size());
  for (const Cluster &cluster : clusters) {
    const QByteArray text = utf8.mid(cluster.begin, cluster.end - cluster.begin);
    segment.utf8 += piece.rightToLeft ? reversed(text) : text;
    segment.clusters.push_back(ShapedCluster{cluster.end - cluster.begin, cluster.glyphs});
  }
  return segment;
}

ShapedLine TextShaper::shape(int font, const QString &text) {
  const QByteArray utf8 = text.toUtf8();
  bool rightToLeftLine = false;
  std::vector<Piece> pieces = split(font, utf8, rightToLeftLine);
  // Visual order: a run of pieces against the line's direction is turned
  // around, and a right to left line turns around the whole.
  for (auto run = pieces.begin(); run != pieces.end();) {
    const auto runEnd =
        std::find_if(run, pieces.end(), [&](const Piece &piece) { return piece.rightToLeft != run->rightToLeft; });
    if (run->rightToLeft != rightToLeftLine)
      std::reverse(run, runEnd);
    run = runEnd;
  }
  if (rightToLeftLine)
    std::reverse(pieces.begin(), pieces.end());

  ShapedLine line;
  const double size = fonts_.size(font);
  for (const Piece &piece : pieces)
    line.segments.push_back(shapePiece(piece, utf8, size / piece.face->unitsPerEm(), line.width));
  return line;
}

double TextShaper::width(int font, const QString &text) {
  // The same sums as shape() makes, piece by piece; the order of the
  // pieces does not change the width.
  const QByteArray utf8 = text.toUtf8();
  bool rightToLeftLine = false;
  const double size = fonts_.size(font);
  double width = 0;
  for (const Piece &piece : split(font, utf8, rightToLeftLine)) {
    shapeInBuffer(piece, utf8);
    unsigned count = 0;
    const hb_glyph_position_t *positions = hb_buffer_get_glyph_positions(buffer_.get(), &count);
    const double scale = size / piece.face->unitsPerEm();
    for (unsigned i = 0; i < count; ++i)
      width += positions[i].x_advance * scale;
  }
  return width;
}

} // namespace kordel::engine::text

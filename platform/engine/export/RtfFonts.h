#pragma once

#include "engine/render/GlyphCoverage.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <utility>
#include <vector>

namespace kordel::engine {

// The font table of an RTF document and the control words that give a run
// its fonts. Word processors choose a font for East Asian and for
// right-to-left characters apart from the run's own; unless told, they take
// their own defaults, which may lack them. So the table holds the
// document's fonts in their order (character set 0) and after them, for
// each East Asian or right-to-left script that runs hold, the family that
// shows that text here (the run's own or the one that stands in for it,
// see GlyphCoverage) with the script's character set: Japanese 128 where
// kana appear, Korean 129 where hangul appear, Chinese 134 for other East
// Asian text, Hebrew 177, Arabic 178.
class RtfFonts {
public:
  explicit RtfFonts(const PageDocument &document);

  // The control words that give a run in the document's font of that index
  // its fonts: "\fN", and for a text with East Asian or right-to-left
  // characters the run's fonts for each kind of text (\rtlch, \ltrch,
  // \hich, \dbch, \loch with \af), with the associated size, bold and
  // italic. Adds the table entries the run needs.
  QByteArray fontsOf(int font, const QString &text);
  // The font table, with every entry that runs have needed so far.
  QByteArray table() const;

private:
  int entryFor(const QString &family, int charset);

  const PageDocument &document_;
  GlyphCoverage coverage_;
  std::vector<std::pair<QString, int>> extraEntries_; // family and character set, after the document's
  std::map<std::pair<QString, int>, int> entryIndex_;
};

} // namespace kordel::engine

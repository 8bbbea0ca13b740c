#pragma once

#include "engine/render/PageDocument.h"

#include <QHash>
#include <QList>
#include <QRawFont>
#include <QSet>
#include <QStringList>

#include <map>
#include <optional>
#include <vector>

namespace kordel::engine {

// Which installed fonts show the characters of a document's text. Where a
// run's font lacks a character, the text shows it in a font that the
// system's font configuration offers as a fallback and that has it; a
// character that no installed font has shows as an empty box. Blanks,
// control and format characters and variation selectors print nothing of
// their own and count as shown.
class GlyphCoverage {
public:
  explicit GlyphCoverage(const PageDocument &document);

  // The family that shows c in the document's font of that index: the
  // font's own family when it has c, empty when no installed font has c.
  QString familyFor(int font, char32_t c);

  // Goes through the text of the pages from first to last (counted from
  // 0), collecting the fallback families and the missing characters below.
  void scan(int firstPage, int lastPage);
  // The same for one page, whose fonts are the document's.
  void scanPage(const Page &page);
  // The families that stood in for the font of that index in the text
  // scanned, in the order of their first use.
  QStringList fallbackFamilies(int font) const;
  // How many characters of the text scanned no installed font has.
  int missingCount() const { return missingCount_; }
  // Those characters, each once, in the order of their first appearance.
  const QList<char32_t> &missingCharacters() const { return missing_; }

private:
  const QRawFont &ownFont(int font);

  const PageDocument &document_;
  std::vector<std::optional<QRawFont>> ownFonts_; // by font index, loaded on first use
  QHash<QPair<int, char32_t>, QString> fallbacks_;
  std::map<int, QStringList> fallbacksUsed_;
  std::vector<std::vector<bool>> ownShows_; // by font, for the frequent characters
  int missingCount_ = 0;
  QList<char32_t> missing_;
  QSet<char32_t> missingSet_;
};

// Warns once through Qt's warning channel when the text of the pages from
// first to last has characters that no installed font has: how many, the
// first few of them and the document's title.
void warnOfMissingGlyphs(const PageDocument &document, int firstPage, int lastPage);
// The same for the text a coverage has scanned, of the report of that title.
void warnOfMissingGlyphs(const GlyphCoverage &coverage, const QString &title);

} // namespace kordel::engine

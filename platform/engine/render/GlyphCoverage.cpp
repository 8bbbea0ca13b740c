#include "engine/render/GlyphCoverage.h"

#include <QDebug>
#include <QGlyphRun>
#include <QSet>
#include <QTextLayout>

#include <algorithm>

namespace kordel::engine {

namespace {

// Characters named in the warning; the others are counted.
constexpr qsizetype kCharactersNamed = 5;

// Characters below this have their answer kept in a table while scanning.
constexpr char32_t kFrequentCharacters = 0x800;

bool printsNothing(char32_t c) {
  switch (QChar::category(c)) {
  case QChar::Other_Control:
  case QChar::Other_Format:
  case QChar::Separator_Space:
  case QChar::Separator_Line:
  case QChar::Separator_Paragraph: return true;
  default: break;
  }
  return (c >= 0xfe00 && c <= 0xfe0f) || (c >= 0xe0100 && c <= 0xe01ef); // variation selectors
}

// The family of the font that the text layout picks for c, where the
// font's own lacks it; empty when it finds none.
QString fallbackFamily(const QFont &font, char32_t c) {
  QTextLayout layout(QString::fromUcs4(&c, 1), font);
  layout.beginLayout();
  layout.createLine();
  layout.endLayout();
  for (const QGlyphRun &run : layout.glyphRuns()) {
    const QList<quint32> glyphs = run.glyphIndexes();
    if (std::any_of(glyphs.cbegin(), glyphs.cend(), [](quint32 glyph) { return glyph != 0; }))
      return run.rawFont().familyName();
  }
  return {};
}

QString codePoint(char32_t c) {
  return QStringLiteral("U+") + QString::number(quint32(c), 16).toUpper().rightJustified(4, QLatin1Char('0'));
}

} // namespace

GlyphCoverage::GlyphCoverage(const PageDocument &document) : document_(document) {}

// The document may gain fonts while its pages are scanned.
const QRawFont &GlyphCoverage::ownFont(int font) {
  if (ownFonts_.size() < std::size_t(document_.fontCount()))
    ownFonts_.resize(std::size_t(document_.fontCount()));
  std::optional<QRawFont> &raw = ownFonts_.at(std::size_t(font));
  if (!raw)
    raw = QRawFont::fromFont(document_.font(font).toQFont());
  return *raw;
}

QString GlyphCoverage::familyFor(int font, char32_t c) {
  const PageFont &pageFont = document_.font(font);
  if (printsNothing(c) || ownFont(font).supportsCharacter(c))
    return pageFont.family;
  const auto key = qMakePair(font, c);
  auto found = fallbacks_.constFind(key);
  if (found == fallbacks_.cend())
    found = fallbacks_.insert(key, fallbackFamily(pageFont.toQFont(), c));
  return *found;
}

void GlyphCoverage::scan(int firstPage, int lastPage) {
  for (int index = firstPage; index <= lastPage; ++index)
    scanPage(document_.page(index));
}

void GlyphCoverage::scanPage(const Page &page) {
  // Most characters are below U+0800 and in their run's own font: that
  // answer is kept by font in a table, so that most text is only looked
  // at, not asked about.
  if (ownShows_.size() < std::size_t(document_.fontCount()))
    ownShows_.resize(std::size_t(document_.fontCount()));
  for (const PageItem &item : page.items()) {
    const auto *run = std::get_if<TextRun>(&item);
    if (!run)
      continue;
    const QString text = page.text(*run);
    const QString &own = document_.font(run->font).family;
    std::vector<bool> &frequent = ownShows_.at(std::size_t(run->font));
    if (frequent.empty())
      frequent.resize(kFrequentCharacters);
    for (qsizetype i = 0; i < text.size(); ++i) {
      char32_t c = text[i].unicode();
      if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
        c = QChar::surrogateToUcs4(text[i], text[i + 1]);
        ++i;
      }
      if (c < kFrequentCharacters && frequent[c])
        continue;
      const QString family = familyFor(run->font, c);
      if (family.isEmpty()) {
        ++missingCount_;
        if (!missingSet_.contains(c)) {
          missingSet_.insert(c);
          missing_.append(c);
        }
      } else if (family != own) {
        if (!fallbacksUsed_[run->font].contains(family))
          fallbacksUsed_[run->font].append(family);
      } else if (c < kFrequentCharacters) {
        frequent[c] = true;
      }
    }
  }
}

QStringList GlyphCoverage::fallbackFamilies(int font) const {
  const auto found = fallbacksUsed_.find(font);
  return found == fallbacksUsed_.end() ? QStringList() : found->second;
}

void warnOfMissingGlyphs(const PageDocument &document, int firstPage, int lastPage) {
  GlyphCoverage coverage(document);
  coverage.scan(firstPage, lastPage);
  warnOfMissingGlyphs(coverage, document.title());
}

void warnOfMissingGlyphs(const GlyphCoverage &coverage, const QString &title) {
  if (coverage.missingCount() == 0)
    return;
  const QList<char32_t> &missing = coverage.missingCharacters();
  QStringList named;
  for (qsizetype i = 0; i < missing.size() && i < kCharactersNamed; ++i)
    named += codePoint(missing[i]);
  if (missing.size() > kCharactersNamed)
    named += QStringLiteral("%1 more").arg(missing.size() - kCharactersNamed);
  const QString report = title.isEmpty() ? QStringLiteral("the report") : QLatin1Char('"') + title + QLatin1Char('"');
  qWarning().noquote() << QStringLiteral("%1 character(s) of %2 have no glyph in any installed font and print as "
                                         "empty boxes: %3")
                              .arg(coverage.missingCount())
                              .arg(report, named.join(QStringLiteral(", ")));
}

} // namespace kordel::engine

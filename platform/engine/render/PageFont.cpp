#include "engine/render/PageFont.h"

#include <QHashFunctions>

namespace kordel::engine {

QString defaultFontFamily() { return QStringLiteral("DejaVu Sans"); }

QFont PageFont::toQFont() const {
  QFont font(family);
  font.setPointSizeF(pointSize);
  font.setBold(bold);
  font.setItalic(italic);
  font.setUnderline(underline);
  font.setStrikeOut(strikeout);
  return font;
}

PageFont PageFont::fromQFont(const QFont &font) {
  constexpr double kPointsPerScreenPixel = 72.0 / 96.0;
  PageFont result;
  result.family = font.family().isEmpty() ? defaultFontFamily() : font.family();
  result.pointSize = float(font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * kPointsPerScreenPixel);
  result.bold = font.bold();
  result.italic = font.italic();
  result.underline = font.underline();
  result.strikeout = font.strikeOut();
  return result;
}

size_t qHash(const PageFont &font, size_t seed) {
  const int style = (font.bold ? 1 : 0) | (font.italic ? 2 : 0) | (font.underline ? 4 : 0) | (font.strikeout ? 8 : 0);
  return qHashMulti(seed, font.family, font.pointSize, style);
}

} // namespace kordel::engine

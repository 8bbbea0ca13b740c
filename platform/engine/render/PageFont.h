#pragma once

#include <QFont>
#include <QString>

namespace kordel::engine {

// The family that text gets when nothing else is said.
QString defaultFontFamily();

// A font as pages keep it: what a report's control says about its font.
struct PageFont {
  QString family = defaultFontFamily();
  float pointSize = 10.0f;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikeout = false;

  // The font at its point size.
  QFont toQFont() const;
  // A font's family, size and style. A font sized in pixels counts them as
  // screen pixels of 1/96 inch.
  static PageFont fromQFont(const QFont &font);

  friend bool operator==(const PageFont &, const PageFont &) = default;
};

size_t qHash(const PageFont &font, size_t seed = 0);

} // namespace kordel::engine

#pragma once

#include <QFont>
#include <QFontMetricsF>

namespace kordel::engine {

// Text is measured and painted with fonts sized in twips, so that one font
// unit is one twip on every device: 1/20 of a point. Measuring happens on
// a fixed device of 1440 dots per inch, without hinting, so that a text
// measures the same on every machine with the same fonts, on screen or not,
// and the painter places it where the measurement said.

// The font with its size given in twips (rounded to whole twips) instead of
// points, and hinting off.
QFont twipsFont(const QFont &font);
// Metrics of a font made by twipsFont, in twips.
QFontMetricsF twipsMetrics(const QFont &twipsFont);

} // namespace kordel::engine

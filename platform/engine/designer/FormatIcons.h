#pragma once

#include <QColor>
#include <QIcon>

namespace kordel::engine {

// The format bar's icons, drawn rather than loaded, so they need no files
// and follow the colours they stand for.

// A letter in the bar's style: "B" bold, "I" italic.
QIcon letterIcon(QChar letter, bool bold, bool italic);
// Lines of text aligned as Alignment (0 left, 1 right, 2 center) lays them.
QIcon alignmentIcon(int alignment);
// The fore colour: an "A" over a bar of the colour; an invalid colour
// draws the bar empty.
QIcon foreColorIcon(const QColor &color);
// The back colour: a filled box over a bar of the colour.
QIcon backColorIcon(const QColor &color);

} // namespace kordel::engine

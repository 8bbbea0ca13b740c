#pragma once

#include <QLineF>
#include <QRectF>

namespace kordel::engine {

class Control;
class LayoutReport;
class Line;
class Section;

// The box the designer moves and sizes a control by, in twips within its
// section. Most controls are their Left, Top, Width and Height; a line is
// the box its two ends span, and placing a line's box carries its ends
// along, each staying at its corner.
QRectF designBox(const Control &control);
void setDesignBox(Control &control, const QRectF &box);
// A line's ends; placing them places its box around them.
QLineF lineEnds(const Line &line);
void setLineEnds(Line &line, const QLineF &ends);

// The lowest bottom of a section's controls, 0 for none: a section is no
// lower than that.
float contentBottom(const Section &section);
// The rightmost edge of any control: the print width is no narrower.
float contentRight(const LayoutReport &report);

} // namespace kordel::engine

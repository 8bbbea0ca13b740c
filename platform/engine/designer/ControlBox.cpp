#include "engine/designer/ControlBox.h"

#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include <algorithm>

namespace kordel::engine {

QRectF designBox(const Control &control) {
  if (control.kind() != ControlKind::Line)
    return QRectF(control.left, control.top, control.width, control.height);
  const auto &line = static_cast<const Line &>(control);
  return QRectF(QPointF(std::min(line.x1, line.x2), std::min(line.y1, line.y2)),
                QPointF(std::max(line.x1, line.x2), std::max(line.y1, line.y2)));
}

void setDesignBox(Control &control, const QRectF &box) {
  if (control.kind() == ControlKind::Line) {
    auto &line = static_cast<Line &>(control);
    const QRectF old = designBox(line);
    // Each end keeps its corner: the left end stays left, the upper end up.
    const auto x = [&](float value) { return float(value > old.left() ? box.right() : box.left()); };
    const auto y = [&](float value) { return float(value > old.top() ? box.bottom() : box.top()); };
    line.x1 = x(line.x1);
    line.x2 = x(line.x2);
    line.y1 = y(line.y1);
    line.y2 = y(line.y2);
  }
  control.left = float(box.left());
  control.top = float(box.top());
  control.width = float(box.width());
  control.height = float(box.height());
}

QLineF lineEnds(const Line &line) { return QLineF(line.x1, line.y1, line.x2, line.y2); }

void setLineEnds(Line &line, const QLineF &ends) {
  line.x1 = float(ends.x1());
  line.y1 = float(ends.y1());
  line.x2 = float(ends.x2());
  line.y2 = float(ends.y2());
  setDesignBox(line, designBox(line));
}

float contentBottom(const Section &section) {
  float bottom = 0;
  for (const auto &control : section.controls()->all())
    bottom = std::max(bottom, float(designBox(*control).bottom()));
  return bottom;
}

float contentRight(const LayoutReport &report) {
  float right = 0;
  for (const auto &section : report.sections()->all())
    for (const auto &control : section->controls()->all())
      right = std::max(right, float(designBox(*control).right()));
  return right;
}

} // namespace kordel::engine

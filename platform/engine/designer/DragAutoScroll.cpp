#include "engine/designer/DragAutoScroll.h"

#include "engine/designer/DesignSurface.h"

#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace kordel::engine {

namespace {

// How near the edge the mouse starts the scrolling, in pixels.
constexpr int kEdgeZone = 16;
// The fastest step, in pixels, and how often a step is taken.
constexpr int kMaximumStep = 40;
constexpr int kStepMilliseconds = 30;

// The step along one axis for a position between 0 and the length of the
// view: negative towards the start, positive towards the end.
int stepAlong(int position, int length) {
  const int intoStart = kEdgeZone - position;
  const int intoEnd = position - (length - kEdgeZone);
  const auto speed = [](int depth) { return std::clamp(depth / 2, 1, kMaximumStep); };
  if (intoStart > 0)
    return -speed(intoStart);
  if (intoEnd > 0)
    return speed(intoEnd);
  return 0;
}

} // namespace

DragAutoScroll::DragAutoScroll(QScrollArea &area, DesignSurface &surface)
    : QObject(&area), area_(area), surface_(surface) {
  timer_.setInterval(kStepMilliseconds);
  connect(&timer_, &QTimer::timeout, this, &DragAutoScroll::step);
  connect(&surface_, &DesignSurface::dragMoved, this, &DragAutoScroll::dragMoved);
  connect(&surface_, &DesignSurface::dragEnded, this, &DragAutoScroll::stop);
}

QPoint DragAutoScroll::velocity() const {
  const QSize view = area_.viewport()->size();
  return QPoint(stepAlong(mouse_.x(), view.width()), stepAlong(mouse_.y(), view.height()));
}

void DragAutoScroll::dragMoved(QPoint point) {
  mouse_ = surface_.mapTo(area_.viewport(), point);
  if (velocity().isNull())
    timer_.stop();
  else if (!timer_.isActive())
    timer_.start();
}

bool DragAutoScroll::step() {
  if (!surface_.isDragging()) {
    timer_.stop();
    return false;
  }
  const QPoint by = velocity();
  QScrollBar &across = *area_.horizontalScrollBar();
  QScrollBar &down = *area_.verticalScrollBar();
  const QPoint before(across.value(), down.value());
  across.setValue(before.x() + by.x());
  down.setValue(before.y() + by.y());
  if (QPoint(across.value(), down.value()) == before)
    return false; // at the end already; the timer waits for the mouse to move
  // The mouse stands still over a surface that moved under it.
  surface_.followDrag(surface_.mapFrom(area_.viewport(), mouse_));
  return true;
}

} // namespace kordel::engine

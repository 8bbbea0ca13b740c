#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>

class QScrollArea;

namespace kordel::engine {

class DesignSurface;

// Scrolls the design view while a drag on the surface is held near or
// beyond the edge of the part that shows: the nearer the edge, and the
// farther past it, the faster. After each step the drag follows the mouse
// to where it now stands over the surface, so a control moved, sized or
// drawn goes on past what was visible. A timer steps while the mouse stays
// there; moving back inside, releasing or cancelling the drag stops it.
class DragAutoScroll : public QObject {
public:
  DragAutoScroll(QScrollArea &area, DesignSurface &surface);

  bool isScrolling() const { return timer_.isActive(); }

  // ---- handlers
  // The drag reached a point of the surface.
  void dragMoved(QPoint point);
  // One step of the timer: scrolls towards the edge the mouse is near and
  // carries the drag along. False when it could scroll no further.
  bool step();
  void stop() { timer_.stop(); }

private:
  // How far to scroll in one step, in pixels, for where the mouse is.
  QPoint velocity() const;

  QScrollArea &area_;
  DesignSurface &surface_;
  QTimer timer_;
  QPoint mouse_; // in the scroll area's viewport
};

} // namespace kordel::engine

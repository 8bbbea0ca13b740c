#pragma once

#include <QWidget>

class QScrollArea;

namespace kordel::engine {

class DesignSurface;
class DesignerDocument;
class DragAutoScroll;
class DesignerEvents;
class Ruler;

// The design surface in a scroll area with its rulers above and to the
// left, as the designer control embeds it. The rulers follow the surface's
// zoom, grid units and scrolling; the view scrolls to what the keyboard
// selects, and along with a drag held at its edge.
class DesignView : public QWidget {
  Q_OBJECT
public:
  DesignView(DesignerDocument &document, DesignerEvents *events, QWidget *parent = nullptr);

  DesignSurface &surface() const { return *surface_; }
  QScrollArea &scrollArea() const { return *scroll_; }
  Ruler &horizontalRuler() const { return *horizontal_; }
  Ruler &verticalRuler() const { return *vertical_; }
  DragAutoScroll &autoScroll() const { return *autoScroll_; }

private:
  void updateRulers();

  QScrollArea *scroll_;
  DesignSurface *surface_;
  Ruler *horizontal_;
  Ruler *vertical_;
  DragAutoScroll *autoScroll_;
};

} // namespace kordel::engine

#pragma once

#include <QWidget>

namespace kordel::engine {

class DesignSurface;

// A ruler beside the design surface, in its ruler units (inches or
// centimetres), following its zoom and its scrolling. The horizontal ruler
// counts from the left edge of the sections and shows the print width as
// paper; the vertical ruler counts anew from the top of each section, and
// is blank beside the title bars.
class Ruler : public QWidget {
  Q_OBJECT
public:
  Ruler(Qt::Orientation orientation, const DesignSurface &surface, QWidget *parent = nullptr);

  Qt::Orientation orientation() const { return orientation_; }
  QSize sizeHint() const override;
  // Where the surface's origin lies on the ruler, in pixels along it.
  int surfaceOffset() const;

protected:
  void paintEvent(QPaintEvent *event) override;

private:
  // Ticks and numbers from 0 at origin, over [from, to) along the ruler.
  void paintScale(QPainter &painter, qreal origin, qreal from, qreal to) const;
  int thickness() const;

  Qt::Orientation orientation_;
  const DesignSurface &surface_;
};

} // namespace kordel::engine

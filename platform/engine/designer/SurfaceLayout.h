#pragma once

#include <QRectF>
#include <QSize>

#include <memory>
#include <vector>

namespace kordel::engine {

class Control;
class LayoutReport;
class Section;

// Where the design surface puts the layout, in the surface's pixels: the
// sections top to bottom, each a title bar over its body; a body is as
// wide as the print width and as high as the section, at the zoom's scale.
// Room is left right of the print width and below the last section for
// dragging their edges outwards.
class SurfaceLayout {
public:
  struct Band {
    std::shared_ptr<Section> section;
    QRectF title;
    QRectF body;
  };

  void update(const LayoutReport &report, qreal pixelsPerTwip, int titleHeight);

  qreal scale() const { return scale_; }
  const std::vector<Band> &bands() const { return bands_; }
  QSize size() const { return size_; }
  // The right edge of the print width.
  qreal printRight() const { return printRight_; }
  // The bottom of the last body.
  qreal bottom() const { return bands_.empty() ? 0 : bands_.back().body.bottom(); }

  // nullptr for a section that is not in the layout.
  const Band *bandOf(const Section &section) const;
  // The band whose title or body holds the height; the first above them,
  // the last below them, nullptr for a layout without sections.
  const Band *bandAt(qreal y) const;
  // A rectangle of the band's section in twips, on the surface.
  QRectF toSurface(const Band &band, const QRectF &twips) const;
  QPointF toSurface(const Band &band, const QPointF &twips) const;
  // A point on the surface, in the band's section's twips.
  QPointF toSection(const Band &band, const QPointF &pixel) const;
  // The control's design box on the surface; empty for a control outside
  // the layout.
  QRectF controlRect(const Control &control) const;

private:
  qreal scale_ = 1;
  std::vector<Band> bands_;
  QSize size_;
  qreal printRight_ = 0;
};

} // namespace kordel::engine

#pragma once

#include "engine/render/Page.h"

#include <QRectF>

#include <memory>
#include <unordered_map>

class QPainter;

namespace kordel::engine {

class Control;
class PageDocument;
class PagePainter;
class SectionRenderer;

// Paints controls on the design surface with the code that prints them:
// the section renderer's design mode makes each control's display list and
// the page painter paints it, clipped to the control's box, so what the
// designer shows is what prints; only strokes thinner than a pixel are
// drawn a pixel wide, as the thinnest line the screen shows. A control's
// display list is kept while its size and the zoom stay; its place is
// applied when painting, so a drag repaints without rendering anything
// anew.
class DesignRenderer {
public:
  DesignRenderer();
  ~DesignRenderer();

  // Forgets what was rendered: the layout changed.
  void reset();
  // Paints the control on a painter whose units are the section's twips.
  // A dimmed control (a hidden one) is painted faint.
  void paint(QPainter &painter, const Control &control, bool dimmed);

private:
  struct Rendered {
    Page page;
    QRectF box;              // the control's box when it was rendered
    QRectF shape;            // a line's ends then, against its box
    qreal pixelsPerTwip = 0; // the scale its thin strokes were made hairlines for
  };
  const Rendered &rendered(const Control &control, qreal pixelsPerTwip);

  std::unique_ptr<PageDocument> document_;
  std::unique_ptr<SectionRenderer> renderer_;
  std::unique_ptr<PagePainter> painter_;
  std::unordered_map<const Control *, Rendered> cache_;
};

} // namespace kordel::engine

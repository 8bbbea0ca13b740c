#include "engine/designer/DesignRenderer.h"

#include "engine/model/Controls.h"
#include "engine/render/PageDocument.h"
#include "engine/render/PagePainter.h"
#include "engine/run/SectionRenderer.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kordel::engine {

namespace {

constexpr qreal kDimmedOpacity = 0.35;

QRectF lineShape(const Control &control) {
  if (control.kind() != ControlKind::Line)
    return QRectF();
  const auto &line = static_cast<const Line &>(control);
  return QRectF(QPointF(line.x1 - line.left, line.y1 - line.top), QPointF(line.x2 - line.left, line.y2 - line.top));
}

qreal devicePixelsPerTwip(const QPainter &painter) {
  return std::sqrt(std::abs(painter.deviceTransform().determinant()));
}

// The page with each stroke thinner than a device pixel made a hairline,
// which the page painter draws one pixel wide: a line that paper shows
// thin would fade to nothing on the screen.
Page withHairlines(const Page &page, qreal pixelsPerTwip) {
  const auto thin = [pixelsPerTwip](Stroke stroke) {
    if (stroke.width * pixelsPerTwip < 1)
      stroke.width = 0;
    return stroke;
  };
  Page shown(page.width(), page.height());
  for (const PageItem &item : page.items()) {
    if (const auto *run = std::get_if<TextRun>(&item)) {
      shown.addText(run->box, page.text(*run), run->font, run->color, run->align);
    } else if (const auto *line = std::get_if<LineItem>(&item)) {
      shown.addLine(LineItem{line->x1, line->y1, line->x2, line->y2, thin(line->stroke)});
    } else if (const auto *rect = std::get_if<RectItem>(&item)) {
      RectItem thinned = *rect;
      if (thinned.border)
        thinned.border = thin(*thinned.border);
      shown.addRect(thinned);
    } else if (const auto *ellipse = std::get_if<EllipseItem>(&item)) {
      EllipseItem thinned = *ellipse;
      if (thinned.border)
        thinned.border = thin(*thinned.border);
      shown.addEllipse(thinned);
    } else if (const auto *image = std::get_if<ImageItem>(&item)) {
      shown.addImage(image->box, image->image);
    }
  }
  return shown;
}

// How far a control's ink may reach past its box: half the stroke of a
// line or shape, and a device pixel for a hairline.
qreal inkMargin(const Control &control, const QPainter &painter) {
  float weight = 0;
  if (control.kind() == ControlKind::Line)
    weight = static_cast<const Line &>(control).lineWeight;
  else if (control.kind() == ControlKind::Shape)
    weight = static_cast<const Shape &>(control).lineWeight;
  else
    return 0;
  const qreal pixel = 1 / devicePixelsPerTwip(painter);
  return std::max<qreal>(weight / 2, 0) + pixel;
}

} // namespace

DesignRenderer::DesignRenderer() { reset(); }

DesignRenderer::~DesignRenderer() = default;

void DesignRenderer::reset() {
  cache_.clear();
  // A new document and renderer: the old ones know fonts of controls that
  // are gone.
  painter_.reset();
  renderer_.reset();
  document_ = std::make_unique<PageDocument>();
  renderer_ = std::make_unique<SectionRenderer>(*document_, SectionRenderer::Hooks{});
  painter_ = std::make_unique<PagePainter>(*document_);
}

const DesignRenderer::Rendered &DesignRenderer::rendered(const Control &control, qreal pixelsPerTwip) {
  const QRectF box(control.left, control.top, control.width, control.height);
  const QRectF shape = lineShape(control);
  const auto found = cache_.find(&control);
  if (found != cache_.end() && found->second.box.size() == box.size() && found->second.shape == shape &&
      found->second.pixelsPerTwip == pixelsPerTwip)
    return found->second;
  return cache_[&control] =
             Rendered{withHairlines(renderer_->renderDesign(control), pixelsPerTwip), box, shape, pixelsPerTwip};
}

void DesignRenderer::paint(QPainter &painter, const Control &control, bool dimmed) {
  const Rendered &done = rendered(control, devicePixelsPerTwip(painter));
  const qreal margin = inkMargin(control, painter);
  QRectF clip(control.left, control.top, control.width, control.height);
  if (control.kind() == ControlKind::Line)
    clip = QRectF(QPointF(control.left, control.top) + done.shape.topLeft(),
                  QPointF(control.left, control.top) + done.shape.bottomRight())
               .normalized();
  painter.save();
  painter.setClipRect(clip.adjusted(-margin, -margin, margin, margin), Qt::IntersectClip);
  painter.translate(control.left - done.box.left(), control.top - done.box.top());
  if (dimmed)
    painter.setOpacity(painter.opacity() * kDimmedOpacity);
  painter_->paint(painter, done.page);
  painter.restore();
}

} // namespace kordel::engine

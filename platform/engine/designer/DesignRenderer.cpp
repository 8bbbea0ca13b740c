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
  const qreal pixel = 1 / std::sqrt(std::abs(painter.deviceTransform().determinant()));
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

const DesignRenderer::Rendered &DesignRenderer::rendered(const Control &control) {
  const QRectF box(control.left, control.top, control.width, control.height);
  const QRectF shape = lineShape(control);
  const auto found = cache_.find(&control);
  if (found != cache_.end() && found->second.box.size() == box.size() && found->second.shape == shape)
    return found->second;
  return cache_[&control] = Rendered{renderer_->renderDesign(control), box, shape};
}

void DesignRenderer::paint(QPainter &painter, const Control &control, bool dimmed) {
  const Rendered &done = rendered(control);
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

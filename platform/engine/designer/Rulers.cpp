#include "engine/designer/Rulers.h"

#include "engine/designer/DesignSurface.h"
#include "engine/render/Page.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

namespace kordel::engine {

namespace {

const QColor kOutside(0xc8, 0xcb, 0xd0);
const QColor kPaper(0xfb, 0xfb, 0xfb);
const QColor kInk(0x40, 0x40, 0x40);
constexpr qreal kTwipsPerCentimetre = kTwipsPerInch / 2.54;
// Ticks closer than this many pixels are left out.
constexpr qreal kMinimumTickSpacing = 4;
// Numbers closer than this many pixels are thinned out.
constexpr qreal kMinimumNumberSpacing = 28;

} // namespace

Ruler::Ruler(Qt::Orientation orientation, const DesignSurface &surface, QWidget *parent)
    : QWidget(parent), orientation_(orientation), surface_(surface) {
  setObjectName(orientation == Qt::Horizontal ? QStringLiteral("RulerHorizontal") : QStringLiteral("RulerVertical"));
  QFont small = font();
  small.setPointSizeF(std::max(6.0, small.pointSizeF() * 0.8));
  setFont(small);
  if (orientation == Qt::Horizontal)
    setFixedHeight(thickness());
  else
    setFixedWidth(thickness());
}

int Ruler::thickness() const { return std::max(fontMetrics().height(), fontMetrics().horizontalAdvance("88")) + 8; }

QSize Ruler::sizeHint() const {
  return orientation_ == Qt::Horizontal ? QSize(200, thickness()) : QSize(thickness(), 200);
}

int Ruler::surfaceOffset() const {
  const QPoint offset = surface_.mapTo(window(), QPoint(0, 0)) - mapTo(window(), QPoint(0, 0));
  return orientation_ == Qt::Horizontal ? offset.x() : offset.y();
}

void Ruler::paintEvent(QPaintEvent *event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), kOutside);
  const SurfaceLayout &layout = surface_.surfaceLayout();
  const qreal offset = surfaceOffset();
  if (orientation_ == Qt::Horizontal) {
    painter.fillRect(QRectF(offset, 0, layout.printRight(), height()), kPaper);
    paintScale(painter, offset, event->rect().left(), event->rect().right() + 1);
  } else {
    for (const SurfaceLayout::Band &band : layout.bands()) {
      const QRectF body(0, offset + band.body.top(), width(), band.body.height());
      if (!body.intersects(event->rect()))
        continue;
      painter.fillRect(body, kPaper);
      painter.save();
      painter.setClipRect(body);
      paintScale(painter, body.top(), body.top(), body.bottom());
      painter.restore();
    }
  }
  painter.setPen(kInk);
  if (orientation_ == Qt::Horizontal)
    painter.drawLine(0, height() - 1, width(), height() - 1);
  else
    painter.drawLine(width() - 1, 0, width() - 1, height());
}

void Ruler::paintScale(QPainter &painter, qreal origin, qreal from, qreal to) const {
  const bool centimetres = surface_.grid().rulerUnits == 1;
  const qreal unit = (centimetres ? kTwipsPerCentimetre : qreal(kTwipsPerInch)) * surface_.pixelsPerTwip();
  if (unit <= 0)
    return;
  // Eighths of an inch or millimetres, fewer when the zoom packs them.
  int parts = centimetres ? 10 : 8;
  while (parts > 1 && unit / parts < kMinimumTickSpacing)
    parts = centimetres ? (parts == 10 ? 2 : 1) : parts / 2;
  const int numberEvery = std::max(1, int(std::ceil(kMinimumNumberSpacing / unit)));
  const qreal depth = orientation_ == Qt::Horizontal ? height() : width();
  painter.setPen(kInk);
  const int first = int(std::floor((from - origin) / unit * parts));
  const int last = int(std::ceil((to - origin) / unit * parts));
  for (int tick = std::max(0, first); tick <= last; ++tick) {
    const qreal at = origin + tick * unit / parts;
    const bool whole = tick % parts == 0;
    const bool half = !whole && parts % 2 == 0 && tick % (parts / 2) == 0;
    const qreal length = depth * (whole ? 0.35 : half ? 0.25 : 0.15);
    if (orientation_ == Qt::Horizontal)
      painter.drawLine(QPointF(at, depth - length), QPointF(at, depth));
    else
      painter.drawLine(QPointF(depth - length, at), QPointF(depth, at));
    const int number = tick / parts;
    if (!whole || number == 0 || number % numberEvery != 0)
      continue;
    const QString text = QString::number(number);
    if (orientation_ == Qt::Horizontal)
      painter.drawText(QPointF(at + 2, fontMetrics().ascent() + 1), text);
    else
      painter.drawText(QPointF(2, at + fontMetrics().ascent() + 1), text);
  }
}

} // namespace kordel::engine

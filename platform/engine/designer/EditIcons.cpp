#include "engine/designer/EditIcons.h"

#include "engine/designer/DesignerActions.h"

#include <QPainter>
#include <QPixmap>

namespace kordel::engine {

namespace {

constexpr int kSize = 16;
const QColor kInk(40, 40, 40);
const QColor kText(70, 110, 170);
const QColor kBoard(176, 124, 64);
const QColor kClip(120, 124, 132);
const QColor kRemove(196, 48, 40);

// A sheet of paper with lines of text on it.
void sheet(QPainter &painter, const QRectF &rect) {
  painter.setPen(QPen(kInk, 1));
  painter.setBrush(Qt::white);
  painter.drawRect(rect);
  painter.setPen(QPen(kText, 1));
  for (qreal y = rect.top() + 3; y < rect.bottom() - 1; y += 2)
    painter.drawLine(QPointF(rect.left() + 2, y), QPointF(rect.right() - 2, y));
}

void scissors(QPainter &painter) {
  // Blades crossing at the pivot, from the handles up to their points.
  painter.setPen(QPen(kInk, 1.4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(5.5, 10), QPointF(11, 1.5));
  painter.drawLine(QPointF(10.5, 10), QPointF(5, 1.5));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kText, 1.6));
  painter.drawEllipse(QPointF(4.5, 12.5), 2.5, 2.5);
  painter.drawEllipse(QPointF(11.5, 12.5), 2.5, 2.5);
}

void clipboard(QPainter &painter) {
  painter.setPen(QPen(kInk, 1));
  painter.setBrush(kBoard);
  painter.drawRoundedRect(QRectF(1.5, 2.5, 10, 12), 1, 1);
  painter.setBrush(kClip);
  painter.drawRect(QRectF(4.5, 1.5, 4, 3));
  sheet(painter, QRectF(7.5, 6.5, 7, 8.5));
}

// An arrow turning back over the top, its head at the left; mirrored for
// redo.
void turningArrow(QPainter &painter, bool back) {
  if (!back) {
    painter.translate(kSize, 0);
    painter.scale(-1, 1);
  }
  painter.setPen(QPen(kText, 2, Qt::SolidLine, Qt::RoundCap));
  painter.setBrush(Qt::NoBrush);
  painter.drawArc(QRectF(4, 4, 9, 9), 0, 180 * 16);
  painter.drawLine(QPointF(13, 8.5), QPointF(13, 13));
  painter.setPen(Qt::NoPen);
  painter.setBrush(kText);
  painter.drawPolygon(QPolygonF{QPointF(0.5, 7.5), QPointF(7.5, 7.5), QPointF(4, 12)});
}

void cross(QPainter &painter) {
  painter.setPen(QPen(kRemove, 2.4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(4, 4), QPointF(12, 12));
  painter.drawLine(QPointF(12, 4), QPointF(4, 12));
}

} // namespace

QIcon editActionIcon(int action) {
  QPixmap pixmap(kSize, kSize);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  switch (action) {
  case DesignAction::Undo: turningArrow(painter, true); break;
  case DesignAction::Redo: turningArrow(painter, false); break;
  case DesignAction::Cut: scissors(painter); break;
  case DesignAction::Copy:
    sheet(painter, QRectF(1.5, 1.5, 8, 10));
    sheet(painter, QRectF(6.5, 4.5, 8, 10.5));
    break;
  case DesignAction::Paste: clipboard(painter); break;
  case DesignAction::Delete: cross(painter); break;
  default: return QIcon();
  }
  return QIcon(pixmap);
}

} // namespace kordel::engine

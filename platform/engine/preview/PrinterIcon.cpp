#include "engine/preview/PrinterIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace kordel::engine {

namespace {

// A printer on a grid of 16 by 16: the sheet going in at the top, the
// body with its light, and the printed sheet coming out at the front.
QPixmap drawnPrinter(int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / 16.0, size / 16.0);
  QPen outline(QColor(0x2e, 0x34, 0x36));
  outline.setCosmetic(true);
  painter.setPen(outline);

  painter.setBrush(Qt::white);
  painter.drawRect(QRectF(4.5, 1.5, 7, 5));
  QPainterPath body;
  body.addRoundedRect(QRectF(1.5, 5.5, 13, 6), 1.5, 1.5);
  painter.setBrush(QColor(0x55, 0x57, 0x53));
  painter.drawPath(body);
  painter.setBrush(Qt::white);
  painter.drawRect(QRectF(4.5, 9.5, 7, 5));
  // The printed lines.
  painter.drawLine(QLineF(6, 11.5, 10, 11.5));
  painter.drawLine(QLineF(6, 13, 9, 13));
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x4e, 0x9a, 0x06));
  painter.drawEllipse(QRectF(11.8, 6.8, 1.6, 1.6));
  return pixmap;
}

} // namespace

QIcon printerIcon() {
  QIcon drawn;
  for (const int size : {16, 22, 24, 32, 48})
    drawn.addPixmap(drawnPrinter(size));
  return QIcon::fromTheme(QStringLiteral("document-print"), drawn);
}

} // namespace kordel::engine

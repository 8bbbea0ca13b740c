#include "engine/designer/FormatIcons.h"

#include <QPainter>
#include <QPixmap>

namespace kordel::engine {

namespace {

constexpr int kSize = 16;
const QColor kInk(40, 40, 40);

QPixmap blank() {
  QPixmap pixmap(kSize, kSize);
  pixmap.fill(Qt::transparent);
  return pixmap;
}

void drawColorBar(QPainter &painter, const QColor &color) {
  const QRect bar(1, kSize - 4, kSize - 2, 3);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color.isValid() ? color : QColor(Qt::transparent));
  painter.drawRect(bar);
  if (!color.isValid()) {
    painter.setPen(QColor(150, 150, 150));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(bar.adjusted(0, 0, -1, -1));
  }
}

} // namespace

QIcon letterIcon(QChar letter, bool bold, bool italic) {
  QPixmap pixmap = blank();
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::TextAntialiasing);
  QFont font(QStringLiteral("DejaVu Serif"));
  font.setPixelSize(13);
  font.setBold(bold);
  font.setItalic(italic);
  painter.setFont(font);
  painter.setPen(kInk);
  painter.drawText(QRect(0, 0, kSize, kSize), Qt::AlignCenter, QString(letter));
  return QIcon(pixmap);
}

QIcon alignmentIcon(int alignment) {
  QPixmap pixmap = blank();
  QPainter painter(&pixmap);
  painter.setPen(QPen(kInk, 1));
  const int widths[] = {14, 9, 14, 9};
  for (int i = 0; i < 4; ++i) {
    const int width = widths[i];
    const int left = alignment == 0 ? 1 : alignment == 1 ? kSize - 1 - width : (kSize - width) / 2;
    const int y = 3 + i * 3;
    painter.drawLine(left, y, left + width - 1, y);
  }
  return QIcon(pixmap);
}

QIcon foreColorIcon(const QColor &color) {
  QPixmap pixmap = blank();
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::TextAntialiasing);
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setPixelSize(11);
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(kInk);
  painter.drawText(QRect(0, -1, kSize, kSize - 3), Qt::AlignCenter, QStringLiteral("A"));
  drawColorBar(painter, color);
  return QIcon(pixmap);
}

QIcon backColorIcon(const QColor &color) {
  QPixmap pixmap = blank();
  QPainter painter(&pixmap);
  painter.setPen(kInk);
  painter.setBrush(QColor(255, 255, 255));
  painter.drawRect(2, 1, kSize - 5, kSize - 7);
  painter.setPen(QColor(150, 150, 150));
  painter.drawLine(4, 4, kSize - 6, 4);
  painter.drawLine(4, 6, kSize - 6, 6);
  drawColorBar(painter, color);
  return QIcon(pixmap);
}

} // namespace kordel::engine

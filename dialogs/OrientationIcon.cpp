#include "dialogs/OrientationIcon.h"

#include <QPainter>

namespace kordel::addin {

OrientationIcon::OrientationIcon(bool landscape, QWidget *parent) : QWidget(parent), landscape_(landscape) {
  setFixedSize(sizeHint());
}

void OrientationIcon::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  // A sheet of A4 proportions in the middle of the square.
  const int longSide = height() - 4;
  const int shortSide = longSide * 210 / 297;
  const QSize size = landscape_ ? QSize(longSide, shortSide) : QSize(shortSide, longSide);
  const QRect sheet(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size);
  painter.fillRect(sheet, palette().base());
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawRect(sheet.adjusted(0, 0, -1, -1));
  painter.setPen(palette().color(QPalette::Mid));
  for (int y = sheet.top() + 5; y < sheet.bottom() - 3; y += 4)
    painter.drawLine(sheet.left() + 4, y, sheet.right() - 4, y);
}

} // namespace kordel::addin

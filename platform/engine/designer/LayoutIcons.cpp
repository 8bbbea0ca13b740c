#include "engine/designer/LayoutIcons.h"

#include "engine/designer/DesignerActions.h"

#include <QPainter>
#include <QPixmap>

namespace kordel::engine {

namespace {

constexpr int kSize = 16;
const QColor kGuide(200, 60, 40);
const QColor kBox(70, 110, 170);

void bar(QPainter &painter, int x, int y, int width, int height) { painter.fillRect(QRect(x, y, width, height), kBox); }

void guide(QPainter &painter, int x1, int y1, int x2, int y2) {
  painter.setPen(QPen(kGuide, 1));
  painter.drawLine(x1, y1, x2, y2);
}

} // namespace

QIcon layoutActionIcon(int action) {
  using namespace DesignAction;
  QPixmap pixmap(kSize, kSize);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  switch (action) {
  case AlignLeft: bar(painter, 3, 3, 10, 4), bar(painter, 3, 9, 6, 4), guide(painter, 2, 1, 2, 14); break;
  case AlignCenter: bar(painter, 2, 3, 12, 4), bar(painter, 5, 9, 6, 4), guide(painter, 8, 1, 8, 14); break;
  case AlignRight: bar(painter, 3, 3, 10, 4), bar(painter, 7, 9, 6, 4), guide(painter, 13, 1, 13, 14); break;
  case AlignTop: bar(painter, 3, 3, 4, 10), bar(painter, 9, 3, 4, 6), guide(painter, 1, 2, 14, 2); break;
  case AlignMiddle: bar(painter, 3, 2, 4, 12), bar(painter, 9, 5, 4, 6), guide(painter, 1, 8, 14, 8); break;
  case AlignBottom: bar(painter, 3, 3, 4, 10), bar(painter, 9, 7, 4, 6), guide(painter, 1, 13, 14, 13); break;
  case AlignToGrid:
    for (int x = 1; x < kSize; x += 4)
      for (int y = 1; y < kSize; y += 4)
        painter.fillRect(QRect(x, y, 1, 1), Qt::darkGray);
    bar(painter, 5, 5, 7, 7);
    break;
  case CenterInSection: guide(painter, 1, 1, 1, 14), guide(painter, 14, 1, 14, 14), bar(painter, 5, 5, 6, 6); break;
  case SameWidth: bar(painter, 3, 2, 10, 4), bar(painter, 3, 10, 10, 4), guide(painter, 1, 8, 14, 8); break;
  case SameHeight: bar(painter, 2, 3, 4, 10), bar(painter, 10, 3, 4, 10), guide(painter, 8, 1, 8, 14); break;
  case SameSize: bar(painter, 2, 2, 5, 5), bar(painter, 9, 9, 5, 5); break;
  case SpaceHorizontally: bar(painter, 1, 4, 3, 8), bar(painter, 7, 4, 3, 8), bar(painter, 13, 4, 2, 8); break;
  case SpaceVertically: bar(painter, 4, 1, 8, 3), bar(painter, 4, 7, 8, 3), bar(painter, 4, 13, 8, 2); break;
  case Border:
    painter.setPen(QPen(QColor(40, 40, 40), 2));
    painter.drawRect(QRect(3, 3, 10, 10));
    break;
  default: return QIcon();
  }
  return QIcon(pixmap);
}

} // namespace kordel::engine

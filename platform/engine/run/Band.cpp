#include "engine/run/Band.h"

namespace kordel::engine {

Twips Band::height() const {
  Twips total = 0;
  for (const BandPiece &piece : pieces)
    total += piece.height();
  return total;
}

void drawPiece(const BandPiece &piece, Page &target, Twips dx, Twips dy) {
  if (piece.background)
    target.addRect(
        RectItem{Box{dx, dy, piece.content.width(), piece.content.height()}, piece.background, std::nullopt, 0});
  for (const PageItem &item : piece.content.items()) {
    std::visit(
        [&](const auto &value) {
          using T = std::decay_t<decltype(value)>;
          if constexpr (std::is_same_v<T, TextRun>) {
            target.addText(Box{value.box.x + dx, value.box.y + dy, value.box.width, value.box.height},
                           piece.content.text(value), value.font, value.color, value.align);
          } else if constexpr (std::is_same_v<T, LineItem>) {
            LineItem line = value;
            line.x1 += dx;
            line.x2 += dx;
            line.y1 += dy;
            line.y2 += dy;
            target.addLine(line);
          } else if constexpr (std::is_same_v<T, RectItem>) {
            RectItem rect = value;
            rect.box.x += dx;
            rect.box.y += dy;
            target.addRect(rect);
          } else if constexpr (std::is_same_v<T, EllipseItem>) {
            EllipseItem ellipse = value;
            ellipse.box.x += dx;
            ellipse.box.y += dy;
            target.addEllipse(ellipse);
          } else {
            target.addImage(Box{value.box.x + dx, value.box.y + dy, value.box.width, value.box.height}, value.image);
          }
        },
        item);
  }
}

} // namespace kordel::engine

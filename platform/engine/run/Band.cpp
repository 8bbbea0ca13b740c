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
  target.addPage(piece.content, dx, dy);
}

} // namespace kordel::engine

#pragma once

#include "engine/render/PageFont.h"
#include "engine/text/FontResolver.h"
#include "engine/text/TextShaper.h"

#include <QHash>
#include <QString>

#include <vector>

namespace kordel::engine::text {

// Measures lines of text the way the PDF writer shapes them: the same
// faces found the same way and the same HarfBuzz shaping, so that a line
// measured to fit its box is drawn to fit it.
//
// Reports print the same texts over and over (captions on every page, a
// group's name on each of its rows), so widths are kept by font and text;
// past a bound the kept widths are dropped and gathered anew. Each thread
// measures with its own faces and shaper, as neither may be shared.
class TextMeasurer {
public:
  // The measurer of the calling thread.
  static TextMeasurer &forThisThread();

  // The index under which the measurer knows the font, kept for the
  // thread's life.
  int font(const PageFont &font);
  // The width in twips of one line of text in the font of that index.
  // Raises 53 when no installed font can be loaded for the font.
  double width(int font, const QString &line);

private:
  TextMeasurer();

  FontResolver fonts_;
  TextShaper shaper_;
  QHash<PageFont, int> indexes_;
  std::vector<QHash<QString, double>> widths_; // by font index
  qsizetype kept_ = 0;
};

} // namespace kordel::engine::text

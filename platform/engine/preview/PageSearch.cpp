#include "engine/preview/PageSearch.h"

#include "engine/render/PageDocument.h"
#include "engine/render/TwipsFont.h"

#include <algorithm>
#include <cmath>

namespace kordel::engine {

namespace {

// Where the characters of a run stand, measured as the painter places them.
Box hitBox(const PageDocument &document, const TextRun &run, const QString &runText, int offset, int length) {
  const QFontMetricsF metrics = twipsMetrics(twipsFont(document.font(run.font).toQFont()));
  qreal x = run.box.x;
  if (run.align != TextAlign::Left) {
    const qreal room = run.box.width - metrics.horizontalAdvance(runText);
    x += run.align == TextAlign::Center ? room / 2 : room;
  }
  const qreal before = metrics.horizontalAdvance(runText.left(offset));
  const qreal width = metrics.horizontalAdvance(runText.mid(offset, length));
  return Box{Twips(std::lround(x + before)), run.box.y, Twips(std::ceil(width)), run.box.height};
}

} // namespace

std::optional<TextHit> findText(const PageDocument &document, const QString &text, const TextPosition &start) {
  const int pages = document.pageCount();
  if (text.isEmpty() || pages == 0)
    return std::nullopt;
  const int firstPage = std::clamp(start.page, 0, pages - 1);
  // The start page is visited twice: first from the start on, and at the
  // end of the round for what stands before the start.
  for (int step = 0; step <= pages; ++step) {
    const int pageIndex = (firstPage + step) % pages;
    const bool firstVisit = step == 0;
    const bool lastVisit = step == pages;
    const Page page = document.page(pageIndex);
    for (int item = 0; item < page.itemCount(); ++item) {
      if ((firstVisit && item < start.item) || (lastVisit && item > start.item))
        continue;
      const auto *run = std::get_if<TextRun>(&page.items()[std::size_t(item)]);
      if (!run)
        continue;
      const QString runText = page.text(*run);
      const int from = firstVisit && item == start.item ? start.offset : 0;
      const qsizetype found = runText.indexOf(text, from, Qt::CaseInsensitive);
      if (found < 0 || (lastVisit && item == start.item && found >= start.offset))
        continue;
      TextHit hit;
      hit.position = TextPosition{pageIndex, item, int(found)};
      hit.length = int(text.size());
      hit.box = hitBox(document, *run, runText, int(found), hit.length);
      return hit;
    }
  }
  return std::nullopt;
}

} // namespace kordel::engine

#include "engine/export/TextLines.h"

#include <algorithm>

namespace kordel::engine {

std::vector<TextLine> textLines(const Page &page) {
  std::vector<const TextRun *> runs;
  for (const PageItem &item : page.items())
    if (const auto *run = std::get_if<TextRun>(&item))
      runs.push_back(run);
  std::stable_sort(runs.begin(), runs.end(), [](const TextRun *a, const TextRun *b) { return a->box.y < b->box.y; });

  std::vector<TextLine> lines;
  for (const TextRun *run : runs) {
    if (lines.empty() || run->box.y - lines.back().top > kSameLineTolerance)
      lines.push_back(TextLine{run->box.y, run->box.y + run->box.height, {}});
    TextLine &line = lines.back();
    line.bottom = std::max(line.bottom, run->box.y + run->box.height);
    line.runs.push_back(run);
  }
  for (TextLine &line : lines)
    std::stable_sort(line.runs.begin(), line.runs.end(),
                     [](const TextRun *a, const TextRun *b) { return a->box.x < b->box.x; });
  return lines;
}

} // namespace kordel::engine

#pragma once

#include "engine/render/Page.h"

#include <vector>

namespace kordel::engine {

// Runs whose tops lie this close together stand on one line.
constexpr Twips kSameLineTolerance = 30;

// One line of a page's text: the runs whose tops lie within the tolerance
// of the line's top, left to right.
struct TextLine {
  Twips top = 0;
  Twips bottom = 0; // the lowest bottom edge of its runs
  std::vector<const TextRun *> runs;
};

// The text runs of a page in reading order: lines from top to bottom, each
// line's runs from left to right. A line begins at its highest run; a run
// joins it while its top is within the tolerance of that run's top, so a
// slope of runs cannot drift a line down the page. The runs point into the
// page.
std::vector<TextLine> textLines(const Page &page);

} // namespace kordel::engine

#pragma once

#include "engine/model/Section.h"
#include "engine/render/Page.h"

#include <QString>

#include <vector>

namespace kordel::engine {

class Section;

// A counter whose text is known only when its band is placed: the page
// number, or the page count, which only the end of the run knows.
struct PageCounter {
  enum class Kind { PageNumber, PageCount };
  Kind kind = Kind::PageNumber;
  Box box; // relative to the piece's top left corner
  int font = 0;
  QRgb color = kBlack;
  TextAlign align = TextAlign::Left;
  QString format;
};

// One unbreakable part of a formatted section: its items relative to its
// top left corner (kept in a Page used as a container) and its counters.
struct BandPiece {
  Page content;
  std::vector<PageCounter> counters;
  // The section's background, drawn under the content when the piece is
  // placed, so that BeforePrint can still change it; nothing when the
  // section is transparent.
  std::optional<QRgb> background;
  // The section the piece belongs to; nullptr for pieces of a sub report.
  const Section *owner = nullptr;
  Twips height() const { return content.height(); }
};

// A formatted section, ready to be placed: usually one piece; a section
// with sub reports is one piece above each sub report, one per band the
// sub report printed, and one for what follows, so that it can break
// across pages between them.
struct Band {
  std::vector<BandPiece> pieces;
  bool keepTogether = false;
  NewPage newPage = NewPage::None;
  // The report header stands above the first page's header.
  bool abovePageHeader = false;
  Twips height() const;
};

// Draws a piece's items onto a page, moved by (dx, dy); its counters are
// the placer's to resolve.
void drawPiece(const BandPiece &piece, Page &target, Twips dx, Twips dy);

} // namespace kordel::engine

#pragma once

#include "engine/render/PageDocument.h"
#include "engine/run/Band.h"

#include <functional>
#include <optional>
#include <vector>

namespace kordel::engine {


// Places formatted bands on pages.
//
// Design note. The paginator is a small state machine over one page at a
// time: closed (before the first band and after a page ends) and open
// (a page, a cursor y and the room down to the footer's reserved place).
// A band opens a page when none is open; the page header is placed before
// the first band that is not the report header (which stands above it),
// or when the page closes. A band
// that does not fit closes the page and goes to a new one, unless the page
// holds nothing but its header, in which case it is placed anyway (and
// runs off the bottom). A band of several pieces may break between pieces
// unless it is kept together. NewPage before closes a page with content;
// NewPage after makes the next band start a new page. Each page goes
// into the document as it closes. Page numbers are drawn when a band is
// placed; page counts go to the document as texts still to be written,
// which finish, when the number of pages is known, resolves.
class Paginator {
public:
  struct Paper {
    Twips width = 11906;
    Twips height = 16838;
    Twips left = 1440, top = 1440, right = 1440, bottom = 1440;
  };
  struct Hooks {
    std::function<void()> pageStart;
    std::function<void()> pageEnd;
    // The page header and footer as formatted for the page now opening or
    // closing; nothing when the layout has none or hides it.
    std::function<std::optional<Band>()> pageHeader;
    std::function<std::optional<Band>()> pageFooter;
  };

  // footerReserve is the height kept free above the bottom margin for the
  // page footer.
  Paginator(PageDocument &document, Paper paper, Twips footerReserve, Hooks hooks);

  void place(const Band &band);
  // Closes and opens pages as placing the band will: called before the
  // band's BeforePrint, so that a band that opens a page is printed after
  // its PageStart. Placing the band afterwards breaks no page again.
  void makeRoomFor(const Band &band);
  // Closes the last page (making one when nothing was placed at all) and
  // resolves the page counts.
  void finish();
  // The number of the open page, or of the last one; 0 before the first.
  int pageNumber() const { return pageNumber_; }

private:
  void openPage();
  void placePageHeader();
  void closePage();
  void placePiece(const BandPiece &piece);
  Twips room() const { return bodyBottom_ - y_; }

  PageDocument &document_;
  Paper paper_;
  Twips footerReserve_;
  Hooks hooks_;
  Page page_; // the open page
  int pageNumber_ = 0;
  std::vector<PageCountText> pageCounts_; // on the open page
  bool open_ = false;
  bool hasBody_ = false;
  bool headerPlaced_ = false;
  bool breakPending_ = false;
  Twips y_ = 0;
  Twips bodyBottom_ = 0;
};

} // namespace kordel::engine

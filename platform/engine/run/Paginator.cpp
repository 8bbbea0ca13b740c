#include "engine/run/Paginator.h"

#include "engine/render/PageDocument.h"
#include "engine/run/SectionRenderer.h"

#include <utility>

namespace kordel::engine {

Paginator::Paginator(PageDocument &document, Paper paper, Twips footerReserve, Hooks hooks)
    : document_(document), paper_(paper), footerReserve_(footerReserve), hooks_(std::move(hooks)) {}

void Paginator::openPage() {
  page_ = Page(paper_.width, paper_.height);
  ++pageNumber_;
  open_ = true;
  hasBody_ = false;
  breakPending_ = false;
  y_ = paper_.top;
  bodyBottom_ = paper_.height - paper_.bottom - footerReserve_;
  headerPlaced_ = false;
  if (hooks_.pageStart)
    hooks_.pageStart();
}

void Paginator::placePageHeader() {
  headerPlaced_ = true;
  if (hooks_.pageHeader)
    if (const auto header = hooks_.pageHeader())
      for (const BandPiece &piece : header->pieces)
        placePiece(piece);
}

void Paginator::closePage() {
  if (!headerPlaced_)
    placePageHeader();
  if (hooks_.pageFooter)
    if (const auto footer = hooks_.pageFooter()) {
      y_ = paper_.height - paper_.bottom - footer->height();
      for (const BandPiece &piece : footer->pieces)
        placePiece(piece);
    }
  if (hooks_.pageEnd)
    hooks_.pageEnd();
  open_ = false;
  document_.append(std::exchange(page_, Page()));
  for (PageCountText &count : pageCounts_)
    document_.addPageCount(document_.pageCount() - 1, std::move(count));
  pageCounts_.clear();
}

void Paginator::placePiece(const BandPiece &piece) {
  drawPiece(piece, page_, paper_.left, y_);
  for (PageCounter counter : piece.counters) {
    counter.box.x += paper_.left;
    counter.box.y += y_;
    if (counter.kind == PageCounter::Kind::PageNumber)
      page_.addText(counter.box, formatFieldText(Variant(pageNumber()), counter.format), counter.font, counter.color,
                    counter.align);
    else
      pageCounts_.push_back(PageCountText{counter.box, counter.font, counter.color, counter.align, counter.format});
  }
  y_ += piece.height();
}

void Paginator::makeRoomFor(const Band &band) {
  const bool before = band.newPage == NewPage::Before || band.newPage == NewPage::BeforeAfter;
  if (open_ && (breakPending_ || (before && hasBody_)))
    closePage();
  if (!open_)
    openPage();
  if (!headerPlaced_ && !band.abovePageHeader)
    placePageHeader();
  const bool unbreakable = band.keepTogether || band.pieces.size() == 1;
  if (unbreakable && band.height() > room() && hasBody_) {
    closePage();
    openPage();
    placePageHeader();
  }
}

void Paginator::place(const Band &band) {
  makeRoomFor(band);
  const bool unbreakable = band.keepTogether || band.pieces.size() == 1;
  for (const BandPiece &piece : band.pieces) {
    if (piece.height() > room() && hasBody_ && !unbreakable) {
      closePage();
      openPage();
      placePageHeader();
    }
    placePiece(piece);
    hasBody_ = true;
  }
  if (band.newPage == NewPage::After || band.newPage == NewPage::BeforeAfter)
    breakPending_ = true;
}

void Paginator::finish() {
  if (!open_ && pageNumber_ == 0)
    openPage();
  if (open_)
    closePage();
  const Variant total(pageNumber());
  document_.resolvePageCounts([&](const QString &format) { return formatFieldText(total, format); });
}

} // namespace kordel::engine

#include "engine/preview/PageView.h"

#include "engine/render/PageDocument.h"
#include "engine/render/PagePainter.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

namespace kordel::engine {

namespace {

const QColor kMarkFill(255, 200, 0, 110);
const QColor kMarkBorder(230, 120, 0);

} // namespace

PageView::PageView(std::shared_ptr<const PageDocument> document, QWidget *parent)
    : QWidget(parent), document_(std::move(document)), painter_(std::make_unique<PagePainter>(*document_)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFixedSize(pixelSize());
}

PageView::~PageView() = default;

void PageView::setPageIndex(int index) {
  if (index == pageIndex_)
    return;
  pageIndex_ = index;
  mark_.reset();
  setFixedSize(pixelSize());
  update();
}

void PageView::setScale(qreal pixelsPerTwip) {
  scale_ = pixelsPerTwip;
  setFixedSize(pixelSize());
  update();
}

void PageView::refresh() {
  setFixedSize(pixelSize());
  update();
}

void PageView::setMark(const std::optional<Box> &box) {
  mark_ = box;
  update();
}

QSize PageView::pixelSize() const {
  if (pageIndex_ < 0 || pageIndex_ >= document_->pageCount())
    return QSize(1, 1);
  const Page page = document_->page(pageIndex_);
  return QSize(std::max(1, int(std::lround(page.width() * scale_))),
               std::max(1, int(std::lround(page.height() * scale_))));
}

QRect PageView::toWidget(const Box &box) const {
  return QRectF(box.x * scale_, box.y * scale_, box.width * scale_, box.height * scale_).toAlignedRect();
}

void PageView::paintEvent(QPaintEvent *event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), Qt::white);
  if (pageIndex_ < 0 || pageIndex_ >= document_->pageCount())
    return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.save();
  painter.scale(scale_, scale_);
  // A page that cannot be painted (a font or image it lacks) stays as far as
  // it got: an exception must not leave the paint event.
  try {
    painter_->paint(painter, pageIndex_);
  } catch (...) {
  }
  painter.restore();
  if (mark_) {
    painter.setPen(QPen(kMarkBorder, 1));
    painter.setBrush(kMarkFill);
    painter.drawRect(toWidget(*mark_).adjusted(-1, -1, 1, 1));
  }
}

} // namespace kordel::engine

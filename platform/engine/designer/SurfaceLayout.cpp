#include "engine/designer/SurfaceLayout.h"

#include "engine/designer/ControlBox.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include <cmath>

namespace kordel::engine {

namespace {

// Room to drag the print width and the last section's height outwards.
constexpr qreal kSpareTwips = 1440;
constexpr int kSparePixels = 48;

} // namespace

void SurfaceLayout::update(const LayoutReport &report, qreal pixelsPerTwip, int titleHeight) {
  scale_ = pixelsPerTwip;
  printRight_ = report.printWidth * scale_;
  bands_.clear();
  qreal y = 0;
  for (const auto &section : report.sections()->all()) {
    Band band{section, QRectF(0, y, printRight_, titleHeight), QRectF()};
    y += titleHeight;
    band.body = QRectF(0, y, printRight_, std::max<qreal>(0, section->height * scale_));
    y += band.body.height();
    bands_.push_back(band);
  }
  size_ = QSize(int(std::ceil(printRight_ + kSpareTwips * scale_)), int(std::ceil(y)) + kSparePixels);
}

const SurfaceLayout::Band *SurfaceLayout::bandOf(const Section &section) const {
  for (const Band &band : bands_)
    if (band.section.get() == &section)
      return &band;
  return nullptr;
}

const SurfaceLayout::Band *SurfaceLayout::bandAt(qreal y) const {
  if (bands_.empty())
    return nullptr;
  for (const Band &band : bands_)
    if (y < band.body.bottom())
      return &band;
  return &bands_.back();
}

QRectF SurfaceLayout::toSurface(const Band &band, const QRectF &twips) const {
  return QRectF(band.body.left() + twips.left() * scale_, band.body.top() + twips.top() * scale_,
                twips.width() * scale_, twips.height() * scale_);
}

QPointF SurfaceLayout::toSurface(const Band &band, const QPointF &twips) const {
  return band.body.topLeft() + twips * scale_;
}

QPointF SurfaceLayout::toSection(const Band &band, const QPointF &pixel) const {
  return QPointF((pixel.x() - band.body.left()) / scale_, (pixel.y() - band.body.top()) / scale_);
}

QRectF SurfaceLayout::controlRect(const Control &control) const {
  const auto section = control.section();
  const Band *band = section ? bandOf(*section) : nullptr;
  return band ? toSurface(*band, designBox(control)) : QRectF();
}

} // namespace kordel::engine

#pragma once

#include "engine/render/Page.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace kordel::engine {

class PageDocument;
class PagePainter;

// One page of a document on the screen at a scale, with a marked box (the
// hit of a search). The widget's size is fixed to the page's at that scale.
class PageView : public QWidget {
  Q_OBJECT
public:
  PageView(std::shared_ptr<const PageDocument> document, QWidget *parent = nullptr);
  ~PageView() override;

  // The page shown, from 0.
  int pageIndex() const { return pageIndex_; }
  void setPageIndex(int index);
  // Screen pixels per twip.
  qreal scale() const { return scale_; }
  void setScale(qreal pixelsPerTwip);
  // The box to mark on the page shown, in twips; nothing to mark none.
  const std::optional<Box> &mark() const { return mark_; }
  void setMark(const std::optional<Box> &box);
  // Where a box of the page lands in the widget, in pixels.
  QRect toWidget(const Box &box) const;
  // Shows the page anew, for a document that has gained it or has had its
  // page counts filled in.
  void refresh();

protected:
  void paintEvent(QPaintEvent *event) override;

private:
  QSize pixelSize() const;

  std::shared_ptr<const PageDocument> document_;
  std::unique_ptr<PagePainter> painter_;
  int pageIndex_ = 0;
  qreal scale_ = 1.0 / 15; // 96 pixels per inch
  std::optional<Box> mark_;
};

} // namespace kordel::engine

#include "engine/designer/DesignView.h"

#include "engine/designer/DesignSurface.h"
#include "engine/designer/DragAutoScroll.h"
#include "engine/designer/Rulers.h"

#include <QGridLayout>
#include <QScrollArea>
#include <QScrollBar>

namespace kordel::engine {

namespace {

// Room kept around what the keyboard scrolls into view, in pixels.
constexpr int kRevealMargin = 24;

} // namespace

DesignView::DesignView(DesignerDocument &document, DesignerEvents *events, QWidget *parent)
    : QWidget(parent), scroll_(new QScrollArea(this)), surface_(new DesignSurface(document, events)) {
  setObjectName(QStringLiteral("DesignView"));
  scroll_->setObjectName(QStringLiteral("DesignScroll"));
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setBackgroundRole(QPalette::Dark);
  scroll_->setWidget(surface_);
  scroll_->setFocusProxy(surface_);
  horizontal_ = new Ruler(Qt::Horizontal, *surface_, this);
  vertical_ = new Ruler(Qt::Vertical, *surface_, this);
  auto *corner = new QWidget(this);
  corner->setObjectName(QStringLiteral("RulerCorner"));
  corner->setFixedSize(vertical_->sizeHint().width(), horizontal_->sizeHint().height());

  auto *grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(0);
  grid->addWidget(corner, 0, 0);
  grid->addWidget(horizontal_, 0, 1);
  grid->addWidget(vertical_, 1, 0);
  grid->addWidget(scroll_, 1, 1);
  setFocusProxy(surface_);
  autoScroll_ = new DragAutoScroll(*scroll_, *surface_);

  connect(scroll_->horizontalScrollBar(), &QScrollBar::valueChanged, this, &DesignView::updateRulers);
  connect(scroll_->verticalScrollBar(), &QScrollBar::valueChanged, this, &DesignView::updateRulers);
  connect(surface_, &DesignSurface::geometryChanged, this, &DesignView::updateRulers);
  connect(surface_, &DesignSurface::visibleRequested, this, [this](const QRect &rect) {
    scroll_->ensureVisible(rect.center().x(), rect.center().y(), rect.width() / 2 + kRevealMargin,
                           rect.height() / 2 + kRevealMargin);
  });
}

void DesignView::updateRulers() {
  horizontal_->update();
  vertical_->update();
}

} // namespace kordel::engine

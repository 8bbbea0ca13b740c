#include "engine/designer/DesignSurface.h"

#include "engine/designer/ControlBox.h"
#include "engine/designer/DesignerEvents.h"
#include "engine/designer/DesignerMessages.h"
#include "engine/designer/DesignerText.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/render/Page.h"

#include "core/Error.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace kordel::engine {

namespace {

constexpr int kZoomSteps[] = {25, 33, 50, 67, 75, 100, 125, 150, 200, 300, 400};
constexpr int kMinimumZoom = 25;
constexpr int kMaximumZoom = 400;
constexpr qreal kTwipsPerCentimetre = kTwipsPerInch / 2.54;
// Room above and below the title text of a band.
constexpr int kTitlePadding = 6;

bool isSection(const ObjectRef &object) { return dynamic_cast<const Section *>(object.get()) != nullptr; }

// A rectangle a thin line's box is found by: a line's box may have no
// width or height at all.
QRectF touchable(const QRectF &rect) { return rect.adjusted(-2, -2, 2, 2); }

} // namespace

DesignSurface::DesignSurface(DesignerDocument &document, DesignerEvents *events, QWidget *parent)
    : QWidget(parent), document_(document), events_(events) {
  setObjectName(QStringLiteral("DesignSurface"));
  setAccessibleName(designerText("Design surface"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  connect(&document_, &DesignerDocument::layoutChanged, this, &DesignSurface::layoutChangedOutside);
  connect(&document_, &DesignerDocument::selectionChanged, this, qOverload<>(&QWidget::update));
  relayout();
}

DesignSurface::~DesignSurface() {
  // A drag under way is put back: its Edit closes with the surface.
  restoreDrag();
}

bool DesignSurface::addsToSelection(Qt::KeyboardModifiers modifiers) {
  return modifiers & (Qt::ShiftModifier | Qt::ControlModifier);
}

// ---- settings ----

void DesignSurface::setGrid(const DesignGrid &grid) {
  grid_ = grid;
  grid_.gridX = std::max(1, grid_.gridX);
  grid_.gridY = std::max(1, grid_.gridY);
  grid_.rulerUnits = grid_.rulerUnits == 1 ? 1 : 0;
  update();
  emit geometryChanged();
}

QPointF DesignSurface::gridStep() const {
  const qreal unit = grid_.rulerUnits == 1 ? kTwipsPerCentimetre : qreal(kTwipsPerInch);
  return QPointF(unit / grid_.gridX, unit / grid_.gridY);
}

float DesignSurface::snap(float value, bool horizontal) const {
  if (!grid_.alignToGrid)
    return value;
  const qreal step = horizontal ? gridStep().x() : gridStep().y();
  return float(std::round(value / step) * step);
}

void DesignSurface::setZoom(int percent) {
  percent = std::clamp(percent, kMinimumZoom, kMaximumZoom);
  if (percent == zoom_)
    return;
  zoom_ = percent;
  relayout();
  update();
  emit zoomChanged(zoom_);
}

void DesignSurface::zoomIn() {
  for (const int step : kZoomSteps)
    if (step > zoom_)
      return setZoom(step);
}

void DesignSurface::zoomOut() {
  for (auto step = std::rbegin(kZoomSteps); step != std::rend(kZoomSteps); ++step)
    if (*step < zoom_)
      return setZoom(*step);
}

void DesignSurface::setTool(std::optional<QString> progId) {
  tool_ = std::move(progId);
  setCursor(tool_ ? Qt::CrossCursor : Qt::ArrowCursor);
}

void DesignSurface::relayout() {
  const qreal scale = zoom_ / 100.0 * logicalDpiX() / qreal(kTwipsPerInch);
  layout_.update(*document_.report(), scale, fontMetrics().height() + kTitlePadding);
  if (size() != layout_.size())
    setFixedSize(layout_.size());
  emit geometryChanged();
}

void DesignSurface::layoutChangedOutside() {
  try {
    // An undo or a load under an unfinished drag has replaced the objects
    // the drag holds: the drag is dropped, not put back.
    if (drag_.kind != Drag::None)
      takeDrag();
    renderer_.reset();
    relayout();
    update();
  } catch (...) {
    reportFailure();
  }
}

QRect DesignSurface::controlRect(const Control &control) const { return layout_.controlRect(control).toAlignedRect(); }

// ---- selection ----

void DesignSurface::selectAt(QPoint point, Qt::KeyboardModifiers modifiers) {
  const Hit hit = hitAt(point);
  ObjectRef target;
  if (hit.kind == Hit::Control || hit.kind == Hit::Handle)
    target = hit.control;
  else if (hit.kind == Hit::Title)
    target = hit.section;
  if (!target) {
    if (!addsToSelection(modifiers))
      document_.clearSelection();
    return;
  }
  const auto &selection = document_.selection();
  // Shift or Ctrl on the other kind than the selection's starts anew.
  if (addsToSelection(modifiers) && (selection.empty() || isSection(selection.front()) == isSection(target)))
    document_.toggle(target);
  else
    document_.select({target});
}

void DesignSurface::rubberBand(const QRect &rect, Qt::KeyboardModifiers modifiers) {
  std::vector<ObjectRef> chosen;
  if (addsToSelection(modifiers) && !document_.selection().empty() && !isSection(document_.selection().front()))
    chosen = document_.selection();
  if (!rect.isEmpty())
    for (const SurfaceLayout::Band &band : layout_.bands())
      for (const auto &control : band.section->controls()->all())
        if (touchable(layout_.controlRect(*control)).intersects(rect))
          chosen.push_back(control);
  document_.select(std::move(chosen));
}

void DesignSurface::selectNext(bool forward) {
  std::vector<ObjectRef> order;
  for (const auto &section : document_.report()->sections()->all()) {
    order.push_back(section);
    for (const auto &control : section->controls()->all())
      order.push_back(control);
  }
  if (order.empty())
    return;
  const int count = int(order.size());
  int at = forward ? -1 : count;
  for (int i = 0; i < count; ++i)
    if (document_.isSelected(*order[std::size_t(i)])) {
      at = i;
      if (!forward)
        break;
    }
  document_.select({order[std::size_t(((forward ? at + 1 : at - 1) + count) % count)]});
  revealSelection();
}

void DesignSurface::revealSelection() {
  QRectF shown;
  for (const ObjectRef &object : document_.selection()) {
    if (const auto *control = dynamic_cast<const Control *>(object.get()))
      shown |= layout_.controlRect(*control);
    else if (const auto *section = dynamic_cast<const Section *>(object.get()))
      if (const SurfaceLayout::Band *band = layout_.bandOf(*section))
        shown |= band->title;
  }
  if (!shown.isNull())
    emit visibleRequested(shown.toAlignedRect());
}

// ---- editing ----

std::vector<DesignSurface::Origin> DesignSurface::selectedOrigins() const {
  std::vector<Origin> origins;
  for (const ObjectRef &object : document_.selection())
    if (auto control = std::dynamic_pointer_cast<engine::Control>(object))
      origins.push_back(
          Origin{control, control->section(), designBox(*control),
                 control->kind() == ControlKind::Line ? lineEnds(static_cast<const Line &>(*control)) : QLineF()});
  return origins;
}

std::vector<std::shared_ptr<Section>> DesignSurface::growSectionsFor(const std::vector<Origin> &origins) {
  std::vector<std::shared_ptr<Section>> grown;
  for (const Origin &origin : origins) {
    const auto section = origin.control->section();
    const float bottom = float(designBox(*origin.control).bottom());
    if (!section || bottom <= section->height)
      continue;
    section->height = bottom;
    if (std::find(grown.begin(), grown.end(), section) == grown.end())
      grown.push_back(section);
  }
  return grown;
}

void DesignSurface::raiseChanged(const ObjectRef &object, int kind) {
  if (events_)
    events_->layoutChanged(object, kind);
}

void DesignSurface::raiseGeometryChanges(const std::vector<Origin> &origins,
                                         const std::vector<std::shared_ptr<Section>> &grown) {
  for (const Origin &origin : origins) {
    const QRectF now = designBox(*origin.control);
    if (now.topLeft() != origin.box.topLeft() || origin.control->section() != origin.section)
      raiseChanged(origin.control, DesignChange::ControlMoved);
    if (now.size() != origin.box.size())
      raiseChanged(origin.control, DesignChange::ControlResized);
  }
  for (const auto &section : grown)
    raiseChanged(section, DesignChange::SectionResized);
}

void DesignSurface::moveSelection(float dx, float dy) {
  const std::vector<Origin> origins = selectedOrigins();
  // Nothing goes past its section's top or left edge.
  for (const Origin &origin : origins) {
    dx = std::max(dx, -float(origin.box.left()));
    dy = std::max(dy, -float(origin.box.top()));
  }
  if (origins.empty() || (dx == 0 && dy == 0))
    return;
  std::vector<std::shared_ptr<Section>> grown;
  {
    DesignerDocument::Edit edit(document_, designerText("Move"));
    for (const Origin &origin : origins)
      setDesignBox(*origin.control, origin.box.translated(dx, dy));
    grown = growSectionsFor(origins);
  }
  raiseGeometryChanges(origins, grown);
}

void DesignSurface::resizeSelection(float dWidth, float dHeight) {
  const auto sections = document_.selectedSections();
  if (!sections.empty()) {
    for (const auto &section : sections)
      setSectionHeight(section, section->height + dHeight);
    return;
  }
  const std::vector<Origin> origins = selectedOrigins();
  if (origins.empty() || (dWidth == 0 && dHeight == 0))
    return;
  std::vector<std::shared_ptr<Section>> grown;
  {
    DesignerDocument::Edit edit(document_, designerText("Size"));
    for (const Origin &origin : origins)
      setDesignBox(*origin.control,
                   QRectF(origin.box.topLeft(), QSizeF(std::max<qreal>(0, origin.box.width() + dWidth),
                                                       std::max<qreal>(0, origin.box.height() + dHeight))));
    grown = growSectionsFor(origins);
  }
  raiseGeometryChanges(origins, grown);
}

void DesignSurface::setSectionHeight(const std::shared_ptr<Section> &section, float height) {
  height = std::max(height, contentBottom(*section));
  if (height == section->height)
    return;
  {
    DesignerDocument::Edit edit(document_, designerText("Section height"));
    section->height = height;
  }
  raiseChanged(section, DesignChange::SectionResized);
}

bool DesignSurface::setPrintWidth(float width) {
  const auto &report = document_.report();
  width = std::max({width, contentRight(*report), float(gridStep().x())});
  if (width == report->printWidth)
    return true;
  if (events_ && !events_->validateChange(report, DesignChange::PrintWidth))
    return false;
  {
    DesignerDocument::Edit edit(document_, designerText("Print width"));
    report->printWidth = width;
  }
  raiseChanged(report, DesignChange::PrintWidth);
  return true;
}

std::shared_ptr<Control> DesignSurface::addControl(const std::shared_ptr<Section> &section, const QString &progId,
                                                   QPointF from, QPointF to) {
  std::shared_ptr<Control> control;
  std::vector<std::shared_ptr<Section>> grown;
  {
    DesignerDocument::Edit edit(document_, designerText("Insert"));
    control = section->controls()->add(progId);
    // A new label or field shows its name until it is given its own text.
    if (control->kind() == ControlKind::Label)
      static_cast<Label &>(*control).caption = control->name;
    else if (control->kind() == ControlKind::Field)
      static_cast<Field &>(*control).text = control->name;
    if (control->kind() == ControlKind::Line)
      setLineEnds(static_cast<Line &>(*control), QLineF(from, to));
    else
      setDesignBox(*control, QRectF(from, to).normalized());
    grown = growSectionsFor({Origin{control, section, QRectF(), QLineF()}});
  }
  raiseChanged(control, DesignChange::ControlAdded);
  for (const auto &section : grown)
    raiseChanged(section, DesignChange::SectionResized);
  document_.select({control});
  return control;
}

// ---- context menus ----

void DesignSurface::requestMenu(const ObjectRef &source, int menuType, QPoint globalPosition) {
  if (events_ && events_->contextMenuOpen(source, menuType, globalPosition))
    return;
  emit contextMenuRequested(source, menuType, globalPosition);
}

void DesignSurface::contextMenuAt(QPoint point, QPoint globalPosition) {
  const Hit hit = hitAt(point);
  if (hit.control) {
    if (!document_.isSelected(*hit.control))
      document_.select({hit.control});
    requestMenu(hit.control, DesignMenu::Control, globalPosition);
  } else if (hit.section) {
    if (!document_.isSelected(*hit.section))
      document_.select({hit.section});
    requestMenu(hit.section, DesignMenu::Section, globalPosition);
  } else {
    requestMenu(document_.report(), DesignMenu::Surface, globalPosition);
  }
}

void DesignSurface::contextMenuForSelection() {
  const auto &selection = document_.selection();
  if (selection.empty()) {
    requestMenu(document_.report(), DesignMenu::Surface, mapToGlobal(visibleRegion().boundingRect().center()));
    return;
  }
  const ObjectRef &first = selection.front();
  QRectF place;
  if (const auto *control = dynamic_cast<const Control *>(first.get()))
    place = layout_.controlRect(*control);
  else if (const SurfaceLayout::Band *band = layout_.bandOf(static_cast<const Section &>(*first)))
    place = band->title;
  requestMenu(first, isSection(first) ? DesignMenu::Section : DesignMenu::Control,
              mapToGlobal(place.center().toPoint()));
}

// ---- keys, wheel and the event boundary ----

bool DesignSurface::event(QEvent *event) {
  // Tab and Shift+Tab walk the sections and controls; Ctrl+Tab leaves.
  if (event->type() == QEvent::KeyPress) {
    const auto *key = static_cast<QKeyEvent *>(event);
    if ((key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) &&
        !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
      selectNext(key->key() == Qt::Key_Tab && !(key->modifiers() & Qt::ShiftModifier));
      return true;
    }
  }
  return QWidget::event(event);
}

void DesignSurface::keyMoveOrResize(int key, Qt::KeyboardModifiers modifiers) {
  const QPointF step = modifiers & Qt::ControlModifier ? QPointF(1, 1) / layout_.scale() : gridStep();
  const float dx = key == Qt::Key_Left ? -step.x() : key == Qt::Key_Right ? step.x() : 0;
  const float dy = key == Qt::Key_Up ? -step.y() : key == Qt::Key_Down ? step.y() : 0;
  if (modifiers & Qt::ShiftModifier)
    resizeSelection(dx, dy);
  else
    moveSelection(dx, dy);
  revealSelection();
}

void DesignSurface::keyPressEvent(QKeyEvent *event) {
  try {
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    const bool control = modifiers & Qt::ControlModifier;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
      if (drag_.kind == Drag::None)
        keyMoveOrResize(event->key(), modifiers);
      return;
    case Qt::Key_A:
      if (!control)
        break;
      document_.selectAll();
      return;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      if (!control)
        break;
      zoomIn();
      return;
    case Qt::Key_Minus:
      if (!control)
        break;
      zoomOut();
      return;
    case Qt::Key_Escape:
      if (drag_.kind != Drag::None)
        cancelDrag();
      else if (tool_) {
        setTool(std::nullopt);
        emit toolReset();
      } else
        document_.clearSelection();
      return;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      if (!control)
        break;
      QWidget::focusNextPrevChild(event->key() == Qt::Key_Tab && !(modifiers & Qt::ShiftModifier));
      return;
    case Qt::Key_Menu: contextMenuForSelection(); return;
    case Qt::Key_F10:
      if (!(modifiers & Qt::ShiftModifier))
        break;
      contextMenuForSelection();
      return;
    default: break;
    }
    QWidget::keyPressEvent(event);
  } catch (...) {
    reportFailure();
  }
}

void DesignSurface::wheelEvent(QWheelEvent *event) {
  if (!(event->modifiers() & Qt::ControlModifier)) {
    event->ignore(); // the scroll area scrolls
    return;
  }
  if (event->angleDelta().y() > 0)
    zoomIn();
  else if (event->angleDelta().y() < 0)
    zoomOut();
  event->accept();
}

void DesignSurface::contextMenuEvent(QContextMenuEvent *event) {
  try {
    if (event->reason() == QContextMenuEvent::Mouse)
      contextMenuAt(event->pos(), event->globalPos());
    else
      contextMenuForSelection();
    event->accept();
  } catch (...) {
    reportFailure();
  }
}

void DesignSurface::reportFailure() {
  const Error error = pendingError();
  if (!events_)
    return; // nobody to tell: the surface stays as it is
  try {
    tellUser(events_, DesignMessage::ActionFailed, error.description());
  } catch (...) {
    // A message handler that fails has nobody left to tell.
  }
}

} // namespace kordel::engine

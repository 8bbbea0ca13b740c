// The design surface's mouse: what a press finds, and the drags it starts.
//
// Design note. A left press decides what its drag will be from what lies
// under it (hitAt, in this order: the handles of selected controls, a
// section's bottom edge, the print width's right edge, controls topmost
// first, a band's title, a band's body); with a toolbox tool set, any
// press in a section's body is a drawing. The drag waits as Pending until
// the mouse has moved a few pixels: a press and release in place is a
// click (select, narrow a selection to the control clicked, clear it, or
// draw a control of the default size).
//
// Once started, Move, Resize, SectionHeight and PrintWidth open one Edit
// of the document and hold it until the release, so a drag is one step of
// the history whatever it passed through. Every mouse move places what is
// dragged from where it was at the press (the origins), never from the
// last move, so rounding and snapping cannot creep; the one control the
// mouse holds snaps to the grid (for a resize, the edge it holds) and the
// others follow it by the same distance; a line's end handle moves that
// end alone. PrintWidth asks the owner when it starts (validate change 6);
// a refusal ends the drag with nothing changed, else the release tells the
// owner of the new width (layout changed 6). RubberBand and Draw change
// nothing while the mouse moves: they show a rectangle, and act at the
// release.
//
// A move shows its controls over their own section while the mouse moves;
// at the release, a move that ends over another section takes them out of
// theirs and appends them to that one, keeping their names. Then sections
// grow to hold what hangs below them, the Edit closes, and the events
// follow, in the order of the controls: moved, resized, section resized.
// Escape or another button puts the origins back and closes the Edit with
// nothing changed, so no step is left. An undo or a load while a drag is
// under way replaces the objects it holds: the drag is dropped
// (layoutChangedOutside).

#include "engine/designer/DesignSurface.h"

#include "engine/designer/ControlBox.h"
#include "engine/designer/DesignerEvents.h"
#include "engine/designer/DesignerText.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include <QMouseEvent>

#include <algorithm>

namespace kordel::engine {

namespace {

// How far the mouse moves before a press becomes a drag, in pixels.
constexpr int kDragDistance = 3;
// How near an edge the mouse takes hold of it, in pixels.
constexpr qreal kEdgeGrip = 3;
// What a repaint of dragged controls takes beyond their boxes: handles
// and thick strokes.
constexpr int kDragMargin = 8;

// The handles of a line's ends.
constexpr int kFirstEnd = 8;
constexpr int kSecondEnd = 9;

bool handleMovesLeft(int handle) { return handle == 0 || handle == 6 || handle == 7; }
bool handleMovesRight(int handle) { return handle >= 2 && handle <= 4; }
bool handleMovesTop(int handle) { return handle >= 0 && handle <= 2; }
bool handleMovesBottom(int handle) { return handle >= 4 && handle <= 6; }

// The size a click with a tool draws a control of that ProgID.
QSizeF defaultSize(const QString &progId) {
  switch (createControl(progId)->kind()) {
  case ControlKind::Line: return QSizeF(1440, 0);
  case ControlKind::Shape: return QSizeF(1440, 720);
  case ControlKind::Picture: return QSizeF(1440, 1440);
  case ControlKind::SubReport: return QSizeF(4320, 1440);
  default: return QSizeF(1440, 270);
  }
}

Qt::CursorShape handleCursor(int handle) {
  if (handle >= kFirstEnd)
    return Qt::CrossCursor;
  static constexpr Qt::CursorShape shapes[] = {Qt::SizeFDiagCursor, Qt::SizeVerCursor,   Qt::SizeBDiagCursor,
                                               Qt::SizeHorCursor,   Qt::SizeFDiagCursor, Qt::SizeVerCursor,
                                               Qt::SizeBDiagCursor, Qt::SizeHorCursor};
  return shapes[handle];
}

} // namespace

// ---- what lies where ----

std::vector<std::pair<int, QRectF>> DesignSurface::handles(const engine::Control &control) const {
  const auto around = [](QPointF centre) {
    return QRectF(centre.x() - kHandleSize / 2, centre.y() - kHandleSize / 2, kHandleSize, kHandleSize);
  };
  std::vector<std::pair<int, QRectF>> found;
  const auto section = control.section();
  const SurfaceLayout::Band *band = section ? layout_.bandOf(*section) : nullptr;
  if (!band)
    return found;
  if (control.kind() == ControlKind::Line) {
    const QLineF ends = lineEnds(static_cast<const Line &>(control));
    found.emplace_back(kFirstEnd, around(layout_.toSurface(*band, ends.p1())));
    found.emplace_back(kSecondEnd, around(layout_.toSurface(*band, ends.p2())));
    return found;
  }
  const QRectF box = layout_.controlRect(control);
  for (int handle = 0; handle < 8; ++handle) {
    const qreal x = handleMovesLeft(handle) ? box.left() : handleMovesRight(handle) ? box.right() : box.center().x();
    const qreal y = handleMovesTop(handle) ? box.top() : handleMovesBottom(handle) ? box.bottom() : box.center().y();
    found.emplace_back(handle, around(QPointF(x, y)));
  }
  return found;
}

DesignSurface::Hit DesignSurface::hitAt(QPointF point) const {
  Hit hit;
  for (const ObjectRef &object : document_.selection())
    if (auto control = std::dynamic_pointer_cast<engine::Control>(object))
      for (const auto &[handle, rect] : handles(*control))
        if (rect.contains(point)) {
          hit.kind = Hit::Handle;
          hit.control = control;
          hit.section = control->section();
          hit.handle = handle;
          return hit;
        }
  for (const SurfaceLayout::Band &band : layout_.bands())
    if (std::abs(point.y() - band.body.bottom()) <= kEdgeGrip && point.x() <= layout_.printRight() + kEdgeGrip) {
      hit.kind = Hit::SectionEdge;
      hit.section = band.section;
      return hit;
    }
  if (std::abs(point.x() - layout_.printRight()) <= kEdgeGrip && point.y() <= layout_.bottom()) {
    hit.kind = Hit::PrintEdge;
    return hit;
  }
  const SurfaceLayout::Band *band = layout_.bandAt(point.y());
  if (!band || point.y() < band->title.top() || point.y() >= band->body.bottom())
    return hit;
  hit.section = band->section;
  if (point.y() < band->body.top()) {
    hit.kind = Hit::Title;
    return hit;
  }
  const auto &controls = band->section->controls()->all();
  for (auto control = controls.rbegin(); control != controls.rend(); ++control) {
    const QRectF box = layout_.controlRect(**control);
    if (box.adjusted(-2, -2, 2, 2).contains(point)) {
      hit.kind = Hit::Control;
      hit.control = *control;
      return hit;
    }
  }
  hit.kind = point.x() <= layout_.printRight() ? Hit::Body : Hit::Nothing;
  if (hit.kind == Hit::Nothing)
    hit.section.reset();
  return hit;
}

Qt::CursorShape DesignSurface::cursorAt(QPoint point) const {
  if (tool_)
    return Qt::CrossCursor;
  const Hit hit = hitAt(point);
  switch (hit.kind) {
  case Hit::Handle: return handleCursor(hit.handle);
  case Hit::SectionEdge: return Qt::SizeVerCursor;
  case Hit::PrintEdge: return Qt::SizeHorCursor;
  case Hit::Control: return Qt::SizeAllCursor;
  default: return Qt::ArrowCursor;
  }
}

// ---- the mouse ----

void DesignSurface::mousePressEvent(QMouseEvent *event) {
  try {
    setFocus(Qt::MouseFocusReason);
    if (event->button() == Qt::LeftButton)
      press(event->position().toPoint(), event->modifiers());
    else
      cancelDrag(); // another button stops a drag
  } catch (...) {
    cancelDrag();
    reportFailure();
  }
}

void DesignSurface::mouseMoveEvent(QMouseEvent *event) {
  try {
    if (event->buttons() & Qt::LeftButton)
      dragTo(event->position().toPoint());
    else
      setCursor(cursorAt(event->position().toPoint()));
  } catch (...) {
    cancelDrag();
    reportFailure();
  }
}

void DesignSurface::mouseReleaseEvent(QMouseEvent *event) {
  try {
    if (event->button() == Qt::LeftButton)
      release(event->position().toPoint());
  } catch (...) {
    cancelDrag();
    reportFailure();
  }
}

// ---- the drag ----

void DesignSurface::followDrag(QPoint point) {
  try {
    dragTo(point);
  } catch (...) {
    cancelDrag();
    reportFailure();
  }
}

DesignSurface::Drag DesignSurface::takeDrag() {
  Drag taken;
  std::swap(taken, drag_);
  if (taken.kind != Drag::None && taken.kind != Drag::Pending)
    emit dragEnded();
  return taken;
}

void DesignSurface::press(QPoint point, Qt::KeyboardModifiers modifiers) {
  cancelDrag();
  drag_.press = drag_.at = point;
  drag_.modifiers = modifiers;
  if (tool_) {
    const SurfaceLayout::Band *band = layout_.bandAt(point.y());
    if (!band || !band->body.contains(point))
      return;
    drag_.hit.section = band->section;
    drag_.started = Drag::Draw;
    drag_.kind = Drag::Pending;
    return;
  }
  drag_.hit = hitAt(point);
  switch (drag_.hit.kind) {
  case Hit::Handle: drag_.started = Drag::Resize; break;
  case Hit::SectionEdge:
    drag_.started = Drag::SectionHeight;
    drag_.original = drag_.hit.section->height;
    break;
  case Hit::PrintEdge:
    drag_.started = Drag::PrintWidth;
    drag_.original = document_.report()->printWidth;
    break;
  case Hit::Control:
    if (addsToSelection(modifiers)) {
      selectAt(point, modifiers);
      if (!document_.isSelected(*drag_.hit.control))
        return; // taken out of the selection: nothing to drag
    } else if (!document_.isSelected(*drag_.hit.control)) {
      document_.select({drag_.hit.control});
    } else {
      drag_.narrowOnRelease = document_.selection().size() > 1;
    }
    drag_.started = Drag::Move;
    break;
  case Hit::Title: selectAt(point, modifiers); return;
  default: drag_.started = Drag::RubberBand; break;
  }
  if (drag_.started == Drag::Move || drag_.started == Drag::Resize)
    drag_.origins = selectedOrigins();
  drag_.kind = Drag::Pending;
}

void DesignSurface::dragTo(QPoint point) {
  if (drag_.kind == Drag::None)
    return;
  drag_.at = point;
  if (drag_.kind == Drag::Pending) {
    if ((point - drag_.press).manhattanLength() < kDragDistance)
      return;
    startDrag();
  }
  switch (drag_.kind) {
  case Drag::Move: applyMove(); break;
  case Drag::Resize: applyResize(); break;
  case Drag::SectionHeight: applySectionHeight(); break;
  case Drag::PrintWidth: applyPrintWidth(); break;
  case Drag::RubberBand:
  case Drag::Draw: {
    const QRect now = QRect(drag_.press, drag_.at).normalized().adjusted(-2, -2, 2, 2);
    update(drag_.shown | now);
    drag_.shown = now;
    break;
  }
  default: break;
  }
  if (isDragging())
    emit dragMoved(point);
}

void DesignSurface::startDrag() {
  drag_.kind = drag_.started;
  QString label;
  switch (drag_.kind) {
  case Drag::Move: label = designerText("Move"); break;
  case Drag::Resize: label = designerText("Size"); break;
  case Drag::SectionHeight: label = designerText("Section height"); break;
  case Drag::PrintWidth:
    if (events_ && !events_->validateChange(document_.report(), DesignChange::PrintWidth)) {
      takeDrag();
      return;
    }
    label = designerText("Print width");
    break;
  default: return;
  }
  drag_.edit = std::make_unique<DesignerDocument::Edit>(document_, label);
  drag_.shown = draggedRect();
}

void DesignSurface::release(QPoint point) {
  if (drag_.kind == Drag::None)
    return;
  dragTo(point);
  std::vector<std::shared_ptr<Section>> grown;
  if (drag_.kind == Drag::Move)
    grown = finishMove();
  else if (drag_.kind == Drag::Resize)
    grown = growSectionsFor(drag_.origins);
  Drag done = takeDrag();
  // The drag's one step of the history.
  done.edit.reset();
  update();
  switch (done.kind) {
  case Drag::Pending: clicked(done); break;
  case Drag::Move:
  case Drag::Resize: raiseGeometryChanges(done.origins, grown); break;
  case Drag::SectionHeight:
    if (done.hit.section->height != done.original)
      raiseChanged(done.hit.section, DesignChange::SectionResized);
    break;
  case Drag::PrintWidth:
    if (document_.report()->printWidth != done.original)
      raiseChanged(document_.report(), DesignChange::PrintWidth);
    break;
  case Drag::RubberBand: rubberBand(QRect(done.press, done.at).normalized(), done.modifiers); break;
  case Drag::Draw: draw(done); break;
  default: break;
  }
}

void DesignSurface::clicked(const Drag &done) {
  switch (done.started) {
  case Drag::Move:
    if (done.narrowOnRelease)
      document_.select({done.hit.control});
    break;
  case Drag::RubberBand: selectAt(done.press, done.modifiers); break;
  case Drag::Draw: draw(done); break;
  default: break;
  }
}

void DesignSurface::restoreDrag() {
  if (drag_.kind == Drag::None)
    return;
  for (const Origin &origin : drag_.origins)
    if (origin.control->kind() == ControlKind::Line)
      setLineEnds(static_cast<Line &>(*origin.control), origin.ends);
    else
      setDesignBox(*origin.control, origin.box);
  if (drag_.started == Drag::SectionHeight)
    drag_.hit.section->height = drag_.original;
  else if (drag_.started == Drag::PrintWidth)
    document_.report()->printWidth = drag_.original;
  Drag dropped = takeDrag();
  // Everything is back: the Edit closes without a step.
  dropped.edit.reset();
}

void DesignSurface::cancelDrag() {
  if (drag_.kind == Drag::None)
    return;
  restoreDrag();
  relayout();
  update();
}

QRect DesignSurface::draggedRect() const {
  QRectF rect;
  for (const Origin &origin : drag_.origins)
    rect |= layout_.controlRect(*origin.control);
  return rect.toAlignedRect().adjusted(-kDragMargin, -kDragMargin, kDragMargin, kDragMargin);
}

void DesignSurface::repaintDragged() {
  const QRect now = draggedRect();
  update(drag_.shown | now);
  drag_.shown = now;
}

// ---- moving ----

std::vector<DesignSurface::Placement> DesignSurface::movePlacements() const {
  const SurfaceLayout::Band *target = layout_.bandAt(drag_.at.y());
  const auto anchor = std::find_if(drag_.origins.begin(), drag_.origins.end(),
                                   [&](const Origin &origin) { return origin.control == drag_.hit.control; });
  if (!target || anchor == drag_.origins.end())
    return {};
  const qreal scale = layout_.scale();
  const QPointF delta = QPointF(drag_.at - drag_.press) / scale;
  // Over another section than the one pressed in, everything goes there.
  const bool across = target->section != anchor->section;
  std::vector<Placement> placements;
  for (const Origin &origin : drag_.origins) {
    const SurfaceLayout::Band *own = layout_.bandOf(*origin.section);
    if (!own)
      return {};
    const SurfaceLayout::Band &to = across ? *target : *own;
    placements.push_back(
        Placement{to.section, origin.box.topLeft() + delta + QPointF(0, (own->body.top() - to.body.top()) / scale)});
  }
  const QPointF held = placements[std::size_t(anchor - drag_.origins.begin())].topLeft;
  QPointF correction = QPointF(snap(float(held.x()), true), snap(float(held.y()), false)) - held;
  // Nothing goes past its section's top or left edge.
  for (const Placement &placement : placements) {
    correction.setX(std::max(correction.x(), -placement.topLeft.x()));
    correction.setY(std::max(correction.y(), -placement.topLeft.y()));
  }
  for (Placement &placement : placements)
    placement.topLeft += correction;
  return placements;
}

void DesignSurface::applyMove() {
  const std::vector<Placement> placements = movePlacements();
  for (std::size_t i = 0; i < placements.size(); ++i) {
    const Origin &origin = drag_.origins[i];
    const SurfaceLayout::Band *own = layout_.bandOf(*origin.section);
    const SurfaceLayout::Band *to = layout_.bandOf(*placements[i].section);
    // Shown over its own section until the release moves it over.
    const QPointF shown = placements[i].topLeft + QPointF(0, (to->body.top() - own->body.top()) / layout_.scale());
    setDesignBox(*origin.control, QRectF(shown, origin.box.size()));
  }
  repaintDragged();
}

std::vector<std::shared_ptr<Section>> DesignSurface::finishMove() {
  const std::vector<Placement> placements = movePlacements();
  for (std::size_t i = 0; i < placements.size(); ++i) {
    const Origin &origin = drag_.origins[i];
    if (placements[i].section != origin.section) {
      origin.section->controls()->remove(origin.control->name);
      placements[i].section->controls()->append(origin.control);
    }
    setDesignBox(*origin.control, QRectF(placements[i].topLeft, origin.box.size()));
  }
  return growSectionsFor(drag_.origins);
}

// ---- sizing ----

void DesignSurface::applyResize() {
  const auto anchor = std::find_if(drag_.origins.begin(), drag_.origins.end(),
                                   [&](const Origin &origin) { return origin.control == drag_.hit.control; });
  if (anchor == drag_.origins.end())
    return;
  const int handle = drag_.hit.handle;
  const QPointF delta = QPointF(drag_.at - drag_.press) / layout_.scale();
  if (handle == kFirstEnd || handle == kSecondEnd) {
    // A line's end goes where the mouse takes it; the other end stays.
    QLineF ends = anchor->ends;
    const QPointF end = (handle == kFirstEnd ? ends.p1() : ends.p2()) + delta;
    const QPointF snapped(std::max(0.0f, snap(float(end.x()), true)), std::max(0.0f, snap(float(end.y()), false)));
    if (handle == kFirstEnd)
      ends.setP1(snapped);
    else
      ends.setP2(snapped);
    setLineEnds(static_cast<Line &>(*anchor->control), ends);
    repaintDragged();
    return;
  }
  // The edges the handle holds move as the held control's snap.
  const auto moved = [&](qreal edge, qreal by, bool horizontal) { return snap(float(edge + by), horizontal) - edge; };
  const qreal left = handleMovesLeft(handle) ? moved(anchor->box.left(), delta.x(), true) : 0;
  const qreal right = handleMovesRight(handle) ? moved(anchor->box.right(), delta.x(), true) : 0;
  const qreal top = handleMovesTop(handle) ? moved(anchor->box.top(), delta.y(), false) : 0;
  const qreal bottom = handleMovesBottom(handle) ? moved(anchor->box.bottom(), delta.y(), false) : 0;
  for (const Origin &origin : drag_.origins) {
    const QRectF &box = origin.box;
    // Edges stop at the opposite edge and at the section's top and left.
    const qreal newLeft = std::clamp(box.left() + left, 0.0, box.right());
    const qreal newTop = std::clamp(box.top() + top, 0.0, box.bottom());
    const qreal newRight = std::max(box.right() + right, newLeft);
    const qreal newBottom = std::max(box.bottom() + bottom, newTop);
    setDesignBox(*origin.control, QRectF(QPointF(newLeft, newTop), QPointF(newRight, newBottom)));
  }
  repaintDragged();
}

void DesignSurface::applySectionHeight() {
  const auto &section = drag_.hit.section;
  const float height = snap(drag_.original + float((drag_.at.y() - drag_.press.y()) / layout_.scale()), false);
  section->height = std::max({height, contentBottom(*section), 0.0f});
  relayout();
  update();
}

void DesignSurface::applyPrintWidth() {
  const auto &report = document_.report();
  const float width = snap(drag_.original + float((drag_.at.x() - drag_.press.x()) / layout_.scale()), true);
  report->printWidth = std::max({width, contentRight(*report), float(gridStep().x())});
  relayout();
  update();
}

// ---- drawing with a tool ----

void DesignSurface::draw(const Drag &done) {
  const SurfaceLayout::Band *band = layout_.bandOf(*done.hit.section);
  if (!tool_ || !band)
    return;
  const QString progId = *tool_;
  setTool(std::nullopt);
  emit toolReset();
  const auto snapped = [&](QPointF point) {
    return QPointF(std::max(0.0f, snap(float(point.x()), true)), std::max(0.0f, snap(float(point.y()), false)));
  };
  const QPointF from = snapped(layout_.toSection(*band, done.press));
  const QPointF to = done.kind == Drag::Pending
                         ? from + QPointF(defaultSize(progId).width(), defaultSize(progId).height())
                         : snapped(layout_.toSection(*band, done.at));
  // A copy: the layout's bands are made anew when the control is added.
  const std::shared_ptr<Section> section = band->section;
  addControl(section, progId, from, to);
}

} // namespace kordel::engine

#pragma once

#include "engine/designer/DesignRenderer.h"
#include "engine/designer/DesignerDocument.h"
#include "engine/designer/SurfaceLayout.h"

#include "core/Object.h"

#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

namespace kordel::engine {

class Control;
class DesignerEvents;
class Section;

// The grid of the design surface. gridX and gridY are divisions of one
// ruler unit (an inch, or a centimetre); controls snap to it when
// alignToGrid is on.
struct DesignGrid {
  int gridX = 16;
  int gridY = 16;
  bool showGrid = true;
  bool alignToGrid = true;
  int rulerUnits = 0; // 0 inches, 1 centimetres
};

// The surface the layout is designed on: the sections as bands, each with
// a title bar and a body whose bottom edge drags the section's height, the
// print width as the bodies' width with its right edge draggable, and the
// controls drawn by the code that prints them. Controls are selected,
// moved and sized by mouse and keys, drawn from the toolbox's tool, and
// every change is one step of the document's history, asked for and told
// of through the designer's events (events may be null: nothing is asked
// and nothing told).
//
// Keys: arrows move the selection a grid step (with Ctrl a pixel), Shift
// and arrows size it (a selected section: its height); Tab and Shift+Tab
// walk the sections and their controls, Ctrl+Tab leaves the surface;
// Ctrl+A selects every control; Ctrl and plus or minus (or the wheel)
// zoom; Escape puts a drag back, drops the tool or clears the selection;
// the menu key and Shift+F10 open the selection's context menu.
//
// The operations below are what the mouse and keys do; points are in the
// surface's pixels, lengths in twips.
class DesignSurface : public QWidget {
  Q_OBJECT
public:
  DesignSurface(DesignerDocument &document, DesignerEvents *events, QWidget *parent = nullptr);
  ~DesignSurface() override;

  void setGrid(const DesignGrid &grid);
  const DesignGrid &grid() const { return grid_; }
  // One grid step, horizontally and vertically, in twips.
  QPointF gridStep() const;
  // The zoom in percent, kept within 25 to 400.
  void setZoom(int percent);
  int zoom() const { return zoom_; }
  void zoomIn();
  void zoomOut();
  qreal pixelsPerTwip() const { return layout_.scale(); }
  // The ProgID the next click or drag in a section draws; nothing for
  // selecting. Drawing a control resets it.
  void setTool(std::optional<QString> progId);
  const std::optional<QString> &tool() const { return tool_; }

  const SurfaceLayout &surfaceLayout() const { return layout_; }
  // A control's design box on the surface, in pixels.
  QRect controlRect(const Control &control) const;

  // ---- selection
  // A click: a control, a section's title, or nothing. Shift or Ctrl adds
  // or takes out what was clicked; a plain click selects only it.
  void selectAt(QPoint point, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  // Selects the controls the rectangle touches, in any section; with Shift
  // or Ctrl they are added to the selection.
  void rubberBand(const QRect &rect, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  // Selects the next (or previous) section or control in the layout's
  // order: each section, then its controls.
  void selectNext(bool forward);

  // ---- editing; each is one step of the history. Controls stop at their
  // section's top and left edges, and a section grows to hold what is moved
  // or sized below its bottom.
  // Moves the selected controls, within their sections.
  void moveSelection(float dx, float dy);
  // Sizes the selected controls by their right and bottom edges, or the
  // selected sections by their height.
  void resizeSelection(float dWidth, float dHeight);
  // No lower than the bottom of the section's controls.
  void setSectionHeight(const std::shared_ptr<Section> &section, float height);
  // No narrower than the rightmost control or a grid step. The owner is
  // asked first and told after (kind 6); false when it refused.
  bool setPrintWidth(float width);
  // A new control of the ProgID in the section, named as the layout names
  // new controls, in the box the two corners span (twips in the section);
  // a line runs from the one to the other. Raises ControlAdded and selects
  // the control.
  std::shared_ptr<Control> addControl(const std::shared_ptr<Section> &section, const QString &progId, QPointF from,
                                      QPointF to);

  // ---- the mouse's drag
  // Whether a drag is under way: the mouse moved far enough after a press
  // to move, size, draw or band, and is not released yet.
  bool isDragging() const { return drag_.kind != Drag::None && drag_.kind != Drag::Pending; }
  // Takes a drag under way on to a point, as a mouse move there does: the
  // view calls it when it scrolled the surface under a mouse held still.
  void followDrag(QPoint point);

  // ---- context menus: asks the owner, then emits contextMenuRequested
  void contextMenuAt(QPoint point, QPoint globalPosition);
  // The menu of the selection, as the menu key opens it.
  void contextMenuForSelection();

signals:
  void zoomChanged(int percent);
  void toolReset();
  // The places of the bands changed: sizes, zoom or the layout.
  void geometryChanged();
  // The owner did not cancel the menu: the designer shows its own.
  void contextMenuRequested(const kordel::ObjectRef &source, int menuType, QPoint globalPosition);
  // Part of the surface the keyboard moved to, to be scrolled into view.
  void visibleRequested(const QRect &rect);
  // A drag under way reached a point; it ends with dragEnded.
  void dragMoved(QPoint point);
  void dragEnded();

protected:
  bool event(QEvent *event) override;
  void paintEvent(QPaintEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;
  void contextMenuEvent(QContextMenuEvent *event) override;

private:
  // The side of a handle's square, in pixels.
  static constexpr qreal kHandleSize = 7;

  // What lies under a point, in the order the mouse finds it.
  struct Hit {
    enum Kind { Nothing, Handle, SectionEdge, PrintEdge, Control, Title, Body } kind = Nothing;
    std::shared_ptr<engine::Control> control;
    std::shared_ptr<Section> section;
    int handle = -1; // as handles() numbers them
  };
  // A control as a drag found it.
  struct Origin {
    std::shared_ptr<engine::Control> control;
    std::shared_ptr<Section> section;
    QRectF box;
    QLineF ends; // a line's
  };
  // Where a move puts a control: a section and the top left corner in it.
  struct Placement {
    std::shared_ptr<Section> section;
    QPointF topLeft;
  };
  // The mouse's drag; the state machine is described in
  // DesignSurfaceDrag.cpp.
  struct Drag {
    enum Kind { None, Pending, Move, Resize, SectionHeight, PrintWidth, RubberBand, Draw } kind = None;
    Kind started = None; // what a pending press becomes once the mouse moves
    QPoint press;
    QPoint at;
    Qt::KeyboardModifiers modifiers;
    Hit hit;
    std::vector<Origin> origins;
    float original = 0; // the section's height or the print width
    // A plain press on a control of a larger selection selects only that
    // control when the mouse is released unmoved.
    bool narrowOnRelease = false;
    QRect shown; // where the dragged controls were painted last
    std::unique_ptr<DesignerDocument::Edit> edit;
  };

  static bool addsToSelection(Qt::KeyboardModifiers modifiers);
  float snap(float value, bool horizontal) const;
  void relayout();
  void layoutChangedOutside();
  std::vector<Origin> selectedOrigins() const;
  // Grows the sections that the controls hang out of; the sections grown.
  std::vector<std::shared_ptr<Section>> growSectionsFor(const std::vector<Origin> &origins);
  void raiseChanged(const ObjectRef &object, int kind);
  // Moved and resized for each control that was, then resized for the
  // sections grown.
  void raiseGeometryChanges(const std::vector<Origin> &origins, const std::vector<std::shared_ptr<Section>> &grown);
  void keyMoveOrResize(int key, Qt::KeyboardModifiers modifiers);
  void requestMenu(const ObjectRef &source, int menuType, QPoint globalPosition);
  void revealSelection();
  // Reports the exception being handled through the message event.
  void reportFailure();

  // DesignSurfaceDrag.cpp
  // The handles of a selected control on the surface, by number: eight
  // around its box (0 top left, clockwise to 7 left), or a line's two ends
  // (8 and 9).
  std::vector<std::pair<int, QRectF>> handles(const engine::Control &control) const;
  Hit hitAt(QPointF point) const;
  Qt::CursorShape cursorAt(QPoint point) const;
  // The drag as it was, leaving none; tells of the end of a drag under way.
  Drag takeDrag();
  void press(QPoint point, Qt::KeyboardModifiers modifiers);
  void dragTo(QPoint point);
  void release(QPoint point);
  void startDrag();
  void clicked(const Drag &done);
  void draw(const Drag &done);
  // Puts back what the drag changed and closes its Edit.
  void restoreDrag();
  void cancelDrag();
  QRect draggedRect() const;
  void repaintDragged();
  std::vector<Placement> movePlacements() const;
  void applyMove();
  std::vector<std::shared_ptr<Section>> finishMove();
  void applyResize();
  void applySectionHeight();
  void applyPrintWidth();

  // DesignSurfacePaint.cpp
  void paintBand(QPainter &painter, const SurfaceLayout::Band &band, const QRect &dirty);
  void paintGrid(QPainter &painter, const SurfaceLayout::Band &band, const QRectF &area) const;
  void paintControls(QPainter &painter, const SurfaceLayout::Band &band, const QRect &dirty, bool dragged);
  void paintSelection(QPainter &painter, const QRect &dirty) const;
  void paintDrag(QPainter &painter) const;

  DesignerDocument &document_;
  DesignerEvents *events_;
  DesignGrid grid_;
  int zoom_ = 100;
  std::optional<QString> tool_;
  SurfaceLayout layout_;
  DesignRenderer renderer_;
  Drag drag_;
};

} // namespace kordel::engine

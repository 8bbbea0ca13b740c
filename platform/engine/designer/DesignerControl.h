#pragma once

#include "engine/designer/DesignerActions.h"
#include "engine/designer/DesignerDocument.h"
#include "engine/designer/DesignerEvents.h"

#include "hostapi/EmbeddedWindow.h"

#include "core/Object.h"

#include <QPointer>

#include <memory>

namespace kordel::engine {

// The toolbars and panels of the designer, by their bit in ToolbarsVisible
// and ToolbarsAccessible. Bit 64 stands for none.
namespace DesignerToolbar {
constexpr int Menu = 1;
constexpr int ToolBox = 2;
constexpr int Standard = 4;
constexpr int Alignment = 8;
constexpr int Format = 16;
constexpr int Explorer = 32;
constexpr int None = 64;
constexpr int PropertyList = 128;
constexpr int All = Menu | ToolBox | Standard | Alignment | Format | Explorer | PropertyList;
} // namespace DesignerToolbar

// The band designer as its owner reaches it, late-bound: Report (the
// layout's report object), NewReport, IsDirty, GridX, GridY (grid
// divisions per ruler unit), ShowGrid, AlignToGrid, RulerUnits (0 inches,
// 1 centimetres), ToolbarsVisible, ToolbarsAccessible, QueryAction(action),
// ExecuteAction(action) (DesignerActions.h), Selection (Count, Item(i) from
// 0) and EventSink: the object that answers the designer's events by name,
// held weakly as a report holds its sink:
//
//   LayoutChanged(object, kind)           after a change (DesignerEvents.h)
//   ValidateChange(object, kind, Cancel)  before one; Cancel True stops it
//   ContextMenuOpen(source, menuType, Cancel)
//                                         Cancel True: the owner showed its own
//   SelectionChanged()
//   Message(number, text, flags, Answer)  Answer: the button pressed
//   GotFocus(), LostFocus()
//
// A sink that does not answer an event leaves the designer's own way: its
// own context menu, its own message box through the host's Ui.
class DesignerWindow;

class DesignerControl : public Object, public hostapi::EmbeddedWindow, private DesignerEvents {
public:
  static std::shared_ptr<DesignerControl> create();
  ~DesignerControl() override;

  QString typeName() const override { return QStringLiteral("ARDesigner"); }

  DesignerDocument &document() { return *document_; }
  DesignerActions &actions() { return actions_; }
  DesignerEvents &events() { return *this; }

  int gridX = 16, gridY = 16;
  bool showGrid = true, alignToGrid = true;
  int rulerUnits = 0;
  int toolbarsVisible = DesignerToolbar::ToolBox | DesignerToolbar::Format | DesignerToolbar::PropertyList;
  int toolbarsAccessible = DesignerToolbar::All;
  // The grid step in twips, from the grid divisions and the ruler unit.
  QPointF gridStep() const;

  ObjectRef eventSink() const { return eventSink_.lock(); }
  void setEventSink(const ObjectRef &sink) { eventSink_ = sink; }

  // Raises GotFocus or LostFocus to the sink.
  void focusChanged(bool hasFocus);

  // The designer's window, made on the first call; its owner embeds it.
  // The window lives no longer than the control.
  QWidget *window() override;
  DesignerWindow *designerWindow() const;
  // Tells the window of changed grid, ruler or toolbar settings.
  void settingsChanged();

protected:
  const MemberTable &memberTable() const override;

private:
  DesignerControl();

  // DesignerEvents: each raised to the sink.
  bool validateChange(const ObjectRef &object, int kind) override;
  void layoutChanged(const ObjectRef &object, int kind) override;
  bool contextMenuOpen(const ObjectRef &source, int menuType, QPoint globalPosition) override;
  int message(int number, const QString &text, int flags) override;
  // Calls the sink's member of that name when it has one; false otherwise.
  bool raise(const QString &event, Args &args);

  std::unique_ptr<DesignerDocument> document_;
  DesignerActions actions_;
  std::weak_ptr<Object> eventSink_;
  QPointer<DesignerWindow> window_;
};

} // namespace kordel::engine

#pragma once

#include "core/Object.h"

#include <QPoint>
#include <QString>

namespace kordel::engine {

// Kinds of change the designer tells its owner of, before (validateChange,
// which may refuse) and after (layoutChanged).
namespace DesignChange {
constexpr int ControlMoved = 0;    // after: a control's place changed
constexpr int ControlResized = 1;  // after: a control's size changed
constexpr int ControlDeleting = 2; // before: a control is about to be deleted
constexpr int SectionResized = 3;  // after: a section's height changed
constexpr int SectionDeleted = 4;  // before: about to be deleted; after: deleted
constexpr int SectionAdded = 5;    // after
constexpr int PrintWidth = 6;      // before: about to change; after: the print width changed
constexpr int ControlAdded = 7;    // after: drawn from the toolbox, pasted or inserted
constexpr int PropertyChanged = 8; // after: a property of the selection changed
} // namespace DesignChange

// The context menus the designer asks for: over a section's empty place,
// over a control, over the surface outside every section.
namespace DesignMenu {
constexpr int Section = 0;
constexpr int Control = 1;
constexpr int Surface = 2;
} // namespace DesignMenu

// What the designer's parts tell the designer control, which raises them
// as events to its owner. Each returns what the owner decided.
class DesignerEvents {
public:
  virtual ~DesignerEvents() = default;
  // False when the owner cancelled the change.
  virtual bool validateChange(const ObjectRef &object, int kind) = 0;
  virtual void layoutChanged(const ObjectRef &object, int kind) = 0;
  // True when the owner cancelled the designer's own menu (it showed its
  // own); the designer then shows nothing.
  virtual bool contextMenuOpen(const ObjectRef &source, int menuType, QPoint globalPosition) = 0;
  // A message to the user (numbers in DesignerMessages.h); the button the
  // user pressed, as a message box returns it.
  virtual int message(int number, const QString &text, int flags) = 0;
};

} // namespace kordel::engine

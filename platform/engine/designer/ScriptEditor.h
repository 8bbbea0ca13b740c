#pragma once

#include "engine/designer/ScriptEvents.h"

#include <QDialog>

class QComboBox;
class QLabel;

namespace kordel::engine {

class CodeEditor;
class DesignerDocument;
class DesignerEvents;
class FindBar;

// The editor of a layout's report script, in the layout's language: the
// code with line numbers and colours; the objects whose events the script
// answers (the report and each section) and their events, where choosing
// an event adds its procedure or goes to the one the script has; find and
// replace (Ctrl+F, Ctrl+H, F3, Shift+F3); and Check (Alt+K), which compiles
// the script with the engine's script host without running it and puts
// the cursor on the line of its error. OK writes the script back as one
// step of the document's history ("Script"); Cancel leaves the layout as
// it was, and with changes made asks first whether to discard them.
class ScriptEditor final : public QDialog {
  Q_OBJECT
public:
  explicit ScriptEditor(DesignerDocument &document, QWidget *parent = nullptr);

  // The owner's events, which the question whether to discard changes goes
  // through; without them the designer asks in its own box.
  void setEvents(DesignerEvents *events) { owner_ = events; }

  CodeEditor &editor() const { return *editor_; }
  FindBar &findBar() const { return *findBar_; }

  // Adds the procedure of an object's event ("ActiveReport" or a section's
  // name, without regard to case) at the end of the script and puts the
  // cursor in its body, or puts the cursor on the procedure when the
  // script has it. Raises 5 for an object or event the layout lacks.
  void insertEvent(const QString &object, const QString &event);
  // Compiles the script; shows the outcome, and for an error puts the
  // cursor at its place and marks its line. True when there is none.
  bool check();
  // Writes the script back, when it changed, and closes.
  void accept() override;
  // Cancel, Escape and closing the window: with the script changed, asks
  // whether to discard the changes (DesignMessage::DiscardScriptChanges)
  // and stays open unless the answer is Yes.
  void reject() override;

private:
  void fillEvents();
  void eventChosen();
  void showCheck(const QString &text, bool failed);
  // The object of a name as the procedures name it; raises 5 for none.
  QString objectNamed(const QString &name) const;

  DesignerDocument &document_;
  DesignerEvents *owner_ = nullptr;
  ScriptLanguage language_;
  QString shown_; // the script as the editor first showed it
  CodeEditor *editor_;
  FindBar *findBar_;
  QComboBox *objects_;
  QComboBox *events_;
  QLabel *checkOutcome_;
};

} // namespace kordel::engine

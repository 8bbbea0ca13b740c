#pragma once

#include "core/Object.h"

#include <QByteArray>
#include <QObject>
#include <QStringList>

#include <memory>
#include <vector>

namespace kordel::engine {

class Control;
class LayoutReport;
class Section;

// The layout a designer edits, what is selected in it, and the history of
// its changes.
//
// Design note. Every change happens inside an Edit. An Edit that ends with
// the layout different from how it began becomes one step of the history;
// one that changed nothing leaves no step. A step is the whole layout in
// its saved form (compressed), so undo and redo load the state before or
// after and give back the very bytes that state had: no change can be
// undone wrongly, whatever it touched, and a drag of many mouse moves in
// one Edit is one step. The history is unlimited while the document lives.
// The saved state is a position in the history (none when the history has
// moved away from it and it has been cut off), and the document is dirty
// whenever the position differs from it. Loading a state makes new section
// and control objects; the selection is kept by names, which are unique in
// a layout, and found again in the state loaded.
class DesignerDocument : public QObject {
  Q_OBJECT
public:
  DesignerDocument();
  ~DesignerDocument() override;

  const std::shared_ptr<LayoutReport> &report() const { return report_; }

  // A new layout: page header, detail and page footer, with the report's
  // other settings as a new report has them. The history starts anew and
  // the document is clean.
  void newReport();
  // Loads a layout (format/LayoutFormat.h) as the document; raises what
  // loading raises and then leaves the document as it was.
  void load(const QByteArray &layout);
  // The layout in its saved form.
  QByteArray save() const;

  // Dirty: the layout differs from what was last marked saved. Marking it
  // clean makes the present state the saved one; marking it dirty makes no
  // state the saved one until the next marking.
  bool isDirty() const { return position_ != savedPosition_; }
  void setDirty(bool dirty);

  // ---- the history
  class Edit {
  public:
    // label names the step as the user sees it ("Move", "Paste" ...).
    Edit(DesignerDocument &document, QString label);
    // Ends the edit: a step when the layout changed.
    ~Edit();
    Edit(const Edit &) = delete;
    Edit &operator=(const Edit &) = delete;

  private:
    DesignerDocument &document_;
    QString label_;
  };
  bool canUndo() const { return position_ > 0; }
  bool canRedo() const { return position_ + 1 < int(states_.size()); }
  QString undoLabel() const;
  QString redoLabel() const;
  void undo();
  void redo();
  // Whether an Edit is open.
  bool editing() const { return openEdits_ > 0; }

  // ---- the selection: sections or controls, never both
  const std::vector<ObjectRef> &selection() const { return selection_; }
  bool isSelected(const Object &object) const;
  void select(std::vector<ObjectRef> objects);
  // Adds the object to the selection or takes it out.
  void toggle(const ObjectRef &object);
  void clearSelection() { select({}); }
  // Every control of every section.
  void selectAll();
  // The selected controls, in the order of their sections and places.
  std::vector<std::shared_ptr<Control>> selectedControls() const;
  std::vector<std::shared_ptr<Section>> selectedSections() const;

  // Tells the views that the layout changed outside an Edit (a late-bound
  // caller set a property): they redraw, and the history takes it as a
  // step of its own.
  void noteOutsideChange();

signals:
  // After every change of the layout, also by undo and redo.
  void layoutChanged();
  void selectionChanged();
  void historyChanged();

private:
  struct State {
    QByteArray compressed;
    QString label; // of the step that led to this state
  };

  void startHistory();
  void commit(const QString &label);
  void goTo(int position);
  QStringList selectedNames() const;
  void selectByNames(const QStringList &names);

  std::shared_ptr<LayoutReport> report_;
  std::vector<State> states_;
  QByteArray current_; // the saved form of states_[position_], uncompressed
  int position_ = 0;
  int savedPosition_ = 0; // -1: no state is the saved one
  int openEdits_ = 0;
  std::vector<ObjectRef> selection_;
};

} // namespace kordel::engine

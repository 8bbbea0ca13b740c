#pragma once

#include "engine/designer/PropertyApplier.h"

#include <QStringList>
#include <QWidget>

#include <optional>
#include <vector>

class QGridLayout;
class QLabel;
class QScrollArea;

namespace kordel::engine {

class DesignerDocument;
class DesignerEvents;
class PropertyEditor;
struct DesignProperty;

// The property list of the designer: the properties the selected objects
// have in common, or the report's when nothing is selected, each with an
// editor of its type. A value the objects do not share is shown blank. A
// value given goes to every selected object as one step of the history;
// text that is no value of the property is refused with the reason below
// the list, and nothing changes. The list follows the selection and every
// change of the layout.
class PropertyList : public QWidget {
  Q_OBJECT
public:
  explicit PropertyList(DesignerDocument &document, QWidget *parent = nullptr);
  ~PropertyList() override;

  // 0 inches, 1 centimetres (RulerUnits in PropertyValues.h).
  void setRulerUnits(int units);
  int rulerUnits() const { return rulerUnits_; }
  void setEvents(DesignerEvents *events) { applier_.setEvents(events); }
  void setChanged(std::function<void()> changed) { applier_.setChanged(std::move(changed)); }

  // ---- handlers
  // Gives the property the value the text stands for. False when the text
  // was refused (the reason is the message) or the owner cancelled.
  bool setValue(const QString &property, const QString &text);
  // Opens the property's dialog (colour, font, picture) through the Ui and
  // gives the property what was chosen; false when cancelled or refused.
  bool chooseValue(const QString &property);
  // Shows the values as the layout has them now.
  void refresh();

  // ---- what the list shows
  QStringList propertyNames() const;
  // The text of the property's editor: blank when the values differ.
  QString shownText(const QString &property) const;
  PropertyEditor *editor(const QString &property) const;
  // The reason the last value was refused; empty after one was taken.
  QString message() const;

private:
  struct Row {
    const DesignProperty *property;
    QLabel *label;
    PropertyEditor *editor;
  };

  std::vector<const DesignProperty *> shownProperties() const;
  // The rows of the properties shown now, with their values; rows where
  // the user is typing keep the text typed unless evenWhileEditing.
  void updateRows(bool evenWhileEditing);
  void rebuild(const std::vector<const DesignProperty *> &properties);
  void showRow(const Row &row, bool evenWhileEditing);
  const Row *findRow(const QString &property) const;
  // The value every target has; nothing when they differ.
  std::optional<Variant> commonValue(const DesignProperty &property) const;
  QString describeTargets() const;
  void showProblem(const QString &property, const QString &problem);
  void clearProblem();
  void followFocus(QWidget *now);

  DesignerDocument &document_;
  PropertyApplier applier_;
  QMetaObject::Connection focusWatch_;
  int rulerUnits_ = 0;
  std::vector<Row> rows_;
  QLabel *target_;
  QScrollArea *scroll_;
  QWidget *rowsHost_ = nullptr;
  QLabel *message_;
  QLabel *help_;
};

} // namespace kordel::engine

#pragma once

#include "hostapi/Classes.h"

#include <QDialog>
#include <QSet>

#include <memory>

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace kordel::host {

// The host's field dialog: a tree of the fields of a class by their local
// names, in which a relation opens to the fields of the class at its other
// end. A level is built only when its relation is opened, so relations
// that lead back to their class cost nothing ahead. Plain fields come
// first, then relations, each alphabetically. Any node is a choice:
// double click, Enter or OK.
class FieldDialogWindow : public QDialog {
  Q_OBJECT

public:
  // Texts in language, from the host's section of the translation files.
  FieldDialogWindow(std::shared_ptr<hostapi::Fields> fields, QSet<int> excludedTypes, const QString &language);

  // The local path of the chosen field; "" until the dialog is confirmed.
  QString chosenPath() const { return chosenPath_; }

private:
  void addLevel(QTreeWidgetItem *parent, hostapi::Fields &level);
  void open(QTreeWidgetItem *node);
  void confirm();

  QTreeWidget *tree_;
  QPushButton *ok_;
  QPushButton *cancel_;
  std::shared_ptr<hostapi::Fields> fields_;
  QSet<int> excludedTypes_;
  QString language_;
  QString chosenPath_;
};

} // namespace kordel::host

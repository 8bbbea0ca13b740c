#pragma once

#include "dialogs/FieldsPageBase.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace kordel::addin {

class FieldSelector;

// The face of the field insertion window that offers the database fields
// of the page's class. The list holds local paths, as the user reads them;
// labels go to a section of their own when the box is ticked.
class FieldsPage : public FieldsPageBase {
  Q_OBJECT

public:
  explicit FieldsPage(QWidget *parent = nullptr);

  QString LabelSection() const override { return labelSection_; }
  void Initialize(bool &ok) override;
  void Validate(bool &ok) override;

  // Handlers. Inserting is also what choosing a field in the tree does;
  // removing also what a double click or Space or Delete on the list does.
  void CmdInsert_Click();
  void CmdInsertAll_Click();
  void CmdRemove_Click();
  void CmdRemoveAll_Click();
  void ChkInsertLabels_Click();

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

private:
  void EnableRemoving(bool enabled);

  FieldSelector *FieldCtrl;
  QPushButton *CmdInsert;
  QPushButton *CmdInsertAll;
  QPushButton *CmdRemove;
  QPushButton *CmdRemoveAll;
  QListWidget *LbFields;
  QLabel *LblFieldSections;
  QComboBox *CboFieldSections;
  QCheckBox *ChkInsertLabels;
  QComboBox *CboLabelSections;

  QString labelSection_;
};

} // namespace kordel::addin

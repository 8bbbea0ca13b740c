#pragma once

#include "dialogs/FieldsPageBase.h"

class QComboBox;
class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace kordel::addin {

// The face of the field insertion window on which the user writes free
// expressions: database fields and fields of the user's own coworker
// record come into the editor through the host's field dialog, and each
// finished expression goes into the list with Use. Expressions never get
// labels.
class ScriptFieldsPage : public FieldsPageBase {
  Q_OBJECT

public:
  explicit ScriptFieldsPage(QWidget *parent = nullptr);

  QString LabelSection() const override { return QString(); }
  void Initialize(bool &ok) override;
  void Validate(bool &ok) override;

  // Handlers. Removing is also what a double click or Delete on the list
  // does, editing what Space on it does.
  void CmdInsertField_Click();
  void CmdInsertCoworkerField_Click();
  void TbEditor_Change();
  void CmdUse_Click();
  void CmdEdit_Click();
  void CmdRemove_Click();

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

private:
  // The local path of a field chosen in the host's field dialog from
  // fields, and its type; false when the user cancels.
  bool ChooseHostField(const std::shared_ptr<hostapi::Fields> &fields, QString &path, int &type) const;
  // Puts text in place of the editor's selection, the cursor after it.
  void InsertAtCursor(const QString &text);
  void EnableListButtons();

  QPlainTextEdit *TbEditor;
  QPushButton *CmdInsertField;
  QPushButton *CmdInsertCoworkerField;
  QPushButton *CmdUse;
  QListWidget *LbScripts;
  QPushButton *CmdEdit;
  QPushButton *CmdRemove;
  QLabel *LblSections;
  QComboBox *CboSections;
};

} // namespace kordel::addin

#pragma once

#include "hostapi/Classes.h"

#include <QDialog>

#include <memory>

class QPushButton;

namespace kordel::addin {

class FieldSelector;

// The small dialog that shows a field tree alone and hands back one field.
// It never offers relations to many; a relation to one can be opened and
// is a choice itself.
class DlgFieldSelector : public QDialog {
  Q_OBJECT

public:
  explicit DlgFieldSelector(QWidget *parent = nullptr);

  void SetFields(std::shared_ptr<hostapi::Fields> fields) { fields_ = std::move(fields); }
  // The chosen field; nullptr without a choice.
  std::shared_ptr<hostapi::Field> Field() const;
  QString FullLocalPath() const { return fullLocalPath_; }
  QString FullPath() const { return fullPath_; }
  // True after a confirmed close.
  bool Status() const { return status_; }

  void Form_Load();
  // Also what choosing a field in the tree does.
  void CmdOK_Click();
  void CmdCancel_Click();

  // Escape, and closing the window, cancel.
  void reject() override;

private:
  FieldSelector *FieldsCtrl;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;

  std::shared_ptr<hostapi::Fields> fields_;
  QString fullLocalPath_;
  QString fullPath_;
  bool status_ = false;
};

} // namespace kordel::addin

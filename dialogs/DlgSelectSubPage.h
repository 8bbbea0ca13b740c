#pragma once

#include "hostapi/Classes.h"

#include <QDialog>

#include <memory>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kordel::addin {

class FieldSelector;
class StringCollection;

// Asks which relation of the page's class a new sub page follows, what it
// is called and in which section its control goes. Only relations are
// shown: a relation to one opens, a relation to many is the choice. The
// name proposed is the related class's, numbered past the names in use.
class DlgSelectSubPage : public QDialog {
  Q_OBJECT

public:
  explicit DlgSelectSubPage(QWidget *parent = nullptr);

  void SetActiveSectionName(const QString &name) { activeSectionName_ = name; }
  void SetFields(std::shared_ptr<hostapi::Fields> fields) { fields_ = std::move(fields); }
  QString NewPageName() const { return newPageName_; }
  // The internal path of the chosen relation.
  QString NewPageSource() const { return newPageSource_; }
  QString PageSectionName() const { return pageSectionName_; }
  void SetSectionNames(std::shared_ptr<StringCollection> names) { sectionNames_ = std::move(names); }
  // True only after a valid OK.
  bool Status() const { return status_; }
  // The names of the sub pages there are already.
  void SetSubPageNames(std::shared_ptr<StringCollection> names) { subPageNames_ = std::move(names); }

  void Form_Load();
  void InitializeCtrls();
  void FieldCtrl_FieldSelected();
  void CmdOK_Click();
  void CmdCancel_Click();
  // name itself when no sub page has it, else the first free of "name 2",
  // "name 3" and so on.
  QString GetUniquePageName(const QString &name) const;

  // Escape, and closing the window, cancel.
  void reject() override;

private:
  QGroupBox *FmeSelectField;
  FieldSelector *FieldCtrl;
  QLabel *LblField;
  QLabel *LblName;
  QLineEdit *TbName;
  QGroupBox *FmePageSection;
  QComboBox *CboPageSection;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;

  QString activeSectionName_;
  std::shared_ptr<hostapi::Fields> fields_;
  QString newPageName_;
  QString newPageSource_;
  QString pageSectionName_;
  std::shared_ptr<StringCollection> sectionNames_;
  std::shared_ptr<StringCollection> subPageNames_;
  bool status_ = false;
};

} // namespace kordel::addin

#pragma once

#include <QDialog>
#include <QPointer>

#include <memory>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QTabBar;
class QTreeWidget;
class QTreeWidgetItem;

namespace kordel::addin {

class Page;

// What belongs to one page apart from its layout: hiding the empty page,
// stripes, the sort fields and the default values of the fields. The
// controls hold copies; the page changes on OK, and only when something
// differs from it.
class DlgPageProperties : public QDialog {
  Q_OBJECT

public:
  explicit DlgPageProperties(QWidget *parent = nullptr);

  // The designer that opened the dialog; kept for it, not read here.
  void SetDesigner(QObject *designer) { designer_ = designer; }
  void SetPage(std::shared_ptr<addin::Page> page) { page_ = std::move(page); }

  void Form_Load();
  void CmdOK_Click();
  void CmdCancel_Click();
  void CmdAddSortField_Click();
  void CmdRemoveSortField_Click();
  void CmdMoveUp_Click() { MoveListItem(-1); }
  void CmdMoveDown_Click() { MoveListItem(1); }
  void CmdUseDefault_Click();
  void ChkStripeDetail_Click();
  void LvwDefault_ItemClick();
  void LvwSortFields_ItemClick() { UpdateSortButtons(); }
  void TabProperties_Click();
  // keyCode and shift as the platform-neutral key codes: 9 is Tab; shift
  // holds 1 for Shift, 2 for Control, 4 for Alt.
  void Form_KeyDown(int keyCode, int shift);

  // A row of the sort list for a field's local path, taken out of the
  // field combo; sortOrder 1 ascending, anything else descending.
  void AddSortField(const QString &name, int sortOrder);
  // True when the controls differ from the page.
  bool HasChanges();
  // Moves the selected sort row delta places up (-1) or down (1).
  void MoveListItem(int delta);
  void ShowTab(int index);
  void UpdateSortButtons();
  void UpdateSortControls();

  // Escape, and closing the window, cancel.
  void reject() override;

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

private:
  void InitializeCaptions();
  void InitializeCtrls();
  QString GetFieldName(const QString &localPath) const;
  QTreeWidgetItem *selectedRow(QTreeWidget &list) const;
  QString sortCaption(int sortOrder) const;
  void buildLayoutTab();
  void buildSortingTab();
  void buildDefaultValuesTab();

  QTabBar *TabProperties;
  QWidget *PicLayout;
  QGroupBox *FmeStripes;
  QCheckBox *ChkStripeDetail;
  QCheckBox *ChkStripeFirst;
  QGroupBox *FmeHidePage;
  QCheckBox *ChkHideEmptyPage;
  QWidget *PicSorting;
  QGroupBox *FmeSorting;
  QComboBox *CboSortFields;
  QComboBox *CboSorting;
  QPushButton *CmdAddSortField;
  QTreeWidget *LvwSortFields;
  QPushButton *CmdRemoveSortField;
  QPushButton *CmdMoveUp;
  QPushButton *CmdMoveDown;
  QWidget *PicDefaultValues;
  QGroupBox *FmeDefault;
  QTreeWidget *LvwDefault;
  QLineEdit *TbDefault;
  QPushButton *CmdUseDefault;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;

  QString sortAscending_;
  QString sortDescending_;
  QPointer<QObject> designer_;
  std::shared_ptr<addin::Page> page_;
};

} // namespace kordel::addin

#pragma once

#include "core/Object.h"

#include <QDialog>
#include <QHash>

#include <memory>

class QAction;
class QLabel;
class QMenu;
class QMenuBar;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace kordel::hostapi {
class ReportContext;
}

namespace kordel::addin {

class Page;
class Report;
class DesignerAutoSave;
class ReportDesigner;

// The window in which a report is designed: the band designer of the shown
// page, the tree of the report's pages, the menus and the designer's
// context menu. It holds no layout logic of its own: layout commands go
// to Designer, and what leaves the window (a save, a print, a preview)
// goes out as OnSave, OnPrint and OnPreview, each after the shown page was
// saved into the document.
class DlgReportDesigner : public QDialog {
  Q_OBJECT

public:
  explicit DlgReportDesigner(QWidget *parent = nullptr);
  ~DlgReportDesigner() override;

  const std::shared_ptr<addin::Report> &Report() const { return report_; }
  void SetReport(std::shared_ptr<addin::Report> report) { report_ = std::move(report); }
  ReportDesigner &Designer() const { return *Designer_; }

  // ---- handlers
  void Form_Load();
  void Form_Activate();
  void Form_KeyDown(int &keyCode, int &shift);
  // False when the window stays open.
  bool QueryUnload();
  void Form_Unload();
  void TreePages_NodeClick(QTreeWidgetItem *node);
  void MnuFileSave_Click();
  void MnuFilePreview_Click();
  void MnuFilePrint_Click();
  void MnuFileExport_Click();
  void MnuHelpAbout_Click();
  void Designer_ContextMenuOpen(const ObjectRef &sourceObject, int menuType, bool &cancel);
  void Designer_SelectionChanged();
  void Designer_SubPageAdded(const QString &pageGuid, const QString &name, const QString &parentGuid);
  void Designer_SubPageRemoved(const QString &pageGuid);
  void Designer_UpdatePageOverview();

  // A control or menu item by its name; nullptr for none.
  QAction *MenuItem(const QString &name) const { return menuItems_.value(name); }
  QTreeWidgetItem *PageNode(const QString &guid) const;
  // The autosave of the report, kept while the window is open.
  DesignerAutoSave *AutoSave() const { return autoSave_.get(); }

signals:
  void OnPreview(const std::shared_ptr<addin::Report> &report,
                 const std::shared_ptr<kordel::hostapi::ReportContext> &context, bool &result);
  void OnPrint(const std::shared_ptr<addin::Report> &report);
  void OnSave(const std::shared_ptr<addin::Report> &report);

protected:
  void closeEvent(QCloseEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  bool event(QEvent *event) override;

private:
  void BuildControls();
  void BuildMenus();
  void BuildPopup();
  QAction *AddItem(QMenu &menu, const char *name, std::function<void()> handler);
  void AddSeparator(QMenu &menu, const char *name);
  void TranslateCaptions();
  void InitializeCtrls();
  void LoadReportTree(const std::shared_ptr<Page> &page);
  void SetCaptions(const QString &pageName);
  void RestoreWindowPlace();
  void SaveWindowPlace();
  // Runs a command with the busy cursor and the reporter under key.
  void Command(const QString &key, const std::function<void()> &body);
  void EnablePopupItems(int menuType);
  // Offers the work a designer left unsaved, and keeps the work of this
  // one from now on.
  void StartAutoSave();
  QByteArray Snapshot() const;

  std::shared_ptr<addin::Report> report_;
  bool isFirstActivate_ = false;
  bool closing_ = false;

  ReportDesigner *Designer_;
  QWidget *PicCtrls;
  QPushButton *CmdInsertFields;
  QPushButton *CmdInsertScriptFields;
  QPushButton *CmdInsertSubPage;
  QPushButton *CmdProperties;
  QPushButton *CmdPreview;
  QLabel *LblReportView;
  QTreeWidget *TreePages;
  QMenuBar *menuBar_;
  QMenu *Popup;
  QHash<QString, QAction *> menuItems_;
  std::unique_ptr<DesignerAutoSave> autoSave_;
};

} // namespace kordel::addin

// The menus of the designer window and the context menu it opens for the
// designer, with their captions and the rules that enable them.

#include "design/DlgReportDesigner.h"

#include "design/ReportDesigner.h"
#include "dialogs/DlgReportProperties.h"
#include "document/Report.h"
#include "scriptio/ScriptIO.h"

#include "common/Globals.h"

#include "core/Error.h"
#include "hostapi/Ui.h"

#include <QCursor>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTreeWidget>

namespace kordel::addin {

namespace {

// The built-in fields by their menu names, in menu order.
struct SpecialField {
  const char *name;
  std::int16_t type;
};
constexpr SpecialField kSpecialFields[] = {
    {"DateField", 1}, {"TimeField", 2}, {"Timestamp", 3}, {"PageNumber", 4},
    {"PageTotal", 5}, {"PrintedBy", 6}, {"Record", 7},    {"Records", 8},
};

} // namespace

QAction *DlgReportDesigner::AddItem(QMenu &menu, const char *name, std::function<void()> handler) {
  QAction *item = menu.addAction(QString());
  item->setObjectName(QString::fromLatin1(name));
  const QString key = QStringLiteral("DlgReportDesigner.") + QString::fromLatin1(name) + QStringLiteral("_Click");
  connect(item, &QAction::triggered, this, [this, key, handler = std::move(handler)] { Command(key, handler); });
  menuItems_.insert(item->objectName(), item);
  return item;
}

void DlgReportDesigner::AddSeparator(QMenu &menu, const char *name) {
  QAction *separator = menu.addSeparator();
  separator->setObjectName(QString::fromLatin1(name));
  menuItems_.insert(separator->objectName(), separator);
}

void DlgReportDesigner::BuildMenus() {
  const auto topMenu = [this](const char *name) {
    QMenu *menu = menuBar_->addMenu(QString());
    menu->setObjectName(QString::fromLatin1(name));
    return menu;
  };
  QMenu &file = *topMenu("MnuFile");
  // Save, print and preview run their own handlers, which report under
  // the window's keys.
  QAction *save = file.addAction(QString(), this, [this] { MnuFileSave_Click(); });
  save->setObjectName(QStringLiteral("MnuFileSave"));
  save->setShortcut(QKeySequence::Save);
  menuItems_.insert(save->objectName(), save);
  QAction *preview = file.addAction(QString(), this, [this] { MnuFilePreview_Click(); });
  preview->setObjectName(QStringLiteral("MnuFilePreview"));
  menuItems_.insert(preview->objectName(), preview);
  QAction *print = file.addAction(QString(), this, [this] { MnuFilePrint_Click(); });
  print->setObjectName(QStringLiteral("MnuFilePrint"));
  print->setShortcut(QKeySequence::Print);
  menuItems_.insert(print->objectName(), print);
  QAction *exportItem = file.addAction(QString(), this, [this] { MnuFileExport_Click(); });
  exportItem->setObjectName(QStringLiteral("MnuFileExport"));
  menuItems_.insert(exportItem->objectName(), exportItem);
  AddSeparator(file, "MnuSep_File0");
  AddItem(file, "MnuFileReportProperties", [this] {
    Designer_->SavePage();
    DlgReportProperties properties;
    properties.SetReport(report_);
    properties.Form_Load();
    hostapi::ui().showModal(properties);
    if (!properties.Status())
      return;
    Designer_->DesignerControl()
        ->get(QStringLiteral("Report"))
        .toObject()
        ->set(QStringLiteral("ScriptLanguage"), report_->ScriptLanguage());
    Designer_->Refresh();
  });
  AddItem(file, "MnuFilePageProperties", [this] { Designer_->EditPageProperties(); });
  AddSeparator(file, "MnuSep_File1");
  QAction *exit = file.addAction(QString(), this, [this] { close(); });
  exit->setObjectName(QStringLiteral("MnuFileExit"));
  menuItems_.insert(exit->objectName(), exit);

  QMenu &insert = *topMenu("MnuInsert");
  AddItem(insert, "MnuInsertField", [this] { Designer_->InsertPageFields(); });
  AddItem(insert, "MnuInsertScriptField", [this] { Designer_->InsertScriptFields(); });
  QMenu *special = insert.addMenu(QString());
  special->setObjectName(QStringLiteral("MnuInsertSpecialField"));
  for (const SpecialField &field : kSpecialFields) {
    const QByteArray name = "MnuInsert" + QByteArray(field.name);
    AddItem(*special, name.constData(), [this, type = field.type] { Designer_->InsertBuiltInField(type); });
  }
  AddSeparator(insert, "MnuSep_Insert0");
  AddItem(insert, "MnuInsertGroupSection", [this] { Designer_->InsertGroupSection(); });
  AddItem(insert, "MnuInsertSubReport", [this] {
    ObjectRef none;
    Designer_->InsertSubPage(none);
  });

  QMenu &tools = *topMenu("MnuTools");
  AddItem(tools, "MnuToolsScriptEditor",
          [this] { Designer_->DesignerControl()->invoke(QStringLiteral("ExecuteAction"), {21}); });
  AddItem(tools, "MnuToolsExportScript", [this] {
    ScriptIO scripts;
    scripts.SetReport(report_);
    scripts.SetReportName(report_->Name());
    scripts.Export();
  });
  AddItem(tools, "MnuToolsImportScript", [this] {
    ScriptIO scripts;
    scripts.SetReport(report_);
    scripts.SetReportName(report_->Name());
    if (scripts.Import())
      Designer_->Refresh();
  });
  AddItem(tools, "MnuToolsMoveSubReport", [this] { Designer_->MoveSubReport(); });
  AddSeparator(tools, "MnuSep_Tools0");
  AddItem(tools, "MnuToolsCustomize", [this] { Designer_->CustomizeDesigner(); });
  AddItem(tools, "MnuToolsOptions", [this] { Designer_->EditOptions(); });

  QMenu &help = *topMenu("MnuHelp");
  QAction *about = help.addAction(QString(), this, [this] { MnuHelpAbout_Click(); });
  about->setObjectName(QStringLiteral("MnuHelpAbout"));
  menuItems_.insert(about->objectName(), about);

  connect(CmdProperties, &QPushButton::clicked, MenuItem(QStringLiteral("MnuFilePageProperties")), &QAction::trigger);
}

void DlgReportDesigner::BuildPopup() {
  Popup = new QMenu(this);
  Popup->setObjectName(QStringLiteral("Popup"));
  QMenu &popup = *Popup;
  const auto action = [this](int code) {
    return [this, code] { Designer_->DesignerControl()->invoke(QStringLiteral("ExecuteAction"), {code}); };
  };
  AddItem(popup, "PuInsertField", [this] { Designer_->InsertPageFields(); });
  AddItem(popup, "PuInsertScriptField", [this] { Designer_->InsertScriptFields(); });
  QMenu *special = popup.addMenu(QString());
  special->setObjectName(QStringLiteral("PuInsertSpecialField"));
  menuItems_.insert(special->objectName(), special->menuAction());
  for (const SpecialField &field : kSpecialFields) {
    const QByteArray name = "PuInsert" + QByteArray(field.name);
    AddItem(*special, name.constData(), [this, type = field.type] { Designer_->InsertBuiltInField(type); });
  }
  AddItem(popup, "PuDelete", action(8));
  AddSeparator(popup, "MnuSep_Pu0");
  AddItem(popup, "PuInsertReportHF", action(10));
  AddItem(popup, "PuInsertPageHF", action(11));
  AddItem(popup, "PuInsertGroupHF", [this] { Designer_->InsertGroupSection(); });
  AddItem(popup, "PuReorderGroups", action(13));
  AddItem(popup, "PuDeleteSection", action(9));
  AddSeparator(popup, "MnuSep_Pu1");
  AddItem(popup, "PuInsertSubReport", [this] {
    ObjectRef none;
    Designer_->InsertSubPage(none);
  });
  AddSeparator(popup, "MnuSep_Pu2");
  AddItem(popup, "PuCut", action(4));
  AddItem(popup, "PuCopy", action(6));
  AddItem(popup, "PuPaste", action(5));
  const auto subMenu = [this, &popup](const char *name) {
    QMenu *menu = popup.addMenu(QString());
    menu->setObjectName(QString::fromLatin1(name));
    menuItems_.insert(menu->objectName(), menu->menuAction());
    return menu;
  };
  QMenu &align = *subMenu("PuAlign");
  AddItem(align, "PuLeft", action(22));
  AddItem(align, "PuCenter", action(24));
  AddItem(align, "PuRight", action(23));
  AddItem(align, "PuTop", action(25));
  AddItem(align, "PuMiddle", action(26));
  AddItem(align, "PuBottom", action(27));
  AddItem(align, "PuToGrid", action(28));
  AddItem(align, "PuCenterInSection", action(29));
  QMenu &size = *subMenu("PuSize");
  AddItem(size, "PuWidth", action(30));
  AddItem(size, "PuHeight", action(31));
  AddItem(size, "PuBoth", action(32));
  QMenu &spacing = *subMenu("PuSpacing");
  AddItem(spacing, "PuHorizontal", action(36));
  AddItem(spacing, "PuVertical", action(33));
  AddItem(popup, "PuBorder", action(54));
  AddSeparator(popup, "MnuSep_Pu3");
}

void DlgReportDesigner::TranslateCaptions() {
  // Only the window's own controls: the designer inside has its own texts.
  QList<QObject *> own = PicCtrls->findChildren<QObject *>();
  own << menuBar_->findChildren<QObject *>() << Popup << Popup->findChildren<QObject *>();
  for (QAction *item : std::as_const(menuItems_))
    own << item;
  own.removeAll(nullptr);
  TranslateControls(objectName(), own);
  for (QAction *item : std::as_const(menuItems_))
    if (item->objectName().startsWith(QStringLiteral("MnuSep")))
      item->setText(GetMessage(QStringLiteral("DlgReportDesigner.MnuSep")));
}

void DlgReportDesigner::EnablePopupItems(int menuType) {
  const auto set = [this](const char *name, bool enabled) {
    if (QAction *item = MenuItem(QString::fromLatin1(name)))
      item->setEnabled(enabled);
  };
  const auto enabledAction = [this](int code) { return Designer_->IsActionEnabled(code); };
  for (QAction *item : std::as_const(menuItems_))
    if (item->objectName().contains(QStringLiteral("Pu")))
      item->setVisible(true);
  set("PuInsertReportHF", Designer_->IsAddSectionEnabled(0));
  set("PuInsertPageHF", Designer_->IsAddSectionEnabled(2));
  set("PuReorderGroups", enabledAction(13));
  set("PuDeleteSection", enabledAction(9));
  set("PuCut", enabledAction(4));
  set("PuCopy", enabledAction(6));
  set("PuPaste", enabledAction(5));
  const std::pair<const char *, int> aligns[] = {{"PuLeft", 22},   {"PuCenter", 24},         {"PuRight", 23},
                                                 {"PuTop", 25},    {"PuMiddle", 26},         {"PuBottom", 27},
                                                 {"PuToGrid", 28}, {"PuCenterInSection", 29}};
  bool anyAlign = false;
  for (const auto &[name, code] : aligns) {
    const bool on = enabledAction(code);
    set(name, on);
    anyAlign = anyAlign || on;
  }
  set("PuAlign", anyAlign);
  const bool width = enabledAction(30), height = enabledAction(31), both = enabledAction(32);
  set("PuWidth", width);
  set("PuHeight", height);
  set("PuBoth", both);
  set("PuSize", width || height || both);
  const bool across = enabledAction(36), down = enabledAction(33);
  set("PuHorizontal", across);
  set("PuVertical", down);
  set("PuSpacing", across || down);
  set("PuBorder", enabledAction(54));

  static const QHash<int, QStringList> hidden{
      {0, {"PuDelete", "PuCut", "PuCopy", "PuAlign", "PuSize", "PuSpacing", "PuBorder", "MnuSep_Pu3"}},
      {1, {"PuDeleteSection", "MnuSep_Pu3"}},
      {2,
       {"PuInsertField", "PuInsertScriptField", "PuInsertSpecialField", "PuDelete", "MnuSep_Pu0", "PuDeleteSection",
        "PuInsertSubReport", "MnuSep_Pu2", "PuCut", "PuCopy", "PuAlign", "PuSize", "PuSpacing", "PuBorder",
        "MnuSep_Pu3"}},
  };
  for (const QString &name : hidden.value(menuType))
    if (QAction *item = MenuItem(name))
      item->setVisible(false);
}

void DlgReportDesigner::Designer_ContextMenuOpen(const ObjectRef &, int menuType, bool &cancel) {
  try {
    if (menuType < 0 || menuType > 2) {
      cancel = false; // the designer shows its own menu
      return;
    }
    cancel = true;
    EnablePopupItems(menuType);
    Popup->popup(QCursor::pos());
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportDesigner.Designer_ContextMenuOpen"));
  }
}

} // namespace kordel::addin

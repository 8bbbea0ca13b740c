#include "design/DlgReportDesigner.h"

#include "design/DesignerAutoSave.h"
#include "design/ReportDesigner.h"
#include "data/Context.h"
#include "document/Page.h"
#include "document/Pages.h"
#include "document/Report.h"
#include "document/StringCollection.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/Settings.h"

#include "hostapi/Application.h"
#include "hostapi/Classes.h"
#include "hostapi/Explorer.h"
#include "hostapi/Filters.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"

#include "core/Error.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

namespace kordel::addin {

namespace {

constexpr int kGuidRole = Qt::UserRole;
// The window's place (made at each use: the root is a global of another
// file).
QString windowKey() { return kSettingsRoot + QStringLiteral("\\DesignWindow"); }

QPushButton *namedButton(QWidget *parent, const char *name) {
  auto *button = new QPushButton(parent);
  button->setObjectName(QString::fromLatin1(name));
  return button;
}

} // namespace

DlgReportDesigner::DlgReportDesigner(QWidget *parent) : QDialog(parent) {
  setObjectName(QStringLiteral("DlgReportDesigner"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setWindowFlag(Qt::WindowMinimizeButtonHint);
  setSizeGripEnabled(true);
  BuildControls();
  BuildMenus();
  BuildPopup();
}

DlgReportDesigner::~DlgReportDesigner() = default;

void DlgReportDesigner::BuildControls() {
  PicCtrls = new QWidget(this);
  PicCtrls->setObjectName(QStringLiteral("PicCtrls"));
  CmdInsertFields = namedButton(PicCtrls, "CmdInsertFields");
  CmdInsertScriptFields = namedButton(PicCtrls, "CmdInsertScriptFields");
  CmdInsertSubPage = namedButton(PicCtrls, "CmdInsertSubPage");
  CmdProperties = namedButton(PicCtrls, "CmdProperties");
  CmdPreview = namedButton(PicCtrls, "CmdPreview");
  LblReportView = new QLabel(PicCtrls);
  LblReportView->setObjectName(QStringLiteral("LblReportView"));
  TreePages = new QTreeWidget(PicCtrls);
  TreePages->setObjectName(QStringLiteral("TreePages"));
  TreePages->setHeaderHidden(true);
  LblReportView->setBuddy(TreePages);

  auto *pane = new QVBoxLayout(PicCtrls);
  pane->setContentsMargins(0, 0, 0, 0);
  for (QPushButton *button : {CmdInsertFields, CmdInsertScriptFields, CmdInsertSubPage, CmdProperties, CmdPreview})
    pane->addWidget(button);
  pane->addSpacing(8);
  pane->addWidget(LblReportView);
  pane->addWidget(TreePages, 1);
  PicCtrls->setFixedWidth(200);

  Designer_ = new ReportDesigner(this);
  auto *body = new QHBoxLayout(this);
  body->addWidget(PicCtrls);
  body->addWidget(Designer_, 1);
  menuBar_ = new QMenuBar(this);
  body->setMenuBar(menuBar_);

  const auto guard = [this](const char *key, std::function<void()> handler) {
    return [this, key, handler = std::move(handler)] { Command(QString::fromLatin1(key), handler); };
  };
  connect(CmdInsertFields, &QPushButton::clicked, this,
          guard("DlgReportDesigner.CmdInsertFields_Click", [this] { Designer_->InsertPageFields(); }));
  connect(CmdInsertScriptFields, &QPushButton::clicked, this,
          guard("DlgReportDesigner.CmdInsertScriptFields_Click", [this] { Designer_->InsertScriptFields(); }));
  connect(CmdInsertSubPage, &QPushButton::clicked, this, guard("DlgReportDesigner.CmdInsertSubPage_Click", [this] {
            ObjectRef none;
            Designer_->InsertSubPage(none);
          }));
  connect(CmdPreview, &QPushButton::clicked, this, [this] { MnuFilePreview_Click(); });
  connect(TreePages, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *node) { TreePages_NodeClick(node); });
  connect(TreePages, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *node) {
    // Keyboard moves through the tree show the page as a click does.
    if (node && TreePages->hasFocus())
      TreePages_NodeClick(node);
  });

  connect(Designer_, &ReportDesigner::ContextMenuOpen, this,
          [this](const ObjectRef &source, int menuType, bool &cancel) {
            Designer_ContextMenuOpen(source, menuType, cancel);
          });
  connect(Designer_, &ReportDesigner::SelectionChanged, this, [this] { Designer_SelectionChanged(); });
  connect(Designer_, &ReportDesigner::SubPageAdded, this,
          [this](const QString &guid, const QString &name, const QString &parentGuid) {
            Designer_SubPageAdded(guid, name, parentGuid);
          });
  connect(Designer_, &ReportDesigner::SubPageRemoved, this,
          [this](const QString &guid) { Designer_SubPageRemoved(guid); });
  connect(Designer_, &ReportDesigner::UpdatePageOverview, this, [this] { Designer_UpdatePageOverview(); });
}

QTreeWidgetItem *DlgReportDesigner::PageNode(const QString &guid) const {
  for (QTreeWidgetItemIterator it(TreePages); *it; ++it)
    if ((*it)->data(0, kGuidRole).toString() == guid)
      return *it;
  return nullptr;
}

void DlgReportDesigner::Command(const QString &key, const std::function<void()> &body) {
  try {
    SetBusyCursor();
    body();
    ResetCursor();
  } catch (...) {
    ResetCursor();
    ErrorMessage(key);
  }
}

// ---- loading and closing

void DlgReportDesigner::Form_Load() {
  try {
    SetBusyCursor();
    isFirstActivate_ = true;
    TranslateCaptions();
    StartAutoSave();
    SetCaptions(report_->Page()->Name());
    InitializeCtrls();
    RestoreWindowPlace();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReport.Form_Load"));
  }
}

void DlgReportDesigner::SetCaptions(const QString &pageName) {
  setWindowTitle(GetMessage(QStringLiteral("DlgReportDesigner.Caption"), report_->Name(), pageName,
                            GetMessage(QStringLiteral("Addin.Name"))));
  if (QAction *pageProperties = MenuItem(QStringLiteral("MnuFilePageProperties")))
    pageProperties->setText(pageName);
}

void DlgReportDesigner::StartAutoSave() {
  const QString guid = report_->Guid();
  if (const auto pending = DesignerAutoSave::Pending(guid)) {
    const QString when =
        QFileInfo(DesignerAutoSave::PathFor(guid)).lastModified().toString(QStringLiteral("yyyy-MM-dd hh:mm"));
    if (ShowMessage(GetMessage(QStringLiteral("DlgReportDesigner.RestoreAutoSave"), when), 4 + 32) == 6) {
      report_->LoadContents(Variant(*pending));
      report_->Page()->SetModified(true); // restored work is unsaved work
    } else {
      QFile::remove(DesignerAutoSave::PathFor(guid));
    }
  }
  autoSave_ = std::make_unique<DesignerAutoSave>(
      guid, [this] { return Snapshot(); },
      [this] { return report_->Modified() || Designer_->DesignerControl()->get(QStringLiteral("IsDirty")).toBool(); });
  connect(Designer_, &ReportDesigner::Changed, autoSave_.get(), &DesignerAutoSave::NoteChange);
}

QByteArray DlgReportDesigner::Snapshot() const {
  // A copy of the document with the shown page's layout as it stands: the
  // document itself changes only by the user's saves.
  auto copy = std::make_shared<addin::Report>();
  copy->LoadContents(report_->SaveContents());
  if (const auto shown = Designer_->ActivePage())
    if (const auto page = copy->LookupPage(shown->Guid()))
      page->SetLayoutTemplate(Variant(Designer_->StoredLayout()));
  const Variant contents = copy->SaveContents();
  return contents.isByteArray() ? contents.rawBytes() : contents.toString().toUtf8();
}

void DlgReportDesigner::InitializeCtrls() {
  try {
    const auto top = report_->Page();
    LoadReportTree(top);
    TreePages->setCurrentItem(PageNode(report_->Guid()));
    Designer_->ShowPage(top);
    MenuItem(QStringLiteral("MnuToolsMoveSubReport"))->setEnabled(false);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReport.InitializeCtrls"));
  }
}

void DlgReportDesigner::LoadReportTree(const std::shared_ptr<Page> &page) {
  try {
    // A page whose class is gone goes with its sub pages, without a word.
    if (!page->Class()) {
      page->Delete();
      return;
    }
    auto *node = new QTreeWidgetItem({page->Name()});
    node->setData(0, kGuidRole, page->Guid());
    if (const auto parent = page->Parent()) {
      QTreeWidgetItem *parentNode = PageNode(parent->Guid());
      parentNode->addChild(node);
      parentNode->setExpanded(true);
    } else {
      TreePages->addTopLevelItem(node);
    }
    // Deleting a page takes it out of the collection being walked.
    const auto pages = page->Pages();
    std::vector<std::shared_ptr<Page>> children;
    for (int i = 1; i <= pages->Count(); ++i)
      children.push_back(pages->Item(i));
    for (const auto &child : children)
      LoadReportTree(child);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReport.LoadReportTree"));
  }
}

void DlgReportDesigner::Form_Activate() {
  if (!isFirstActivate_)
    return;
  Designer_->LoadSettings();
  isFirstActivate_ = false;
  ResetCursor();
}

bool DlgReportDesigner::event(QEvent *event) {
  if (event->type() == QEvent::WindowActivate) {
    try {
      Form_Activate();
    } catch (...) {
      ErrorMessage(QStringLiteral("DlgReport.Form_Activate"));
    }
  }
  return QDialog::event(event);
}

void DlgReportDesigner::RestoreWindowPlace() {
  const int state = ReadSetting(windowKey(), QStringLiteral("WindowState"), 2).toLong();
  if (state >= 1) {
    // A window closed minimised does not come back minimised.
    setWindowState(Qt::WindowMaximized);
    return;
  }
  setWindowState(Qt::WindowNoState);
  const auto read = [](const char *name) { return ReadSetting(windowKey(), QString::fromLatin1(name), 0).toLong(); };
  const QRect place(read("Left"), read("Top"), read("Width"), read("Height"));
  if (place.width() > 0 && place.height() > 0)
    setGeometry(place);
}

void DlgReportDesigner::SaveWindowPlace() {
  const int state = isMaximized() ? 2 : isMinimized() ? 1 : 0;
  WriteSetting(windowKey(), QStringLiteral("WindowState"), QString::number(state));
  const QRect place = state == 0 ? geometry() : normalGeometry();
  WriteSetting(windowKey(), QStringLiteral("Left"), QString::number(place.x()));
  WriteSetting(windowKey(), QStringLiteral("Top"), QString::number(place.y()));
  WriteSetting(windowKey(), QStringLiteral("Width"), QString::number(place.width()));
  WriteSetting(windowKey(), QStringLiteral("Height"), QString::number(place.height()));
}

bool DlgReportDesigner::QueryUnload() {
  try {
    SetBusyCursor();
    if (report_->Modified()) {
      const int answer = ShowMessage(GetMessage(QStringLiteral("DlgReportDesigner.SaveChanges")), 35);
      if (answer == 2) {
        ResetCursor();
        return false;
      }
      if (answer == 6) {
        Designer_->SavePage();
        emit OnSave(report_);
      }
    }
    ResetCursor();
    return true;
  } catch (...) {
    ResetCursor();
    ErrorMessage(QStringLiteral("DlgReportDesigner.QueryUnload"));
    return false;
  }
}

void DlgReportDesigner::Form_Unload() {
  try {
    if (autoSave_)
      autoSave_->Remove();
    Designer_->SaveEditorSettings();
    SaveWindowPlace();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportDesigner.Form_Unload"));
  }
}

void DlgReportDesigner::closeEvent(QCloseEvent *event) {
  if (!QueryUnload()) {
    event->ignore();
    return;
  }
  Form_Unload();
  event->accept();
  QDialog::closeEvent(event);
}

void DlgReportDesigner::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Escape) {
    close(); // the closing asks about unsaved changes
    return;
  }
  int key = event->key();
  int shift = (event->modifiers() & Qt::ShiftModifier ? 1 : 0) | (event->modifiers() & Qt::ControlModifier ? 2 : 0) |
              (event->modifiers() & Qt::AltModifier ? 4 : 0);
  Form_KeyDown(key, shift);
  if (key == 0)
    event->accept();
  else
    QDialog::keyPressEvent(event);
}

void DlgReportDesigner::Form_KeyDown(int &keyCode, int &shift) {
  if ((shift & 2) != 0 && QChar(keyCode).toLower() == u's') {
    MnuFileSave_Click();
    keyCode = 0;
    return;
  }
  Designer_->OnKeyDown(keyCode, shift);
}

// ---- the page tree

void DlgReportDesigner::TreePages_NodeClick(QTreeWidgetItem *node) {
  try {
    const auto shown = Designer_->ActivePage();
    const QString guid = node->data(0, kGuidRole).toString();
    if (shown && guid == shown->Guid())
      return;
    if (!Designer_->ShowPage(report_->LookupPage(guid))) {
      if (shown) {
        const QSignalBlocker quiet(TreePages);
        TreePages->setCurrentItem(PageNode(shown->Guid()));
      }
      return;
    }
    SetCaptions(node->text(0));
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportDesigner.TreePages_NodeClick"));
  }
}

void DlgReportDesigner::Designer_SubPageAdded(const QString &pageGuid, const QString &name, const QString &parentGuid) {
  try {
    if (PageNode(pageGuid))
      return;
    auto *node = new QTreeWidgetItem({name});
    node->setData(0, kGuidRole, pageGuid);
    QTreeWidgetItem *parent = PageNode(parentGuid);
    parent->addChild(node);
    parent->setExpanded(true);
    TreePages->scrollToItem(node);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportDesigner.Designer_SubPageAdded"));
  }
}

void DlgReportDesigner::Designer_SubPageRemoved(const QString &pageGuid) { delete PageNode(pageGuid); }

void DlgReportDesigner::Designer_UpdatePageOverview() {
  try {
    const auto guids = report_->PageGuids();
    std::vector<QTreeWidgetItem *> nodes;
    for (QTreeWidgetItemIterator it(TreePages); *it; ++it)
      nodes.push_back(*it);
    for (auto it = nodes.rbegin(); it != nodes.rend(); ++it) {
      const QString guid = (*it)->data(0, kGuidRole).toString();
      const auto page = guids->Exists(guid).toBool() ? report_->LookupPage(guid) : nullptr;
      if (!page)
        delete *it;
      else
        (*it)->setText(0, page->Name());
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportDesigner.Designer_UpdatePageOverview"));
  }
}

void DlgReportDesigner::Designer_SelectionChanged() {
  try {
    Designer_->SetActiveSection();
    QAction *move = MenuItem(QStringLiteral("MnuToolsMoveSubReport"));
    move->setEnabled(false);
    const ObjectRef selection = Designer_->DesignerControl()->get(QStringLiteral("Selection")).toObject();
    if (selection->get(QStringLiteral("Count")).toLong() == 1 &&
        selection->invoke(QStringLiteral("Item"), {0}).toObject()->typeName() == QLatin1String("SubReport"))
      move->setEnabled(true);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportDesigner.Designer_SelectionChanged"));
  }
}

// ---- the commands that leave the window

void DlgReportDesigner::MnuFileSave_Click() {
  Command(QStringLiteral("DlgReportDesigner.MnuFileSave"), [this] {
    Designer_->SavePage();
    if (report_->Modified())
      emit OnSave(report_);
    if (autoSave_)
      autoSave_->Remove();
    // Saved all the same: a script error is the user's to mend, and
    // better found now than in the middle of a run.
    const QString problem = Designer_->DesignerControl()
                                ->get(QStringLiteral("Report"))
                                .toObject()
                                ->invoke(QStringLiteral("CheckScript"))
                                .toString();
    if (!problem.isEmpty())
      ShowMessage(GetMessage(QStringLiteral("DlgReportDesigner.ScriptError"), Designer_->ActivePage()->Name(), problem),
                  48);
  });
}

void DlgReportDesigner::MnuFilePrint_Click() {
  Command(QStringLiteral("DlgReportDesigner.Print"), [this] {
    Designer_->SavePage();
    emit OnPrint(report_);
  });
}

void DlgReportDesigner::MnuFileExport_Click() {
  try {
    Designer_->SavePage();
    QString fileName = CleanFileName(report_->Name());
    const QString folder = ReadSetting(kSettingsRoot, QStringLiteral("ExportDir"), MyDocumentsFolder()).toString();
    if (DisplayFileSave(GetMessage(QStringLiteral("FileDialog.ExportTitle")), folder,
                        GetMessage(QStringLiteral("FileDialog.Filter")), 1, fileName)) {
      report_->Save(fileName);
      WriteSetting(kSettingsRoot, QStringLiteral("ExportDir"), QFileInfo(fileName).absolutePath());
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportDesigner.MnuExport_Click"));
  }
}

void DlgReportDesigner::MnuFilePreview_Click() {
  Command(QStringLiteral("DlgReportDesigner.MnuFilePreview_Click"), [this] {
    Designer_->SavePage();
    if (report_->Modified())
      emit OnSave(report_);

    // The records to preview: those of the list window of the report's
    // class, else that window's filter, else the class's first filter.
    const auto application = CurrentApplication();
    const auto reportClass = report_->Class();
    std::shared_ptr<hostapi::Filter> filter;
    std::shared_ptr<hostapi::Explorer> matching;
    const auto active = application->activeExplorer();
    if (active && active->explorerClass() && active->explorerClass()->name() == reportClass->name()) {
      matching = active;
      filter = active->activeFilter();
    } else if (const auto explorers = application->explorers(); explorers && explorers->exists(reportClass->name())) {
      filter = explorers->item(reportClass->name())->activeFilter();
    }
    if (!filter && reportClass->filters() && reportClass->filters()->count() > 0)
      filter = std::dynamic_pointer_cast<hostapi::Filter>(
          reportClass->filters()->invoke(QStringLiteral("Item"), {1}).toObject());

    const auto context = std::make_shared<Context>();
    context->setContextClass(reportClass);
    if (!filter)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("DlgReportDesigner.MnuFilePreview_Click"),
                 GetMessage(QStringLiteral("DlgReportDesigner.NoFilter")));
    context->setName(filter->name());
    if (matching && matching->selection() && matching->selection()->count() > 0) {
      context->setRange(Variant(ObjectRef(matching->selection())));
      context->SetContextType(kdContextTypeSelected);
    } else if (matching && matching->records() && matching->records()->count() > 0) {
      context->setRange(Variant(ObjectRef(matching->items())));
      context->SetContextType(kdContextTypeAll);
    } else {
      context->setRange(Variant(ObjectRef(filter)));
      context->SetContextType(kdContextTypeFilter);
    }
    bool result = false;
    emit OnPreview(report_, context, result);
  });
}

void DlgReportDesigner::MnuHelpAbout_Click() {
  try {
    ShowMessage(GetMessage(QStringLiteral("DlgReportDesigner.About"), QCoreApplication::applicationVersion()), 64);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportDesigner.MnuHelpAbout_Click"));
  }
}

} // namespace kordel::addin

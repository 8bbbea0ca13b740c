#include "engine/designer/DesignerWindow.h"

#include "engine/designer/DesignSurface.h"
#include "engine/designer/DesignView.h"
#include "engine/designer/DesignerControl.h"
#include "engine/designer/DesignerMessages.h"
#include "engine/designer/DesignerText.h"
#include "engine/designer/EditIcons.h"
#include "engine/designer/FormatBar.h"
#include "engine/designer/LayoutIcons.h"
#include "engine/designer/PropertyList.h"
#include "engine/designer/ScriptEditor.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/preview/Presenters.h"
#include "hostapi/Layout.h"

#include "core/Error.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace kordel::engine {

namespace {

constexpr int kZoomSteps[] = {25, 50, 75, 100, 125, 150, 200, 300, 400};

struct Tool {
  const char *name;
  const char *text;
  const char *progId; // nullptr: the pointer, which selects
};
const Tool kTools[] = {
    {"ToolPointer", QT_TRANSLATE_NOOP("Designer", "Pointer"), nullptr},
    {"ToolLabel", QT_TRANSLATE_NOOP("Designer", "Label"), hostapi::kLabelProgId},
    {"ToolField", QT_TRANSLATE_NOOP("Designer", "Field"), hostapi::kFieldProgId},
    {"ToolLine", QT_TRANSLATE_NOOP("Designer", "Line"), hostapi::kLineProgId},
    {"ToolShape", QT_TRANSLATE_NOOP("Designer", "Shape"), hostapi::kShapeProgId},
    {"ToolPicture", QT_TRANSLATE_NOOP("Designer", "Picture"), hostapi::kPictureProgId},
    {"ToolSubReport", QT_TRANSLATE_NOOP("Designer", "Sub report"), hostapi::kSubReportProgId},
};

// Fills a menu with actions by number; -1 for a separator.
void fillMenu(QMenu &menu, const QMap<int, QAction *> &actions, std::initializer_list<int> numbers) {
  for (int number : numbers) {
    if (number < 0)
      menu.addSeparator();
    else
      menu.addAction(actions.value(number));
  }
}

} // namespace

DesignerWindow::DesignerWindow(DesignerControl &control, QWidget *parent) : QMainWindow(parent), control_(control) {
  setObjectName(QStringLiteral("ARDesigner"));
  setWindowFlags(Qt::Widget); // embedded in its owner's window
  DesignerDocument &document = control_.document();
  view_ = new DesignView(document, &control_.events());
  setCentralWidget(view_);
  buildActions();
  buildToolBox();
  buildBars();
  buildMenus();
  buildPanels();
  connect(
      &view_->surface(), &DesignSurface::contextMenuRequested, this,
      [this](const ObjectRef &, int menuType, QPoint globalPosition) { showContextMenu(menuType, globalPosition); });
  for (auto signal : {&DesignerDocument::selectionChanged, &DesignerDocument::historyChanged})
    connect(&document, signal, this, &DesignerWindow::updateActions);
  connect(&document, &DesignerDocument::layoutChanged, this, [this] {
    fillExplorer();
    updateActions();
  });
  connect(&document, &DesignerDocument::selectionChanged, this, &DesignerWindow::fillExplorer);
  connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &DesignerWindow::updateActions);
  view_->surface().installEventFilter(this);
  control_.actions().openScriptEditor = [this] { openScriptEditor(); };
  control_.actions().askGroupOrder = [this](const QStringList &groups) { return askGroupOrder(groups); };
  applySettings();
  fillExplorer();
  updateActions();
}

DesignerWindow::~DesignerWindow() {
  control_.actions().openScriptEditor = nullptr;
  control_.actions().askGroupOrder = nullptr;
}

// ---- commands ----

QAction *DesignerWindow::addAction(int number, const QString &text, const QKeySequence &keys, const QIcon &icon) {
  auto *action = new QAction(icon, text, this);
  action->setObjectName(QStringLiteral("Action%1").arg(number));
  if (!keys.isEmpty()) {
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    QMainWindow::addAction(action);
  }
  connect(action, &QAction::triggered, this, [this, number] { run(number); });
  actions_.insert(number, action);
  return action;
}

void DesignerWindow::buildActions() {
  using namespace DesignAction;
  addAction(Undo, designerText("Undo"), QKeySequence::Undo, editActionIcon(Undo));
  addAction(Redo, designerText("Redo"), QKeySequence::Redo, editActionIcon(Redo));
  addAction(Cut, designerText("Cut"), QKeySequence::Cut, editActionIcon(Cut));
  addAction(Copy, designerText("Copy"), QKeySequence::Copy, editActionIcon(Copy));
  addAction(Paste, designerText("Paste"), QKeySequence::Paste, editActionIcon(Paste));
  addAction(Delete, designerText("Delete"), QKeySequence::Delete, editActionIcon(Delete));
  addAction(SelectAll, designerText("Select all"), QKeySequence::SelectAll);
  addAction(DeleteSection, designerText("Delete section"));
  addAction(ReportHeaderFooter, designerText("Report header and footer"))->setCheckable(true);
  addAction(PageHeaderFooter, designerText("Page header and footer"))->setCheckable(true);
  addAction(GroupHeaderFooter, designerText("Group header and footer"));
  addAction(ReorderGroups, designerText("Reorder groups..."));
  addAction(DesignAction::ScriptEditor, designerText("Script..."), QKeySequence(Qt::Key_F7));
  addAction(AlignLeft, designerText("Align lefts"), {}, layoutActionIcon(AlignLeft));
  addAction(AlignCenter, designerText("Align centres"), {}, layoutActionIcon(AlignCenter));
  addAction(AlignRight, designerText("Align rights"), {}, layoutActionIcon(AlignRight));
  addAction(AlignTop, designerText("Align tops"), {}, layoutActionIcon(AlignTop));
  addAction(AlignMiddle, designerText("Align middles"), {}, layoutActionIcon(AlignMiddle));
  addAction(AlignBottom, designerText("Align bottoms"), {}, layoutActionIcon(AlignBottom));
  addAction(AlignToGrid, designerText("Align to grid"), {}, layoutActionIcon(AlignToGrid));
  addAction(CenterInSection, designerText("Centre in section"), {}, layoutActionIcon(CenterInSection));
  addAction(SameWidth, designerText("Same width"), {}, layoutActionIcon(SameWidth));
  addAction(SameHeight, designerText("Same height"), {}, layoutActionIcon(SameHeight));
  addAction(SameSize, designerText("Same size"), {}, layoutActionIcon(SameSize));
  addAction(SpaceHorizontally, designerText("Space evenly across"), {}, layoutActionIcon(SpaceHorizontally));
  addAction(SpaceVertically, designerText("Space evenly down"), {}, layoutActionIcon(SpaceVertically));
  addAction(Border, designerText("Border"), {}, layoutActionIcon(Border));
}

void DesignerWindow::run(int number) {
  try {
    control_.actions().execute(number);
  } catch (...) {
    const Error error = pendingError();
    try {
      tellUser(&control_.events(), DesignMessage::ActionFailed, error.description());
    } catch (...) {
      // A message that cannot be shown has nobody left to tell.
    }
  }
  updateActions();
}

void DesignerWindow::updateActions() {
  for (auto it = actions_.constBegin(); it != actions_.constEnd(); ++it) {
    int state = 0;
    try {
      state = control_.actions().query(it.key());
    } catch (...) {
      // An action that cannot tell its state stays off.
    }
    it.value()->setEnabled(state & ActionState::Enabled);
    if (it.value()->isCheckable())
      it.value()->setChecked(state & ActionState::Checked);
  }
}

// ---- bars and panels ----

void DesignerWindow::buildToolBox() {
  auto *box = new QToolBar(designerText("Toolbox"));
  box->setObjectName(QStringLiteral("ddTBToolBox"));
  box->setOrientation(Qt::Vertical);
  box->setToolButtonStyle(Qt::ToolButtonTextOnly);
  tools_ = new QActionGroup(this);
  for (const Tool &tool : kTools) {
    QAction *action = box->addAction(designerText(tool.text));
    action->setObjectName(QLatin1String(tool.name));
    action->setCheckable(true);
    action->setChecked(!tool.progId);
    tools_->addAction(action);
    const std::optional<QString> progId =
        tool.progId ? std::optional<QString>(QString::fromLatin1(tool.progId)) : std::nullopt;
    connect(action, &QAction::triggered, this, [this, progId] { view_->surface().setTool(progId); });
  }
  connect(&view_->surface(), &DesignSurface::toolReset, this, [this] { tools_->actions().front()->setChecked(true); });
  addToolBar(Qt::LeftToolBarArea, box);
  panels_.insert(DesignerToolbar::ToolBox, box);
}

void DesignerWindow::buildBars() {
  using namespace DesignAction;
  auto *standard = new QToolBar(designerText("Standard"));
  standard->setObjectName(QStringLiteral("ddTBStandard"));
  standard->setToolButtonStyle(Qt::ToolButtonIconOnly);
  for (int number : {Cut, Copy, Paste, Delete})
    standard->addAction(actions_[number]);
  standard->addSeparator();
  standard->addAction(actions_[Undo]);
  standard->addAction(actions_[Redo]);
  standard->addSeparator();
  zoomBox_ = new QComboBox;
  zoomBox_->setObjectName(QStringLiteral("CboZoom"));
  zoomBox_->setToolTip(designerText("Zoom"));
  for (int percent : kZoomSteps)
    zoomBox_->addItem(QStringLiteral("%1%").arg(percent), percent);
  zoomBox_->setCurrentIndex(zoomBox_->findData(view_->surface().zoom()));
  connect(zoomBox_, &QComboBox::activated, this, [this](int index) {
    try {
      view_->surface().setZoom(zoomBox_->itemData(index).toInt());
    } catch (...) {
      // The zoom stays as it was.
    }
  });
  connect(&view_->surface(), &DesignSurface::zoomChanged, this, [this](int percent) {
    const int index = zoomBox_->findData(percent);
    if (index >= 0)
      zoomBox_->setCurrentIndex(index);
    else
      zoomBox_->setEditText(QStringLiteral("%1%").arg(percent));
  });
  standard->addWidget(zoomBox_);
  addToolBar(standard);
  panels_.insert(DesignerToolbar::Standard, standard);

  auto *alignment = new QToolBar(designerText("Alignment"));
  alignment->setObjectName(QStringLiteral("ddTBAlignment"));
  alignment->setToolButtonStyle(Qt::ToolButtonIconOnly);
  for (int number : {AlignLeft, AlignCenter, AlignRight, AlignTop, AlignMiddle, AlignBottom, AlignToGrid,
                     CenterInSection, SameWidth, SameHeight, SameSize, SpaceHorizontally, SpaceVertically, Border})
    alignment->addAction(actions_[number]);
  addToolBar(alignment);
  panels_.insert(DesignerToolbar::Alignment, alignment);

  formatBar_ = new FormatBar(control_.document());
  formatBar_->setEvents(&control_.events());
  addToolBar(formatBar_);
  panels_.insert(DesignerToolbar::Format, formatBar_);
}

void DesignerWindow::buildMenus() {
  using namespace DesignAction;
  QMenuBar *bar = menuBar();
  bar->setObjectName(QStringLiteral("ddTBMenu"));
  QMenu *edit = bar->addMenu(designerText("&Edit"));
  fillMenu(*edit, actions_, {Undo, Redo, -1, Cut, Copy, Paste, Delete, -1, SelectAll});
  QMenu *sections = bar->addMenu(designerText("&Sections"));
  fillMenu(*sections, actions_,
           {ReportHeaderFooter, PageHeaderFooter, GroupHeaderFooter, ReorderGroups, -1, DeleteSection});
  QMenu *format = bar->addMenu(designerText("F&ormat"));
  fillMenu(*format, actions_,
           {AlignLeft, AlignCenter, AlignRight, AlignTop, AlignMiddle, AlignBottom, AlignToGrid, CenterInSection, -1,
            SameWidth, SameHeight, SameSize, -1, SpaceHorizontally, SpaceVertically, -1, Border});
  QMenu *tools = bar->addMenu(designerText("&Tools"));
  tools->addAction(actions_[DesignAction::ScriptEditor]);
  panels_.insert(DesignerToolbar::Menu, bar);
}

void DesignerWindow::buildPanels() {
  explorer_ = new QTreeWidget;
  explorer_->setObjectName(QStringLiteral("TvwExplorer"));
  explorer_->setHeaderHidden(true);
  connect(explorer_, &QTreeWidget::itemClicked, this, &DesignerWindow::explorerClicked);
  connect(explorer_, &QTreeWidget::itemActivated, this, &DesignerWindow::explorerClicked);
  auto *explorerDock = new QDockWidget(designerText("Explorer"));
  explorerDock->setObjectName(QStringLiteral("ddTBExplorer"));
  explorerDock->setWidget(explorer_);
  addDockWidget(Qt::RightDockWidgetArea, explorerDock);
  panels_.insert(DesignerToolbar::Explorer, explorerDock);

  properties_ = new PropertyList(control_.document());
  properties_->setEvents(&control_.events());
  auto *propertyDock = new QDockWidget(designerText("Properties"));
  propertyDock->setObjectName(QStringLiteral("ddTBPropertyToolbox"));
  propertyDock->setWidget(properties_);
  addDockWidget(Qt::RightDockWidgetArea, propertyDock);
  panels_.insert(DesignerToolbar::PropertyList, propertyDock);
}

void DesignerWindow::applySettings() {
  const int shown = control_.toolbarsVisible & control_.toolbarsAccessible;
  for (auto it = panels_.constBegin(); it != panels_.constEnd(); ++it)
    it.value()->setVisible((shown & it.key()) != 0);
  DesignGrid grid;
  grid.gridX = control_.gridX;
  grid.gridY = control_.gridY;
  grid.showGrid = control_.showGrid;
  grid.alignToGrid = control_.alignToGrid;
  grid.rulerUnits = control_.rulerUnits;
  view_->surface().setGrid(grid);
  properties_->setRulerUnits(control_.rulerUnits);
}

// ---- the explorer ----

void DesignerWindow::fillExplorer() {
  const QSignalBlocker quiet(explorer_);
  explorer_->clear();
  const DesignerDocument &document = control_.document();
  for (const auto &section : document.report()->sections()->all()) {
    auto *sectionItem = new QTreeWidgetItem(explorer_, {section->name});
    sectionItem->setData(0, Qt::UserRole, section->name);
    sectionItem->setSelected(document.isSelected(*section));
    for (const auto &control : section->controls()->all()) {
      auto *item = new QTreeWidgetItem(sectionItem, {QStringLiteral("%1 (%2)").arg(control->name, kindText(*control))});
      item->setData(0, Qt::UserRole, control->name);
      item->setSelected(document.isSelected(*control));
    }
    sectionItem->setExpanded(true);
  }
}

void DesignerWindow::explorerClicked() {
  try {
    DesignerDocument &document = control_.document();
    std::vector<ObjectRef> chosen;
    for (const QTreeWidgetItem *item : explorer_->selectedItems()) {
      const QString name = item->data(0, Qt::UserRole).toString();
      if (const auto section = document.report()->sections()->find(name)) {
        chosen.push_back(section);
        continue;
      }
      for (const auto &section : document.report()->sections()->all())
        if (const auto control = section->controls()->find(name))
          chosen.push_back(control);
    }
    document.select(std::move(chosen));
  } catch (...) {
    // The selection stays as it was.
  }
}

// ---- windows the actions open ----

void DesignerWindow::showContextMenu(int menuType, QPoint globalPosition) {
  using namespace DesignAction;
  QMenu menu(this);
  menu.setObjectName(QStringLiteral("MnuDesigner"));
  if (menuType == DesignMenu::Control)
    fillMenu(menu, actions_,
             {Cut, Copy, Paste, Delete, -1, AlignLeft, AlignCenter, AlignRight, AlignTop, AlignMiddle, AlignBottom, -1,
              SameWidth, SameHeight, SameSize, -1, Border});
  else
    fillMenu(menu, actions_,
             {Paste, -1, ReportHeaderFooter, PageHeaderFooter, GroupHeaderFooter, ReorderGroups, -1, DeleteSection, -1,
              DesignAction::ScriptEditor});
  menu.exec(globalPosition);
}

void DesignerWindow::openScriptEditor() {
  engine::ScriptEditor editor(control_.document(), this);
  editor.setEvents(&control_.events());
  presentModal(editor);
}

std::optional<QStringList> DesignerWindow::askGroupOrder(const QStringList &groups) {
  QDialog dialog(this);
  dialog.setObjectName(QStringLiteral("DlgReorderGroups"));
  dialog.setWindowTitle(designerText("Reorder groups"));
  auto *list = new QListWidget;
  list->setObjectName(QStringLiteral("LbGroups"));
  list->addItems(groups);
  list->setCurrentRow(0);
  auto *up = new QPushButton(designerText("Move &up"));
  up->setObjectName(QStringLiteral("CmdUp"));
  auto *down = new QPushButton(designerText("Move &down"));
  down->setObjectName(QStringLiteral("CmdDown"));
  const auto move = [list](int by) {
    const int row = list->currentRow();
    if (row < 0 || row + by < 0 || row + by >= list->count())
      return;
    list->insertItem(row + by, list->takeItem(row));
    list->setCurrentRow(row + by);
  };
  connect(up, &QPushButton::clicked, &dialog, [move] { move(-1); });
  connect(down, &QPushButton::clicked, &dialog, [move] { move(1); });
  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("CmdOK"));
  buttons->button(QDialogButtonBox::Ok)->setText(designerText("OK"));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CmdCancel"));
  buttons->button(QDialogButtonBox::Cancel)->setText(designerText("Cancel"));
  connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  auto *side = new QVBoxLayout;
  side->addWidget(up);
  side->addWidget(down);
  side->addStretch();
  auto *row = new QHBoxLayout;
  row->addWidget(list, 1);
  row->addLayout(side);
  auto *layout = new QVBoxLayout(&dialog);
  layout->addWidget(new QLabel(designerText("Outermost group first:")));
  layout->addLayout(row);
  layout->addWidget(buttons);
  presentModal(dialog);
  if (dialog.result() != QDialog::Accepted)
    return std::nullopt;
  QStringList order;
  for (int i = 0; i < list->count(); ++i)
    order << list->item(i)->text();
  return order;
}

// ---- focus ----

bool DesignerWindow::eventFilter(QObject *watched, QEvent *event) {
  if (watched == &view_->surface() && (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)) {
    try {
      control_.focusChanged(event->type() == QEvent::FocusIn);
    } catch (...) {
      // The owner's handler failed; the focus moves all the same.
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

} // namespace kordel::engine

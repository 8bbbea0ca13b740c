#include "desktop/MainWindow.h"

#include "desktop/AboutDialog.h"
#include "desktop/DesktopFeedback.h"
#include "desktop/DesktopSettings.h"
#include "desktop/DesktopText.h"
#include "desktop/ListWindow.h"
#include "desktop/RecordWindow.h"
#include "desktop/ReportActions.h"
#include "desktop/ReportsOverview.h"

#include "cli/DataCommands.h"

#include "host/HostApplication.h"

#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"

#include "core/Error.h"
#include "hostapi/Classes.h"
#include "hostapi/Database.h"
#include "hostapi/Ui.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QFileInfo>
#include <QTreeWidget>

namespace kordel::host::desktop {

namespace {

constexpr int kClassName = Qt::UserRole;

} // namespace

MainWindow::MainWindow(HostApplication &application, std::shared_ptr<hostapi::IReportFactory> factory,
                       QString databaseLocation, QWidget *parent)
    : QMainWindow(parent), application_(application), factory_(std::move(factory)),
      actions_(std::make_unique<ReportActions>(application, factory_)), databaseLocation_(std::move(databaseLocation)) {
  setObjectName(QStringLiteral("MainWindow"));
  Navigator = new QTreeWidget(this);
  Navigator->setObjectName(QStringLiteral("Navigator"));
  Navigator->setRootIsDecorated(false);
  Navigator->header()->hide();
  auto *dock = new QDockWidget(desktopText("Classes"), this);
  dock->setObjectName(QStringLiteral("DockNavigator"));
  dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
  dock->setWidget(Navigator);
  addDockWidget(Qt::LeftDockWidgetArea, dock);
  WindowArea = new QMdiArea(this);
  WindowArea->setObjectName(QStringLiteral("WindowArea"));
  WindowArea->setViewMode(QMdiArea::TabbedView);
  WindowArea->setTabsClosable(true);
  WindowArea->setTabsMovable(true);
  WindowArea->setDocumentMode(true);
  setCentralWidget(WindowArea);
  buildMenus();
  fillNavigator();
  showDatabase();

  connect(Navigator, &QTreeWidget::itemActivated, this,
          [this](QTreeWidgetItem *item) { OpenList(item->data(0, kClassName).toString()); });
  connect(WindowArea, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow *window) { windowActivated(window); });

  Navigator->setFocus();
  resize(1100, 720);
  restoreGeometry(readPlace(application_, QStringLiteral("MainWindow")));
  restoreState(readPlace(application_, QStringLiteral("MainWindowState")));
}

MainWindow::~MainWindow() {
  // The windows tell the host's model that they are gone while this window
  // can still hear them.
  for (QMdiSubWindow *window : WindowArea->subWindowList())
    delete window;
}

void MainWindow::buildMenus() {
  const auto add = [this](QMenu *menu, const char *name, const char *text, auto slot) {
    QAction *action = menu->addAction(desktopText(text), this, [this, slot] {
      try {
        (this->*slot)();
      } catch (...) {
        tellFailure(desktopText("The command did not succeed."), QStringLiteral("Orvex"));
      }
    });
    action->setObjectName(QString::fromLatin1(name));
    return action;
  };
  QMenu *file = menuBar()->addMenu(desktopText("&File"));
  file->setObjectName(QStringLiteral("MnuFile"));
  add(file, "MnuFileOpen", QT_TRANSLATE_NOOP("Desktop", "&Open database..."), &MainWindow::MnuFileOpen_Click)
      ->setShortcut(QKeySequence::Open);
  QAction *reports = file->addAction(desktopText("&Reports"), this, [this] { ShowReports(); });
  reports->setObjectName(QStringLiteral("MnuFileReports"));
  reports->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
  file->addSeparator();
  QMenu *language = file->addMenu(desktopText("&Language"));
  language->setObjectName(QStringLiteral("MnuFileLanguage"));
  auto *languages = new QActionGroup(language);
  for (const auto &[code, name] : {std::pair{"en", "English"}, std::pair{"sv", "Svenska"}}) {
    QAction *choice = language->addAction(QString::fromLatin1(name));
    choice->setObjectName(QStringLiteral("MnuLanguage_") + QString::fromLatin1(code));
    choice->setCheckable(true);
    choice->setChecked(application_.language() == QLatin1String(code));
    languages->addAction(choice);
    connect(choice, &QAction::triggered, this, [this, code = QString::fromLatin1(code)] { ChooseLanguage(code); });
  }
  file->addSeparator();
  QAction *quit = file->addAction(desktopText("E&xit"), this, &QWidget::close);
  quit->setObjectName(QStringLiteral("MnuFileExit"));
  quit->setShortcut(QKeySequence::Quit);

  QMenu *window = menuBar()->addMenu(desktopText("&Window"));
  window->setObjectName(QStringLiteral("MnuWindow"));
  QAction *close = window->addAction(desktopText("&Close"), WindowArea, &QMdiArea::closeActiveSubWindow);
  close->setObjectName(QStringLiteral("MnuWindowClose"));
  close->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
  QAction *closeAll = window->addAction(desktopText("Close &all"), WindowArea, &QMdiArea::closeAllSubWindows);
  closeAll->setObjectName(QStringLiteral("MnuWindowCloseAll"));
  QAction *next = window->addAction(desktopText("&Next"), WindowArea, &QMdiArea::activateNextSubWindow);
  next->setObjectName(QStringLiteral("MnuWindowNext"));
  next->setShortcut(QKeySequence::NextChild);

  QMenu *help = menuBar()->addMenu(desktopText("&Help"));
  help->setObjectName(QStringLiteral("MnuHelp"));
  add(help, "MnuHelpAbout", QT_TRANSLATE_NOOP("Desktop", "&About Orvex"), &MainWindow::ShowAbout);
}

void MainWindow::fillNavigator() {
  Navigator->clear();
  const auto classes = application_.classes();
  const auto walk = classes->enumerate();
  for (Variant item; walk->next(item);) {
    const auto cls = objectAs<hostapi::Class>(item);
    if (!cls)
      continue;
    auto *row = new QTreeWidgetItem(Navigator, {cls->localName()});
    row->setData(0, kClassName, cls->name());
  }
  Navigator->sortItems(0, Qt::AscendingOrder);
  if (Navigator->topLevelItemCount() > 0)
    Navigator->setCurrentItem(Navigator->topLevelItem(0));
}

void MainWindow::showDatabase() {
  setWindowTitle(QStringLiteral("Orvex - %1").arg(application_.database()->name()));
  statusBar()->showMessage(databaseLocation_);
}

QMdiSubWindow *MainWindow::addWindow(QWidget *content, const QString &placeKey) {
  QMdiSubWindow *window = WindowArea->addSubWindow(content);
  window->setAttribute(Qt::WA_DeleteOnClose);
  // The tab of a window reads "&" as the mark of an access key.
  window->setWindowTitle(QString(content->windowTitle()).replace(u'&', QStringLiteral("&&")));
  window->restoreGeometry(readPlace(application_, placeKey));
  connect(window, &QObject::destroyed, this, [this] { windowActivated(WindowArea->activeSubWindow()); });
  window->show();
  WindowArea->setActiveSubWindow(window);
  return window;
}

ListWindow *MainWindow::OpenList(const QString &className) {
  try {
    for (QMdiSubWindow *window : WindowArea->subWindowList())
      if (auto *list = qobject_cast<ListWindow *>(window->widget());
          list && list->className().compare(className, Qt::CaseInsensitive) == 0) {
        WindowArea->setActiveSubWindow(window);
        return list;
      }
    auto *list = new ListWindow(application_, *actions_, className);
    connect(list, &ListWindow::openRecord, this, [this](const QString &cls, int id) { OpenRecord(cls, id); });
    application_.explorerList().open(list->explorer());
    // The host's model forgets the window with it.
    const QString name = list->className();
    const std::weak_ptr<nuvo::ExplorerObject> explorer = list->explorer();
    connect(list, &QObject::destroyed, this, [this, name, explorer] {
      if (application_.explorerList().exists(name) && application_.explorerList().item(name) == explorer.lock())
        application_.explorerList().close(name);
    });
    addWindow(list, QStringLiteral("List.") + name);
    return list;
  } catch (...) {
    tellFailure(desktopText("The list could not be opened."), QStringLiteral("Orvex"));
    return nullptr;
  }
}

RecordWindow *MainWindow::OpenRecord(const QString &className, int id) {
  try {
    for (QMdiSubWindow *window : WindowArea->subWindowList())
      if (auto *record = qobject_cast<RecordWindow *>(window->widget());
          record && record->recordId() == id &&
          record->inspector()->inspectorClass()->name().compare(className, Qt::CaseInsensitive) == 0) {
        WindowArea->setActiveSubWindow(window);
        return record;
      }
    auto *record = new RecordWindow(application_, *actions_, className, id);
    connect(record, &RecordWindow::openRecord, this, [this](const QString &cls, int other) { OpenRecord(cls, other); });
    application_.inspectorList().open(record->inspector());
    const std::shared_ptr<hostapi::Inspector> inspector = record->inspector();
    connect(record, &QObject::destroyed, this, [this, inspector] { application_.inspectorList().close(inspector); });
    addWindow(record, QStringLiteral("Record"));
    return record;
  } catch (...) {
    tellFailure(desktopText("The record could not be opened."), QStringLiteral("Orvex"));
    return nullptr;
  }
}

ReportsOverview *MainWindow::ShowReports() {
  for (QMdiSubWindow *window : WindowArea->subWindowList())
    if (auto *overview = qobject_cast<ReportsOverview *>(window->widget())) {
      overview->Fill();
      WindowArea->setActiveSubWindow(window);
      return overview;
    }
  auto *overview = new ReportsOverview(*actions_, [this](const ReportEntry &entry) {
    ReportScope scope{actions_->classOf(entry), nullptr, nullptr};
    // A report runs on the rows of its class's list window.
    QMdiSubWindow *overviewWindow = WindowArea->activeSubWindow();
    if (scope.reportClass)
      if (ListWindow *list = OpenList(scope.reportClass->name()))
        scope.explorer = list->explorer();
    if (overviewWindow)
      WindowArea->setActiveSubWindow(overviewWindow);
    if (auto explorer = std::dynamic_pointer_cast<hostapi::Explorer>(scope.explorer))
      application_.explorerList().activate(explorer->explorerClass()->name());
    return scope;
  });
  addWindow(overview, QStringLiteral("Reports"));
  return overview;
}

void MainWindow::ShowAbout() {
  AboutDialog about(application_, databaseLocation_, this);
  hostapi::ui().showModal(about);
}

void MainWindow::windowActivated(QMdiSubWindow *window) {
  try {
    QWidget *content = window ? window->widget() : nullptr;
    if (auto *list = qobject_cast<ListWindow *>(content)) {
      application_.explorerList().activate(list->className());
      application_.inspectorList().deactivate();
    } else if (auto *record = qobject_cast<RecordWindow *>(content)) {
      application_.explorerList().deactivate();
      application_.inspectorList().activate(record->inspector());
    } else if (content) {
      application_.explorerList().deactivate();
      application_.inspectorList().deactivate();
    }
  } catch (...) {
    // The model follows the windows as well as it can.
  }
}

void MainWindow::MnuFileOpen_Click() {
  hostapi::FileDialogRequest request;
  request.title = desktopText("Open database");
  request.filter = desktopText("Databases (*.db *.sqlite)|*.db;*.sqlite|All files (*)|*");
  request.folder = QFileInfo(databaseLocation_).absolutePath();
  const QString path = hostapi::ui().openFile(request);
  if (!path.isEmpty())
    OpenDatabase(path);
}

void MainWindow::OpenDatabase(const QString &location) {
  try {
    WaitCursor busy;
    WindowArea->closeAllSubWindows();
    cli::openDatabase(application_, location, nuvo::OpenMode::ReadWrite);
    databaseLocation_ = location;
    actions_ = std::make_unique<ReportActions>(application_, factory_);
    fillNavigator();
    showDatabase();
  } catch (...) {
    tellFailure(desktopText("The database could not be opened."), QStringLiteral("Orvex"));
  }
}

void MainWindow::ChooseLanguage(const QString &language) {
  try {
    writeDesktopSetting(application_, QStringLiteral("Language"), language);
    hostapi::ui().messageBox(desktopText("The language changes when Orvex starts again."), hostapi::MsgBox::Information,
                             QStringLiteral("Orvex"));
  } catch (...) {
    tellFailure(desktopText("The language could not be kept."), QStringLiteral("Orvex"));
  }
}

void MainWindow::closeEvent(QCloseEvent *event) {
  try {
    writePlace(application_, QStringLiteral("MainWindow"), saveGeometry());
    writePlace(application_, QStringLiteral("MainWindowState"), saveState());
    for (QMdiSubWindow *window : WindowArea->subWindowList())
      if (auto *list = qobject_cast<ListWindow *>(window->widget()))
        writePlace(application_, QStringLiteral("List.") + list->className(), window->saveGeometry());
  } catch (...) {
    // A place that cannot be kept does not keep the program open.
  }
  WindowArea->closeAllSubWindows();
  event->accept();
}

} // namespace kordel::host::desktop

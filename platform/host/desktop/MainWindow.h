#pragma once

#include <QMainWindow>

#include <memory>

class QMdiArea;
class QMdiSubWindow;
class QTreeWidget;

namespace kordel::hostapi {
class IReportFactory;
}

namespace kordel::host {
class HostApplication;
}

namespace kordel::host::desktop {

class ListWindow;
class RecordWindow;
class ReportActions;
class ReportsOverview;

// The desktop client's main window: the navigator of the database's
// classes, the list, record and reports windows in the window area, and
// the menus of the program. It keeps the host's object model in step:
// the list window in front is the active explorer, a record window in
// front the active inspector. Its place and the language chosen are kept
// in the user's settings.
class MainWindow : public QMainWindow {
  Q_OBJECT

public:
  MainWindow(HostApplication &application, std::shared_ptr<hostapi::IReportFactory> factory, QString databaseLocation,
             QWidget *parent = nullptr);
  ~MainWindow() override;

  // Handlers, callable from tests.
  // The list window of a class, opened or brought to the front.
  ListWindow *OpenList(const QString &className);
  RecordWindow *OpenRecord(const QString &className, int id);
  ReportsOverview *ShowReports();
  void ShowAbout();
  // Asks for a database file and opens it in place of the one open.
  void MnuFileOpen_Click();
  void OpenDatabase(const QString &location);
  void ChooseLanguage(const QString &language);
  QTreeWidget &navigator() { return *Navigator; }
  QMdiArea &windowArea() { return *WindowArea; }

protected:
  void closeEvent(QCloseEvent *event) override;

private:
  void buildMenus();
  void fillNavigator();
  void windowActivated(QMdiSubWindow *window);
  QMdiSubWindow *addWindow(QWidget *content, const QString &placeKey);
  void showDatabase();

  HostApplication &application_;
  std::shared_ptr<hostapi::IReportFactory> factory_;
  std::unique_ptr<ReportActions> actions_;
  QString databaseLocation_;
  QTreeWidget *Navigator;
  QMdiArea *WindowArea;
};

} // namespace kordel::host::desktop

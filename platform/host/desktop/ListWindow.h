#pragma once

#include <QWidget>

#include <memory>

class QComboBox;
class QLabel;
class QLineEdit;
class QMenuBar;
class QTableView;
class QTimer;

namespace kordel::nuvo {
class ExplorerObject;
}

namespace kordel::host {
class HostApplication;
}

namespace kordel::host::desktop {

class RecordListModel;
class ReportActions;
class ReportsMenu;

// A list window: the records of a class in a table, under the saved filter
// chosen in CboFilter (or all of them), narrowed by the text in TxtSearch,
// sorted by a click on a column's head, with several rows selectable. The
// explorer behind it is what the host's object model and the add-in see:
// its selection and listed rows follow the table.
class ListWindow : public QWidget {
  Q_OBJECT

public:
  ListWindow(HostApplication &application, ReportActions &actions, const QString &className, QWidget *parent = nullptr);
  ~ListWindow() override;

  const std::shared_ptr<nuvo::ExplorerObject> &explorer() const { return explorer_; }
  QString className() const;
  RecordListModel &model() { return *model_; }
  QTableView &table() { return *GridRecords; }

  // Handlers, callable from tests.
  void CboFilter_Click();
  void TxtSearch_Change();
  void GridRecords_SelectionChanged();
  void GridRecords_DblClick();
  // Selects the rows of these records, as a user's clicks would.
  void SelectRecords(const std::vector<int> &ids);

signals:
  // A record's window is wanted.
  void openRecord(const QString &className, int id);

private:
  void fillFilters();
  void showCount();

  HostApplication &application_;
  std::shared_ptr<nuvo::ExplorerObject> explorer_;
  RecordListModel *model_;
  QMenuBar *MenuBar;
  ReportsMenu *MnuReports;
  QComboBox *CboFilter;
  QLineEdit *TxtSearch;
  QTableView *GridRecords;
  QLabel *LblCount;
  QTimer *searchDelay_;
};

} // namespace kordel::host::desktop

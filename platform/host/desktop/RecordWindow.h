#pragma once

#include <QWidget>

#include <memory>

class QFormLayout;
class QMenuBar;
class QTabWidget;
class QTreeWidget;

namespace kordel::nuvo {
class InspectorObject;
}

namespace kordel::host {
class HostApplication;
}

namespace kordel::host::desktop {

class ReportActions;
class ReportsMenu;

// A record window: the record's fields with their texts, read only, and on
// a tab of its own each relation to many as a list of the related records,
// whose double-click opens their own record window. The inspector behind
// it is what the host's object model and the add-in see.
class RecordWindow : public QWidget {
  Q_OBJECT

public:
  RecordWindow(HostApplication &application, ReportActions &actions, const QString &className, int id,
               QWidget *parent = nullptr);
  ~RecordWindow() override;

  const std::shared_ptr<nuvo::InspectorObject> &inspector() const { return inspector_; }
  int recordId() const { return id_; }

  // A related record was double-clicked in one of the lists.
  void LvwRelated_DblClick(QTreeWidget &list);

signals:
  void openRecord(const QString &className, int id);

private:
  void fillFields();
  void fillRelations();

  HostApplication &application_;
  std::shared_ptr<nuvo::InspectorObject> inspector_;
  int id_;
  QMenuBar *MenuBar;
  ReportsMenu *MnuReports;
  QTabWidget *TabRecord;
  QFormLayout *fields_;
};

} // namespace kordel::host::desktop

#pragma once

#include "desktop/ReportActions.h"

#include <QMenu>

#include <functional>

namespace kordel::host::desktop {

// A command of a reports menu, named for tests, its text translated;
// nothing it raises reaches the event loop.
QAction *addReportCommand(QMenu &menu, const char *name, const char *text, std::function<void()> run);

// The commands on one report: Print..., Preview, Design, Rename..., Delete
// and Export document...; the report runs on what scope gives when chosen,
// and changed follows a rename or delete that took place.
void addReportCommands(QMenu &menu, ReportActions &actions, const ReportEntry &entry,
                       std::function<ReportScope()> scope, std::function<void()> changed);

// The Reports menu of a list or record window, filled each time it opens:
// a sub menu for each report of the window's class (Print..., Preview,
// Design, Rename..., Delete, Export document...), then New report... and
// Import document.... changed() tells that the reports were changed.
class ReportsMenu : public QMenu {
  Q_OBJECT

public:
  ReportsMenu(ReportActions &actions, std::function<ReportScope()> scope, QWidget *parent = nullptr);

  // Builds the entries for the reports there are now.
  void Fill();

signals:
  void changed();

private:
  ReportActions &actions_;
  std::function<ReportScope()> scope_;
};

} // namespace kordel::host::desktop

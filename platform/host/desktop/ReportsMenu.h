#pragma once

#include "desktop/ReportActions.h"

#include <QMenu>

#include <functional>

namespace kordel::host::desktop {

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

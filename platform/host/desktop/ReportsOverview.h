#pragma once

#include "desktop/ReportActions.h"

#include <QWidget>

#include <functional>

class QMenu;
class QTreeWidget;

namespace kordel::host::desktop {

// All reports of the database with their class and category; the same
// commands as a Reports menu, on the report chosen, from its context menu
// or the buttons' menu. Print and preview take the report's class's list
// window (one is opened when none is).
class ReportsOverview : public QWidget {
  Q_OBJECT

public:
  // scopeFor gives the list window of a report's class, opening it.
  ReportsOverview(ReportActions &actions, std::function<ReportScope(const ReportEntry &)> scopeFor,
                  QWidget *parent = nullptr);

  // Reads the reports again.
  void Fill();
  QTreeWidget &list() { return *LvwReports; }
  // The commands on the chosen report, as its context menu shows them.
  void FillMenu(QMenu &menu);

private:
  ReportActions &actions_;
  std::function<ReportScope(const ReportEntry &)> scopeFor_;
  QTreeWidget *LvwReports;
  QList<ReportEntry> entries_;
};

} // namespace kordel::host::desktop

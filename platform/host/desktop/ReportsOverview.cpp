#include "desktop/ReportsOverview.h"

#include "desktop/DesktopText.h"
#include "desktop/ReportsMenu.h"

#include "host/HostApplication.h"

#include "hostapi/Classes.h"

#include <QHeaderView>
#include <QMenu>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace kordel::host::desktop {

namespace {

constexpr int kEntryIndex = Qt::UserRole;

} // namespace

ReportsOverview::ReportsOverview(ReportActions &actions, std::function<ReportScope(const ReportEntry &)> scopeFor,
                                 QWidget *parent)
    : QWidget(parent), actions_(actions), scopeFor_(std::move(scopeFor)) {
  setObjectName(QStringLiteral("ReportsOverview"));
  setWindowTitle(desktopText("Reports"));
  LvwReports = new QTreeWidget(this);
  LvwReports->setObjectName(QStringLiteral("LvwReports"));
  LvwReports->setRootIsDecorated(false);
  LvwReports->setAlternatingRowColors(true);
  LvwReports->setSortingEnabled(true);
  LvwReports->setHeaderLabels({desktopText("Report"), desktopText("Class"), desktopText("Category")});
  LvwReports->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(LvwReports, &QTreeWidget::customContextMenuRequested, this, [this](const QPoint &where) {
    QMenu menu(this);
    FillMenu(menu);
    menu.exec(LvwReports->viewport()->mapToGlobal(where));
  });
  connect(LvwReports, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem *item) {
    const ReportEntry entry = entries_.value(item->data(0, kEntryIndex).toInt());
    actions_.preview(entry, scopeFor_(entry));
  });
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(LvwReports);
  Fill();
}

void ReportsOverview::Fill() {
  LvwReports->clear();
  entries_ = actions_.reportsOf(nullptr);
  for (int i = 0; i < entries_.size(); ++i) {
    const ReportEntry &entry = entries_[i];
    QString className = entry.reportClass;
    try {
      if (const auto cls = actions_.classOf(entry))
        className = cls->localName();
    } catch (...) {
      // A class the database lacks shows by its stored name.
    }
    auto *row = new QTreeWidgetItem(LvwReports, {entry.name, className, entry.category});
    row->setData(0, kEntryIndex, i);
  }
  LvwReports->sortByColumn(0, Qt::AscendingOrder);
  LvwReports->header()->resizeSections(QHeaderView::ResizeToContents);
}

void ReportsOverview::FillMenu(QMenu &menu) {
  if (const QTreeWidgetItem *current = LvwReports->currentItem()) {
    const ReportEntry entry = entries_.value(current->data(0, kEntryIndex).toInt());
    addReportCommands(
        menu, actions_, entry, [this, entry] { return scopeFor_(entry); }, [this] { Fill(); });
    menu.addSeparator();
  }
  addReportCommand(menu, "MnuReportImport", QT_TRANSLATE_NOOP("Desktop", "&Import document..."), [this] {
    if (actions_.importDocument())
      Fill();
  });
}

} // namespace kordel::host::desktop

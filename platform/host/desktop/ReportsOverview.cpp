#include "desktop/ReportsOverview.h"

#include "desktop/DesktopText.h"

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
  const QTreeWidgetItem *current = LvwReports->currentItem();
  const auto add = [&](const char *name, const char *text, std::function<void()> run) {
    QAction *action = menu.addAction(desktopText(text), this, [run = std::move(run)] {
      try {
        run();
      } catch (...) {
      }
    });
    action->setObjectName(QString::fromLatin1(name));
    return action;
  };
  if (current) {
    const ReportEntry entry = entries_.value(current->data(0, kEntryIndex).toInt());
    add("MnuReportPrint", QT_TRANSLATE_NOOP("Desktop", "&Print..."),
        [this, entry] { actions_.print(entry, scopeFor_(entry)); });
    add("MnuReportPreview", QT_TRANSLATE_NOOP("Desktop", "Pre&view"),
        [this, entry] { actions_.preview(entry, scopeFor_(entry)); });
    add("MnuReportDesign", QT_TRANSLATE_NOOP("Desktop", "&Design"),
        [this, entry] { actions_.design(entry, scopeFor_(entry)); });
    menu.addSeparator();
    add("MnuReportRename", QT_TRANSLATE_NOOP("Desktop", "Re&name..."), [this, entry] {
      if (actions_.rename(entry))
        Fill();
    });
    add("MnuReportDelete", QT_TRANSLATE_NOOP("Desktop", "De&lete"), [this, entry] {
      if (actions_.remove(entry))
        Fill();
    });
    add("MnuReportExport", QT_TRANSLATE_NOOP("Desktop", "&Export document..."),
        [this, entry] { actions_.exportDocument(entry); });
    menu.addSeparator();
  }
  add("MnuReportImport", QT_TRANSLATE_NOOP("Desktop", "&Import document..."), [this] {
    if (actions_.importDocument())
      Fill();
  });
}

} // namespace kordel::host::desktop

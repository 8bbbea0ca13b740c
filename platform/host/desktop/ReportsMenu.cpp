#include "desktop/ReportsMenu.h"

#include "desktop/DesktopText.h"

#include "hostapi/Classes.h"

namespace kordel::host::desktop {

ReportsMenu::ReportsMenu(ReportActions &actions, std::function<ReportScope()> scope, QWidget *parent)
    : QMenu(desktopText("&Reports"), parent), actions_(actions), scope_(std::move(scope)) {
  setObjectName(QStringLiteral("MnuReports"));
  connect(this, &QMenu::aboutToShow, this, [this] { Fill(); });
}

QAction *addReportCommand(QMenu &menu, const char *name, const char *text, std::function<void()> run) {
  QAction *action = menu.addAction(desktopText(text), &menu, [run = std::move(run)] {
    try {
      run();
    } catch (...) {
      // The actions tell the user of their failures themselves.
    }
  });
  action->setObjectName(QString::fromLatin1(name));
  return action;
}

void addReportCommands(QMenu &menu, ReportActions &actions, const ReportEntry &entry,
                       std::function<ReportScope()> scope, std::function<void()> changed) {
  addReportCommand(menu, "MnuReportPrint", QT_TRANSLATE_NOOP("Desktop", "&Print..."),
                   [&actions, entry, scope] { actions.print(entry, scope()); });
  addReportCommand(menu, "MnuReportPreview", QT_TRANSLATE_NOOP("Desktop", "Pre&view"),
                   [&actions, entry, scope] { actions.preview(entry, scope()); });
  addReportCommand(menu, "MnuReportDesign", QT_TRANSLATE_NOOP("Desktop", "&Design"),
                   [&actions, entry, scope] { actions.design(entry, scope()); });
  menu.addSeparator();
  addReportCommand(menu, "MnuReportRename", QT_TRANSLATE_NOOP("Desktop", "Re&name..."), [&actions, entry, changed] {
    if (actions.rename(entry))
      changed();
  });
  addReportCommand(menu, "MnuReportDelete", QT_TRANSLATE_NOOP("Desktop", "De&lete"), [&actions, entry, changed] {
    if (actions.remove(entry))
      changed();
  });
  addReportCommand(menu, "MnuReportExport", QT_TRANSLATE_NOOP("Desktop", "&Export document..."),
                   [&actions, entry] { actions.exportDocument(entry); });
}

void ReportsMenu::Fill() {
  clear();
  try {
    const ReportScope scope = scope_();
    for (const ReportEntry &entry : actions_.reportsOf(scope.reportClass.get())) {
      QMenu *report = addMenu(QString(entry.name).replace(u'&', QStringLiteral("&&")));
      report->setObjectName(QStringLiteral("MnuReport"));
      addReportCommands(*report, actions_, entry, scope_, [this] { emit changed(); });
    }
    if (!actions().isEmpty())
      addSeparator();
    addReportCommand(*this, "MnuReportNew", QT_TRANSLATE_NOOP("Desktop", "&New report..."), [this] {
      if (actions_.newReport(scope_().reportClass))
        emit changed();
    });
    addReportCommand(*this, "MnuReportImport", QT_TRANSLATE_NOOP("Desktop", "&Import document..."), [this] {
      if (actions_.importDocument())
        emit changed();
    });
  } catch (...) {
    addAction(desktopText("The reports could not be read."))->setEnabled(false);
  }
}

} // namespace kordel::host::desktop

#include "desktop/ReportsMenu.h"

#include "desktop/DesktopText.h"

#include "hostapi/Classes.h"

namespace kordel::host::desktop {

ReportsMenu::ReportsMenu(ReportActions &actions, std::function<ReportScope()> scope, QWidget *parent)
    : QMenu(desktopText("&Reports"), parent), actions_(actions), scope_(std::move(scope)) {
  setObjectName(QStringLiteral("MnuReports"));
  connect(this, &QMenu::aboutToShow, this, [this] { Fill(); });
}

void ReportsMenu::Fill() {
  clear();
  try {
    const ReportScope scope = scope_();
    const auto add = [this](QMenu &menu, const char *name, const char *text, std::function<void()> run) {
      QAction *action = menu.addAction(desktopText(text), this, [run = std::move(run)] {
        // Nothing may escape into the event loop.
        try {
          run();
        } catch (...) {
        }
      });
      action->setObjectName(QString::fromLatin1(name));
    };
    for (const ReportEntry &entry : actions_.reportsOf(scope.reportClass.get())) {
      QMenu *report = addMenu(QString(entry.name).replace(u'&', QStringLiteral("&&")));
      report->setObjectName(QStringLiteral("MnuReport"));
      add(*report, "MnuReportPrint", QT_TRANSLATE_NOOP("Desktop", "&Print..."),
          [this, entry] { actions_.print(entry, scope_()); });
      add(*report, "MnuReportPreview", QT_TRANSLATE_NOOP("Desktop", "Pre&view"),
          [this, entry] { actions_.preview(entry, scope_()); });
      add(*report, "MnuReportDesign", QT_TRANSLATE_NOOP("Desktop", "&Design"),
          [this, entry] { actions_.design(entry, scope_()); });
      report->addSeparator();
      add(*report, "MnuReportRename", QT_TRANSLATE_NOOP("Desktop", "Re&name..."), [this, entry] {
        if (actions_.rename(entry))
          emit changed();
      });
      add(*report, "MnuReportDelete", QT_TRANSLATE_NOOP("Desktop", "De&lete"), [this, entry] {
        if (actions_.remove(entry))
          emit changed();
      });
      add(*report, "MnuReportExport", QT_TRANSLATE_NOOP("Desktop", "&Export document..."),
          [this, entry] { actions_.exportDocument(entry); });
    }
    if (!actions().isEmpty())
      addSeparator();
    add(*this, "MnuReportNew", QT_TRANSLATE_NOOP("Desktop", "&New report..."), [this] {
      if (actions_.newReport(scope_().reportClass))
        emit changed();
    });
    add(*this, "MnuReportImport", QT_TRANSLATE_NOOP("Desktop", "&Import document..."), [this] {
      if (actions_.importDocument())
        emit changed();
    });
  } catch (...) {
    addAction(desktopText("The reports could not be read."))->setEnabled(false);
  }
}

} // namespace kordel::host::desktop

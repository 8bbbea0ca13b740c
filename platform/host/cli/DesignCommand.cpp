#include "cli/DesignCommand.h"

#include "cli/DataCommands.h"
#include "cli/ReportingUi.h"
#include "cli/RunRange.h"

#include "host/AddinHost.h"
#include "host/BatchUi.h"
#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/QtUi.h"
#include "host/ReportCatalog.h"

#include "core/Error.h"
#include "hostapi/Addin.h"
#include "hostapi/Classes.h"
#include "hostapi/Report.h"

#include <cstdio>

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex design");

void progress(const QString &line) {
  std::fprintf(stderr, "%s\n", line.toUtf8().constData());
  std::fflush(stderr);
}

} // namespace

int designReport(HostApplication &host, const Arguments &arguments) {
  const bool makeNew = arguments.has(QStringLiteral("--new"));
  if (makeNew == arguments.has(QStringLiteral("--report")))
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("give either --report NAME or --new"));
  if (makeNew && arguments.value(QStringLiteral("--class")).isEmpty())
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("--new needs --class CLASS"));
  if (!windowsReachTheUser())
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The designer needs a display: none is set (DISPLAY or WAYLAND_DISPLAY), or "
                              "the window platform (QT_QPA_PLATFORM) draws offscreen"));

  const QString language = arguments.value(QStringLiteral("--lang"));
  const auto application =
      std::make_shared<HostApplication>(host.settings(), host.log(), language.isEmpty() ? host.language() : language);
  AddinHost addins(*application);
  addins.loadPlugins(HostPaths::addinFolder());
  openDatabase(*application, arguments.value(QStringLiteral("--db")), nuvo::OpenMode::ReadWrite);
  const auto factory = addins.connectReportFactory(QString::fromLatin1(hostapi::kAddinProgId));
  ReportCatalog catalog(*application, factory);

  std::shared_ptr<hostapi::IReport> report;
  std::shared_ptr<hostapi::Class> reportClass;
  if (makeNew) {
    // Without a name the report properties dialog asks for one.
    const QString name = arguments.value(QStringLiteral("--name"));
    for (const ReportEntry &entry : catalog.list())
      if (entry.name.compare(name, Qt::CaseInsensitive) == 0)
        raiseError(ErrorNumber::FileAlreadyExists, kSource,
                   QStringLiteral("A report named \"%1\" exists already; give the new one another name").arg(name));
    reportClass =
        application->classes()->lookup(arguments.value(QStringLiteral("--class")), hostapi::LookupMode::LocalFirst);
    if (!reportClass)
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("The database has no class \"%1\"").arg(arguments.value(QStringLiteral("--class"))));
    report = factory->IReportFactory_Create();
    report->IReport_SetDatabase(application->database());
    report->IReport_SetName(name);
  } else {
    const ReportEntry entry = catalog.find(arguments.value(QStringLiteral("--report")));
    report = catalog.open(entry);
    reportClass = application->classes()->lookup(entry.reportClass, hostapi::LookupMode::Either);
  }
  // The designer's Print asks for the rows in the print dialog, which
  // offers those of the class's list window, as in the desktop client.
  if (reportClass)
    openListWindow(*application, *reportClass);

  const auto ui = std::make_shared<ReportingUi>(std::make_shared<BatchUi>(), std::make_shared<QtUi>());
  hostapi::installUi(ui);
  struct BackToBatch {
    ~BackToBatch() { hostapi::installUi(std::make_shared<BatchUi>()); }
  } backToBatch;
  progress(report->IReport_Name().isEmpty()
               ? QStringLiteral("Designing a new report of %1").arg(reportClass->localName())
               : QStringLiteral("Designing \"%1\"").arg(report->IReport_Name()));
  bool cancel = false;
  report->IReport_Configure(cancel, reportClass);
  // The designer's saves went to the report's file at once; the stored
  // record follows. A new report that never came out complete is not
  // kept.
  if (!makeNew || !cancel)
    catalog.store(*report);
  progress(QStringLiteral("Closed the designer of \"%1\"").arg(report->IReport_Name()));
  return ui->failures() > 0 ? 1 : 0;
}

} // namespace kordel::host::cli

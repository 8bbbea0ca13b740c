#include "cli/RunCommands.h"

#include "cli/DataCommands.h"
#include "cli/ExportTarget.h"
#include "cli/PageCountingExporter.h"
#include "cli/ReportingUi.h"
#include "cli/RunRange.h"
#include "cli/RunRequest.h"
#include "cli/SubPageFilters.h"

#include "host/AddinHost.h"
#include "host/BatchUi.h"
#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/PrinterList.h"
#include "host/QtUi.h"
#include "host/ReportCatalog.h"
#include "host/ReportDocumentFile.h"

#include "cli/Options.h"
#include "core/Error.h"
#include "hostapi/Addin.h"
#include "hostapi/Classes.h"
#include "hostapi/Filters.h"
#include "hostapi/Report.h"
#include "hostapi/ReportContext.h"

#include <QTemporaryDir>

#include <cstdio>
#include <optional>

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex");

void progress(const QString &line) {
  std::fprintf(stderr, "%s\n", line.toUtf8().constData());
  std::fflush(stderr);
}

QString counted(int count, const char *one, const char *many) {
  return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

// The printer of that name as the system spells it; raises 5 naming the
// printers there are, so that a mistyped name never prints elsewhere.
QString printerNamed(const QString &name) {
  const auto printers = PrinterList::fromSystem();
  QStringList names;
  for (int i = 1; i <= printers->count(); ++i) {
    const QString candidate = printers->item(Variant(i))->name();
    if (candidate.compare(name, Qt::CaseInsensitive) == 0)
      return candidate;
    names << QStringLiteral("\"%1\"").arg(candidate);
  }
  raiseError(
      ErrorNumber::InvalidCall, kSource,
      QStringLiteral("There is no printer \"%1\"; the printers are %2").arg(name, names.join(QStringLiteral(", "))));
}

// One run of a report: an application of its own in the language asked
// for, with the add-in connected, the database open, the report found and
// the run context built from the request.
class ReportRun {
public:
  ReportRun(HostApplication &host, const RunRequest &request)
      : application_(std::make_shared<HostApplication>(
            host.settings(), host.log(), request.language.isEmpty() ? host.language() : request.language)),
        addins_(*application_) {
    addins_.loadPlugins(HostPaths::addinFolder());
    // A run reads the database; what it keeps of a run goes to the settings.
    openDatabase(*application_, request.database, nuvo::OpenMode::ReadOnly);
    catalog_.emplace(*application_, addins_.connectReportFactory(QString::fromLatin1(hostapi::kAddinProgId)));
    entry_ = catalog_->find(request.report);
    reportClass_ = reportClass();
    const RunRange range = RunRange::resolve(*application_, reportClass_, request.range);
    records_ = range.records;

    context_ = std::dynamic_pointer_cast<hostapi::ReportContext>(
        application_->createObject(QString::fromLatin1(hostapi::kReportContextProgId)));
    if (!context_)
      raiseError(ErrorNumber::CannotCreateObject, kSource, QString::fromLatin1(hostapi::kReportContextProgId));
    context_->setContextClass(reportClass_);
    context_->setName(range.name);
    context_->setRange(range.range);
    if (!request.subFilters.isEmpty())
      for (const auto &[guid, filter] : resolveSubPageFilters(*reportClass_, document().pages(), request.subFilters))
        context_->setProperty(guid, Variant(ObjectRef(filter)));
  }

  HostApplication &application() { return *application_; }
  hostapi::ReportContext &context() { return *context_; }
  const QString &reportName() const { return entry_.name; }
  int records() const { return records_; }
  // What is run, for the progress line.
  QString subject() const {
    return QStringLiteral("\"%1\" for %2 of %3")
        .arg(entry_.name, counted(records_, "record", "records"), reportClass_->localName());
  }

  // Hands the context to the report object, which prints, previews or
  // exports as the context says, with a Ui that writes its messages to
  // standard error and shows windows through the given Ui. Returns the
  // number of failures the report object reported.
  int run(RunMode mode, std::shared_ptr<hostapi::Ui> windows, bool dialog = false) {
    const auto ui = std::make_shared<ReportingUi>(std::make_shared<BatchUi>(), std::move(windows));
    hostapi::installUi(ui);
    // The run's windows go with the run, while the application still runs.
    struct BackToBatch {
      ~BackToBatch() { hostapi::installUi(std::make_shared<BatchUi>()); }
    } backToBatch;
    const auto report = catalog_->open(entry_);
    if (mode == RunMode::Preview)
      report->IReport_PrintPreview(ObjectRef(context_));
    else
      report->IReport_PrintOut(dialog, ObjectRef(context_));
    return ui->failures();
  }

private:
  std::shared_ptr<hostapi::Class> reportClass() const {
    if (entry_.reportClass.isEmpty())
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("The report \"%1\" names no class to print").arg(entry_.name));
    const auto classes = application_->classes();
    if (!classes->exists(entry_.reportClass))
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("The report \"%1\" is built on the class \"%2\", which this database lacks")
                     .arg(entry_.name, entry_.reportClass));
    return classes->item(entry_.reportClass);
  }

  // The report's document as the add-in keeps it, read for its pages.
  ReportDocumentFile document() const {
    QTemporaryDir scratch;
    if (!scratch.isValid())
      raiseError(ErrorNumber::PathNotFound, kSource, QStringLiteral("No temporary folder for the report's document"));
    const QString path = scratch.filePath(QStringLiteral("report.xml"));
    catalog_->exportDocument(entry_.name, path);
    return ReportDocumentFile::read(path);
  }

  std::shared_ptr<HostApplication> application_;
  AddinHost addins_;
  std::optional<ReportCatalog> catalog_;
  ReportEntry entry_;
  std::shared_ptr<hostapi::Class> reportClass_;
  int records_ = 0;
  std::shared_ptr<hostapi::ReportContext> context_;
};

// The device the report object printed on, as it left it in the context.
QString printerUsed(hostapi::ReportContext &context) {
  const Variant printer = context.getProperty(QStringLiteral("sysprop__printerobject"));
  const QString name =
      printer.isObject() ? printer.toObject()->get(QStringLiteral("DeviceName")).toString() : QString();
  return name.isEmpty() ? QStringLiteral("the report's printer") : name;
}

} // namespace

int exportReport(HostApplication &host, const Arguments &arguments) {
  const RunRequest request = RunRequest::read(RunMode::Export, arguments);
  const ExportTarget target = ExportTarget::check(request.outFile);
  ReportRun run(host, request);
  // Each record takes a row of a worksheet at least: a workbook of the old
  // format that cannot hold them is refused before the run, not after it.
  constexpr int kOldWorksheetRows = 65536;
  if (target.path().endsWith(QLatin1String(".xls"), Qt::CaseInsensitive) && run.records() > kOldWorksheetRows)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The range holds %1 records, a row each at least, but an .xls worksheet ends at row "
                              "65,536: export to .xlsx, whose worksheets hold over a million rows")
                   .arg(run.records()));
  run.context().setFileName(target.path());
  QList<QPair<QString, Variant>> settings;
  if (!request.xlsLayout.isEmpty())
    settings.append({QStringLiteral("Layout"), request.xlsLayout});
  const auto pages =
      PageCountingExporter::countExportsOf(run.application(), QString::fromLatin1(target.exporterProgId()), settings);

  progress(QStringLiteral("Exporting %1 to %2").arg(run.subject(), target.path()));
  if (run.run(RunMode::Export, std::make_shared<BatchUi>()) > 0)
    return 1;
  if (!target.written())
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The report \"%1\" wrote no file %2").arg(run.reportName(), target.path()));
  progress(*pages < 0 ? QStringLiteral("Wrote %1").arg(target.path())
                      : QStringLiteral("Wrote %1: %2").arg(target.path(), counted(*pages, "page", "pages")));
  return 0;
}

int printReport(HostApplication &host, const Arguments &arguments) {
  const RunRequest request = RunRequest::read(RunMode::Print, arguments);
  if (request.dialog && !windowsReachTheUser())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("orvex"),
               QStringLiteral("The print dialog needs a display: none is set (DISPLAY or WAYLAND_DISPLAY), or the "
                              "window platform (QT_QPA_PLATFORM) draws offscreen; give a range (--filter, --ids, "
                              "--all or --explorer) to print without it"));
  const QString printer = request.printer.isEmpty() ? QString() : printerNamed(request.printer);
  ReportRun run(host, request);
  if (!printer.isEmpty())
    run.context().setPrinterName(printer);
  if (request.copies > 0)
    run.context().setProperty(QStringLiteral("sysprop__copies"), request.copies);

  if (request.dialog) {
    progress(QStringLiteral("Opening the print dialog for %1").arg(run.subject()));
    if (run.run(RunMode::Print, std::make_shared<QtUi>(), true) > 0)
      return 1;
    progress(QStringLiteral("Closed the print dialog of \"%1\"").arg(run.reportName()));
    return 0;
  }
  progress(QStringLiteral("Printing %1 on %2%3")
               .arg(run.subject(), printer.isEmpty() ? QStringLiteral("the report's printer") : printer,
                    request.copies > 0 ? QStringLiteral(", ") + counted(request.copies, "copy", "copies") : QString()));
  if (run.run(RunMode::Print, std::make_shared<BatchUi>()) > 0)
    return 1;
  progress(QStringLiteral("Printed \"%1\" on %2: the printer took the job")
               .arg(run.reportName(), printerUsed(run.context())));
  return 0;
}

int previewReport(HostApplication &host, const Arguments &arguments) {
  const RunRequest request = RunRequest::read(RunMode::Preview, arguments);
  if (!windowsReachTheUser())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("orvex"),
               QStringLiteral("The preview needs a display: none is set (DISPLAY or WAYLAND_DISPLAY), or "
                              "the window platform (QT_QPA_PLATFORM) draws offscreen"));
  ReportRun run(host, request);
  progress(QStringLiteral("Previewing %1").arg(run.subject()));
  if (run.run(RunMode::Preview, std::make_shared<QtUi>()) > 0)
    return 1;
  progress(QStringLiteral("Closed the preview of \"%1\"").arg(run.reportName()));
  return 0;
}

} // namespace kordel::host::cli

#include "desktop/ReportActions.h"

#include "desktop/DesktopFeedback.h"
#include "desktop/DesktopText.h"

#include "host/HostApplication.h"

#include "nuvo/ExplorerObject.h"

#include "core/Error.h"
#include "hostapi/Addin.h"
#include "hostapi/Classes.h"
#include "hostapi/Explorer.h"
#include "hostapi/Pool.h"
#include "hostapi/Report.h"
#include "hostapi/ReportContext.h"
#include "hostapi/Ui.h"

#include <QApplication>
#include <QCursor>
#include <QDir>

#include <algorithm>

namespace kordel::host::desktop {

namespace {

QString documentFilter() { return desktopText("Report documents (*.xml)|*.xml|All files (*)|*"); }

} // namespace

ReportActions::ReportActions(HostApplication &application, std::shared_ptr<hostapi::IReportFactory> factory)
    : application_(application), factory_(factory), catalog_(application, factory) {}

std::shared_ptr<hostapi::Class> ReportActions::classOf(const ReportEntry &entry) const {
  return application_.classes()->lookup(entry.reportClass, hostapi::LookupMode::Either);
}

QList<ReportEntry> ReportActions::reportsOf(const hostapi::Class *cls) const {
  QList<ReportEntry> reports;
  for (const ReportEntry &entry : catalog_.list())
    if (!cls || entry.reportClass.compare(cls->name(), Qt::CaseInsensitive) == 0)
      reports.append(entry);
  std::sort(reports.begin(), reports.end(),
            [](const ReportEntry &a, const ReportEntry &b) { return QString::localeAwareCompare(a.name, b.name) < 0; });
  return reports;
}

std::shared_ptr<hostapi::ReportContext> ReportActions::previewContext(const ReportScope &scope) const {
  auto context = std::dynamic_pointer_cast<hostapi::ReportContext>(
      application_.createObject(QString::fromLatin1(hostapi::kReportContextProgId)));
  context->setContextClass(scope.reportClass);
  if (const auto inspector = std::dynamic_pointer_cast<hostapi::Inspector>(scope.inspector)) {
    context->setRange(Variant(scope.inspector));
    return context;
  }
  if (const auto explorer = std::dynamic_pointer_cast<hostapi::Explorer>(scope.explorer)) {
    const auto selected = explorer->selection();
    const auto rows = selected->count() > 0 ? selected : explorer->items();
    context->setRange(Variant(ObjectRef(rows->pool())));
  }
  return context;
}

void ReportActions::print(const ReportEntry &entry, const ReportScope &scope) {
  try {
    const auto report = catalog_.open(entry);
    // No context: the add-in takes the class's list window, as the client
    // always let it; a record window hands its record.
    ObjectRef context;
    if (scope.inspector) {
      auto own = previewContext(scope);
      context = own;
    }
    report->IReport_PrintOut(true, context);
  } catch (...) {
    tellFailure(desktopText("The report could not be printed."), desktopText("Reports"));
  }
}

void ReportActions::preview(const ReportEntry &entry, const ReportScope &scope) {
  try {
    const auto report = catalog_.open(entry);
    const auto context = previewContext(scope);
    report->IReport_PrintPreview(ObjectRef(context));
  } catch (...) {
    tellFailure(desktopText("The report could not be previewed."), desktopText("Reports"));
  }
}

void ReportActions::design(const ReportEntry &entry, const ReportScope &scope) {
  try {
    const auto report = catalog_.open(entry);
    bool cancel = false;
    report->IReport_Configure(cancel, scope.reportClass);
    if (!cancel)
      catalog_.store(*report);
  } catch (...) {
    tellFailure(desktopText("The report could not be designed."), desktopText("Reports"));
  }
}

bool ReportActions::newReport(const std::shared_ptr<hostapi::Class> &cls) {
  try {
    auto report = factory_->IReportFactory_Create();
    report->IReport_SetDatabase(application_.database());
    bool cancel = false;
    report->IReport_Configure(cancel, cls);
    // The designer's save writes the report's file; a new report closed
    // without a save leaves nothing to keep.
    const QString guid = report->IReport_GUID();
    const QList<ReportEntry> reports = catalog_.list();
    const bool saved =
        std::any_of(reports.begin(), reports.end(), [&](const ReportEntry &entry) { return entry.guid == guid; });
    if (cancel || !saved)
      return false;
    catalog_.store(*report);
    return true;
  } catch (...) {
    tellFailure(desktopText("The new report could not be made."), desktopText("Reports"));
    return false;
  }
}

bool ReportActions::rename(const ReportEntry &entry) {
  try {
    const auto name =
        hostapi::ui().inputBox(desktopText("The report's new name:"), desktopText("Rename report"), entry.name);
    if (!name || *name == entry.name)
      return false;
    catalog_.rename(entry, *name);
    return true;
  } catch (...) {
    tellFailure(desktopText("The report could not be renamed."), desktopText("Reports"));
    return false;
  }
}

bool ReportActions::remove(const ReportEntry &entry) {
  try {
    const int answer =
        hostapi::ui().messageBox(desktopText("Delete the report \"%1\"? This cannot be undone.").arg(entry.name),
                                 hostapi::MsgBox::YesNo | hostapi::MsgBox::Question | hostapi::MsgBox::DefaultButton2,
                                 desktopText("Delete report"));
    if (answer != hostapi::MsgBox::Yes)
      return false;
    catalog_.remove(entry);
    return true;
  } catch (...) {
    tellFailure(desktopText("The report could not be deleted."), desktopText("Reports"));
    return false;
  }
}

bool ReportActions::importDocument() {
  try {
    hostapi::FileDialogRequest request;
    request.title = desktopText("Import report document");
    request.folder = QDir::homePath();
    request.filter = documentFilter();
    const QString path = hostapi::ui().openFile(request);
    if (path.isEmpty())
      return false;
    WaitCursor busy;
    catalog_.importDocument(path, QString());
    return true;
  } catch (...) {
    tellFailure(desktopText("The document could not be imported."), desktopText("Reports"));
    return false;
  }
}

void ReportActions::exportDocument(const ReportEntry &entry) {
  try {
    hostapi::FileDialogRequest request;
    request.title = desktopText("Export report document");
    request.folder = QDir::homePath();
    request.filter = documentFilter();
    request.fileName = entry.name + QStringLiteral(".xml");
    const QString path = hostapi::ui().saveFile(request);
    if (path.isEmpty())
      return;
    WaitCursor busy;
    catalog_.exportDocument(entry.name, path);
  } catch (...) {
    tellFailure(desktopText("The document could not be exported."), desktopText("Reports"));
  }
}

} // namespace kordel::host::desktop

#pragma once

#include "host/ReportCatalog.h"

#include "core/Object.h"

#include <QString>

#include <memory>

namespace kordel::hostapi {
class Class;
class IReportFactory;
class ReportContext;
} // namespace kordel::hostapi

namespace kordel::host {
class HostApplication;
}

namespace kordel::host::desktop {

// Where a report is run from: a list window (its explorer) or a record
// window (its inspector), and the class they show.
struct ReportScope {
  std::shared_ptr<hostapi::Class> reportClass;
  ObjectRef explorer;  // the list window's, or nullptr
  ObjectRef inspector; // the record window's, or nullptr
};

// What the Reports menus and the reports overview do with a report, through
// the add-in's report objects and the host's catalog, as the client has
// always called them: print with the dialog, preview, design, and the
// host's own new, rename, delete, import and export. The user is asked
// through the Ui seam; a failure is shown there and changes nothing.
class ReportActions {
public:
  ReportActions(HostApplication &application, std::shared_ptr<hostapi::IReportFactory> factory);

  ReportCatalog &catalog() { return catalog_; }
  // The class of a report; nullptr when the database lacks it.
  std::shared_ptr<hostapi::Class> classOf(const ReportEntry &entry) const;
  // The reports of a class, by name; all reports for nullptr.
  QList<ReportEntry> reportsOf(const hostapi::Class *cls) const;

  // The print dialog on the rows of the scope.
  void print(const ReportEntry &entry, const ReportScope &scope);
  // The preview of the scope's selection, or of all it lists when nothing
  // is selected; of a record window's record.
  void preview(const ReportEntry &entry, const ReportScope &scope);
  // The designer on the report; kept when it comes out complete.
  void design(const ReportEntry &entry, const ReportScope &scope);
  // A new report of the class, named in the report properties dialog;
  // true when one was made.
  bool newReport(const std::shared_ptr<hostapi::Class> &cls);
  // Each true when the report list changed.
  bool rename(const ReportEntry &entry);
  bool remove(const ReportEntry &entry);
  bool importDocument();
  void exportDocument(const ReportEntry &entry);

private:
  // The host context of a preview: the selection or all listed rows as a
  // pool, or the record window's record.
  std::shared_ptr<hostapi::ReportContext> previewContext(const ReportScope &scope) const;

  HostApplication &application_;
  std::shared_ptr<hostapi::IReportFactory> factory_;
  ReportCatalog catalog_;
};

} // namespace kordel::host::desktop

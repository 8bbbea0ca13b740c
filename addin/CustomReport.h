#pragma once

#include "core/Object.h"
#include "hostapi/PropertyBag.h"
#include "hostapi/Report.h"

#include <cstdint>
#include <memory>

namespace kordel::hostapi {
class HostFile;
class ReportContext;
} // namespace kordel::hostapi

namespace kordel::addin {

class ContextManager;
class Report;

// The report object the host sees. It carries the identifying values of a
// report and its contents as an opaque value, and makes the Report document
// from them only when a caller needs it. The host keeps it as a stored
// record (Class_ReadProperties / Class_WriteProperties) and as a host file
// (IReport_Refresh / IReport_Update). Late-bound: Name, Icon, Category,
// Supports, Modified, Refresh, Update, Policy, Database, GUID, Type.
class CustomReport : public Object, public hostapi::IReport, public hostapi::PersistPropertyBag {
public:
  QString typeName() const override { return QStringLiteral("CustomReport"); }

  QString IReport_Name() const override { return reportName_; }
  void IReport_SetName(const QString &name) override;
  std::shared_ptr<hostapi::Picture> IReport_Icon() override;
  QString IReport_Category() const override { return reportCategory_; }
  void IReport_SetCategory(const QString &category) override;
  bool IReport_Supports(std::int32_t capability, const Variant &argument) override;
  bool IReport_Modified() const override { return modified_; }
  void IReport_SetModified(bool modified) override { modified_ = modified; }
  void IReport_Refresh(bool reload) override;
  void IReport_Update() override;
  std::int32_t IReport_Policy() const override { return policy_; }
  void IReport_SetPolicy(std::int32_t policy) override;
  std::shared_ptr<hostapi::Database> IReport_Database() const override { return database_; }
  void IReport_SetDatabase(std::shared_ptr<hostapi::Database> database) override { database_ = std::move(database); }
  QString IReport_GUID() override;
  void IReport_SetGUID(const QString &guid) override;
  QString IReport_Type() const override;

  void IReport_PrintOut(bool showDialog, const ObjectRef &context) override;
  void IReport_PrintPreview(const ObjectRef &context) override;
  // Opens the designer on the report; cancel is true when the report did
  // not come out of it complete. A report of another class than the one
  // given is refused.
  void IReport_Configure(bool &cancel, const std::shared_ptr<hostapi::Class> &reportClass) override;

  // Reads the record in its layout, or in the older one ("Name", "A", "C",
  // "Contents") when any value of the current layout is missing. Errors of
  // the older layout's reads reach the caller.
  void Class_ReadProperties(const hostapi::PropertyBag &bag) override;
  // Writes the record; the contents pass through the document, so contents
  // that do not load fail the write, which is reported, not raised.
  void Class_WriteProperties(hostapi::PropertyBag &bag) override;

  // The designer saved the document: take its name and contents and store
  // the report in its host file at once.
  void m_Designer_OnSave(const std::shared_ptr<Report> &report);
  // The designer window on the report, modally; a new report gets its
  // class first. ok: the report came out complete.
  void Configure(const std::shared_ptr<Report> &report, const std::shared_ptr<hostapi::Class> &reportClass, bool &ok);

  // Loads the document and prints, previews (preview) or exports it.
  void PrintReport(bool preview, bool showDialog, const std::shared_ptr<hostapi::ReportContext> &context);
  void PrintLoadedReport(const std::shared_ptr<Report> &report, bool preview, bool showDialog,
                         const std::shared_ptr<hostapi::ReportContext> &context);
  // The print dialog comes back here: mode 0 print, 1 preview, 2 export.
  void m_PageSetup_OnPrint(std::int32_t mode, const std::shared_ptr<Report> &report,
                           const std::shared_ptr<hostapi::ReportContext> &context, bool &result);
  // Runs the report: mode 0 prints at once, 1 previews (result: the user
  // printed from the preview), 2 exports to the context's export file.
  void RunReport(int mode, const std::shared_ptr<Report> &report,
                 const std::shared_ptr<hostapi::ReportContext> &context, bool &result);
  // Exports the pages by the file's extension (pdf, xls, html, htm, rtf,
  // txt, tiff, in any case); false for any other extension.
  bool ExportReport(const QString &fileName, const Variant &pages);
  // The exporter's class for the file's extension; nullptr for none.
  static const char *ExportProgIdFor(const QString &fileName);

  // The class the report is built on; "" when it has none yet.
  const QString &ReportClass() const { return reportClass_; }
  bool Refreshed() const { return refreshed_; }

protected:
  const MemberTable &memberTable() const override;

private:
  // A new document made from the contents, or from the host file when the
  // object holds none. The host's name wins over the document's.
  std::shared_ptr<Report> GetReport();
  std::shared_ptr<hostapi::HostFile> OpenHostFile();
  // The add-in's own Context becomes a new host context with the same
  // class, name, range, properties and sub filters; a host context passes.
  std::shared_ptr<hostapi::ReportContext> MakeHostContext(const ObjectRef &context);
  // The printer the context names, or the one last used for the report, or
  // the default printer; nullptr when none is found. Never raises.
  ObjectRef ResolvePrinter(const std::shared_ptr<hostapi::ReportContext> &context,
                           const std::shared_ptr<Report> &report);
  // The print dialog, modally; it runs the report through OnPrint.
  void ShowPrintDialog(const std::shared_ptr<Report> &report, const std::shared_ptr<ContextManager> &contextManager);
  bool SupportsClass(const Variant &argument);
  void ReadOlderLayout(const hostapi::PropertyBag &bag);

  QString reportCategory_;
  Variant reportContents_;
  std::shared_ptr<hostapi::Database> database_;
  QString reportGuid_;
  bool modified_ = false;
  QString reportName_;
  std::int32_t policy_ = 0;
  bool refreshed_ = false;
  QString reportClass_;
};

} // namespace kordel::addin

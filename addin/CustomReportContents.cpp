// The link between a CustomReport's opaque contents and its Report
// document: the document made on demand, the contents written into the
// stored record, and the report stored in its host file.

#include "addin/CustomReport.h"

#include "common/Globals.h"
#include "core/Error.h"
#include "document/Report.h"
#include "hostapi/HostFile.h"

namespace kordel::addin {

std::shared_ptr<Report> CustomReport::GetReport() {
  Variant contents = reportContents_;
  if (contents.isEmpty()) {
    contents = OpenHostFile()->contents();
    // A report that was read from its file must have contents there; one
    // that was never refreshed is a report that does not exist yet.
    if (contents.isEmpty() && refreshed_)
      raiseError(ErrorNumber::UserMessage, QStringLiteral("CustomReport.GetReport"),
                 GetMessage(QStringLiteral("Error.EmptyReportContent")));
  }
  auto report = std::make_shared<Report>();
  report->LoadContents(contents);
  const QString documentName = report->Name();
  if (reportName_.isEmpty() && !documentName.isEmpty())
    reportName_ = documentName;
  else
    report->SetName(reportName_);
  return report;
}

void CustomReport::Class_WriteProperties(hostapi::PropertyBag &bag) {
  try {
    bag.WriteProperty(QStringLiteral("guid"), IReport_GUID());
    bag.WriteProperty(QStringLiteral("C"), reportClass_);
    bag.WriteProperty(QStringLiteral("name"), reportName_);
    bag.WriteProperty(QStringLiteral("category"), reportCategory_);
    bag.WriteProperty(QStringLiteral("contents"), GetReport()->SaveContents());
  } catch (...) {
    ErrorMessage(QStringLiteral("CustomReport.Class_WriteProperties"));
  }
}

void CustomReport::IReport_Update() {
  try {
    if (const auto report = GetReport()) {
      if (!report->IsNew() && !report->Class()) {
        // The class was removed from the database: storing would lose the
        // report's meaning, so the file stays as it was.
        ShowMessage(GetMessage(QStringLiteral("Error.SaveFailedClassLost")), 0);
        modified_ = false;
        return;
      }
      const auto file = OpenHostFile();
      file->setName(reportName_);
      file->setPolicy(policy_);
      file->setProperty(QStringLiteral("A"), reportCategory_);
      file->setProperty(QStringLiteral("C"), reportClass_);
      // Empty contents did not change: the file keeps its own.
      if (!reportContents_.isEmpty())
        file->setContents(reportContents_);
      file->save();
    }
    modified_ = false;
  } catch (...) {
    ErrorMessage(QStringLiteral("CustomReport.IReport_Update"));
  }
}

void CustomReport::m_Designer_OnSave(const std::shared_ptr<Report> &report) {
  if (!report->Modified())
    return;
  reportName_ = report->Name();
  reportContents_ = report->SaveContents();
  modified_ = true;
  IReport_Update();
}

} // namespace kordel::addin

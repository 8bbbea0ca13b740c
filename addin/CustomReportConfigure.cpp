// The road from the host's configure call to the designer window, and the
// designer's preview and print coming back to the run.

#include "addin/CustomReport.h"

#include "design/DlgReportDesigner.h"
#include "dialogs/DlgReportProperties.h"
#include "document/Report.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"

#include "hostapi/Application.h"
#include "hostapi/Classes.h"
#include "hostapi/Database.h"
#include "hostapi/ReportContext.h"
#include "hostapi/Ui.h"

#include "core/Error.h"

namespace kordel::addin {

void CustomReport::IReport_Configure(bool &cancel, const std::shared_ptr<hostapi::Class> &reportClass) {
  try {
    if (reportClass && !reportClass_.isEmpty()) {
      // A report built for one class refuses to open in another's context.
      const auto classes = CurrentApplication()->database()->classes();
      const auto own = classes->lookup(reportClass_, hostapi::LookupMode::LocalFirst);
      if (own && own->name() != reportClass->name())
        raiseError(ErrorNumber::UserMessage, QStringLiteral("CustomReport.IReport_Configure"),
                   GetMessage(QStringLiteral("Error.Locked"), own->localName()));
    }
    bool ok = false;
    Configure(GetReport(), reportClass, ok);
    cancel = !ok;
  } catch (...) {
    ErrorMessage(QStringLiteral("CustomReport.IReport_Configure"));
    cancel = true;
  }
}

void CustomReport::Configure(const std::shared_ptr<Report> &report, const std::shared_ptr<hostapi::Class> &reportClass,
                             bool &ok) {
  ok = false;
  try {
    if (report->IsNew()) {
      if (!reportClass_.isEmpty()) {
        report->Create(reportClass_);
      } else {
        // A new report asks for its name, class and paper first; a
        // cancelled dialog ends the configuration without a word.
        DlgReportProperties properties;
        properties.SetReport(report);
        properties.SetContextClass(reportClass);
        properties.Form_Load();
        hostapi::ui().showModal(properties);
        if (!properties.Status())
          raiseError(ErrorNumber::SilentCancel, QStringLiteral("CustomReport.Configure"));
        reportName_ = report->Name();
        reportClass_ = report->Class()->name();
      }
      modified_ = true;
    }
    DlgReportDesigner designer;
    designer.SetReport(report);
    QObject::connect(&designer, &DlgReportDesigner::OnSave, [this](const std::shared_ptr<Report> &saved) {
      try {
        m_Designer_OnSave(saved);
      } catch (...) {
        ErrorMessage(QStringLiteral("CustomReport.m_Designer_OnSave"));
      }
    });
    QObject::connect(&designer, &DlgReportDesigner::OnPreview,
                     [this](const std::shared_ptr<Report> &shown,
                            const std::shared_ptr<hostapi::ReportContext> &context, bool &result) {
                       try {
                         RunReport(1, shown, context, result);
                       } catch (...) {
                         ErrorMessage(QStringLiteral("CustomReport.m_Designer_OnPreview"));
                       }
                     });
    QObject::connect(&designer, &DlgReportDesigner::OnPrint, [this](const std::shared_ptr<Report> &shown) {
      try {
        PrintLoadedReport(shown, true, true, nullptr);
      } catch (...) {
        ErrorMessage(QStringLiteral("CustomReport.m_Designer_OnPrint"));
      }
    });
    designer.Form_Load();
    hostapi::ui().showModal(designer);
    ok = !report->IsNew() && report->IsValid();
  } catch (...) {
    ErrorMessage(QStringLiteral("CustomReport.Configure"));
    ok = false;
  }
}

} // namespace kordel::addin

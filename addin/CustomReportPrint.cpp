// The road from the host's print and preview calls to the run: the
// document is loaded, the range sorted, and the user asked through the
// print dialog only when the call or the context leaves something open.

#include "common/ApplicationManager.h"
#include "addin/CustomReport.h"
#include "common/Globals.h"
#include "core/Error.h"
#include "data/ContextManager.h"
#include "dialogs/DlgPageSetup.h"
#include "document/Report.h"
#include "hostapi/Application.h"
#include "hostapi/Database.h"
#include "hostapi/ReportContext.h"
#include "hostapi/Ui.h"

namespace kordel::addin {

namespace {

// The access bit that allows a user to change a report.
constexpr int kMayChange = 2;

} // namespace

void CustomReport::IReport_PrintOut(bool showDialog, const ObjectRef &context) {
  SetBusyCursor();
  try {
    PrintReport(false, showDialog, MakeHostContext(context));
  } catch (...) {
    ErrorMessage(QStringLiteral("CustomReport.IReport_PrintOut"));
  }
  ResetCursor();
}

void CustomReport::IReport_PrintPreview(const ObjectRef &context) {
  SetBusyCursor();
  try {
    PrintReport(true, false, MakeHostContext(context));
  } catch (...) {
    ErrorMessage(QStringLiteral("CustomReport.IReport_PrintPreview"));
  }
  ResetCursor();
}

void CustomReport::PrintReport(bool preview, bool showDialog, const std::shared_ptr<hostapi::ReportContext> &context) {
  try {
    PrintLoadedReport(GetReport(), preview, showDialog, context);
  } catch (...) {
    ErrorMessage(QStringLiteral("CustomReport.PrintReport"));
  }
}

void CustomReport::PrintLoadedReport(const std::shared_ptr<Report> &report, bool preview, bool showDialog,
                                     const std::shared_ptr<hostapi::ReportContext> &context) {
  const QString source = QStringLiteral("CustomReport.PrintLoadedReport");
  try {
    if (!report->IsValid()) {
      const auto database = CurrentApplication()->database();
      if (!database || (database->accessMask(policy_) & kMayChange) == 0)
        raiseError(ErrorNumber::UserMessage, source, GetMessage(QStringLiteral("DynamicReport.AccessDenied")));
      // An unfinished report goes through the designer first; one that
      // does not come out complete is not printed, without a word.
      bool ok = false;
      Configure(report, nullptr, ok);
      if (!ok)
        return;
    }

    const auto contextManager = std::make_shared<ContextManager>();
    contextManager->SetApplication(CurrentApplication());
    contextManager->Initialize(reportClass_, context);

    bool dialogWanted = !context || showDialog;
    if (!dialogWanted) {
      if (const ObjectRef printer = ResolvePrinter(context, report))
        context->setProperty(QStringLiteral("sysprop__printerobject"), Variant(printer));
      else
        dialogWanted = true;
    }
    if (dialogWanted) {
      // The dialog runs the report itself, through OnPrint.
      ShowPrintDialog(report, contextManager);
      return;
    }

    const auto runContext = contextManager->CreateContext(0, QString());
    int mode = 0;
    if (preview)
      mode = 1;
    else if (!context->getProperty(QStringLiteral("sysprop__exportfile"), QString()).toString().isEmpty())
      mode = 2;
    bool result = false;
    RunReport(mode, report, runContext, result);
  } catch (...) {
    ErrorMessage(source);
  }
}

void CustomReport::ShowPrintDialog(const std::shared_ptr<Report> &report,
                                   const std::shared_ptr<ContextManager> &contextManager) {
  DlgPageSetup dialog;
  dialog.SetReport(report);
  dialog.SetContextManager(contextManager);
  QObject::connect(&dialog, &DlgPageSetup::OnPrint,
                   [this](std::int32_t mode, const std::shared_ptr<Report> &shown,
                          const std::shared_ptr<hostapi::ReportContext> &runContext,
                          bool &result) { m_PageSetup_OnPrint(mode, shown, runContext, result); });
  dialog.Form_Load();
  // The busy cursor of the print call would stay over the dialog.
  ResetCursor();
  hostapi::ui().showModal(dialog);
  SetBusyCursor();
}

void CustomReport::m_PageSetup_OnPrint(std::int32_t mode, const std::shared_ptr<Report> &report,
                                       const std::shared_ptr<hostapi::ReportContext> &context, bool &result) {
  try {
    RunReport(mode, report, context, result);
  } catch (...) {
    ErrorMessage(QStringLiteral("CustomReport.m_PageSetup_OnPrint"));
  }
}

} // namespace kordel::addin

// The last stretch of a print: the printer is settled, one cursor, one
// Extensions and one run-time object are made, and the layout is printed,
// previewed or exported.

#include "common/ApplicationManager.h"
#include "addin/CustomReport.h"
#include "common/Globals.h"
#include "common/Settings.h"
#include "core/Dictionary.h"
#include "core/Error.h"
#include "data/Context.h"
#include "data/Records.h"
#include "common/ARTools.h"
#include "document/Page.h"
#include "document/Report.h"
#include "hostapi/HostTools.h"
#include "hostapi/Layout.h"
#include "hostapi/ReportContext.h"
#include "runtime/ActiveDunderReport.h"
#include "runtime/Extensions.h"

namespace kordel::addin {

namespace {

const QString kPrinterObject = QStringLiteral("sysprop__printerobject");

ObjectRef PrinterOf(const hostapi::ReportContext &context) {
  const Variant printer = context.getProperty(kPrinterObject, Variant::nothing());
  return printer.isObject() ? printer.toObject() : nullptr;
}

void CopyEntries(const std::shared_ptr<Dictionary> &entries, hostapi::ReportContext &target) {
  if (!entries)
    return;
  for (int i = 0; i < entries->count(); ++i)
    target.setProperty(entries->keyAt(i).toString(), entries->itemAt(i));
}

} // namespace

std::shared_ptr<hostapi::ReportContext> CustomReport::MakeHostContext(const ObjectRef &context) {
  if (!context)
    return nullptr;
  const auto own = std::dynamic_pointer_cast<Context>(context);
  if (!own)
    return std::dynamic_pointer_cast<hostapi::ReportContext>(context);
  const auto host = std::dynamic_pointer_cast<hostapi::ReportContext>(
      CreateObject(QString::fromLatin1(hostapi::kReportContextProgId)));
  if (!host)
    raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("CustomReport.MakeHostContext"));
  host->setContextClass(own->contextClass());
  host->setName(own->name());
  host->setRange(own->range());
  CopyEntries(own->ExtensionsProperties(), *host);
  CopyEntries(own->SubFilters(), *host);
  return host;
}

ObjectRef CustomReport::ResolvePrinter(const std::shared_ptr<hostapi::ReportContext> &context,
                                       const std::shared_ptr<Report> &report) {
  ObjectRef printer;
  try {
    printer = PrinterOf(*context);
    if (!printer)
      context->setProperty(kPrinterObject, Variant::nothing());
    const QString name = context->getProperty(QStringLiteral("sysprop__printername"), QString()).toString();
    if (!name.isEmpty()) {
      if (const ObjectRef named = FindPrinter(name)) {
        printer = named;
        const Variant ownBin = printer->get(QStringLiteral("PaperBin"));
        const QString binName = context->getProperty(QStringLiteral("sysprop__paperbinname"), QString()).toString();
        if (!binName.isEmpty())
          printer->set(QStringLiteral("PaperBin"), FindPaperBin(printer, binName));
        else
          printer->set(QStringLiteral("PaperBin"),
                       context->getProperty(QStringLiteral("sysprop__paperbin"), -1).toInteger());
        if (printer->get(QStringLiteral("PaperBin")).toLong() == -1)
          printer->set(QStringLiteral("PaperBin"), ownBin);
      }
    }
    if (!printer && report)
      printer = LoadReportPrinter(report->Name());
    if (!printer)
      printer = FindPrinter(HostTools()->defaultPrinterName());
  } catch (...) {
    // A printer that cannot be asked is no printer; the caller decides.
  }
  return printer;
}

void CustomReport::RunReport(int mode, const std::shared_ptr<Report> &report,
                             const std::shared_ptr<hostapi::ReportContext> &context, bool &result) {
  result = false;
  try {
    if (!PrinterOf(*context)) {
      const ObjectRef printer = ResolvePrinter(context, report);
      if (!printer)
        raiseError(ErrorNumber::UserMessage, QStringLiteral("CustomReport.RunReport"),
                   GetMessage(QStringLiteral("Report.NoPrinter")));
      context->setProperty(kPrinterObject, Variant(printer));
    }

    const auto records = std::make_shared<Records>();
    records->OpenRecords(report->Page(), context, nullptr);

    const auto extensions = std::make_shared<Extensions>();
    extensions->SetContext(context);
    extensions->SetProperty(QStringLiteral("FilterName"), context->name());

    const auto run = ActiveDunderReport::create();
    run->SetPage(report->Page());
    run->SetRecords(records);
    run->SetExtensions(extensions);
    run->SetContext(context);
    const ObjectRef &layout = run->layoutReport();
    layout->set(QStringLiteral("Caption"), report->Name());
    run->SetDocumentName(report->Name());
    run->LoadLayout(report->Page()->LayoutTemplate());

    switch (mode) {
    case 0:
      layout->invoke(QStringLiteral("PrintReport"), {false});
      result = true;
      break;
    case 1:
      ResetCursor();
      layout->invoke(QStringLiteral("Show"), {true});
      SetBusyCursor();
      result = ReadSetting(kSettingsRoot, QStringLiteral("PrintProgress"), 0).toLong() > 0;
      break;
    case 2: {
      const QString file = context->getProperty(QStringLiteral("sysprop__exportfile"), QString()).toString();
      if (file.isEmpty())
        break;
      // The PDF is written while the run makes the pages.
      if (ExportProgIdFor(file) == hostapi::kPdfExportProgId)
        layout->set(QStringLiteral("ExportAhead"), QStringLiteral("PDF"));
      layout->invoke(QStringLiteral("Run"), {false});
      result = ExportReport(file, layout->get(QStringLiteral("Pages")));
      break;
    }
    default:
      raiseError(ErrorNumber::InvalidCall, QStringLiteral("CustomReport.RunReport"),
                 QStringLiteral("Unknown run mode %1").arg(mode));
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("CustomReport.RunReport"));
    result = false;
  }
}

const char *CustomReport::ExportProgIdFor(const QString &fileName) {
  const QString extension = HostTools()->fileExtension(fileName).toLower();
  for (const hostapi::ExportType &type : hostapi::kExportTypes)
    if (extension == QLatin1String(type.extension))
      return type.progId;
  return nullptr;
}

bool CustomReport::ExportReport(const QString &fileName, const Variant &pages) {
  const auto tools = HostTools();
  const char *progId = ExportProgIdFor(fileName);
  if (!progId)
    return false;
  const ObjectRef exporter = CreateObject(QString::fromLatin1(progId));
  if (progId == hostapi::kHtmlExportProgId) {
    exporter->set(QStringLiteral("FileNamePrefix"), tools->fileName(fileName));
    exporter->set(QStringLiteral("HtmlOutputPath"), tools->filePath(fileName));
  } else {
    exporter->set(QStringLiteral("FileName"), fileName);
  }
  if (progId == hostapi::kTextExportProgId) {
    exporter->set(QStringLiteral("TextDelimiter"), QStringLiteral(";"));
    exporter->set(QStringLiteral("PageDelimiter"), QStringLiteral("\t"));
    exporter->set(QStringLiteral("SuppressEmptyLines"), true);
  }
  exporter->invoke(QStringLiteral("Export"), {pages});
  return true;
}

} // namespace kordel::addin

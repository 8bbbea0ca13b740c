#include "runtime/ActiveDunderReport.h"

#include "common/Globals.h"
#include "common/Settings.h"
#include "core/Error.h"
#include "data/Records.h"
#include "document/Page.h"
#include "document/Report.h"
#include "hostapi/ReportContext.h"

namespace kordel::addin {

namespace {

QString WindowKey() { return RegistryPath(kSettingsRoot, {Variant(QStringLiteral("ReportWindow"))}); }

const char *const kPlaceNames[] = {"Left", "Top", "Width", "Height"};

} // namespace

ActiveDunderReport::ActiveDunderReport() : PageRun(QStringLiteral("ActiveDunderReport")) {}

std::shared_ptr<ActiveDunderReport> ActiveDunderReport::create() {
  std::shared_ptr<ActiveDunderReport> run(new ActiveDunderReport());
  run->attachLayoutReport();
  return run;
}

void ActiveDunderReport::SetRecords(std::shared_ptr<addin::Records> records) {
  records_ = std::move(records);
  PublishRecords();
}

void ActiveDunderReport::ActiveReport_Initialize() {
  const ObjectRef &report = layoutReport();
  const std::int16_t state = ReadSetting(WindowKey(), QStringLiteral("WindowState"), 2).toInteger();
  if (state >= 1) {
    report->set(QStringLiteral("WindowState"), 2);
    return;
  }
  report->set(QStringLiteral("WindowState"), 0);
  for (const char *name : kPlaceNames) {
    const QString key = QString::fromLatin1(name);
    report->set(key, double(ReadSetting(WindowKey(), key, 0).toSingle()));
  }
}

void ActiveDunderReport::ActiveReport_ReportStart() {
  try {
    const ObjectRef &report = layoutReport();
    const std::shared_ptr<addin::Report> document = page_->Report();
    const ObjectRef chosen =
        context_->getProperty(QStringLiteral("sysprop__printerobject"), Variant::nothing()).toObject();
    const ObjectRef printer = report->get(QStringLiteral("Printer")).toObject();
    if (!chosen)
      raiseError(ErrorNumber::ObjectNotSet, Source("ActiveReport_ReportStart"));
    printer->set(QStringLiteral("DeviceName"), chosen->get(QStringLiteral("DeviceName")));
    printer->set(QStringLiteral("PaperBin"), chosen->get(QStringLiteral("PaperBin")));
    printer->set(QStringLiteral("Orientation"), document->Orientation());
    printer->set(QStringLiteral("Copies"), context_->getProperty(QStringLiteral("sysprop__copies"), 1).toInteger());

    const ObjectRef settings = report->get(QStringLiteral("PageSettings")).toObject();
    settings->set(QStringLiteral("LeftMargin"), document->MarginLeft());
    settings->set(QStringLiteral("RightMargin"), document->MarginRight());
    settings->set(QStringLiteral("TopMargin"), document->MarginTop());
    settings->set(QStringLiteral("BottomMargin"), document->MarginBottom());

    report->set(QStringLiteral("ScriptLanguage"), document->ScriptLanguage());
    KeepBandOnPaper();
    StartStripes();
    InitializeSubPages();
  } catch (...) {
    ErrorMessage(Source("ActiveReport_ReportStart"));
  }
}

// The band and the margins must fit the paper: when they reach its width
// the band is cut to the paper less the margins and 10 twips. The sum is
// taken in double and compared in single precision.
void ActiveDunderReport::KeepBandOnPaper() {
  const ObjectRef &report = layoutReport();
  const std::shared_ptr<addin::Report> document = page_->Report();
  const ObjectRef settings = report->get(QStringLiteral("PageSettings")).toObject();
  const double left = settings->get(QStringLiteral("LeftMargin")).toDouble();
  const double right = settings->get(QStringLiteral("RightMargin")).toDouble();
  const float paperWidth =
      report->get(QStringLiteral("Printer")).toObject()->get(QStringLiteral("PaperWidth")).toSingle();
  const float needed = float(left + double(document->PrintWidth()) + right);
  if (needed >= paperWidth)
    report->set(QStringLiteral("PrintWidth"), double(paperWidth) - left - right - 10);
}

void ActiveDunderReport::ActiveReport_DataInitialize() {
  try {
    DeclareFields();
  } catch (...) {
    ErrorMessage(Source("ActiveReport_DataInitialize"));
  }
}

void ActiveDunderReport::ActiveReport_PrintProgress(std::int32_t pageNumber) {
  printProgress_ = pageNumber;
  const ObjectRef &report = layoutReport();
  if (pageNumber == report->get(QStringLiteral("Pages")).toObject()->get(QStringLiteral("Count")).toLong())
    report->invoke(QStringLiteral("Close"));
}

void ActiveDunderReport::ActiveReport_Terminate() {
  const ObjectRef &report = layoutReport();
  WriteSetting(WindowKey(), QStringLiteral("WindowState"), report->get(QStringLiteral("WindowState")).toString());
  for (const char *name : kPlaceNames) {
    const QString key = QString::fromLatin1(name);
    WriteSetting(WindowKey(), key, report->get(key).toString());
  }
  WriteSetting(kSettingsRoot, QStringLiteral("PrintProgress"), QString::number(printProgress_));
}

const MemberTable &ActiveDunderReport::memberTable() const {
  using R = ActiveDunderReport;
  static const MemberTable table{{
                                     method<R>("ActiveReport_Initialize",
                                               [](R &r, Args &) {
                                                 r.ActiveReport_Initialize();
                                                 return Variant();
                                               }),
                                     method<R>("ActiveReport_ReportStart",
                                               [](R &r, Args &) {
                                                 r.ActiveReport_ReportStart();
                                                 return Variant();
                                               }),
                                     method<R>("ActiveReport_DataInitialize",
                                               [](R &r, Args &) {
                                                 r.ActiveReport_DataInitialize();
                                                 return Variant();
                                               }),
                                     method<R>("ActiveReport_PrintProgress",
                                               [](R &r, Args &a) {
                                                 expectArgs(a, 1, 1);
                                                 r.ActiveReport_PrintProgress(a[0].toLong());
                                                 return Variant();
                                               }),
                                     method<R>("ActiveReport_Terminate",
                                               [](R &r, Args &) {
                                                 r.ActiveReport_Terminate();
                                                 return Variant();
                                               }),
                                 },
                                 &PageRun::memberTable()};
  return table;
}

} // namespace kordel::addin

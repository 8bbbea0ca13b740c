#include "runtime/ActiveSubPage.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "core/Error.h"
#include "data/Records.h"
#include "document/Page.h"
#include "document/Report.h"
#include "hostapi/Pool.h"

namespace kordel::addin {

ActiveSubPage::ActiveSubPage() : PageRun(QStringLiteral("ActiveSubPage")) {}

std::shared_ptr<ActiveSubPage> ActiveSubPage::create() {
  std::shared_ptr<ActiveSubPage> run(new ActiveSubPage());
  run->attachLayoutReport();
  return run;
}

void ActiveSubPage::AddSourceId(std::int32_t id) { sourceIds_->add(id); }

void ActiveSubPage::LoadPage() {
  try {
    const QString poolProgId = QString::fromLatin1(hostapi::kPoolProgId);
    sourceIds_ = std::dynamic_pointer_cast<hostapi::Pool>(CreateObject(poolProgId));
    if (!sourceIds_)
      raiseError(ErrorNumber::CannotCreateObject, poolProgId);
    for (const ObjectRef &section : Sections())
      sectionVisible_.insert(section->get(QStringLiteral("Name")).toString(),
                             section->get(QStringLiteral("Visible")).toBool());
    PublishRecords();
    InitializeSubPages();
  } catch (...) {
    // The label keeps the name this class had when it was written.
    ErrorMessage(QStringLiteral("ActiveSubReport.LoadReport"));
  }
}

void ActiveSubPage::ActiveReport_ReportStart() {
  try {
    layoutReport()->set(QStringLiteral("ScriptLanguage"), page_->Report()->ScriptLanguage());
    const bool hasRows = records_->RecordCount() >= 1;
    if (page_->HideEmptyPage()) {
      for (const ObjectRef &section : Sections())
        if (sectionVisible_.value(section->get(QStringLiteral("Name")).toString()))
          section->set(QStringLiteral("Visible"), hasRows);
    }
    StartStripes();
  } catch (...) {
    ErrorMessage(Source("ActiveReport_ReportStart"));
  }
}

void ActiveSubPage::ActiveReport_DataInitialize() {
  try {
    if (layoutReport()->get(QStringLiteral("Fields")).toObject()->get(QStringLiteral("Count")).toLong() == 0)
      DeclareFields();
    records_->SetParentFilter(sourceIds_);
    sourceIds_->clear();
  } catch (...) {
    ErrorMessage(Source("ActiveReport_DataInitialize"));
  }
}

const MemberTable &ActiveSubPage::memberTable() const {
  using R = ActiveSubPage;
  static const MemberTable table{{
                                     method<R>("AddSourceId",
                                               [](R &r, Args &a) {
                                                 expectArgs(a, 1, 1);
                                                 r.AddSourceId(a[0].toLong());
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
                                 },
                                 &PageRun::memberTable()};
  return table;
}

} // namespace kordel::addin

#include "runtime/ActiveSubPage.h"

#include "addin/ApplicationManager.h"
#include "common/Globals.h"
#include "core/Error.h"
#include "data/Records.h"
#include "document/Page.h"
#include "document/Report.h"
#include "document/ReportFields.h"
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
    sourceIds_ = std::dynamic_pointer_cast<hostapi::Pool>(CreateObject(QStringLiteral("Nuvo.Pool")));
    if (!sourceIds_)
      raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("Nuvo.Pool"));
    const ObjectRef sections = layoutReport()->get(QStringLiteral("Sections")).toObject();
    const int count = sections->get(QStringLiteral("Count")).toLong();
    for (int i = 0; i < count; ++i) {
      const ObjectRef section = sections->invoke(QStringLiteral("Item"), {i}).toObject();
      sectionVisible_.insert(section->get(QStringLiteral("Name")).toString(),
                             section->get(QStringLiteral("Visible")).toBool());
    }
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
      const ObjectRef sections = layoutReport()->get(QStringLiteral("Sections")).toObject();
      const int count = sections->get(QStringLiteral("Count")).toLong();
      for (int i = 0; i < count; ++i) {
        const ObjectRef section = sections->invoke(QStringLiteral("Item"), {i}).toObject();
        if (sectionVisible_.value(section->get(QStringLiteral("Name")).toString()))
          section->set(QStringLiteral("Visible"), hasRows);
      }
    }
    StartStripes();
  } catch (...) {
    ErrorMessage(Source("ActiveReport_ReportStart"));
  }
}

void ActiveSubPage::ActiveReport_DataInitialize() {
  try {
    const ObjectRef engineFields = layoutReport()->get(QStringLiteral("Fields")).toObject();
    if (engineFields->get(QStringLiteral("Count")).toLong() == 0) {
      const auto fields = page_->Fields();
      for (int i = 1; i <= fields->Count(); ++i)
        engineFields->invoke(QStringLiteral("Add"), {fields->Item(i)->Name});
    }
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

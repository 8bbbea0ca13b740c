#include "runtime/PageRun.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/LayoutWalk.h"
#include "core/Dictionary.h"
#include "core/Error.h"
#include "data/Records.h"
#include "document/Page.h"
#include "document/Pages.h"
#include "document/ReportFields.h"
#include "hostapi/Layout.h"
#include "hostapi/Records.h"
#include "runtime/ActiveSubPage.h"

namespace kordel::addin {

namespace {

// Section types whose sub pages are laid out before the detail row that
// opens them: report header, page header, group header. The page header
// stands here as the run has always sorted it.
bool IsEarlySection(int type) { return type == 0 || type == 2 || type == 4; }

} // namespace

PageRun::PageRun(QString sourceClass) : sourceClass_(std::move(sourceClass)) {}

PageRun::~PageRun() = default;

void PageRun::attachLayoutReport() {
  layoutReport_ = CreateObject(QString::fromLatin1(hostapi::kLayoutReportProgId));
  if (!layoutReport_)
    raiseError(ErrorNumber::CannotCreateObject, Source("Class_Initialize"));
  layoutReport_->set(QStringLiteral("EventSink"), Variant(shared_from_this()));
}

QString PageRun::Source(const char *procedure) const {
  return sourceClass_ + QLatin1Char('.') + QString::fromLatin1(procedure);
}

void PageRun::LoadLayout(const Variant &layout) { layoutReport_->invoke(QStringLiteral("LoadLayout"), {layout}); }

void PageRun::SetDocumentName(const QString &name) { layoutReport_->set(QStringLiteral("documentName"), name); }

void PageRun::SetExtensions(const ObjectRef &extensions) {
  extensions_ = extensions;
  layoutReport_->invoke(QStringLiteral("AddNamedItem"), {QStringLiteral("Extensions"), Variant(extensions)});
}

void PageRun::PublishRecords() {
  auto facade = std::make_shared<RecordsFacade>();
  facade->SetRecords(records_);
  layoutReport_->invoke(QStringLiteral("AddNamedItem"), {QStringLiteral("Records"), Variant(ObjectRef(facade))});
}

std::shared_ptr<Dictionary> PageRun::rowQueue() {
  if (!rowQueue_)
    rowQueue_ = std::make_shared<Dictionary>();
  return rowQueue_;
}

std::shared_ptr<Dictionary> PageRun::earlySubPages() {
  if (!earlySubPages_)
    earlySubPages_ = std::make_shared<Dictionary>();
  return earlySubPages_;
}

std::shared_ptr<Dictionary> PageRun::lateSubPages() {
  if (!lateSubPages_)
    lateSubPages_ = std::make_shared<Dictionary>();
  return lateSubPages_;
}

std::vector<ObjectRef> PageRun::Sections() const { return LayoutSections(layoutReport_); }

void PageRun::DeclareFields() const {
  const ObjectRef engineFields = layoutReport_->get(QStringLiteral("Fields")).toObject();
  const auto fields = page_->Fields();
  for (int i = 1; i <= fields->Count(); ++i)
    engineFields->invoke(QStringLiteral("Add"), {fields->Item(i)->Name});
}

void PageRun::InitializeSubPages() {
  try {
    for (const ObjectRef &section : Sections()) {
      const ObjectRef controls = section->get(QStringLiteral("Controls")).toObject();
      const int controlCount = controls->get(QStringLiteral("Count")).toLong();
      for (int c = 0; c < controlCount; ++c) {
        const ObjectRef control = controls->invoke(QStringLiteral("Item"), {c}).toObject();
        if (control->typeName() != QLatin1String("SubReport"))
          continue;
        const QString tag = control->get(QStringLiteral("Tag")).toString();
        const std::shared_ptr<addin::Page> subPage = page_->Pages()->Page(tag);
        const auto run = ActiveSubPage::create();
        run->LoadLayout(subPage->LayoutTemplate());
        run->SetPage(subPage);
        run->SetRecords(records_->LookupSubRecords(subPage->Guid()));
        run->SetExtensions(extensions_);
        run->SetDocumentName(subPage->Name());
        run->LoadPage();
        control->set(QStringLiteral("Report"), Variant(run->layoutReport()));
        subPageRuns_.push_back(run);
        const auto &subPages =
            IsEarlySection(section->get(QStringLiteral("Type")).toLong()) ? earlySubPages() : lateSubPages();
        subPages->add(tag, Variant(control));
      }
    }
  } catch (...) {
    ErrorMessage(Source("InitializeSubPages"));
  }
}

void PageRun::StartStripes() {
  stripeOn_ = page_->StripeDetail();
  stripeNow_ = page_->StripeFirst();
}

void PageRun::HandSourceId(const std::shared_ptr<Dictionary> &subPages, const Variant &id) {
  if (!subPages)
    return;
  for (int i = 0; i < subPages->count(); ++i) {
    const ObjectRef control = subPages->itemAt(i).toObject();
    control->get(QStringLiteral("Object")).toObject()->invoke(QStringLiteral("AddSourceId"), {id});
  }
}

void PageRun::ActiveReport_FetchData(Variant &eof) {
  try {
    eof = Variant(records_->EndOfFile());
    if (eof.toBool())
      return;
    const Variant id(records_->Record()->id());
    rowQueue()->add(id, id);
    HandSourceId(earlySubPages_, id);
    const auto fields = page_->Fields();
    const ObjectRef engineFields = layoutReport_->get(QStringLiteral("Fields")).toObject();
    for (int i = 1; i <= fields->Count(); ++i) {
      const auto field = fields->Item(i);
      engineFields->invoke(QStringLiteral("Item"), {field->Name})
          .toObject()
          ->set(QStringLiteral("Value"), records_->Value(*field));
    }
    records_->MoveNext();
  } catch (...) {
    ErrorMessage(Source("ActiveReport_FetchData"));
    eof = Variant(true);
  }
}

void PageRun::Detail_Format() {
  if (!rowQueue_ || rowQueue_->count() == 0)
    return;
  const Variant id = rowQueue_->itemAt(0);
  HandSourceId(lateSubPages_, id);
  rowQueue_->remove(id);
}

void PageRun::ActiveReport_PageStart() {
  if (stripeOn_ && page_->StripeFirst())
    stripeNow_ = true;
}

void PageRun::Detail_BeforePrint() {
  if (!stripeOn_)
    return;
  layoutReport_->get(QStringLiteral("Detail")).toObject()->set(QStringLiteral("BackStyle"), stripeNow_ ? 1 : 0);
  stripeNow_ = !stripeNow_;
}

const MemberTable &PageRun::memberTable() const {
  using R = PageRun;
  static const MemberTable table{{
      method<R>("ActiveReport_FetchData",
                [](R &r, Args &a) {
                  expectArgs(a, 1, 1);
                  r.ActiveReport_FetchData(a[0]);
                  return Variant();
                }),
      method<R>("ActiveReport_PageStart",
                [](R &r, Args &) {
                  r.ActiveReport_PageStart();
                  return Variant();
                }),
      method<R>("Detail_BeforePrint",
                [](R &r, Args &) {
                  r.Detail_BeforePrint();
                  return Variant();
                }),
      method<R>("Detail_Format",
                [](R &r, Args &) {
                  r.Detail_Format();
                  return Variant();
                }),
  }};
  return table;
}

} // namespace kordel::addin

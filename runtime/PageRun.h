#pragma once

#include "core/Object.h"

#include <memory>
#include <vector>

namespace kordel {
class Dictionary;
}

namespace kordel::addin {

class Page;
class Records;
class RecordsFacade;

// What the run-time objects of a top page and of a sub page share: one
// engine report object that they load and answer the events of, the page
// and its cursor, the shared Extensions, the row stripes and the sub pages
// of the layout.
//
// Design note. The engine fetches one row ahead of what it formats, so
// FetchData queues each row's id and Detail_Format takes it from the queue.
// Sub pages in a report header or a group header or footer (early) are laid
// out before the detail of the row that opens them, so FetchData hands them
// the id at once; every other sub page (late) gets it at Detail_Format. A
// sub page collects ids until its next run and filters its rows by all of
// them (ActiveSubPage).
//
// Ownership: the engine report holds this object weakly as its event sink;
// this object owns the engine report and the run-time objects of its sub
// pages, whose engine reports are plugged into the sub report controls.
class PageRun : public Object {
public:
  ~PageRun() override;

  // The engine's report object this run drives.
  const ObjectRef &layoutReport() const { return layoutReport_; }

  void LoadLayout(const Variant &layout);
  void SetDocumentName(const QString &name);
  void SetPage(std::shared_ptr<addin::Page> page) { page_ = std::move(page); }
  const std::shared_ptr<addin::Page> &GetPage() const { return page_; }
  // Stores the object and makes it visible to the layout's scripts as
  // "Extensions".
  void SetExtensions(const ObjectRef &extensions);
  const ObjectRef &GetExtensions() const { return extensions_; }
  const std::shared_ptr<addin::Records> &GetRecords() const { return records_; }

  // The engine's events that both kinds of page answer alike.
  void ActiveReport_FetchData(Variant &eof);
  void ActiveReport_PageStart();
  void Detail_BeforePrint();
  void Detail_Format();

protected:
  // sourceClass names the class in the labels of reported errors.
  explicit PageRun(QString sourceClass);

  // Makes the engine report and becomes its event sink; called by the
  // factories once the object is owned by a shared pointer.
  void attachLayoutReport();
  // A facade over the records, visible to the scripts as "Records".
  void PublishRecords();
  // Makes, loads and plugs in the run-time object of every sub report
  // control, and sorts the controls into early and late sub pages.
  void InitializeSubPages();
  void StartStripes();
  // The layout's sections, in banded order.
  std::vector<ObjectRef> Sections() const;
  // Every field of the page becomes an unbound field of the engine by its
  // name, which the layout's controls bind to.
  void DeclareFields() const;
  QString Source(const char *procedure) const;

  const MemberTable &memberTable() const override;

  std::shared_ptr<addin::Page> page_;
  std::shared_ptr<addin::Records> records_;
  ObjectRef extensions_;
  bool stripeOn_ = false;
  bool stripeNow_ = false;

private:
  std::shared_ptr<Dictionary> rowQueue();
  std::shared_ptr<Dictionary> earlySubPages();
  std::shared_ptr<Dictionary> lateSubPages();
  static void HandSourceId(const std::shared_ptr<Dictionary> &subPages, const Variant &id);

  QString sourceClass_;
  ObjectRef layoutReport_;
  std::shared_ptr<Dictionary> rowQueue_;
  std::shared_ptr<Dictionary> earlySubPages_;
  std::shared_ptr<Dictionary> lateSubPages_;
  std::vector<std::shared_ptr<PageRun>> subPageRuns_;
};

} // namespace kordel::addin

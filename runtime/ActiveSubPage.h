#pragma once

#include "runtime/PageRun.h"

#include <QHash>

namespace kordel::hostapi {
class Pool;
}

namespace kordel::addin {

// The run-time object of a sub page. The parent hands it the ids of the
// parent rows it is to follow (AddSourceId); each run of the sub report
// filters its rows by all ids collected since the run before, and hides
// the layout's shown sections when the page hides empty pages and has no
// rows. Late-bound: AddSourceId(id), and the engine's events.
class ActiveSubPage : public PageRun {
public:
  static std::shared_ptr<ActiveSubPage> create();

  QString typeName() const override { return QStringLiteral("ActiveSubPage"); }

  void SetRecords(std::shared_ptr<addin::Records> records) { records_ = std::move(records); }
  void AddSourceId(std::int32_t id);
  // Called once by the parent, after page, records and Extensions are set.
  void LoadPage();

  void ActiveReport_ReportStart();
  void ActiveReport_DataInitialize();

  const std::shared_ptr<hostapi::Pool> &SourceIds() const { return sourceIds_; }

protected:
  const MemberTable &memberTable() const override;

private:
  ActiveSubPage();

  std::shared_ptr<hostapi::Pool> sourceIds_;
  QHash<QString, bool> sectionVisible_;
};

} // namespace kordel::addin

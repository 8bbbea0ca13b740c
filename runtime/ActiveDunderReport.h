#pragma once

#include "runtime/PageRun.h"

namespace kordel::hostapi {
class ReportContext;
}

namespace kordel::addin {

// The run-time object of a report's top page: it copies printer, copies,
// margins and script language from the document to the engine at the
// start, declares the page's fields, feeds them from the cursor row by
// row, stripes the detail rows, builds the sub pages, and keeps the
// preview window's place and the number of the last printed page in the
// settings. Late-bound: the engine's events.
class ActiveDunderReport : public PageRun {
public:
  static std::shared_ptr<ActiveDunderReport> create();

  QString typeName() const override { return QStringLiteral("ActiveDunderReport"); }

  void SetContext(std::shared_ptr<hostapi::ReportContext> context) { context_ = std::move(context); }
  // Stores the cursor and shows the scripts a facade over it as "Records".
  void SetRecords(std::shared_ptr<addin::Records> records);
  // The number of the last page handed to the printer; 0 until then.
  std::int32_t PrintProgress() const { return printProgress_; }

  void ActiveReport_Initialize();
  void ActiveReport_ReportStart();
  void ActiveReport_DataInitialize();
  void ActiveReport_PrintProgress(std::int32_t pageNumber);
  void ActiveReport_Terminate();

protected:
  const MemberTable &memberTable() const override;

private:
  ActiveDunderReport();
  void KeepBandOnPaper();

  std::shared_ptr<hostapi::ReportContext> context_;
  std::int32_t printProgress_ = 0;
};

} // namespace kordel::addin

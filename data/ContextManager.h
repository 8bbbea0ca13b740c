#pragma once

#include "core/Object.h"

#include <QHash>

#include <cstdint>
#include <memory>

namespace kordel::hostapi {
class Application;
class Class;
class Filter;
class Filters;
class ReportContext;
} // namespace kordel::hostapi

namespace kordel::addin {

// What a range was recognised as.
enum RangeTypeEnum : std::int16_t {
  RangeNone = 0,
  RangePool = 1,
  RangeFilter = 2,
  RangeExplorer = 3,
  RangeInspector = 4,
};

// Which rows of a list window CreateContext takes.
enum ContextKindEnum {
  ContextFromFilter = 1,
  ContextFromAll = 2,
  ContextFromSelection = 3, // and any other value but 1 and 2
};

// What GetRangeCount counts.
enum RangeCountEnum {
  RangeCountAll = 0,
  RangeCountSelected = 1,
  RangeCountPool = 2,
  RangeCountFilter = 3,
};

// Stands between what the host hands over for a print (a context whose
// range is a filter, pool, selection, record, list window or record
// window, or no context at all) and the context of the run: it sorts the
// range into a type, checks that there is something to print and that the
// classes agree, counts rows for the print dialog, and makes the context.
// Raises 101001 for a class mismatch, 101002 for an empty or unusable
// range and 101003 when there is no list window to take the range from.
class ContextManager {
public:
  void SetApplication(std::shared_ptr<hostapi::Application> application) { application_ = std::move(application); }

  // The context's class.
  std::shared_ptr<hostapi::Class> Class() const;
  // A name for the range: the context's, or one made from the range.
  QString Name();
  const ObjectRef &Range() const { return range_; }
  // The list window's filters; nullptr unless the range is a list window.
  std::shared_ptr<hostapi::Filters> RangeFilters() const;
  std::int16_t RangeType() const { return rangeType_; }

  void Initialize(const QString &className, std::shared_ptr<hostapi::ReportContext> context);
  std::shared_ptr<hostapi::ReportContext> CreateContext(int kind, const QString &filterName);
  // Rows of the list window's filter of that name; 0 unless the range is a
  // list window.
  std::int32_t GetFilterHitCount(const QString &filterName);
  std::int32_t GetRangeCount(int kind);
  bool IsRangeActiveExplorer() const;
  Variant GetProperty(const QString &name, const Variant &defaultValue = {}) const;
  void SetProperty(const QString &name, const Variant &value);

private:
  hostapi::Application &application() const;
  // The list window's filter of a name within what the window lists;
  // cached by name.
  std::shared_ptr<hostapi::Filter> GetExplorerFilter(const QString &name);
  // Rows of a filter, asked of the engine once per filter name.
  std::int32_t GetFilterCount(const std::shared_ptr<hostapi::Filter> &filter);
  // The pool a plain value or a pool-like object stands for; nullptr for
  // anything else.
  ObjectRef GetRangePool(const Variant &value);
  void ValidateRange(const ObjectRef &range);
  std::shared_ptr<hostapi::Class> RangeClass() const;

  std::shared_ptr<hostapi::Application> application_;
  std::shared_ptr<hostapi::ReportContext> context_;
  ObjectRef range_;
  std::int16_t rangeType_ = RangeNone;
  QHash<QString, std::shared_ptr<hostapi::Filter>> filterCache_;
  QHash<QString, std::int32_t> filterCounts_;
};

} // namespace kordel::addin

#pragma once

#include "cli/RunRequest.h"

#include "core/Variant.h"

#include <memory>

namespace kordel::hostapi {
class Class;
class Filter;
} // namespace kordel::hostapi

namespace kordel::host {
class HostApplication;
}

namespace kordel::nuvo {
class ExplorerObject;
}

namespace kordel::host::cli {

// The records of one run, found in the open database: what the run
// context's Range holds and how many records of the report's class that is.
struct RunRange {
  Variant range;
  // The context's name: the filter's local name for a filter, else ""
  // so that the report names the range itself.
  QString name;
  int records = 0;

  // Raises 5 for a filter the class lacks (naming those it has) and for a
  // list window of a class that is not the report's, and 101002 for a range
  // that holds no records of the class. A list window is opened on the
  // class, made current and active, with the selection given or all of
  // its records selected; with no range given it is opened on the report's
  // class with nothing selected.
  static RunRange resolve(HostApplication &application, const std::shared_ptr<hostapi::Class> &reportClass,
                          const RangeRequest &request);
};

// A list window on the class with nothing selected, made current and
// active, as a user leaves it who opens a report from it.
std::shared_ptr<nuvo::ExplorerObject> openListWindow(HostApplication &application, const hostapi::Class &cls);

// A saved filter of the class by its name or else its local name, both
// without regard to case; raises 5 naming the class's filters when it has
// no such filter.
std::shared_ptr<hostapi::Filter> savedFilter(const hostapi::Class &cls, const QString &name);

} // namespace kordel::host::cli

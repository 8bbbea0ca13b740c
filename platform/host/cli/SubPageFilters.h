#pragma once

#include "cli/RunRequest.h"

#include "host/ReportDocumentFile.h"

#include <QList>

#include <memory>
#include <utility>

namespace kordel::hostapi {
class Class;
class Filter;
} // namespace kordel::hostapi

namespace kordel::host::cli {

// The saved filters that narrow sub pages of a report, each under the guid
// of its page: the key a run context carries a sub page's filter by.
using SubPageFilters = QList<std::pair<QString, std::shared_ptr<hostapi::Filter>>>;

// Finds each requested page among the report's sub pages, by guid (braces
// optional) or by name, without regard to case, and the filter among the
// saved filters of the sub page's class. Raises 5 for a page the report
// lacks (naming its sub pages), for the top page, for a name that several
// sub pages share, for a page given twice, for a sub page whose relation
// the report's class lacks, and for a filter the sub page's class lacks.
SubPageFilters resolveSubPageFilters(const hostapi::Class &reportClass, const QList<ReportDocumentPage> &pages,
                                     const QList<SubFilterRequest> &requests);

} // namespace kordel::host::cli

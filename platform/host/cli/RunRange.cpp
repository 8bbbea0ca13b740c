#include "cli/RunRange.h"

#include "host/HostApplication.h"

#include "nuvo/DatabaseObject.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ExplorerObject.h"

#include "core/Error.h"
#include "hostapi/Classes.h"
#include "hostapi/Filters.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNode.h"

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex");

template <class T> std::shared_ptr<T> create(HostApplication &application, const char *progId) {
  auto made = std::dynamic_pointer_cast<T>(application.createObject(QString::fromLatin1(progId)));
  if (!made)
    raiseError(ErrorNumber::CannotCreateObject, kSource, QString::fromLatin1(progId));
  return made;
}

// How many records of the class the filter selects, counted by the
// database without fetching them.
int countRecords(HostApplication &application, const std::shared_ptr<hostapi::Class> &cls,
                 const std::shared_ptr<hostapi::Filter> &filter) {
  const auto query = create<hostapi::RecordQuery>(application, hostapi::kRecordQueryProgId);
  query->open(Variant(ObjectRef(cls)), filter, nullptr, hostapi::RecordQueryParts::Count, 0, -1);
  const auto root = query->result()->documentElement();
  const auto count = root ? root->getAttribute(QStringLiteral("count")) : std::nullopt;
  if (!count)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The database gave no count of the records"));
  return count->toInt();
}

RunRange fromIds(HostApplication &application, const std::shared_ptr<hostapi::Class> &cls,
                 const std::vector<int> &ids) {
  const auto pool = create<hostapi::Pool>(application, hostapi::kPoolProgId);
  for (const int id : ids)
    pool->add(id);
  const auto filter = create<hostapi::Filter>(application, hostapi::kFilterProgId);
  filter->addCondition(QStringLiteral("id") + cls->name(), Variant(ObjectRef(pool)), hostapi::ConditionOp::InPool, 0);
  return {Variant(ObjectRef(pool)), QString(), countRecords(application, cls, filter)};
}

// A list window on the class, current and active, as a user leaves it who
// prints from it. With no range given it lists the class with nothing
// selected, for the print dialog to choose from.
RunRange fromExplorer(HostApplication &application, const std::shared_ptr<hostapi::Class> &reportClass,
                      const RangeRequest &request) {
  const QString className = request.kind == RangeRequest::None ? reportClass->name() : request.name;
  const auto shown = application.classes()->lookup(className, hostapi::LookupMode::Either);
  if (!shown)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("There is no class \"%1\" for a list window").arg(request.name));
  if (shown->name() != reportClass->name())
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The list window would show %1, but the report prints %2")
                   .arg(shown->localName(), reportClass->localName()));
  const auto explorer = openListWindow(application, *shown);
  if (request.kind != RangeRequest::None)
    explorer->select(request.selected ? request.ids : explorer->listedIds());
  const auto counted = request.kind == RangeRequest::None ? explorer->listedIds() : explorer->selectedIds();
  return {Variant(ObjectRef(explorer)), QString(), int(counted.size())};
}

} // namespace

std::shared_ptr<nuvo::ExplorerObject> openListWindow(HostApplication &application, const hostapi::Class &cls) {
  const auto explorer =
      std::make_shared<nuvo::ExplorerObject>(nuvo::engineOf(ObjectRef(application.database())), cls.name());
  application.explorerList().open(explorer);
  return explorer;
}

std::shared_ptr<hostapi::Filter> savedFilter(const hostapi::Class &cls, const QString &name) {
  const auto filters = cls.filters();
  if (auto filter = filters->lookup(name, hostapi::FilterLookup::ByName))
    return filter;
  if (auto filter = filters->lookup(name, hostapi::FilterLookup::ByLocalName))
    return filter;
  QStringList names;
  const auto all = filters->enumerate();
  for (Variant item; all->next(item);)
    if (const auto filter = objectAs<hostapi::Filter>(item))
      names << QStringLiteral("\"%1\"").arg(filter->localName());
  raiseError(ErrorNumber::InvalidCall, kSource,
             QStringLiteral("%1 has no filter \"%2\"; %3")
                 .arg(cls.localName(), name,
                      names.isEmpty() ? QStringLiteral("it has none")
                                      : QStringLiteral("its filters are %1").arg(names.join(QStringLiteral(", ")))));
}

RunRange RunRange::resolve(HostApplication &application, const std::shared_ptr<hostapi::Class> &reportClass,
                           const RangeRequest &request) {
  RunRange range;
  switch (request.kind) {
  case RangeRequest::Filter: {
    const auto filter = savedFilter(*reportClass, request.name);
    range = {Variant(ObjectRef(filter)), filter->localName(), countRecords(application, reportClass, filter)};
    break;
  }
  case RangeRequest::Ids: range = fromIds(application, reportClass, request.ids); break;
  case RangeRequest::All: {
    // A filter without conditions holds every record of the class.
    const auto everything = create<hostapi::Filter>(application, hostapi::kFilterProgId);
    range = {Variant(ObjectRef(everything)), QString(), countRecords(application, reportClass, everything)};
    break;
  }
  case RangeRequest::Explorer:
  case RangeRequest::None: range = fromExplorer(application, reportClass, request); break;
  }
  if (range.records == 0)
    raiseError(
        ErrorNumber::UnusableRange, kSource,
        QStringLiteral("The range holds no records of %1: there is nothing to print").arg(reportClass->localName()));
  return range;
}

} // namespace kordel::host::cli

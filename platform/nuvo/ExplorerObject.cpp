#include "nuvo/ExplorerObject.h"

#include "nuvo/ClassObjects.h"
#include "nuvo/Engine.h"
#include "nuvo/ListQuery.h"
#include "nuvo/PoolObject.h"
#include "nuvo/QueryBuilder.h"
#include "nuvo/RecordObject.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/SavedFilters.h"
#include "nuvo/ViewObject.h"

#include "core/Error.h"

#include <unordered_set>

namespace kordel::nuvo {

namespace {

// Keeps the ids of a list that are among the wanted ones, in list order.
std::vector<int> keepAmong(const std::vector<int> &list, const std::vector<int> &wanted) {
  const std::unordered_set<int> set(wanted.begin(), wanted.end());
  std::vector<int> kept;
  for (int id : list)
    if (set.count(id))
      kept.push_back(id);
  return kept;
}

} // namespace

ExplorerObject::ExplorerObject(std::shared_ptr<Engine> engine, const QString &className)
    : engine_(std::move(engine)), class_(engine_->classNamed(className)),
      query_(std::make_unique<ListQuery>(engine_, className)) {
  refresh();
}

ExplorerObject::~ExplorerObject() = default;

std::shared_ptr<hostapi::Class> ExplorerObject::explorerClass() const {
  return std::make_shared<ClassObject>(engine_, class_);
}

std::shared_ptr<hostapi::Selection> ExplorerObject::items() const { return std::make_shared<SelectionObject>(listed_); }

std::shared_ptr<hostapi::Selection> ExplorerObject::selection() const {
  return std::make_shared<SelectionObject>(selected_);
}

std::shared_ptr<hostapi::Records> ExplorerObject::records() const {
  if (!records_) {
    // Each record's description, as a list shows it.
    auto view = std::make_shared<ViewObject>();
    for (const auto &part : class_.descriptionParts())
      if (part.field)
        view->add(part.field->name, 0, -1, QString());
    auto records = std::make_shared<RecordsObject>(engine_);
    records->open(class_.name, activeFilter_, view, 0);
    records_ = std::move(records);
  }
  return records_;
}

std::shared_ptr<hostapi::Filters> ExplorerObject::filters() const {
  return std::make_shared<SavedFilters>(engine_, class_);
}

void ExplorerObject::setActiveFilter(std::shared_ptr<hostapi::Filter> filter) {
  activeFilter_ = std::move(filter);
  refresh();
}

void ExplorerObject::refresh() {
  records_.reset();
  all_ = query_->ids(activeFilter_);
  listed_ = search_.isEmpty() && sortColumn_ < 0 ? all_ : query_->ids(activeFilter_, search_, sortColumn_, descending_);
  selected_.clear();
}

void ExplorerObject::arrange(const QString &search, int sortColumn, bool descending) {
  search_ = search;
  sortColumn_ = sortColumn;
  descending_ = descending;
  listed_ = search_.isEmpty() && sortColumn_ < 0 ? all_ : query_->ids(activeFilter_, search_, sortColumn_, descending_);
  const std::unordered_set<int> still(listed_.begin(), listed_.end());
  std::erase_if(selected_, [&](int id) { return !still.count(id); });
}

void ExplorerObject::narrow(const std::vector<int> &ids) {
  listed_ = keepAmong(all_, ids);
  selected_ = keepAmong(selected_, listed_);
}

void ExplorerObject::select(const std::vector<int> &ids) { selected_ = keepAmong(listed_, ids); }

const MemberTable &ExplorerObject::memberTable() const {
  static const MemberTable table{{
      property<ExplorerObject>("Class", [](ExplorerObject &e) { return Variant(e.explorerClass()); }),
      property<ExplorerObject>("Items", [](ExplorerObject &e) { return Variant(e.items()); }),
      property<ExplorerObject>("Selection", [](ExplorerObject &e) { return Variant(e.selection()); }),
      property<ExplorerObject>("Records", [](ExplorerObject &e) { return Variant(e.records()); }),
      property<ExplorerObject>("Filters", [](ExplorerObject &e) { return Variant(e.filters()); }),
      property<ExplorerObject>("Settings", [](ExplorerObject &e) { return Variant(e.settings()); }),
      property<ExplorerObject>(
          "ActiveFilter", [](ExplorerObject &e) { return Variant(ObjectRef(e.activeFilter())); },
          [](ExplorerObject &e, const Variant &v) {
            if (v.isNothing() || v.isEmpty()) {
              e.setActiveFilter(nullptr);
              return;
            }
            auto filter = objectAs<hostapi::Filter>(v);
            if (!filter)
              raiseError(ErrorNumber::TypeMismatch, QStringLiteral("Explorer"),
                         QStringLiteral("ActiveFilter takes a Filter"));
            e.setActiveFilter(std::move(filter));
          }),
      method<ExplorerObject>("Refresh",
                             [](ExplorerObject &e, Args &) {
                               e.refresh();
                               return Variant();
                             }),
      method<ExplorerObject>("Select",
                             [](ExplorerObject &e, Args &a) {
                               expectArgs(a, 1, 1);
                               auto pool = poolOf(a[0]);
                               if (!pool)
                                 raiseError(ErrorNumber::TypeMismatch, QStringLiteral("Explorer"),
                                            QStringLiteral("Select takes a Pool"));
                               e.select(pool->ids());
                               return Variant();
                             }),
  }};
  return table;
}

InspectorObject::InspectorObject(std::shared_ptr<Engine> engine, const ClassDef &cls,
                                 std::shared_ptr<hostapi::Record> record)
    : engine_(std::move(engine)), class_(cls), record_(std::move(record)) {}

InspectorObject::InspectorObject(std::shared_ptr<Engine> engine, const QString &className, int id)
    : engine_(std::move(engine)), class_(engine_->classNamed(className)) {
  QueryBuilder query(*engine_, class_);
  for (const FieldPath &path : plainPaths(class_))
    query.addPath(path);
  query.setRecordId(id);
  auto set = query.run();
  if (set->rowCount() == 0)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Inspector"),
               QStringLiteral("The class '%1' has no record %2").arg(class_.name).arg(id));
  record_ = std::make_shared<RecordObject>(engine_, std::move(set), 0);
}

std::shared_ptr<InspectorObject> InspectorObject::forNewRecord(std::shared_ptr<Engine> engine,
                                                               const QString &className) {
  const ClassDef &cls = engine->classNamed(className);
  auto set = std::make_shared<RecordSet>(cls);
  set->appendRow(0).endRow();
  auto record = std::make_shared<RecordObject>(engine, std::move(set), 0, hostapi::RecordState::New);
  return std::shared_ptr<InspectorObject>(new InspectorObject(std::move(engine), cls, std::move(record)));
}

std::shared_ptr<hostapi::Class> InspectorObject::inspectorClass() const {
  return std::make_shared<ClassObject>(engine_, class_);
}

const MemberTable &InspectorObject::memberTable() const {
  static const MemberTable table{{
      property<InspectorObject>("Class", [](InspectorObject &i) { return Variant(i.inspectorClass()); }),
      property<InspectorObject>("Record", [](InspectorObject &i) { return Variant(ObjectRef(i.record())); }),
  }};
  return table;
}

} // namespace kordel::nuvo

#include "nuvo/RecordsObject.h"

#include "nuvo/ClassObjects.h"
#include "nuvo/Engine.h"
#include "nuvo/PoolObject.h"
#include "nuvo/QueryBuilder.h"
#include "nuvo/RecordObject.h"

#include "hostapi/Classes.h"
#include "hostapi/FieldTypes.h"

#include "core/Error.h"

namespace kordel::nuvo {

namespace {

const QString kSource = QStringLiteral("Nuvo.Records");

template <class T> std::shared_ptr<T> optionalObject(const Variant &value, const char *what) {
  if (value.isEmpty() || value.isNull() || value.isNothing())
    return nullptr;
  auto object = objectAs<T>(value);
  if (!object)
    raiseError(ErrorNumber::TypeMismatch, kSource,
               QStringLiteral("Open needs a %1 or Nothing").arg(QLatin1String(what)));
  return object;
}

} // namespace

std::vector<FieldPath> plainPaths(const ClassDef &cls) {
  std::vector<FieldPath> paths;
  for (const auto &field : cls.fields)
    if (field->type != hostapi::FieldType::RelationToMany)
      paths.push_back(FieldPath{&cls, {field.get()}});
  return paths;
}

void RecordsObject::open(const Variant &classOrName, const std::shared_ptr<hostapi::Filter> &filter,
                         const std::shared_ptr<hostapi::View> &view, int) {
  if (!engine_)
    raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("No database is open"));
  const ClassDef &cls = classOfValue(*engine_, classOrName);
  if (filter && !filter->className().isEmpty() && filter->className().compare(cls.name, Qt::CaseInsensitive) != 0)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The filter '%1' belongs to the class '%2', not to '%3'")
                   .arg(filter->name(), filter->className(), cls.name));
  QueryBuilder query(*engine_, cls);
  std::vector<std::pair<QString, int>> spellings;
  if (view) {
    for (const QString &path : view->paths()) {
      const auto resolved = resolvePath(cls, path, hostapi::LookupMode::Either, engine_->language());
      if (resolved)
        spellings.emplace_back(path, query.addPath(*resolved));
    }
  } else {
    for (const FieldPath &path : plainPaths(cls))
      query.addPath(path);
  }
  query.setFilter(filter);
  auto set = query.run();
  for (const auto &[path, column] : spellings)
    set->addSpelling(path, column);
  set_ = std::move(set);
  source_ = filter;
}

std::shared_ptr<hostapi::Record> RecordsObject::at(int index) const {
  if (index < 0 || index >= count())
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource);
  // A record is a row number and the shared result, made when asked for:
  // a report over many rows must not keep an object per row.
  return std::make_shared<RecordObject>(engine_, set_, index);
}

int RecordsObject::idAt(int index) const {
  if (index < 0 || index >= count())
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource);
  return set_->id(index);
}

std::shared_ptr<hostapi::Pool> RecordsObject::pool() const {
  return std::make_shared<PoolObject>(set_ ? set_->ids() : std::vector<int>{});
}

std::unique_ptr<Enumerator> RecordsObject::enumerate() {
  std::vector<Variant> records;
  records.reserve(std::size_t(count()));
  for (int i = 0; i < count(); ++i)
    records.emplace_back(at(i));
  return std::make_unique<ListEnumerator>(std::move(records));
}

const MemberTable &RecordsObject::memberTable() const {
  static const MemberTable table{
      {
          method<RecordsObject>("Open",
                                [](RecordsObject &r, Args &a) {
                                  expectArgs(a, 1, 4);
                                  r.open(a[0], optionalObject<hostapi::Filter>(arg(a, 1), "Filter"),
                                         optionalObject<hostapi::View>(arg(a, 2), "View"),
                                         a.size() > 3 ? a[3].toLong() : 0);
                                  return Variant();
                                }),
          property<RecordsObject>("Count", [](RecordsObject &r) { return r.count(); }),
          indexedProperty<RecordsObject>("Item",
                                         [](RecordsObject &r, Args &a) {
                                           expectArgs(a, 1, 1);
                                           return Variant(r.at(a[0].toLong() - 1));
                                         }),
          property<RecordsObject>("Pool", [](RecordsObject &r) { return Variant(r.pool()); }),
          property<RecordsObject>("Source", [](RecordsObject &r) { return Variant(ObjectRef(r.source())); }),
      },
      nullptr,
      QStringLiteral("Item")};
  return table;
}

} // namespace kordel::nuvo

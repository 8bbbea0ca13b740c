#include "nuvo/SavedFilters.h"

#include "nuvo/Engine.h"

#include "core/Error.h"

#include <QJsonObject>

#include <cmath>

namespace kordel::nuvo {

namespace {

const QString kSource = QStringLiteral("Nuvo.Filters");

Variant valueOfJson(const QJsonValue &value) {
  switch (value.type()) {
  case QJsonValue::Bool: return value.toBool();
  case QJsonValue::Double: {
    const double number = value.toDouble();
    if (number == std::floor(number) && std::abs(number) < 2147483647.0)
      return int(number);
    return number;
  }
  case QJsonValue::String: return value.toString();
  default: return Variant::null();
  }
}

// The most filters one saved filter may bring in through the filters it
// embeds: a few filters that each embed the next several times would
// otherwise multiply beyond any machine.
constexpr int kMostEmbeddedFilters = 1000;

std::shared_ptr<FilterObject> makeFilter(const ClassDef &cls, const FilterDef &def, const QString &language, int depth,
                                         int &embedded, const QString &top) {
  if (depth > 16)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The saved filter '%1' embeds itself").arg(def.name));
  auto filter = std::make_shared<FilterObject>(cls.name, def.name, def.localNames.get(language));
  for (const QJsonValue &entry : def.items) {
    const QJsonObject item = entry.toObject();
    if (item.contains(QLatin1String("operator"))) {
      filter->addOperator(item.value(QLatin1String("operator")).toInt());
    } else if (item.contains(QLatin1String("filter"))) {
      const QString name = item.value(QLatin1String("filter")).toString();
      const FilterDef *inner = cls.filter(name);
      if (!inner)
        raiseError(ErrorNumber::InvalidCall, kSource,
                   QStringLiteral("The saved filter '%1' embeds '%2', which the class lacks").arg(def.name, name));
      if (++embedded > kMostEmbeddedFilters)
        raiseError(ErrorNumber::InvalidCall, kSource,
                   QStringLiteral("The saved filter '%1' embeds more than %2 filters in all")
                       .arg(top)
                       .arg(kMostEmbeddedFilters));
      filter->addCondition({}, Variant(makeFilter(cls, *inner, language, depth + 1, embedded, top)),
                           hostapi::ConditionOp::EmbeddedFilter, 0);
    } else {
      filter->addCondition(item.value(QLatin1String("path")).toString(),
                           valueOfJson(item.value(QLatin1String("value"))), item.value(QLatin1String("op")).toInt(), 0);
    }
  }
  return filter;
}

} // namespace

std::shared_ptr<FilterObject> makeSavedFilter(const ClassDef &cls, const FilterDef &def, const QString &language) {
  int embedded = 0;
  return makeFilter(cls, def, language, 0, embedded, def.name);
}

std::shared_ptr<hostapi::Filter> SavedFilters::item(const QString &name) const {
  const FilterDef *def = class_.filter(name);
  if (!def)
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource,
               QStringLiteral("The class '%1' has no filter '%2'").arg(class_.name, name));
  return makeSavedFilter(class_, *def, engine_->language());
}

std::shared_ptr<hostapi::Filter> SavedFilters::at(int index) const {
  if (index < 0 || index >= count())
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource);
  return makeSavedFilter(class_, class_.filters[std::size_t(index)], engine_->language());
}

std::shared_ptr<hostapi::Filter> SavedFilters::lookup(const QString &text, int mode) const {
  for (const FilterDef &def : class_.filters) {
    const QString &candidate =
        mode == hostapi::FilterLookup::ByLocalName ? def.localNames.get(engine_->language()) : def.name;
    if (candidate.compare(text, Qt::CaseInsensitive) == 0)
      return makeSavedFilter(class_, def, engine_->language());
  }
  return nullptr;
}

std::unique_ptr<Enumerator> SavedFilters::enumerate() {
  std::vector<Variant> filters;
  for (int i = 0; i < count(); ++i)
    filters.emplace_back(at(i));
  return std::make_unique<ListEnumerator>(std::move(filters));
}

const MemberTable &SavedFilters::memberTable() const {
  static const MemberTable table{{
                                     property<SavedFilters>("Count", [](SavedFilters &f) { return f.count(); }),
                                     indexedProperty<SavedFilters>("Item",
                                                                   [](SavedFilters &f, Args &a) {
                                                                     expectArgs(a, 1, 1);
                                                                     if (a[0].isNumber() && !a[0].isEmpty())
                                                                       return Variant(f.at(a[0].toLong() - 1));
                                                                     return Variant(f.item(a[0].toString()));
                                                                   }),
                                     method<SavedFilters>("Lookup",
                                                          [](SavedFilters &f, Args &a) {
                                                            expectArgs(a, 2, 2);
                                                            return Variant(
                                                                ObjectRef(f.lookup(a[0].toText(), a[1].toLong())));
                                                          }),
                                 },
                                 nullptr,
                                 QStringLiteral("Item")};
  return table;
}

} // namespace kordel::nuvo

#include "data/ContextManager.h"

#include "common/Globals.h"
#include "core/Error.h"
#include "core/Format.h"
#include "hostapi/Application.h"
#include "hostapi/Classes.h"
#include "hostapi/Explorer.h"
#include "hostapi/Filters.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"
#include "hostapi/ReportContext.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNode.h"

namespace kordel::addin {

namespace {

const QString kSource = QStringLiteral("ContextManager");

[[noreturn]] void raiseRange(int number) { raiseError(number, kSource); }

template <class T> std::shared_ptr<T> as(const ObjectRef &object) { return std::dynamic_pointer_cast<T>(object); }

template <class T> std::shared_ptr<T> create(hostapi::Application &app, const char *progId) {
  auto made = std::dynamic_pointer_cast<T>(app.createObject(QString::fromLatin1(progId)));
  if (!made)
    raiseError(ErrorNumber::CannotCreateObject, kSource, QString::fromLatin1(progId));
  return made;
}

bool hasState(int state, int bit) { return (state & bit) == bit; }

QString thousands(std::int32_t count) { return formatValue(Variant(count), QStringLiteral("#,0")); }

} // namespace

hostapi::Application &ContextManager::application() const {
  if (!application_)
    raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("The manager has no application"));
  return *application_;
}

std::shared_ptr<hostapi::Class> ContextManager::Class() const {
  if (!context_)
    raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("The manager has no context"));
  return context_->contextClass();
}

std::shared_ptr<hostapi::Filters> ContextManager::RangeFilters() const {
  if (rangeType_ != RangeExplorer)
    return nullptr;
  return as<hostapi::Explorer>(range_)->filters();
}

void ContextManager::Initialize(const QString &className, std::shared_ptr<hostapi::ReportContext> context) {
  hostapi::Application &app = application();
  context_ = std::move(context);
  range_.reset();
  rangeType_ = RangeNone;
  const auto wanted = className.isEmpty() ? nullptr : app.classes()->item(className);
  const auto explorers = app.explorers();

  if (!context_) {
    context_ = create<hostapi::ReportContext>(app, hostapi::kReportContextProgId);
    if (wanted) {
      if (!explorers->exists(wanted->name()))
        raiseRange(ErrorNumber::NoListWindow);
      context_->setContextClass(wanted);
      range_ = explorers->item(wanted->name());
    } else {
      const auto current = explorers->current();
      if (!current)
        raiseRange(ErrorNumber::NoListWindow);
      context_->setContextClass(current->explorerClass());
      range_ = current;
    }
    rangeType_ = RangeExplorer;
    ValidateRange(range_);
    return;
  }

  const Variant given = context_->range();
  if (given.isObject()) {
    const ObjectRef &object = given.rawObject();
    if (const auto filter = as<hostapi::Filter>(object)) {
      if (GetFilterCount(filter) == 0)
        raiseRange(ErrorNumber::UnusableRange);
      range_ = filter;
      rangeType_ = RangeFilter;
    } else if (as<hostapi::Explorer>(object)) {
      range_ = object;
      rangeType_ = RangeExplorer;
    } else if (as<hostapi::Inspector>(object)) {
      range_ = object;
      rangeType_ = RangeInspector;
    }
  }
  if (!range_) {
    const auto pool = as<hostapi::Pool>(GetRangePool(given));
    if (!pool || pool->count() == 0)
      raiseRange(ErrorNumber::UnusableRange);
    range_ = pool;
    rangeType_ = RangePool;
  }

  const auto rangeClass = RangeClass();
  if (wanted && wanted->name() != rangeClass->name())
    raiseRange(ErrorNumber::ClassMismatch);
  if (const auto contextClass = context_->contextClass()) {
    if (contextClass->name() != rangeClass->name())
      raiseRange(ErrorNumber::ClassMismatch);
  } else {
    context_->setContextClass(rangeClass);
  }
  ValidateRange(range_);
}

std::shared_ptr<hostapi::Class> ContextManager::RangeClass() const {
  if (rangeType_ == RangeExplorer)
    return as<hostapi::Explorer>(range_)->explorerClass();
  if (rangeType_ == RangeInspector)
    return as<hostapi::Inspector>(range_)->inspectorClass();
  if (const auto contextClass = context_->contextClass())
    return contextClass;
  const auto current = application().explorers()->current();
  if (!current)
    raiseError(ErrorNumber::ObjectNotSet, kSource,
               QStringLiteral("The range has no class and no list window is current"));
  return current->explorerClass();
}

ObjectRef ContextManager::GetRangePool(const Variant &value) {
  if (value.isObject()) {
    const ObjectRef &object = value.rawObject();
    if (const auto pool = as<hostapi::Pool>(object))
      return pool;
    if (const auto selection = as<hostapi::Selection>(object))
      return selection->pool();
    if (const auto records = as<hostapi::Records>(object))
      return records->pool();
    if (const auto record = as<hostapi::Record>(object)) {
      auto pool = create<hostapi::Pool>(application(), hostapi::kPoolProgId);
      pool->add(record->id());
      return pool;
    }
    return nullptr;
  }
  if (value.isEmpty())
    return nullptr;
  auto pool = create<hostapi::Pool>(application(), hostapi::kPoolProgId);
  pool->add(value.toLong());
  return pool;
}

void ContextManager::ValidateRange(const ObjectRef &range) {
  if (!range)
    raiseRange(ErrorNumber::UnusableRange);
  if (const auto inspector = as<hostapi::Inspector>(range)) {
    const auto record = inspector->record();
    if (!record || hasState(record->state(), hostapi::RecordState::Deleted) ||
        hasState(record->state(), hostapi::RecordState::New))
      raiseRange(ErrorNumber::UnusableRange);
    return;
  }
  if (const auto explorer = as<hostapi::Explorer>(range)) {
    if (explorer->filters()->count() == 0 && explorer->items()->count() == 0)
      raiseRange(ErrorNumber::UnusableRange);
    return;
  }
  if (const auto filter = as<hostapi::Filter>(range)) {
    if (GetFilterCount(filter) == 0)
      raiseRange(ErrorNumber::UnusableRange);
    return;
  }
  if (const auto pool = as<hostapi::Pool>(range)) {
    if (pool->count() == 0)
      raiseRange(ErrorNumber::UnusableRange);
    return;
  }
  raiseRange(ErrorNumber::UnusableRange);
}

std::shared_ptr<hostapi::Filter> ContextManager::GetExplorerFilter(const QString &name) {
  if (rangeType_ != RangeExplorer)
    return nullptr;
  if (const auto cached = filterCache_.value(name))
    return cached;
  const auto explorer = as<hostapi::Explorer>(range_);
  auto filter = create<hostapi::Filter>(application(), hostapi::kFilterProgId);
  if (const auto source = explorer->records()->source())
    filter->addCondition(QString(), Variant(ObjectRef(source)), hostapi::ConditionOp::EmbeddedFilter, 0);
  const auto named = explorer->filters()->lookup(name, hostapi::FilterLookup::ByName);
  if (!named)
    raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("The list window has no filter \"%1\"").arg(name));
  if (!named->empty())
    filter->addCondition(QString(), Variant(ObjectRef(named)), hostapi::ConditionOp::EmbeddedFilter, 0);
  if (filter->count() > 1)
    filter->addOperator(hostapi::FilterOperator::And);
  // Named as the saved filter, so that its count is kept under its own
  // name and the context describes its range by it.
  filter->setName(name);
  filterCache_.insert(name, filter);
  return filter;
}

std::int32_t ContextManager::GetFilterCount(const std::shared_ptr<hostapi::Filter> &filter) {
  const auto cached = filterCounts_.constFind(filter->name());
  if (cached != filterCounts_.constEnd())
    return *cached;
  auto query = create<hostapi::RecordQuery>(application(), hostapi::kRecordQueryProgId);
  // The context's class; a saved filter brings its own when the context
  // has none yet.
  const auto contextClass = context_ ? context_->contextClass() : nullptr;
  const Variant cls = contextClass ? Variant(ObjectRef(contextClass)) : Variant(filter->className());
  query->open(cls, filter, nullptr, hostapi::RecordQueryParts::Count | hostapi::RecordQueryParts::Summary, 0, -1);
  const auto root = query->result()->documentElement();
  const auto count = root ? root->getAttribute(QStringLiteral("count")) : std::nullopt;
  if (!count)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The engine gave no count for the filter"));
  const std::int32_t value = Variant(*count).toLong();
  filterCounts_.insert(filter->name(), value);
  return value;
}

std::int32_t ContextManager::GetFilterHitCount(const QString &filterName) {
  if (rangeType_ != RangeExplorer)
    return 0;
  return GetFilterCount(GetExplorerFilter(filterName));
}

std::int32_t ContextManager::GetRangeCount(int kind) {
  switch (kind) {
  case RangeCountAll: return rangeType_ == RangeExplorer ? as<hostapi::Explorer>(range_)->items()->count() : 0;
  case RangeCountSelected: return rangeType_ == RangeExplorer ? as<hostapi::Explorer>(range_)->selection()->count() : 0;
  case RangeCountPool: return rangeType_ == RangePool ? as<hostapi::Pool>(range_)->count() : 0;
  case RangeCountFilter: return rangeType_ == RangeFilter ? GetFilterCount(as<hostapi::Filter>(range_)) : 0;
  default: return 0;
  }
}

bool ContextManager::IsRangeActiveExplorer() const {
  return rangeType_ == RangeExplorer && range_ == ObjectRef(application().activeExplorer());
}

QString ContextManager::Name() {
  if (context_ && !context_->name().isEmpty())
    return context_->name();
  switch (rangeType_) {
  case RangePool: {
    const std::int32_t count = GetRangeCount(RangeCountPool);
    return count == 1 ? GetMessage(QStringLiteral("ContextManager.ContextItem"))
                      : GetMessage(QStringLiteral("ContextManager.ContextItems"), thousands(count));
  }
  case RangeFilter: {
    const std::int32_t count = GetRangeCount(RangeCountFilter);
    const QString name = as<hostapi::Filter>(range_)->name();
    return name.isEmpty() ? GetMessage(QStringLiteral("ContextManager.ContextNamelessFilter"), thousands(count))
                          : GetMessage(QStringLiteral("ContextManager.ContextFilter"), name, thousands(count));
  }
  case RangeInspector: return as<hostapi::Inspector>(range_)->record()->description();
  default: return QString();
  }
}

std::shared_ptr<hostapi::ReportContext> ContextManager::CreateContext(int kind, const QString &filterName) {
  ObjectRef range;
  QString description;
  switch (rangeType_) {
  case RangePool: range = range_; break;
  case RangeFilter:
    range = range_;
    description = as<hostapi::Filter>(range_)->name();
    break;
  case RangeInspector: {
    const auto record = as<hostapi::Inspector>(range_)->record();
    auto pool = create<hostapi::Pool>(application(), hostapi::kPoolProgId);
    pool->add(record->id());
    range = pool;
    description = record->description();
    break;
  }
  case RangeExplorer: {
    const auto explorer = as<hostapi::Explorer>(range_);
    if (kind == ContextFromFilter) {
      const auto filter = GetExplorerFilter(filterName);
      range = filter;
      description = filter->name();
    } else if (IsRangeActiveExplorer()) {
      const auto rows = kind == ContextFromAll ? explorer->items() : explorer->selection();
      range = rows->pool();
      const auto active = explorer->activeFilter();
      description = active ? active->name() : QString();
      const int listed = explorer->records()->count();
      if (rows->count() < listed)
        description += QStringLiteral(" (%1/%2)").arg(rows->count()).arg(listed);
    }
    break;
  }
  default: break;
  }
  ValidateRange(range);
  context_->setRange(Variant(range));
  context_->setProperty(QStringLiteral("sysprop__description"), description);
  return context_;
}

Variant ContextManager::GetProperty(const QString &name, const Variant &defaultValue) const {
  const Variant probe = context_->getProperty(name);
  if (probe.isObject())
    return context_->getProperty(name);
  return context_->getProperty(name, defaultValue);
}

void ContextManager::SetProperty(const QString &name, const Variant &value) { context_->setProperty(name, value); }

} // namespace kordel::addin

#include "nuvo/FilterObject.h"

#include "nuvo/PoolObject.h"

#include "core/Error.h"

namespace kordel::nuvo {

namespace CO = hostapi::ConditionOp;
namespace FO = hostapi::FilterOperator;

namespace {
const QString kSource = QStringLiteral("Nuvo.Filter");
} // namespace

FilterObject::FilterObject(QString className, QString name, QString localName)
    : className_(std::move(className)), name_(std::move(name)), localName_(std::move(localName)) {}

bool FilterObject::empty() const {
  for (const FilterItem &item : items_) {
    if (item.isOperator)
      continue;
    if (item.op != CO::EmbeddedFilter)
      return false;
    const auto embedded = objectAs<hostapi::Filter>(item.value);
    if (embedded && !embedded->empty())
      return false;
  }
  return true;
}

bool FilterObject::reaches(const hostapi::Filter *target) const {
  if (this == target)
    return true;
  for (const FilterItem &item : items_) {
    if (item.isOperator || item.op != CO::EmbeddedFilter)
      continue;
    const auto inner = objectAs<FilterObject>(item.value);
    if (inner && inner->reaches(target))
      return true;
  }
  return false;
}

void FilterObject::addCondition(const QString &field, const Variant &value, int op, int flags) {
  if (flags != 0)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("AddCondition takes 0 as its last argument"));
  switch (op) {
  case CO::EmbeddedFilter: {
    const auto embedded = objectAs<hostapi::Filter>(value);
    if (!embedded)
      raiseError(ErrorNumber::TypeMismatch, kSource, QStringLiteral("An embedded condition needs a Filter"));
    // Embedding a filter that already holds this one would make a loop.
    const auto *inner = dynamic_cast<const FilterObject *>(embedded.get());
    if (embedded.get() == this || (inner && inner->reaches(this)))
      raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("A filter cannot embed itself"));
    break;
  }
  case CO::InPool:
    if (!poolOf(value) && !value.isArray())
      raiseError(ErrorNumber::TypeMismatch, kSource, QStringLiteral("An in-pool condition needs a Pool"));
    [[fallthrough]];
  case CO::Equal:
  case CO::NotEqual:
  case CO::Less:
  case CO::LessOrEqual:
  case CO::Greater:
  case CO::GreaterOrEqual:
  case CO::Like:
    if (field.isEmpty())
      raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The condition names no field"));
    if (value.isObject() && op != CO::InPool)
      raiseError(ErrorNumber::TypeMismatch, kSource, QStringLiteral("A field is compared with a value, not an object"));
    break;
  default: raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("%1 is no condition operator").arg(op));
  }
  items_.push_back({false, field, op, value});
  ++depth_;
}

void FilterObject::addOperator(int op) {
  const int needed = op == FO::Not ? 1 : 2;
  if (op != FO::And && op != FO::Or && op != FO::Not)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("%1 is no operator that joins conditions").arg(op));
  if (depth_ < needed)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The operator %1 needs %2 conditions before it").arg(op).arg(needed));
  items_.push_back({true, {}, op, {}});
  depth_ -= needed - 1;
}

void FilterObject::clear() {
  items_.clear();
  depth_ = 0;
}

const MemberTable &FilterObject::memberTable() const {
  static const MemberTable table{{
      property<FilterObject>(
          "Name", [](FilterObject &f) { return f.name(); },
          [](FilterObject &f, const Variant &v) { f.setName(v.toString()); }),
      property<FilterObject>(
          "LocalName", [](FilterObject &f) { return f.localName(); },
          [](FilterObject &f, const Variant &v) { f.setLocalName(v.toString()); }),
      property<FilterObject>("Empty", [](FilterObject &f) { return f.empty(); }),
      property<FilterObject>("Count", [](FilterObject &f) { return f.count(); }),
      property<FilterObject>("Class", [](FilterObject &f) { return f.className(); }),
      method<FilterObject>("AddCondition",
                           [](FilterObject &f, Args &a) {
                             expectArgs(a, 3, 4);
                             f.addCondition(a[0].toText(), a[1], a[2].toLong(), a.size() > 3 ? a[3].toLong() : 0);
                             return Variant();
                           }),
      method<FilterObject>("AddOperator",
                           [](FilterObject &f, Args &a) {
                             expectArgs(a, 1, 1);
                             f.addOperator(a[0].toLong());
                             return Variant();
                           }),
      method<FilterObject>("Clear",
                           [](FilterObject &f, Args &) {
                             f.clear();
                             return Variant();
                           }),
  }};
  return table;
}

} // namespace kordel::nuvo

#include "nuvo/PoolObject.h"

#include "hostapi/Records.h"

#include "core/Error.h"

#include <algorithm>
#include <functional>

namespace kordel::nuvo {

PoolObject::PoolObject(const std::vector<int> &ids) {
  if (std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<int>()) == ids.end()) {
    ids_ = ids;
    return;
  }
  ids_.reserve(ids.size());
  for (int id : ids)
    add(id);
}

bool PoolObject::contains(int id) const {
  return ascending_ ? std::binary_search(ids_.begin(), ids_.end(), id) : members_.contains(id);
}

void PoolObject::leaveOrder() {
  members_.reserve(qsizetype(ids_.size()) + 1);
  for (int id : ids_)
    members_.insert(id);
  ascending_ = false;
}

void PoolObject::add(int id) {
  if (ascending_) {
    if (ids_.empty() || id > ids_.back()) {
      ids_.push_back(id);
      ++revision_;
      return;
    }
    if (std::binary_search(ids_.begin(), ids_.end(), id))
      return;
    leaveOrder();
  }
  const qsizetype before = members_.size();
  members_.insert(id);
  if (members_.size() == before)
    return;
  ids_.push_back(id);
  ++revision_;
}

void PoolObject::remove(int id) {
  if (ascending_) {
    const auto at = std::lower_bound(ids_.begin(), ids_.end(), id);
    if (at == ids_.end() || *at != id)
      return;
    ids_.erase(at);
  } else {
    if (!members_.remove(id))
      return;
    ids_.erase(std::find(ids_.begin(), ids_.end(), id));
  }
  ++revision_;
}

void PoolObject::clear() {
  ids_.clear();
  members_.clear();
  ascending_ = true;
  ++revision_;
}

std::shared_ptr<hostapi::Pool> PoolObject::clone() const { return std::make_shared<PoolObject>(ids_); }

std::unique_ptr<Enumerator> PoolObject::enumerate() {
  std::vector<Variant> values(ids_.begin(), ids_.end());
  return std::make_unique<ListEnumerator>(std::move(values));
}

const MemberTable &PoolObject::memberTable() const {
  static const MemberTable table{{
      method<PoolObject>("Add",
                         [](PoolObject &p, Args &a) {
                           expectArgs(a, 1, 1);
                           p.add(a[0].toLong());
                           return Variant();
                         }),
      method<PoolObject>("Remove",
                         [](PoolObject &p, Args &a) {
                           expectArgs(a, 1, 1);
                           p.remove(a[0].toLong());
                           return Variant();
                         }),
      method<PoolObject>("Contains",
                         [](PoolObject &p, Args &a) {
                           expectArgs(a, 1, 1);
                           return p.contains(a[0].toLong());
                         }),
      property<PoolObject>("Count", [](PoolObject &p) { return p.count(); }),
      property<PoolObject>(
          "Items",
          [](PoolObject &p) { return VariantArray::fromValues(std::vector<Variant>(p.ids().begin(), p.ids().end())); }),
      method<PoolObject>("Clear",
                         [](PoolObject &p, Args &) {
                           p.clear();
                           return Variant();
                         }),
      method<PoolObject>("Clone", [](PoolObject &p, Args &) { return Variant(p.clone()); }),
  }};
  return table;
}

std::shared_ptr<hostapi::Pool> SelectionObject::pool() const { return std::make_shared<PoolObject>(ids_); }

const MemberTable &SelectionObject::memberTable() const {
  static const MemberTable table{{
      property<SelectionObject>("Count", [](SelectionObject &s) { return s.count(); }),
      property<SelectionObject>("Pool", [](SelectionObject &s) { return Variant(s.pool()); }),
  }};
  return table;
}

std::shared_ptr<hostapi::Pool> poolOf(const Variant &value) {
  if (auto pool = objectAs<hostapi::Pool>(value))
    return pool;
  if (auto selection = objectAs<hostapi::Selection>(value))
    return selection->pool();
  if (auto records = objectAs<hostapi::Records>(value))
    return records->pool();
  return nullptr;
}

} // namespace kordel::nuvo

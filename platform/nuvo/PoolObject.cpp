#include "nuvo/PoolObject.h"

#include "hostapi/Records.h"

#include "core/Error.h"

namespace kordel::nuvo {

PoolObject::PoolObject(const std::vector<int> &ids) {
  ids_.reserve(ids.size());
  members_.reserve(qsizetype(ids.size()));
  for (int id : ids)
    add(id);
}

void PoolObject::add(int id) {
  const qsizetype before = members_.size();
  members_.insert(id);
  if (members_.size() == before)
    return;
  ids_.push_back(id);
  ++revision_;
}

void PoolObject::remove(int id) {
  if (!members_.remove(id))
    return;
  ids_.erase(std::find(ids_.begin(), ids_.end(), id));
  ++revision_;
}

void PoolObject::clear() {
  ids_.clear();
  members_.clear();
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

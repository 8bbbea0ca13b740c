#pragma once

#include "hostapi/Pool.h"

#include <QSet>

#include <vector>

namespace kordel::nuvo {

// Nuvo.Pool: a set of record ids in the order they were added. Ids added
// in ascending order, as queries give them, are looked up in their list;
// a set of them is made only when an id comes out of order.
class PoolObject : public hostapi::Pool {
public:
  PoolObject() = default;
  explicit PoolObject(const std::vector<int> &ids);

  QString typeName() const override { return QStringLiteral("Pool"); }

  void add(int id) override;
  void remove(int id) override;
  bool contains(int id) const override;
  int count() const override { return int(ids_.size()); }
  const std::vector<int> &ids() const override { return ids_; }
  void clear() override;
  std::shared_ptr<hostapi::Pool> clone() const override;
  quint64 revision() const override { return revision_; }

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  void leaveOrder();

  std::vector<int> ids_;
  bool ascending_ = true; // ids_ strictly ascending, and members_ empty
  QSet<int> members_;
  quint64 revision_ = 0;
};

// A list of records of a window (its items or its selection).
class SelectionObject : public hostapi::Selection {
public:
  explicit SelectionObject(std::vector<int> ids) : ids_(std::move(ids)) {}

  QString typeName() const override { return QStringLiteral("Selection"); }
  int count() const override { return int(ids_.size()); }
  std::shared_ptr<hostapi::Pool> pool() const override;
  const std::vector<int> &ids() const { return ids_; }

protected:
  const MemberTable &memberTable() const override;

private:
  std::vector<int> ids_;
};

// The pool that a range value stands for: a Pool itself, the pool of a
// Selection or of opened Records; nullptr for anything else.
std::shared_ptr<hostapi::Pool> poolOf(const Variant &value);

} // namespace kordel::nuvo

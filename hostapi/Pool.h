#pragma once

#include "core/Object.h"

#include <memory>
#include <vector>

namespace kordel::hostapi {

inline constexpr const char *kPoolProgId = "Nuvo.Pool";

// A set of record ids, in the order they were added; an id is held once.
// Late-bound: Add, Remove, Contains, Count, Items, Clear, Clone, and For
// Each over the ids.
class Pool : public Object {
public:
  // Adding an id the pool holds changes nothing.
  virtual void add(int id) = 0;
  virtual void remove(int id) = 0;
  virtual bool contains(int id) const = 0;
  virtual int count() const = 0;
  virtual const std::vector<int> &ids() const = 0;
  virtual void clear() = 0;
  virtual std::shared_ptr<Pool> clone() const = 0;
  // Grows with every change, so that a copy made for a query can be told
  // stale.
  virtual quint64 revision() const = 0;
};

// A list of records chosen or shown in a host window. Late-bound: Count,
// Pool.
class Selection : public Object {
public:
  virtual int count() const = 0;
  // The ids, as a new pool the caller may change.
  virtual std::shared_ptr<Pool> pool() const = 0;
};

} // namespace kordel::hostapi

#pragma once

#include "core/Object.h"

#include <memory>

namespace kordel::hostapi {

class Record;

// The user signed in to the database. Late-bound: Name, Login, Record.
class ActiveUser : public Object {
public:
  // The user's name as people read it.
  virtual QString name() const = 0;
  virtual QString login() const = 0;
  // The user's own coworker record; nullptr for a user without one.
  virtual std::shared_ptr<Record> record() const = 0;
};

} // namespace kordel::hostapi

#pragma once

#include "core/Object.h"

namespace kordel::hostapi {

// The open database. Its two name strings together tell one database from
// another: where it lives (a file or a server) and its name.
class Database : public Object {
public:
  virtual QString location() const = 0;
  virtual QString name() const = 0;
};

} // namespace kordel::hostapi

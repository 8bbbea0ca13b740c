#pragma once

#include "core/Object.h"

#include <memory>

namespace kordel::hostapi {

class ActiveUser;
class Classes;

// Bits of the access mask that a policy grants a user.
namespace Access {
constexpr int Read = 1;
constexpr int Change = 2;
constexpr int Delete = 4;
constexpr int Administer = 8;
constexpr int All = Read | Change | Delete | Administer;
} // namespace Access

// The open database. Its two name strings together tell one database from
// another: where it lives (a file or a server) and its name. A database
// without a data model keeps the defaults: no classes, no user, no rights.
// Late-bound: Location, Name, Classes, ActiveUser, AccessMask(policy).
class Database : public Object {
public:
  virtual QString location() const = 0;
  virtual QString name() const = 0;
  virtual std::shared_ptr<Classes> classes() const { return nullptr; }
  virtual std::shared_ptr<ActiveUser> activeUser() const { return nullptr; }
  // The Access bits the signed-in user has on a policy. Policy 0 governs
  // nothing and grants every right; a policy the database lacks grants none.
  virtual int accessMask(int policy) const { return 0; }
};

} // namespace kordel::hostapi

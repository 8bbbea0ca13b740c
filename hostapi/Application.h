#pragma once

#include "core/Object.h"

#include <memory>

namespace kordel::hostapi {

class ApplicationLog;
class Database;

// Wait-cursor shapes of Application.MousePointer.
namespace MousePointer {
constexpr int Default = 0;
constexpr int Hourglass = 11;
} // namespace MousePointer

// The host application as the add-in sees it. Members are added here as
// the parts of the add-in that use them are built; each is also reachable
// late-bound under its own name.
class Application : public Object {
public:
  // The wait cursor: 0 default, 11 hourglass.
  virtual int mousePointer() const = 0;
  virtual void setMousePointer(int pointer) = 0;
  // The language code of the user interface ("en", "sv").
  virtual QString language() const = 0;
  // Creates a host-side object by ProgID; raises 429 for an unknown ProgID.
  virtual ObjectRef createObject(const QString &progId) = 0;
  virtual std::shared_ptr<ApplicationLog> applicationLog() = 0;
  // The open database; nullptr when the host has none open.
  virtual std::shared_ptr<Database> database() = 0;
};

} // namespace kordel::hostapi

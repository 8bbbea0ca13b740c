#pragma once

#include "core/Object.h"

#include <QStringList>

#include <memory>

namespace kordel::hostapi {

class ActiveUser;
class ApplicationLog;
class Classes;
class Database;
class Explorer;
class Explorers;

// Wait-cursor shapes of Application.MousePointer.
namespace MousePointer {
constexpr int Default = 0;
constexpr int Hourglass = 11;
} // namespace MousePointer

// The host application as the add-in sees it. Each member is also
// reachable late-bound under its own name: MousePointer, Language, Version,
// CreateObject, ApplicationLog, Database, Classes, Explorers,
// ActiveExplorer, ActiveUser, RegisterReportFactory.
class Application : public Object {
public:
  // The wait cursor: 0 default, 11 hourglass.
  virtual int mousePointer() const = 0;
  virtual void setMousePointer(int pointer) = 0;
  // The language code of the user interface ("en", "sv").
  virtual QString language() const = 0;
  // The host's version text.
  virtual QString version() const = 0;
  // Creates a host-side object by ProgID; raises 429 for an unknown ProgID.
  virtual ObjectRef createObject(const QString &progId) = 0;
  virtual std::shared_ptr<ApplicationLog> applicationLog() = 0;
  // The open database; nullptr when the host has none open.
  virtual std::shared_ptr<Database> database() = 0;
  // The classes of the open database; raises 91 when none is open.
  virtual std::shared_ptr<Classes> classes() = 0;
  // The open list windows; never nullptr.
  virtual std::shared_ptr<Explorers> explorers() = 0;
  // The list window that is active now; nullptr when none is.
  virtual std::shared_ptr<Explorer> activeExplorer() = 0;
  // The signed-in user; nullptr when no database is open.
  virtual std::shared_ptr<ActiveUser> activeUser() = 0;
  // Tells the host which add-in class offers report factories.
  virtual void registerReportFactory(const QString &progId) = 0;
};

} // namespace kordel::hostapi

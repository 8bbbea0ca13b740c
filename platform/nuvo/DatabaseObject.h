#pragma once

#include "hostapi/Database.h"

#include <memory>

namespace kordel::nuvo {

class Engine;

// The open database as the host shows it to the add-in.
class DatabaseObject : public hostapi::Database {
public:
  explicit DatabaseObject(std::shared_ptr<Engine> engine) : engine_(std::move(engine)) {}

  QString typeName() const override { return QStringLiteral("Database"); }
  QString location() const override;
  QString name() const override;
  std::shared_ptr<hostapi::Classes> classes() const override;
  std::shared_ptr<hostapi::ActiveUser> activeUser() const override;
  int accessMask(int policy) const override;

  const std::shared_ptr<Engine> &engine() const { return engine_; }

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
};

// The engine behind a database object of this data engine; raises 13 for
// another kind of object and 91 for Nothing.
std::shared_ptr<Engine> engineOf(const ObjectRef &database);

} // namespace kordel::nuvo

#pragma once

#include "hostapi/ActiveUser.h"

#include <memory>

namespace kordel::nuvo {

class Engine;

// The signed-in user of a database, with the user's coworker record.
class ActiveUserObject : public hostapi::ActiveUser {
public:
  explicit ActiveUserObject(std::shared_ptr<Engine> engine) : engine_(std::move(engine)) {}

  QString typeName() const override { return QStringLiteral("ActiveUser"); }
  QString name() const override;
  QString login() const override;
  std::shared_ptr<hostapi::Record> record() const override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
};

} // namespace kordel::nuvo

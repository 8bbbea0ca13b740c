#include "nuvo/ActiveUserObject.h"

#include "nuvo/Engine.h"
#include "nuvo/RecordObject.h"

namespace kordel::nuvo {

QString ActiveUserObject::name() const { return engine_->user().name; }

QString ActiveUserObject::login() const { return engine_->user().login; }

std::shared_ptr<hostapi::Record> ActiveUserObject::record() const {
  auto set = engine_->userRecord();
  return set ? std::make_shared<RecordObject>(engine_, std::move(set), 0) : nullptr;
}

const MemberTable &ActiveUserObject::memberTable() const {
  static const MemberTable table{{
      property<ActiveUserObject>("Name", [](ActiveUserObject &u) { return u.name(); }),
      property<ActiveUserObject>("Login", [](ActiveUserObject &u) { return u.login(); }),
      property<ActiveUserObject>("Record", [](ActiveUserObject &u) { return Variant(ObjectRef(u.record())); }),
  }};
  return table;
}

} // namespace kordel::nuvo

#include "nuvo/DatabaseObject.h"

#include "nuvo/ActiveUserObject.h"
#include "nuvo/ClassObjects.h"
#include "nuvo/Engine.h"

#include "core/Error.h"

namespace kordel::nuvo {

QString DatabaseObject::location() const { return engine_->sql().address().location(); }

QString DatabaseObject::name() const {
  const QString stored = engine_->databaseName();
  return stored.isEmpty() ? engine_->sql().address().name() : stored;
}

std::shared_ptr<hostapi::Classes> DatabaseObject::classes() const { return std::make_shared<ClassesObject>(engine_); }

std::shared_ptr<hostapi::ActiveUser> DatabaseObject::activeUser() const {
  if (engine_->user().login.isEmpty())
    return nullptr;
  return std::make_shared<ActiveUserObject>(engine_);
}

int DatabaseObject::accessMask(int policy) const { return engine_->accessMask(policy); }

const MemberTable &DatabaseObject::memberTable() const {
  static const MemberTable table{{
      property<DatabaseObject>("Location", [](DatabaseObject &d) { return d.location(); }),
      property<DatabaseObject>("Name", [](DatabaseObject &d) { return d.name(); }),
      property<DatabaseObject>("Classes", [](DatabaseObject &d) { return Variant(d.classes()); }),
      property<DatabaseObject>("ActiveUser", [](DatabaseObject &d) { return Variant(ObjectRef(d.activeUser())); }),
      method<DatabaseObject>("AccessMask",
                             [](DatabaseObject &d, Args &a) {
                               expectArgs(a, 1, 1);
                               return d.accessMask(a[0].toLong());
                             }),
  }};
  return table;
}

std::shared_ptr<Engine> engineOf(const ObjectRef &database) {
  if (!database)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Nuvo.Database"), QStringLiteral("No database is open"));
  const auto own = std::dynamic_pointer_cast<DatabaseObject>(database);
  if (!own)
    raiseError(ErrorNumber::TypeMismatch, QStringLiteral("Nuvo.Database"),
               QStringLiteral("The database was not opened by this data engine"));
  return own->engine();
}

} // namespace kordel::nuvo

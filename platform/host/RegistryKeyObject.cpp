#include "host/RegistryKeyObject.h"

#include "host/SettingsStore.h"

#include "core/Error.h"

namespace kordel::host {

RegistryKeyObject::RegistryKeyObject(std::shared_ptr<SettingsStore> store) : store_(std::move(store)) {}

void RegistryKeyObject::requireKey() const {
  if (key_.isEmpty())
    raiseError(ErrorNumber::InvalidCall, typeName(), QStringLiteral("The registry object has no key; set Key first"));
}

Variant RegistryKeyObject::read(const QString &name, const Variant &defaultValue) {
  requireKey();
  const std::optional<QString> stored = store_->read(key_, name);
  return stored ? Variant(*stored) : defaultValue;
}

void RegistryKeyObject::write(const QString &name, const QString &value) {
  requireKey();
  store_->write(key_, name, value);
}

const MemberTable &RegistryKeyObject::memberTable() const {
  static const MemberTable table{{
      property<RegistryKeyObject>(
          "Key", [](RegistryKeyObject &r) { return r.key(); },
          [](RegistryKeyObject &r, const Variant &v) { r.setKey(v.toString()); }),
      method<RegistryKeyObject>("Read",
                                [](RegistryKeyObject &r, Args &a) {
                                  expectArgs(a, 1, 2);
                                  return r.read(a[0].toString(), arg(a, 1));
                                }),
      fullRightsOnly(method<RegistryKeyObject>("Write",
                                               [](RegistryKeyObject &r, Args &a) {
                                                 expectArgs(a, 2, 2);
                                                 r.write(a[0].toString(), a[1].toString());
                                                 return Variant();
                                               })),
  }};
  return table;
}

} // namespace kordel::host

#include "host/SettingsObject.h"

#include "host/SettingsStore.h"

#include "core/Error.h"

namespace kordel::host {

namespace {

const QString kRoot = QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt\\Orvex\\");

} // namespace

SettingsObject::SettingsObject(std::shared_ptr<SettingsStore> store, QString section)
    : store_(std::move(store)), section_(std::move(section)) {}

Variant SettingsObject::read(const QString &section, const QString &name, const Variant &fallback) const {
  const std::optional<QString> value = store_->read(kRoot + section, name);
  return value ? Variant(*value) : fallback;
}

void SettingsObject::write(const QString &section, const QString &name, const QString &value) {
  store_->write(kRoot + section, name, value);
}

const MemberTable &SettingsObject::memberTable() const {
  static const MemberTable table{{
      method<SettingsObject>("Read",
                             [](SettingsObject &s, Args &a) {
                               if (s.ownSection()) {
                                 expectArgs(a, 1, 2);
                                 return s.read(s.section(), a[0].toString(), a.size() > 1 ? a[1] : Variant());
                               }
                               expectArgs(a, 2, 3);
                               return s.read(a[0].toString(), a[1].toString(), a.size() > 2 ? a[2] : Variant());
                             }),
      fullRightsOnly(method<SettingsObject>("Write",
                                            [](SettingsObject &s, Args &a) {
                                              if (s.ownSection()) {
                                                expectArgs(a, 2, 2);
                                                s.write(s.section(), a[0].toString(), a[1].toString());
                                              } else {
                                                expectArgs(a, 3, 3);
                                                s.write(a[0].toString(), a[1].toString(), a[2].toString());
                                              }
                                              return Variant();
                                            })),
  }};
  return table;
}

} // namespace kordel::host

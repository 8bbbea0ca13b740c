#pragma once

#include "hostapi/RegistryKey.h"

#include <memory>

namespace kordel::host {

class SettingsStore;

// The host's registry object ("Orvex.Registry"): one key of the settings
// store. Late-bound: Key (read and write), Read(name [, default]),
// Write(name, value).
class RegistryKeyObject : public hostapi::RegistryKey {
public:
  explicit RegistryKeyObject(std::shared_ptr<SettingsStore> store);

  QString typeName() const override { return QStringLiteral("Registry"); }

  void setKey(const QString &path) override { key_ = path; }
  QString key() const override { return key_; }
  // The stored string, or the default when the value is absent; an existing
  // empty value reads as "". Raises 5 while no key is set.
  Variant read(const QString &name, const Variant &defaultValue) override;
  void write(const QString &name, const QString &value) override;

protected:
  const MemberTable &memberTable() const override;

private:
  void requireKey() const;

  std::shared_ptr<SettingsStore> store_;
  QString key_;
};

} // namespace kordel::host

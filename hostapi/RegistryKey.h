#pragma once

#include "core/Object.h"

namespace kordel::hostapi {

// ProgID under which the host makes its registry object.
inline constexpr const char *kRegistryProgId = "Orvex.Registry";

// The host's per-user registry: string values under a key path such as
// "HKEY_CURRENT_USER\Software\...". One object serves one key.
class RegistryKey : public Object {
public:
  virtual void setKey(const QString &path) = 0;
  virtual QString key() const = 0;
  // The value, or the default when the value is absent.
  virtual Variant read(const QString &name, const Variant &defaultValue) = 0;
  virtual void write(const QString &name, const QString &value) = 0;
};

} // namespace kordel::hostapi

#pragma once

#include "core/Object.h"

namespace kordel::hostapi {

// ProgID under which the host makes its helper object.
inline constexpr const char *kHostToolsProgId = "Orvex.HostTools";

// The host's helper object.
class HostTools : public Object {
public:
  // A new globally unique identifier, "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}".
  virtual QString newGuid() = 0;
  // The extension of a file name without its dot, "" when it has none.
  virtual QString fileExtension(const QString &path) = 0;
  // The folder part of a file name, ending in a separator.
  virtual QString filePath(const QString &path) = 0;
  // The file part of a file name.
  virtual QString fileName(const QString &path) = 0;
};

} // namespace kordel::hostapi

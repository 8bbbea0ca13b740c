#pragma once

#include "core/Object.h"

#include <memory>

namespace kordel::hostapi {

class Picture;

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
  // The name of the user's default printer; "" when there is none.
  virtual QString defaultPrinterName() = 0;
  // The folder where the host keeps the user's data (databases, and the
  // designer's autosaved reports); made when missing.
  virtual QString dataFolder() = 0;
  // An icon of a module as a picture of the given size in pixels: the
  // image file named by the resource ("customIcon.png", or .ico) in the
  // module's folder, which instance names. Raises 53 when there is none.
  virtual std::shared_ptr<Picture> loadIconPicture(const QString &instance, const QString &resource, int width,
                                                   int height) = 0;
};

} // namespace kordel::hostapi

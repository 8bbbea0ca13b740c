#pragma once

#include "core/Variant.h"

#include <QString>

namespace kordel::hostapi {

// The stored record of a persistable object: named values that the host
// keeps for it between sessions.
class PropertyBag {
public:
  virtual ~PropertyBag() = default;
  // Raises 327 when the record has no value of that name.
  virtual Variant ReadProperty(const QString &name) const = 0;
  // The default when the record has no value of that name.
  virtual Variant ReadProperty(const QString &name, const Variant &defaultValue) const = 0;
  virtual void WriteProperty(const QString &name, const Variant &value) = 0;
};

// An object the host keeps as a stored record: it reads itself from one
// and writes itself into one.
class PersistPropertyBag {
public:
  virtual ~PersistPropertyBag() = default;
  virtual void Class_ReadProperties(const PropertyBag &bag) = 0;
  virtual void Class_WriteProperties(PropertyBag &bag) = 0;
};

} // namespace kordel::hostapi

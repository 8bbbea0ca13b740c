#pragma once

#include "hostapi/PropertyBag.h"

#include <QByteArray>
#include <QList>
#include <QPair>

namespace kordel::host {

// A stored record as the host keeps it: named values in the order they were
// written, names compared exactly. Its bytes hold strings, numbers,
// booleans, dates, byte arrays, Empty and Null; other values cannot be
// stored and raise 13 when written.
class StoredRecord : public hostapi::PropertyBag {
public:
  // Raises 321 for bytes that are not a stored record.
  static StoredRecord fromBytes(const QByteArray &bytes);
  QByteArray toBytes() const;

  Variant ReadProperty(const QString &name) const override;
  Variant ReadProperty(const QString &name, const Variant &defaultValue) const override;
  void WriteProperty(const QString &name, const Variant &value) override;

  bool contains(const QString &name) const;

private:
  const Variant *find(const QString &name) const;

  QList<QPair<QString, Variant>> values_;
};

} // namespace kordel::host

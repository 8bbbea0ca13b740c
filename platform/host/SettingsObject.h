#pragma once

#include "core/Object.h"

#include <memory>

namespace kordel::host {

class SettingsStore;

// The host's settings as scripts and the add-in read them, under
// HKEY_CURRENT_USER\Software\Skarnholt\Orvex. The application's object
// names a section with each call: Read(section, name, default) and
// Write(section, name, value). A window's own object lives in a section of
// its own and takes no section: Read(name, default), Write(name, value).
// A value never written reads as the default given.
class SettingsObject : public Object {
public:
  // An empty section makes the application's object.
  SettingsObject(std::shared_ptr<SettingsStore> store, QString section = {});

  QString typeName() const override { return QStringLiteral("Settings"); }

  Variant read(const QString &section, const QString &name, const Variant &fallback) const;
  void write(const QString &section, const QString &name, const QString &value);
  bool ownSection() const { return !section_.isEmpty(); }
  const QString &section() const { return section_; }

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<SettingsStore> store_;
  QString section_;
};

} // namespace kordel::host

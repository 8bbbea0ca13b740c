#pragma once

#include "hostapi/Application.h"

#include <QHash>

#include <functional>
#include <memory>

namespace kordel::host {

class FileLog;
class SettingsStore;

// The host application object that the add-in and automation scripts see.
// It makes host objects by ProgID: "Skarnholt.Translator", "Orvex.Registry"
// (over the settings store), "Orvex.HostTools", "Orvex.Printers" and
// "Scripting.Dictionary"; later parts add theirs with registerProgId.
// Late-bound: MousePointer, Language, CreateObject, ApplicationLog, Database.
class HostApplication : public hostapi::Application {
public:
  using Factory = std::function<ObjectRef()>;

  // An empty language takes defaultLanguage().
  HostApplication(std::shared_ptr<SettingsStore> settings, std::shared_ptr<FileLog> log, QString language = {});

  // ORVEX_LANGUAGE when set, else the system's language when it is one of
  // ours ("en", "sv"), else "en".
  static QString defaultLanguage();

  QString typeName() const override { return QStringLiteral("Application"); }

  int mousePointer() const override { return mousePointer_; }
  // Stores the shape and turns the Ui's wait cursor on for the hourglass and
  // off for anything else; without an installed Ui only the shape is kept.
  void setMousePointer(int pointer) override;
  QString language() const override { return language_; }
  // ProgIDs are matched without regard to case.
  ObjectRef createObject(const QString &progId) override;
  std::shared_ptr<hostapi::ApplicationLog> applicationLog() override;
  std::shared_ptr<hostapi::Database> database() override { return database_; }

  // Adds or replaces the factory of a ProgID.
  void registerProgId(const QString &progId, Factory factory);
  void setDatabase(std::shared_ptr<hostapi::Database> database) { database_ = std::move(database); }
  const std::shared_ptr<SettingsStore> &settings() const { return settings_; }
  const std::shared_ptr<FileLog> &log() const { return log_; }

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<SettingsStore> settings_;
  std::shared_ptr<FileLog> log_;
  std::shared_ptr<hostapi::Database> database_;
  QString language_;
  int mousePointer_ = hostapi::MousePointer::Default;
  QHash<QString, Factory> factories_; // folded ProgID -> factory
};

} // namespace kordel::host

#pragma once

#include "hostapi/Application.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <memory>

namespace kordel::nuvo {
class ExplorerList;
class InspectorList;
} // namespace kordel::nuvo

namespace kordel::host {

class EngineTranslator;
class FileLog;
class SettingsObject;
class SettingsStore;

// The host application object that the add-in and automation scripts see.
// It makes host objects by ProgID: "Skarnholt.Translator", "Orvex.Registry"
// (over the settings store), "Orvex.HostTools", "Orvex.Dialog" (the field
// dialog), "Orvex.Printers" and "Scripting.Dictionary", those of the data
// engine ("Nuvo.Pool" ...) and of the layout engine (the report object,
// its printer and exporters); later parts add theirs with registerProgId.
// It has the layout engine show its preview and messages through the
// installed Ui. Late-bound:
// MousePointer, Language, Version, CreateObject, ApplicationLog, Database,
// Classes, Explorers, ActiveExplorer, ActiveUser, RegisterReportFactory,
// and the host's own Inspectors, ActiveInspector and Settings.
class HostApplication : public hostapi::Application {
public:
  using Factory = std::function<ObjectRef()>;

  // An empty language takes defaultLanguage(), which the layout engine's
  // texts follow too (EngineTranslator).
  // Also tells the layout engine how its runs make objects for layout
  // scripts, what their scripts may spend (the settings ScriptSeconds and
  // ScriptMegabytes under ...\Orvex\LayoutEngine) and where problems of a
  // run go: standard error and the application log.
  HostApplication(std::shared_ptr<SettingsStore> settings, std::shared_ptr<FileLog> log, QString language = {});
  ~HostApplication() override;

  // ORVEX_LANGUAGE when set, else the system's language when it is one of
  // ours ("en", "sv"), else "en".
  static QString defaultLanguage();

  QString typeName() const override { return QStringLiteral("Application"); }

  int mousePointer() const override { return mousePointer_; }
  // Stores the shape and turns the Ui's wait cursor on for the hourglass and
  // off for anything else; without an installed Ui only the shape is kept.
  void setMousePointer(int pointer) override;
  QString language() const override { return language_; }
  // The version of the program, as the command line reports it.
  QString version() const override;
  // ProgIDs are matched without regard to case.
  ObjectRef createObject(const QString &progId) override;
  std::shared_ptr<hostapi::ApplicationLog> applicationLog() override;
  std::shared_ptr<hostapi::Database> database() override { return database_; }
  std::shared_ptr<hostapi::Classes> classes() override;
  std::shared_ptr<hostapi::Explorers> explorers() override;
  std::shared_ptr<hostapi::Explorer> activeExplorer() override;
  std::shared_ptr<hostapi::ActiveUser> activeUser() override;
  void registerReportFactory(const QString &progId) override;

  // Adds or replaces the factory of a ProgID.
  void registerProgId(const QString &progId, Factory factory);
  // Opening another database closes the list windows of the one before.
  void setDatabase(std::shared_ptr<hostapi::Database> database);
  // The list windows, for the desktop client and the command line to open
  // and activate.
  nuvo::ExplorerList &explorerList() { return *explorers_; }
  // The record windows, likewise.
  nuvo::InspectorList &inspectorList() { return *inspectors_; }
  // The add-in classes that registered report factories, in order.
  const QStringList &reportFactories() const { return reportFactories_; }
  const std::shared_ptr<SettingsStore> &settings() const { return settings_; }
  const std::shared_ptr<FileLog> &log() const { return log_; }

protected:
  const MemberTable &memberTable() const override;

private:
  // The engine's modal windows and messages go to hostapi::ui(), so that
  // the desktop shows them, the command line refuses them and tests drive
  // them.
  static void presentEngineWindowsThroughUi();
  void configureEngineRuns();

  std::shared_ptr<SettingsStore> settings_;
  std::shared_ptr<FileLog> log_;
  std::shared_ptr<hostapi::Database> database_;
  std::shared_ptr<nuvo::ExplorerList> explorers_;
  std::shared_ptr<nuvo::InspectorList> inspectors_;
  std::shared_ptr<SettingsObject> settingsObject_;
  QStringList reportFactories_;
  QString language_;
  int mousePointer_ = hostapi::MousePointer::Default;
  QHash<QString, Factory> factories_;                     // folded ProgID -> factory
  std::shared_ptr<void> alive_ = std::make_shared<int>(); // for the engine's factory, which outlives no host
  std::unique_ptr<EngineTranslator> engineTranslator_;
};

} // namespace kordel::host

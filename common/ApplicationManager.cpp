#include "common/ApplicationManager.h"

#include "core/Error.h"

#include <cstdint>
#include <cstdio>
#include <limits>

namespace kordel::addin {

namespace {

struct ModuleState {
  std::shared_ptr<hostapi::Application> application;
  std::int16_t connections = 0;
  std::shared_ptr<hostapi::HostTools> hostTools;
  QString title;
};

ModuleState &state() {
  static ModuleState s;
  return s;
}

hostapi::Application &connectedApplication() {
  auto &app = state().application;
  if (!app)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("ApplicationManager"),
               QStringLiteral("The add-in is not connected to a host"));
  return *app;
}

} // namespace

void Connect(std::shared_ptr<hostapi::Application> application) {
  ModuleState &s = state();
  if (!s.application)
    s.application = std::move(application);
  if (s.connections == std::numeric_limits<std::int16_t>::max())
    raiseError(ErrorNumber::Overflow, QStringLiteral("ApplicationManager.Connect"));
  ++s.connections;
}

void Disconnect() {
  ModuleState &s = state();
  if (s.connections == std::numeric_limits<std::int16_t>::min())
    raiseError(ErrorNumber::Overflow, QStringLiteral("ApplicationManager.Disconnect"));
  --s.connections;
  if (s.connections == 0)
    s.application.reset();
}

int ConnectionCount() { return state().connections; }

std::shared_ptr<hostapi::Application> CurrentApplication() { return state().application; }

ObjectRef CreateObject(const QString &progId) { return connectedApplication().createObject(progId); }

std::shared_ptr<hostapi::HostTools> HostTools() {
  ModuleState &s = state();
  if (!s.hostTools) {
    auto tools =
        std::dynamic_pointer_cast<hostapi::HostTools>(CreateObject(QString::fromLatin1(hostapi::kHostToolsProgId)));
    if (!tools)
      raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("ApplicationManager.HostTools"));
    s.hostTools = std::move(tools);
  }
  return s.hostTools;
}

int MousePointer() { return connectedApplication().mousePointer(); }

void SetMousePointer(int pointer) { connectedApplication().setMousePointer(pointer); }

QString ApplicationTitle() { return state().title; }

void SetApplicationTitle(const QString &title) { state().title = title; }

void LogEvent(const QString &text) {
  const QByteArray line = (text + u'\n').toUtf8();
  std::fwrite(line.constData(), 1, std::size_t(line.size()), stderr);
  std::fflush(stderr);
}

} // namespace kordel::addin

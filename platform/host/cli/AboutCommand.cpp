#include "cli/AboutCommand.h"

#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/IniTranslator.h"

#include <QCoreApplication>

#include <cstdio>

namespace kordel::host::cli {

namespace {

void printLine(const QString &text) { std::fprintf(stdout, "%s\n", text.toUtf8().constData()); }

} // namespace

int about(HostApplication &app, const Arguments &) {
  IniTranslator translator;
  translator.setTranslationFolder(HostPaths::addinFolder() + QStringLiteral("/translation"));
  translator.loadSection(QStringLiteral("kordel"), app.language());
  printLine(QStringLiteral("Orvex %1 with %2")
                .arg(QCoreApplication::applicationVersion(), translator.translateKey(QStringLiteral("Addin.Name"))));
  printLine(QStringLiteral("Language:      %1").arg(app.language()));
  printLine(QStringLiteral("Settings:      %1").arg(HostPaths::registryFile()));
  printLine(QStringLiteral("Log:           %1").arg(HostPaths::logFile()));
  printLine(QStringLiteral("Databases:     %1").arg(HostPaths::dataFolder()));
  printLine(QStringLiteral("Default db:    %1").arg(HostPaths::defaultDatabase()));
  printLine(QStringLiteral("Message texts: %1").arg(translator.translationFolder()));
  return 0;
}

} // namespace kordel::host::cli

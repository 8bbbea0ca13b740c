#include "host/HostPaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace kordel::host::HostPaths {

namespace {

QString fromEnvironment(const char *variable, QStandardPaths::StandardLocation location, const QString &below) {
  const QString overridden = qEnvironmentVariable(variable);
  if (!overridden.isEmpty())
    return overridden;
  return QStandardPaths::writableLocation(location) + below;
}

} // namespace

QString configFolder() {
  return fromEnvironment("ORVEX_CONFIG_DIR", QStandardPaths::GenericConfigLocation, QStringLiteral("/orvex"));
}

QString dataFolder() {
  return fromEnvironment("ORVEX_DATA_DIR", QStandardPaths::GenericDataLocation, QStringLiteral("/orvex"));
}

QString documentsFolder() { return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation); }

QString defaultDatabase() { return dataFolder() + QStringLiteral("/demo.db"); }

QString registryFile() { return configFolder() + QStringLiteral("/registry.ini"); }

QString logFile() {
  const QString overridden = qEnvironmentVariable("ORVEX_LOG_FILE");
  return overridden.isEmpty() ? dataFolder() + QStringLiteral("/orvex.log") : overridden;
}

QString addinFolder() {
  const QString overridden = qEnvironmentVariable("ORVEX_ADDIN_DIR");
  if (!overridden.isEmpty())
    return overridden;
  return QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib")).absolutePath();
}

} // namespace kordel::host::HostPaths

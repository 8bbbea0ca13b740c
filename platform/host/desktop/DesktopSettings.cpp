#include "desktop/DesktopSettings.h"

#include "host/HostApplication.h"
#include "host/SettingsStore.h"

namespace kordel::host::desktop {

namespace {

const QString kKey = QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt\\Orvex\\Desktop");

} // namespace

QString readDesktopSetting(HostApplication &application, const QString &name) {
  return application.settings()->read(kKey, name).value_or(QString());
}

void writeDesktopSetting(HostApplication &application, const QString &name, const QString &value) {
  application.settings()->write(kKey, name, value);
}

QByteArray readPlace(HostApplication &application, const QString &window) {
  return QByteArray::fromBase64(readDesktopSetting(application, QStringLiteral("Place.") + window).toLatin1());
}

void writePlace(HostApplication &application, const QString &window, const QByteArray &place) {
  writeDesktopSetting(application, QStringLiteral("Place.") + window, QString::fromLatin1(place.toBase64()));
}

} // namespace kordel::host::desktop

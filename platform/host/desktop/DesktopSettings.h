#pragma once

#include <QByteArray>
#include <QString>

namespace kordel::host {
class HostApplication;
}

namespace kordel::host::desktop {

// The desktop client's settings, under ...\Skarnholt\Orvex\Desktop of the
// user's settings: the language and the places of windows.
QString readDesktopSetting(HostApplication &application, const QString &name);
void writeDesktopSetting(HostApplication &application, const QString &name, const QString &value);
// A window's place as Qt saves it; empty when none was kept.
QByteArray readPlace(HostApplication &application, const QString &window);
void writePlace(HostApplication &application, const QString &window, const QByteArray &place);

} // namespace kordel::host::desktop

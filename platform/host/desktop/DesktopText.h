#pragma once

#include <QCoreApplication>
#include <QString>

namespace kordel::host::desktop {

// A text of the desktop client in the user's language: the [engine]
// section of the translation files holds it under "Desktop.<English text>".
inline QString desktopText(const char *english) { return QCoreApplication::translate("Desktop", english); }

} // namespace kordel::host::desktop

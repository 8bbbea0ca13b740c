#pragma once

#include <QString>

namespace kordel::host {
class HostApplication;
}

namespace kordel::host::desktop {

// The desktop client: connects the add-in, opens the database (the
// default one is made with demo data on first run, with progress shown),
// shows the main window and runs until it is closed. host gives the
// settings and log; the language is the one given, else the one the user
// chose last, else the host's. Returns the exit code.
int runDesktop(HostApplication &host, const QString &database, const QString &language);

} // namespace kordel::host::desktop

#pragma once

#include "hostapi/Application.h"
#include "hostapi/HostTools.h"

#include <memory>

namespace kordel::addin {

// The host application for the whole process. The first connection stores
// it; further connections share it; the last disconnection drops it.
void Connect(std::shared_ptr<hostapi::Application> application);
void Disconnect();
int ConnectionCount();

// The stored application; nullptr when not connected.
std::shared_ptr<hostapi::Application> CurrentApplication();

// Asks the host to create one of its objects by ProgID. Raises 91 when no
// host is connected.
ObjectRef CreateObject(const QString &progId);

// The host's helper object, made on first use and kept for the process.
std::shared_ptr<hostapi::HostTools> HostTools();

// The host's wait cursor, 0 default and 11 hourglass. Raises 91 when no
// host is connected.
int MousePointer();
void SetMousePointer(int pointer);

// The add-in's title, borne by message boxes that are not the add-in's own
// texts; empty until the first connection names it.
QString ApplicationTitle();
void SetApplicationTitle(const QString &title);

// Writes one line to the process's own log (its standard error), for
// failures that happen before the translator and the reporter can run.
void LogEvent(const QString &text);

} // namespace kordel::addin

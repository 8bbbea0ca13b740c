#pragma once

namespace kordel::host {

class HostApplication;

namespace cli {

class Arguments;

// orvex about: what the host is, its language and where it keeps things.
int about(HostApplication &app, const Arguments &arguments);

} // namespace cli

} // namespace kordel::host

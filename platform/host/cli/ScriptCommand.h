#pragma once

namespace kordel::host {

class HostApplication;

namespace cli {

class Arguments;

// orvex script [--db DATABASE] [--language VBScript|JScript] FILE: runs an
// automation script in which Application is the host and CreateObject
// makes every host ProgID. Without --db the default database is opened
// when there is one. WScript.Echo prints a line.
int script(HostApplication &app, const Arguments &arguments);

} // namespace cli

} // namespace kordel::host

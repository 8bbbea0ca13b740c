#pragma once

#include <QString>

// The folders of the host in one place. Tests and CI move them with
// environment variables: ORVEX_CONFIG_DIR for the configuration folder,
// ORVEX_DATA_DIR for the data folder, ORVEX_LOG_FILE for the log,
// ORVEX_ADDIN_DIR for the folder of add-in plugins.
namespace kordel::host::HostPaths {

// The user's configuration folder of the host ("~/.config/orvex").
QString configFolder();
// The folder of databases and logs ("~/.local/share/orvex").
QString dataFolder();
// The user's documents folder.
QString documentsFolder();

// The database the commands use when none is named: "demo.db" in the
// data folder, where "orvex demo" makes it.
QString defaultDatabase();

// The per-user registry file in the configuration folder.
QString registryFile();
// The application log file.
QString logFile();
// The folder the add-in plugins are loaded from: beside the program's own
// libraries ("../lib" from the program).
QString addinFolder();

} // namespace kordel::host::HostPaths

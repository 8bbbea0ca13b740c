#pragma once

namespace kordel::host {

class HostApplication;

namespace cli {

class Arguments;

// orvex export --report NAME --out FILE RANGE ...: runs the report for the
// range and writes it to the file, its type by the extension.
int exportReport(HostApplication &app, const Arguments &arguments);
// orvex print --report NAME RANGE [--printer NAME] [--copies N] ...: runs
// the report and prints it.
int printReport(HostApplication &app, const Arguments &arguments);
// orvex preview --report NAME RANGE ...: runs the report and shows it in
// the preview window until the window is closed.
//
// Each writes what it runs, and at the end what it wrote or printed, on
// standard error, and returns 0 only when the file was written or the job
// accepted; every failure the report object reports is one line on
// standard error, and the command returns 1. Bad arguments, a report or a
// range that cannot be run, and a target that cannot be written raise
// before the run.
int previewReport(HostApplication &app, const Arguments &arguments);

} // namespace cli

} // namespace kordel::host

#pragma once

#include "cli/Options.h"

namespace kordel::host {
class HostApplication;
}

namespace kordel::host::cli {

// orvex design --report NAME | --new --class CLASS [--name NAME]: the
// designer window on a stored report, or on a new one of a class, whose
// name, paper and script language the report properties dialog asks for
// first. A save
// in the designer writes the report back at once; the command ends when
// the window closes.
int designReport(HostApplication &host, const Arguments &arguments);

} // namespace kordel::host::cli

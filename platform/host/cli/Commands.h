#pragma once

#include "cli/Options.h"

#include <vector>

namespace kordel::host {

class HostApplication;

namespace cli {

// A sub command of orvex: what it accepts and the function that runs it on
// its words, read.
struct Command {
  CommandSyntax syntax;
  int (*run)(HostApplication &, const Arguments &);
};

// Every command, by name.
const std::vector<Command> &commands();
// The command of that name; nullptr for none.
const Command *findCommand(const QString &name);
// The command whose name is nearest to the word in edit distance, when it
// is near enough to be a slip of the fingers; "" when none is.
QString nearestCommand(const QString &word);

} // namespace cli

} // namespace kordel::host

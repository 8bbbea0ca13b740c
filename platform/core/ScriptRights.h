#pragma once

#include <QString>

namespace kordel {

// The rights of the code running on this thread. Layout scripts come with
// report documents from anywhere and run on the machine of whoever prints
// them, so while one runs, the objects it reaches offer only what a report
// needs: members that write files, print, export, change settings, write
// the log or change the running report refuse with "Permission denied"
// (70), and CreateObject makes only a short list of harmless objects.
// Automation scripts that a user runs on purpose keep every right.
//
// A script engine opens a LayoutScriptScope for each entry into code of
// layout rights; scopes nest (a layout script calls the host, which calls
// script code again), and the rights come back when the outermost ends.
// Everything runs on the one user-interface thread; the state is per
// thread all the same, so that a helper thread never inherits it.
class LayoutScriptScope {
public:
  LayoutScriptScope();
  ~LayoutScriptScope();
  LayoutScriptScope(const LayoutScriptScope &) = delete;
  LayoutScriptScope &operator=(const LayoutScriptScope &) = delete;
};

// Code run from a member called by a layout script gets full rights back
// for the length of this scope: the host's own work on behalf of a script
// (the add-in reading its settings to place a dialog) is not the script's.
// Only code that does a fixed thing whatever the script passes may open it.
class FullRightsScope {
public:
  FullRightsScope();
  ~FullRightsScope();
  FullRightsScope(const FullRightsScope &) = delete;
  FullRightsScope &operator=(const FullRightsScope &) = delete;

private:
  int saved_;
};

// Whether a layout script is running on this thread.
bool runningLayoutScript();

// Raises 70 naming what was refused when a layout script is running;
// nothing otherwise. what is a member as a script writes it: "rpt.Run".
void requireFullRights(const QString &what);

// Whether a layout script may make an object of this ProgID: the data
// engine's query objects, the dictionary and regular expressions.
bool layoutScriptMayCreate(const QString &progId);

} // namespace kordel

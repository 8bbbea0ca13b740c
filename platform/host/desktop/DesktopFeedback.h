#pragma once

#include <QString>

namespace kordel::host::desktop {

// The wait cursor while the desktop client works; dialogs opened meanwhile
// set their own.
class WaitCursor {
public:
  WaitCursor();
  ~WaitCursor();
  WaitCursor(const WaitCursor &) = delete;
  WaitCursor &operator=(const WaitCursor &) = delete;
};

// Called inside a catch block: tells the user through the Ui seam what did
// not succeed, with the failure's own text under it. Nothing is rethrown.
void tellFailure(const QString &what, const QString &title);

} // namespace kordel::host::desktop

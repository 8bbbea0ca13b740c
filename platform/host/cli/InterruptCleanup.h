#pragma once

#include <QStringList>

namespace kordel::host::cli {

// While it lives, an interrupt (Ctrl-C), a termination or a hang-up first
// removes the files and then ends the program as the signal would have.
// One at a time.
class InterruptCleanup {
public:
  explicit InterruptCleanup(const QStringList &files);
  ~InterruptCleanup();
  InterruptCleanup(const InterruptCleanup &) = delete;
  InterruptCleanup &operator=(const InterruptCleanup &) = delete;
};

} // namespace kordel::host::cli

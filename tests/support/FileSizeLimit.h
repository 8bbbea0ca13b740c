#pragma once

#include <csignal>

#include <sys/resource.h>

namespace kordel::test {

// While it lives, files this process writes stop growing at the size given:
// a write that reaches the limit is cut short, and the next one fails with
// the system's "File too large", as a write to a full disk fails with "No
// space left on device".
class FileSizeLimit {
public:
  explicit FileSizeLimit(rlim_t bytes) : previousSignal_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &previous_);
    rlimit limited = previous_;
    limited.rlim_cur = bytes;
    active_ = setrlimit(RLIMIT_FSIZE, &limited) == 0;
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &previous_);
    std::signal(SIGXFSZ, previousSignal_);
  }
  FileSizeLimit(const FileSizeLimit &) = delete;
  FileSizeLimit &operator=(const FileSizeLimit &) = delete;

  bool active() const { return active_; }

private:
  rlimit previous_{};
  void (*previousSignal_)(int);
  bool active_ = false;
};

} // namespace kordel::test

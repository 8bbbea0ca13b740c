#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace kordel::script::js {

// A helper thread that calls a function when a deadline passes. Qt's script
// engine runs a script on the caller's thread and cannot look at a clock by
// itself, so the time budget of an entry is kept from the outside: the
// function interrupts the engine, which is safe from another thread.
class Watchdog {
public:
  // expire runs on the helper thread, under the watchdog's lock.
  explicit Watchdog(std::function<void()> expire);
  ~Watchdog();
  Watchdog(const Watchdog &) = delete;
  Watchdog &operator=(const Watchdog &) = delete;

  // Starts the clock of one entry.
  void arm(std::chrono::milliseconds limit);
  // Stops the clock; true when the deadline passed since arm. After this
  // returns, expire is not called again until the next arm.
  bool disarm();

private:
  void watch();

  std::function<void()> expire_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::optional<std::chrono::steady_clock::time_point> deadline_;
  bool fired_ = false;
  bool stopping_ = false;
  std::thread thread_;
};

} // namespace kordel::script::js

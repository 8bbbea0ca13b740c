#pragma once

#include "core/Error.h"

#include <QtGlobal>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace kordel::script {

// The limits of all script code of one report run together, in every
// engine of the run and both languages: the time spent in script code,
// summed over every entry, and the memory that script code has taken and
// still holds.
//
// Design note. Engines call enter and leave around each entry from the
// host; only the outermost entry counts, so a script that calls the host,
// which calls script code again, is timed once. Time is exact: leave adds
// the entry's time to what is spent, and an entry may run until the rest is
// gone (VBScript reads the clock every thousand statements; JScript arms
// its watchdog with the rest). Memory cannot be counted value by value in
// Qt's JavaScript engine, so a watcher thread reads the process's resident
// size every few milliseconds and charges the growth it sees between two
// readings to the scripts when the same entry was running at both, and
// takes off every shrink it sees. That is
// an estimate with a resolution of the reading interval, good enough to
// stop a script that builds hundreds of megabytes long before the machine
// suffers, and free of cost on the run's own path. When the memory is spent
// the watcher asks the running engine to stop (interrupt) and engines raise
// Out of memory (7) at their next look; spent memory stays spent for the
// rest of the run, whatever the scripts let go of afterwards.
class RunBudget {
public:
  struct Limits {
    std::chrono::milliseconds time{10000};
    qint64 memoryBytes = qint64(256) << 20;
  };

  explicit RunBudget(Limits limits);
  ~RunBudget();
  RunBudget(const RunBudget &) = delete;
  RunBudget &operator=(const RunBudget &) = delete;

  const Limits &limits() const { return limits_; }

  // Around every entry into script code of the run.
  void enter();
  void leave();
  // When the running entry must end at the latest.
  std::chrono::steady_clock::time_point deadline() const { return deadline_; }
  // The time left, rounded up to the next whole millisecond and one more,
  // 0 when none is.
  std::chrono::milliseconds remaining() const;

  bool timeSpent() const;
  bool memorySpent() const { return memorySpent_.load(std::memory_order_relaxed); }
  // For an engine that looks at every statement.
  const std::atomic<bool> &memorySpentFlag() const { return memorySpent_; }
  bool spent() const { return timeSpent() || memorySpent(); }
  // The error that ends script code once the budget is spent: Out of
  // memory (7) or the time-out (ScriptErrorNumber::Timeout).
  Error exhaustedError() const;

  // An engine's way to be stopped from the watcher thread while it runs;
  // interrupt must be safe to call from another thread. Returns a key for
  // removeInterrupt.
  int addInterrupt(std::function<void()> interrupt);
  void removeInterrupt(int key);

private:
  void watch();

  Limits limits_;
  int depth_ = 0;
  std::chrono::steady_clock::duration spentTime_{};
  std::chrono::steady_clock::time_point enteredAt_;
  std::chrono::steady_clock::time_point deadline_ = std::chrono::steady_clock::time_point::max();

  // Shared with the watcher.
  std::atomic<quint64> runningEntry_{0}; // the serial of the running outermost entry; 0 for none
  quint64 entries_ = 0;
  std::atomic<quint64> entriesSeen_{0}; // entries_ for the watcher
  std::atomic<bool> memorySpent_{false};
  std::mutex mutex_;
  std::condition_variable wake_;
  bool stopping_ = false;
  std::map<int, std::function<void()>> interrupts_;
  int nextInterrupt_ = 1;
  std::thread watcher_;
};

} // namespace kordel::script

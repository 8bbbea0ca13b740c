#include "script/RunBudget.h"

#include "script/ScriptErrors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace kordel::script {

namespace {

// Readings come often while script code runs, seldom while none has run
// for a while (a preview left open holds its run and its budget).
constexpr auto kReadingInterval = std::chrono::milliseconds(5);
constexpr auto kIdleReadingInterval = std::chrono::milliseconds(100);
constexpr int kReadingsBeforeIdle = 200;

// The resident size of the process in bytes; 0 when it cannot be read.
qint64 residentBytes(int statm) {
  char text[128];
  const ssize_t read = pread(statm, text, sizeof text - 1, 0);
  if (read <= 0)
    return 0;
  text[read] = 0;
  unsigned long long size = 0, resident = 0;
  if (std::sscanf(text, "%llu %llu", &size, &resident) != 2)
    return 0;
  return qint64(resident) * sysconf(_SC_PAGESIZE);
}

} // namespace

RunBudget::RunBudget(Limits limits) : limits_(limits), watcher_([this] { watch(); }) {}

RunBudget::~RunBudget() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_one();
  watcher_.join();
}

void RunBudget::enter() {
  if (depth_++ > 0)
    return;
  enteredAt_ = std::chrono::steady_clock::now();
  const auto left = limits_.time - spentTime_;
  deadline_ = left > decltype(left)::zero() ? enteredAt_ + left : enteredAt_;
  runningEntry_.store(++entries_, std::memory_order_relaxed);
  entriesSeen_.store(entries_, std::memory_order_relaxed);
}

void RunBudget::leave() {
  if (--depth_ > 0)
    return;
  runningEntry_.store(0, std::memory_order_relaxed);
  spentTime_ += std::chrono::steady_clock::now() - enteredAt_;
  deadline_ = std::chrono::steady_clock::time_point::max();
}

std::chrono::milliseconds RunBudget::remaining() const {
  const auto left =
      limits_.time - spentTime_ -
      (depth_ > 0 ? std::chrono::steady_clock::now() - enteredAt_ : std::chrono::steady_clock::duration::zero());
  if (left <= decltype(left)::zero())
    return std::chrono::milliseconds(0);
  // Rounded up, so that a watchdog armed with it fires when the time is
  // spent, not a fraction of a millisecond before.
  return std::chrono::ceil<std::chrono::milliseconds>(left) + std::chrono::milliseconds(1);
}

bool RunBudget::timeSpent() const {
  if (depth_ > 0)
    return std::chrono::steady_clock::now() >= deadline_;
  return spentTime_ >= limits_.time;
}

Error RunBudget::exhaustedError() const {
  if (memorySpent())
    return Error(
        ErrorNumber::OutOfMemory, QStringLiteral("Script budget"),
        QStringLiteral("Out of memory: the report's scripts hold more than %1 MB").arg(limits_.memoryBytes >> 20));
  return Error(ScriptErrorNumber::Timeout, QStringLiteral("Script budget"),
               QStringLiteral("The report's scripts ran longer than the %1 seconds a run allows them")
                   .arg(double(limits_.time.count()) / 1000.0));
}

int RunBudget::addInterrupt(std::function<void()> interrupt) {
  std::lock_guard lock(mutex_);
  const int key = nextInterrupt_++;
  interrupts_.emplace(key, std::move(interrupt));
  return key;
}

void RunBudget::removeInterrupt(int key) {
  std::lock_guard lock(mutex_);
  interrupts_.erase(key);
}

void RunBudget::watch() {
  const int statm = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
  if (statm < 0)
    return; // no reading, no memory budget; the time budget still holds
  qint64 charged = 0;
  qint64 lastSize = residentBytes(statm);
  quint64 lastEntry = 0;
  quint64 lastSerial = 0;
  int quietReadings = 0;
  std::unique_lock lock(mutex_);
  while (!wake_.wait_for(lock, quietReadings < kReadingsBeforeIdle ? kReadingInterval : kIdleReadingInterval,
                         [this] { return stopping_; })) {
    const qint64 size = residentBytes(statm);
    const quint64 entry = runningEntry_.load(std::memory_order_relaxed);
    const quint64 serial = entriesSeen_.load(std::memory_order_relaxed);
    quietReadings = entry != 0 || serial != lastSerial ? 0 : quietReadings + 1;
    lastSerial = serial;
    // Growth counts while one entry runs throughout; a shrink counts
    // always, since scripts let go of much when an entry ends.
    if ((entry != 0 && entry == lastEntry) || size < lastSize)
      charged = std::max<qint64>(0, charged + size - lastSize);
    lastSize = size;
    lastEntry = entry;
    // Once spent the budget stays spent: what the scripts let go of while
    // their Out of memory unwinds must not let the run go on.
    if (charged > limits_.memoryBytes)
      memorySpent_.store(true, std::memory_order_relaxed);
    if (memorySpent() && entry != 0)
      for (const auto &[key, interrupt] : interrupts_)
        interrupt();
  }
  close(statm);
}

} // namespace kordel::script

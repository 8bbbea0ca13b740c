#include "script/jscript/Watchdog.h"

namespace kordel::script::js {

Watchdog::Watchdog(std::function<void()> expire) : expire_(std::move(expire)), thread_([this] { watch(); }) {}

Watchdog::~Watchdog() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void Watchdog::arm(std::chrono::milliseconds limit) {
  {
    std::lock_guard lock(mutex_);
    deadline_ = std::chrono::steady_clock::now() + limit;
    fired_ = false;
  }
  wake_.notify_one();
}

bool Watchdog::disarm() {
  std::lock_guard lock(mutex_);
  deadline_.reset();
  const bool fired = fired_;
  fired_ = false;
  return fired;
}

void Watchdog::watch() {
  std::unique_lock lock(mutex_);
  while (!stopping_) {
    if (!deadline_) {
      wake_.wait(lock);
      continue;
    }
    const auto deadline = *deadline_;
    if (wake_.wait_until(lock, deadline) == std::cv_status::timeout && deadline_ == deadline) {
      deadline_.reset();
      fired_ = true;
      expire_();
    }
  }
}

} // namespace kordel::script::js

#include "foundation/event.h"

#include <chrono>

void AFCEvent::signal() {
  {
    std::lock_guard guard(lock_);
    signaled_ = true;
  }
  // An auto-reset event lets one waiter through; waking more would only send them back to sleep.
  if (manualReset_) {
    changed_.notify_all();
  } else {
    changed_.notify_one();
  }
}

void AFCEvent::reset() {
  std::lock_guard guard(lock_);
  signaled_ = false;
}

void AFCEvent::wait() {
  std::unique_lock guard(lock_);
  changed_.wait(guard, [this] { return signaled_; });
  pass();
}

bool AFCEvent::wait(int64_t timeoutMs) {
  std::unique_lock guard(lock_);
  // A poll only looks: a zero-length timed wait would still cost a system call.
  if (timeoutMs <= 0 && !signaled_) return false;
  if (!changed_.wait_for(guard, std::chrono::milliseconds(timeoutMs),
                         [this] { return signaled_; })) {
    return false;
  }
  pass();
  return true;
}

void AFCEvent::pass() {
  if (!manualReset_) signaled_ = false;
}

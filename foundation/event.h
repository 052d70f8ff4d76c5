#pragma once
// A waitable event: one or more threads wait until another signals it. An auto-reset event
// releases one waiter per signal and resets itself as that waiter passes; a manual-reset event
// stays signalled, releasing every waiter, until reset() is called.
// Thread safe; never throws (the standard primitives it rests on report no wait failures).
#include <condition_variable>
#include <cstdint>
#include <mutex>

class AFCEvent {
 public:
  explicit AFCEvent(bool manualReset = false, bool initiallySignaled = false)
      : manualReset_(manualReset), signaled_(initiallySignaled) {}
  AFCEvent(const AFCEvent&) = delete;
  AFCEvent& operator=(const AFCEvent&) = delete;

  void signal();
  void reset();
  // Waits without limit.
  void wait();
  // Waits at most timeoutMs milliseconds (0 only polls); false on time-out.
  bool wait(int64_t timeoutMs);
  bool isManualReset() const { return manualReset_; }

 private:
  // Consumes the signal of an auto-reset event; called with lock_ held and the event signalled.
  void pass();

  const bool manualReset_;
  std::mutex lock_;
  std::condition_variable changed_;
  bool signaled_;
};

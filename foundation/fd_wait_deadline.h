#pragma once
// The time a descriptor handler's main loop may still wait in one pass, from the loop's
// timeoutMs: 0 stays 0 (one pass without waiting), a negative value waits without limit (-1),
// a positive one is what is left to the deadline set at construction, never below 0.
// A plain value, used on the loop's thread only.
#include <algorithm>
#include <chrono>
#include <cstdint>

class AFCFDWaitDeadline {
 public:
  explicit AFCFDWaitDeadline(int timeoutMs)
      : timeoutMs_(timeoutMs), deadline_(Clock::now() + std::chrono::milliseconds(timeoutMs)) {}

  int waitMs() const {
    if (timeoutMs_ <= 0) return timeoutMs_ == 0 ? 0 : -1;
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now()).count();
    return static_cast<int>(std::max<int64_t>(left, 0));
  }

 private:
  using Clock = std::chrono::steady_clock;
  int timeoutMs_;
  Clock::time_point deadline_;
};

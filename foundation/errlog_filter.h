#pragma once
// The repeat filter of the error log: a WARNING or ERROR report that keeps recurring is shown
// four times, then with a notice the fifth time, then no more until it pauses for over
// 20 seconds. Other levels always pass.
#include <cstdint>
#include <vector>

#include "foundation/errlog_event.h"

// Not locked: the log calls it under its own lock. Never throws beyond std::bad_alloc.
class AFCErrLogRepeatFilter {
 public:
  enum class Verdict { Pass, NoticeThenPass, Drop };

  static constexpr const char* kNotice =
      "Following report will be suppressed for some time due to frequent occurrence.";
  static constexpr std::size_t kRemembered = 5;  // reports followed at the same time
  static constexpr int kShown = 5;               // the notice goes before this showing
  static constexpr int64_t kPauseMicros = 20'000'000;

  // nowMicros: the log's clock at the time of the report.
  Verdict check(const AFCErrLogEvent& event, int64_t nowMicros);

 private:
  struct Seen {
    AFCErrLogEvent report;
    int64_t lastMicros;
    int count;
  };
  // Most recently seen first.
  std::vector<Seen> seen_;
};

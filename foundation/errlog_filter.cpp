#include "foundation/errlog_filter.h"

#include <algorithm>

AFCErrLogRepeatFilter::Verdict AFCErrLogRepeatFilter::check(const AFCErrLogEvent& event,
                                                            int64_t nowMicros) {
  if (event.getType() != AFC_ERRLOG_WARNING && event.getType() != AFC_ERRLOG_ERROR) {
    return Verdict::Pass;
  }
  const auto found = std::find_if(seen_.begin(), seen_.end(),
                                  [&](const Seen& s) { return s.report.isSameReport(event); });
  if (found == seen_.end()) {
    if (seen_.size() == kRemembered) seen_.pop_back();
    seen_.insert(seen_.begin(), Seen{event, nowMicros, 1});
    return Verdict::Pass;
  }
  std::rotate(seen_.begin(), found, found + 1);
  Seen& entry = seen_.front();
  if (nowMicros - entry.lastMicros > kPauseMicros) entry.count = 0;
  entry.lastMicros = nowMicros;
  // Counting stops above kShown: every further report is dropped all the same.
  if (entry.count <= kShown) ++entry.count;
  if (entry.count < kShown) return Verdict::Pass;
  return entry.count == kShown ? Verdict::NoticeThenPass : Verdict::Drop;
}

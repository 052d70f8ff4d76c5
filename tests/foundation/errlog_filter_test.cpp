#include "foundation/errlog_filter.h"

#include <gtest/gtest.h>

namespace {
using Verdict = AFCErrLogRepeatFilter::Verdict;
constexpr int64_t kSecond = 1'000'000;

AFCErrLogEvent report(unsigned level, std::string message = "disk full") {
  return AFCErrLogEvent(level, "libAFC", AFCTimestamp(), "store.cpp", 7, std::move(message));
}

// The verdicts for `count` equal reports, `step` microseconds apart, starting at `start`.
std::vector<Verdict> verdicts(AFCErrLogRepeatFilter& filter, const AFCErrLogEvent& event, int count,
                              int64_t step, int64_t start = 0) {
  std::vector<Verdict> seen;
  for (int i = 0; i < count; ++i) seen.push_back(filter.check(event, start + i * step));
  return seen;
}

const std::vector<Verdict> kBurstOfSeven = {Verdict::Pass, Verdict::Pass,           Verdict::Pass,
                                            Verdict::Pass, Verdict::NoticeThenPass, Verdict::Drop,
                                            Verdict::Drop};
}  // namespace

TEST(ErrLogRepeatFilter, ShowsFourErrorsOrWarningsThenNoticeWithTheFifthThenDrops) {
  AFCErrLogRepeatFilter errors, warnings;
  EXPECT_EQ(verdicts(errors, report(AFC_ERRLOG_ERROR), 7, kSecond / 10), kBurstOfSeven);
  EXPECT_EQ(verdicts(warnings, report(AFC_ERRLOG_WARNING), 7, kSecond), kBurstOfSeven);
}

TEST(ErrLogRepeatFilter, DebugInfoAndNoneAlwaysPass) {
  AFCErrLogRepeatFilter filter;
  for (unsigned level : {AFC_ERRLOG_NONE, AFC_ERRLOG_DEBUG, AFC_ERRLOG_INFO}) {
    EXPECT_EQ(verdicts(filter, report(level), 50, 0), std::vector<Verdict>(50, Verdict::Pass));
  }
}

TEST(ErrLogRepeatFilter, PauseOfMoreThanTwentySecondsStartsAfresh) {
  AFCErrLogRepeatFilter filter;
  const AFCErrLogEvent event = report(AFC_ERRLOG_ERROR);
  verdicts(filter, event, 10, kSecond);
  const int64_t last = 9 * kSecond;
  EXPECT_EQ(filter.check(event, last + AFCErrLogRepeatFilter::kPauseMicros), Verdict::Drop);
  const int64_t resumed = last + 2 * AFCErrLogRepeatFilter::kPauseMicros + 1;
  EXPECT_EQ(verdicts(filter, event, 7, 1, resumed), kBurstOfSeven);
}

TEST(ErrLogRepeatFilter, EveryReportWithinTwentySecondsKeepsItSuppressed) {
  AFCErrLogRepeatFilter filter;
  const AFCErrLogEvent event = report(AFC_ERRLOG_ERROR);
  verdicts(filter, event, 5, 0);
  // Recurring every 15 seconds for ten minutes never counts as a pause.
  for (int64_t at = 15 * kSecond; at < 600 * kSecond; at += 15 * kSecond) {
    ASSERT_EQ(filter.check(event, at), Verdict::Drop) << "at " << at;
  }
}

TEST(ErrLogRepeatFilter, DifferentReportsAreCountedApart) {
  AFCErrLogRepeatFilter filter;
  verdicts(filter, report(AFC_ERRLOG_ERROR, "a"), 5, 0);
  EXPECT_EQ(filter.check(report(AFC_ERRLOG_ERROR, "b"), 0), Verdict::Pass);
  EXPECT_EQ(filter.check(report(AFC_ERRLOG_ERROR, "a"), 0), Verdict::Drop);
}

TEST(ErrLogRepeatFilter, RemembersOnlyTheFiveMostRecentlySeenReports) {
  AFCErrLogRepeatFilter filter;
  const AFCErrLogEvent first = report(AFC_ERRLOG_ERROR, "first");
  verdicts(filter, first, 5, 0);
  for (const char* other : {"b", "c", "d", "e"}) filter.check(report(AFC_ERRLOG_ERROR, other), 0);
  // Still among the five: suppressed; seeing it again makes it the most recent.
  EXPECT_EQ(filter.check(first, 0), Verdict::Drop);
  for (const char* other : {"f", "g", "h", "i"}) filter.check(report(AFC_ERRLOG_ERROR, other), 0);
  EXPECT_EQ(filter.check(first, 0), Verdict::Drop);
  // A fifth new report pushes it out: it counts from one again.
  for (const char* other : {"j", "k", "l", "m", "n"}) {
    filter.check(report(AFC_ERRLOG_ERROR, other), 0);
  }
  EXPECT_EQ(filter.check(first, 0), Verdict::Pass);
}

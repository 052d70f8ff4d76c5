#include "foundation/errlog.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <thread>

#include "foundation/errlog_backend.h"

namespace {
constexpr const char* kNotice =
    "Following report will be suppressed for some time due to frequent occurrence.";

// A log with a memory backend and a clock the test moves by hand.
class ErrLogReports : public ::testing::Test {
 protected:
  ErrLogReports() {
    log_.addBackend(memory_);
    log_.setClock([this] { return now_; });
  }

  void reportTimes(int count, unsigned level, const char* message) {
    for (int i = 0; i < count; ++i) {
      log_.report(level, "libAFC", "socket.cpp", 12, message);
      now_ += 100'000;
    }
  }

  AFCErrLog log_;
  std::shared_ptr<AFCErrLogBackendMemory> memory_ = std::make_shared<AFCErrLogBackendMemory>();
  int64_t now_ = 0;
};

using Messages = std::vector<std::string>;

class ThrowingBackend : public AFCErrLogBackend {
 public:
  void write(const AFCErrLogEvent&) override { throw std::runtime_error("disk gone"); }
};
}  // namespace

TEST_F(ErrLogReports, TenEqualErrorsInASecondGiveFiveWithTheNoticeBeforeTheFifth) {
  reportTimes(10, AFC_ERRLOG_ERROR, "connect failed");
  EXPECT_EQ(memory_->messages(), (Messages{"connect failed", "connect failed", "connect failed",
                                           "connect failed", kNotice, "connect failed"}));
  const auto events = memory_->events();
  EXPECT_EQ(events[4].getType(), AFC_ERRLOG_ERROR);
  EXPECT_EQ(events[4].getArea(), "libAFC");
  EXPECT_EQ(events[4].getSourceLineNumber(), 12);
}

TEST_F(ErrLogReports, ReportIsShownAgainAfterAPauseOfMoreThanTwentySeconds) {
  reportTimes(10, AFC_ERRLOG_WARNING, "slow disk");
  memory_->clear();
  now_ += 20'000'001;
  reportTimes(1, AFC_ERRLOG_WARNING, "slow disk");
  EXPECT_EQ(memory_->messages(), (Messages{"slow disk"}));
}

TEST_F(ErrLogReports, InfoIsNeverSuppressed) {
  reportTimes(100, AFC_ERRLOG_INFO, "tick");
  EXPECT_EQ(memory_->messages().size(), 100u);
}

TEST_F(ErrLogReports, ForwardedEventsKeepTheirTime) {
  const AFCTimestamp serverTime(AFCDate(1, 2, 2003), AFCTime(4, 5, 6));
  log_.report(AFCErrLogEvent(AFC_ERRLOG_ERROR, "server", serverTime, "", 0, "render late"));
  ASSERT_EQ(memory_->events().size(), 1u);
  EXPECT_EQ(memory_->events()[0].getTime(), serverTime);
}

TEST_F(ErrLogReports, AFailingBackendDoesNotKeepEventsFromTheOthers) {
  auto throwing = std::make_shared<ThrowingBackend>();
  log_.removeAllBackends();
  log_.addBackend(throwing);
  log_.addBackend(memory_);
  log_.report(AFC_ERRLOG_INFO, "vx", "", 0, "still here");
  EXPECT_EQ(memory_->messages(), (Messages{"still here"}));
}

TEST_F(ErrLogReports, RemovedBackendGetsNothingMore) {
  EXPECT_TRUE(log_.removeBackend(memory_.get()));
  EXPECT_FALSE(log_.removeBackend(memory_.get()));
  log_.report(AFC_ERRLOG_INFO, "vx", "", 0, "unheard");
  EXPECT_TRUE(memory_->events().empty());
  EXPECT_TRUE(log_.getBackends().empty());
}

TEST_F(ErrLogReports, StreamReportsEachLineWithItsAreaLevelAndSource) {
  log_.stream("libAFC", AFC_ERRLOG_WARNING, "socket.cpp", 40)
      << "recv failed, " << 10054 << "\nsecond" << std::endl;
  const auto events = memory_->events();
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].getMessage(), "recv failed, 10054");
  EXPECT_EQ(events[1].getMessage(), "second");
  EXPECT_EQ(events[0].getType(), AFC_ERRLOG_WARNING);
  EXPECT_EQ(events[0].getArea(), "libAFC");
  EXPECT_EQ(events[0].getSourceFileName(), "socket.cpp");
  EXPECT_EQ(events[0].getSourceLineNumber(), 40);
}

TEST_F(ErrLogReports, StreamReportsNothingBeforeTheNewlineAndThePendingTextAtItsEnd) {
  {
    AFCErrLogStream stream(log_, "vx", AFC_ERRLOG_INFO);
    stream << "partial";
    EXPECT_TRUE(memory_->events().empty());
  }
  EXPECT_EQ(memory_->messages(), (Messages{"partial"}));
}

TEST(ErrLog, ProcessWideLogWritesToStandardErrorByDefault) {
  const auto backends = AFCErrLog::instance().getBackends();
  ASSERT_EQ(backends.size(), 1u);
  EXPECT_NE(dynamic_cast<AFCErrLogBackendCerr*>(backends[0].get()), nullptr);
}

TEST(ErrLog, ReportMacroNamesTheCallingLine) {
  AFCErrLog& log = AFCErrLog::instance();
  const auto saved = log.getBackends();
  auto memory = std::make_shared<AFCErrLogBackendMemory>();
  log.removeAllBackends();
  log.addBackend(memory);
  const int line = __LINE__ + 1;
  AFC_REPORT(AFC_ERRLOG_DEBUG, "libAFC", "from the macro");
  AFC_ERRLOG_STREAM(AFC_ERRLOG_DEBUG, "libAFC") << "from the stream macro\n";
  log.removeAllBackends();
  for (const auto& backend : saved) log.addBackend(backend);

  const auto events = memory->events();
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].getSourceLineNumber(), line);
  EXPECT_EQ(events[1].getSourceLineNumber(), line + 1);
  EXPECT_NE(events[0].getSourceFileName().find("errlog_test.cpp"), std::string::npos);
}

TEST(ErrLog, ConcurrentReportsReachTheBackendsWholeAndInOrder) {
  constexpr int kThreads = 4;
  constexpr int kReports = 300;
  AFCErrLog log;
  std::ostringstream text;
  auto memory = std::make_shared<AFCErrLogBackendMemory>();
  log.addBackend(
      std::make_shared<AFCErrLogBackendStream>(text, AFCErrLogLayout::withPartsOff("ts")));
  log.addBackend(memory);

  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&log, t] {
      const std::string area = "thread" + std::to_string(t);
      for (int i = 0; i < kReports; ++i) {
        AFCErrLogStream(log, area, AFC_ERRLOG_ERROR) << "report " << i << " of " << area << '\n';
      }
    });
  }
  for (auto& thread : threads) thread.join();

  // Text: two lines per event, the area line directly followed by its own message.
  std::istringstream lines(text.str());
  std::string head, body;
  std::vector<int> next(kThreads, 0);
  int events = 0;
  while (std::getline(lines, head) && std::getline(lines, body)) {
    ASSERT_EQ(head.rfind("ERROR: thread", 0), 0u) << head;
    const int t = head[13] - '0';
    ASSERT_EQ(body, " report " + std::to_string(next[t]++) + " of thread" + std::to_string(t));
    ++events;
  }
  EXPECT_EQ(events, kThreads * kReports);
  EXPECT_EQ(memory->events().size(), static_cast<std::size_t>(kThreads * kReports));
}

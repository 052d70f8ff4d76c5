#include "foundation/thread.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"

namespace {
using namespace std::chrono_literals;

// A thread whose init and run steps are given by the test. The default body waits for a stop.
// Its destructor ends the body, which is only safe when no subclass part has gone before.
class TestThread : public AFCThread {
 public:
  using Step = std::function<void(TestThread&)>;
  explicit TestThread(Step run = waitForStop, Step init = {}, std::string name = "TestThread")
      : AFCThread(std::move(name)), run_(std::move(run)), init_(std::move(init)) {}
  ~TestThread() override {
    requestStop();
    if (getState() != NOT_STARTED) waitForExit();
  }
  static void waitForStop(TestThread& self) { self.getStopEvent().wait(); }

  AFCThreadData* seenData = nullptr;
  AFCThread* seenThread = nullptr;
  std::thread::id seenId;

 protected:
  void init() override {
    if (init_) init_(*this);
  }
  void run() override {
    seenData = &AFCThreadData::current();
    seenThread = AFCThreadData::current().getThread();
    seenId = std::this_thread::get_id();
    run_(*this);
  }

 private:
  Step run_, init_;
};

// A thread named by a class record of its own.
class WatchThread : public TestThread {
 public:
  const AFCClass* getClass() const override {
    static const AFCClass record("WatchThread", &AFCThread::staticClass());
    return &record;
  }
};

// A fresh thread name on every run keeps the log's repeat filter out of repeated test runs.
std::string uniqueName() {
  static int run = 0;
  return "TestThread" + std::to_string(++run);
}

std::string startFailure(AFCThread& thread) {
  return failureOf<AFCThreadException>([&] { thread.start(); });
}
}  // namespace

TEST(Thread, StartReturnsOnlyAfterTheNewThreadFinishedItsInitialisation) {
  bool ready = false;  // written by the new thread, read here without further synchronisation
  TestThread thread(TestThread::waitForStop, [&](TestThread&) {
    std::this_thread::sleep_for(10ms);
    ready = true;
  });
  thread.start();
  EXPECT_TRUE(ready);
  EXPECT_EQ(thread.getState(), AFCThread::STARTED);
  thread.requestStop();
  thread.waitForExit();
  EXPECT_EQ(thread.getState(), AFCThread::ENDED);
}

TEST(Thread, BodyRunsOnItsOwnThreadWithItsOwnThreadData) {
  TestThread thread([](TestThread&) {});
  thread.start();
  thread.waitForExit();
  EXPECT_EQ(thread.seenThread, &thread);
  EXPECT_NE(thread.seenData, &AFCThreadData::current());
  EXPECT_EQ(thread.seenId, thread.getThreadId());
  EXPECT_NE(thread.getThreadId(), std::this_thread::get_id());
  EXPECT_EQ(AFCThreadData::current().getThread(), nullptr);
  EXPECT_EQ(thread.getName(), "TestThread");
}

TEST(Thread, StartingTwiceThrowsAndLeavesTheFirstThreadRunning) {
  TestThread plain;
  plain.start();
  EXPECT_EQ(startFailure(plain), "Can't start thread AFCThread twice!");
  EXPECT_EQ(plain.getState(), AFCThread::STARTED);
  plain.requestStop();
  plain.waitForExit();
  EXPECT_EQ(plain.getState(), AFCThread::ENDED);

  WatchThread watch;
  watch.start();
  EXPECT_EQ(startFailure(watch), "Can't start thread WatchThread twice!");
  watch.requestStop();
  watch.waitForExit();
}

TEST(Thread, ThreadThatEndsDuringInitialisationFailsTheStart) {
  TestThread quiet(TestThread::waitForStop, [](TestThread&) { throw AFCEndThreadException(); });
  const std::string name = uniqueName();
  TestThread failing(
      TestThread::waitForStop, [](TestThread&) { throw AFCException("no socket"); }, name);
  CapturedErrLog log;
  EXPECT_EQ(startFailure(quiet), "Thread ended prematurely before initialization done");
  EXPECT_EQ(quiet.getState(), AFCThread::ENDED);
  EXPECT_TRUE(log.messages().empty());
  EXPECT_EQ(startFailure(failing), "Thread ended prematurely before initialization done");
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"Thread " + name + " ended by exception, no socket"});
}

TEST(Thread, EndThreadExceptionEndsTheBodyQuietlyAndOthersAreLogged) {
  TestThread quiet([](TestThread&) { throw AFCEndThreadException(); });
  const std::string name = uniqueName();
  TestThread failing([](TestThread&) { throw AFCException("lost"); }, {}, name);
  CapturedErrLog log;
  quiet.start();
  quiet.waitForExit();
  EXPECT_TRUE(log.messages().empty());
  failing.start();
  failing.waitForExit();
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"Thread " + name + " ended by exception, lost"});
}

TEST(Thread, WaitingForAThreadThatCannotEndThrows) {
  TestThread idle;
  EXPECT_EQ(failureOf<AFCThreadException>([&] { idle.waitForExit(); }), "Thread not started");
  std::string fromItself;
  TestThread self([&](TestThread& me) {
    fromItself = failureOf<AFCThreadException>([&] { me.waitForExit(); });
  });
  self.start();
  self.waitForExit();
  EXPECT_EQ(fromItself, "waitForExit: WaitForSingleObject failed");
}

TEST(Thread, NothingStartsWhileTheProcessShutsDown) {
  TestThread thread;
  afcSetProcessShuttingDown(true);
  thread.start();
  afcSetProcessShuttingDown(false);
  EXPECT_EQ(thread.getState(), AFCThread::NOT_STARTED);
}

TEST(ThreadData, IsSeparateForEveryThread) {
  int marker = 0;
  auto* handler = reinterpret_cast<AFCFDHandler*>(&marker);  // only compared, never used
  AFCThreadData::current().setFDHandler(handler);
  AFCFDHandler* seenElsewhere = handler;
  std::thread([&] { seenElsewhere = AFCThreadData::current().getFDHandler(); }).join();
  EXPECT_EQ(seenElsewhere, nullptr);
  EXPECT_EQ(AFCThreadData::current().getFDHandler(), handler);
  AFCThreadData::current().setFDHandler(nullptr);
}

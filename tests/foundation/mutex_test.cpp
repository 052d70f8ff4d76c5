#include "foundation/mutex.h"

#include <gtest/gtest.h>

#include <thread>

#include "foundation/event.h"
#include "foundation/thread.h"
#include "tests/foundation/errlog_capture.h"

namespace {
// Holds a mutex on another thread until released.
class Holder {
 public:
  explicit Holder(AFCMutex& mutex)
      : thread_([this, &mutex] {
          AFCMutexLock lock(mutex);
          held_.signal();
          release_.wait();
        }) {
    held_.wait();
  }
  ~Holder() {
    release_.signal();
    thread_.join();
  }

 private:
  AFCEvent held_, release_;
  std::thread thread_;
};

}  // namespace

TEST(Mutex, ExceptionsCarryTheirFixedTexts) {
  EXPECT_EQ(AFCMutexBusyException().toString(), "Busy");
  EXPECT_EQ(AFCMutexDeadLockException().toString(), "Dead lock");
}

TEST(Mutex, KeepsOtherThreadsOutWhileLocked) {
  AFCMutex mutex("counter");
  int counter = 0;
  auto add = [&] {
    for (int i = 0; i < 2000; ++i) {
      AFCMutexLock lock(mutex);
      ++counter;
    }
  };
  std::thread other(add);
  add();
  other.join();
  EXPECT_EQ(counter, 4000);
}

TEST(Mutex, LimitedLockOfAHeldMutexThrowsBusy) {
  AFCMutex mutex("send");
  {
    Holder holder(mutex);
    EXPECT_THROW(mutex.tryLock(20), AFCMutexBusyException);
    EXPECT_THROW(AFCMutexLock(mutex, 0), AFCMutexBusyException);
  }
  EXPECT_TRUE(mutex.tryLock(0));
  mutex.unlock();
}

TEST(Mutex, OwnerLockingAgainThrowsDeadLockAndStillOwnsIt) {
  AFCMutex mutex("send");
  AFCMutexLock lock(mutex);
  EXPECT_THROW(mutex.lock(), AFCMutexDeadLockException);
  EXPECT_THROW(mutex.tryLock(20), AFCMutexDeadLockException);
  bool busyElsewhere = false;
  std::thread([&] {
    try {
      mutex.tryLock(0);
      mutex.unlock();
    } catch (const AFCMutexBusyException&) {
      busyElsewhere = true;
    }
  }).join();
  EXPECT_TRUE(busyElsewhere);
}

TEST(Mutex, UnlockByAThreadThatDoesNotOwnItThrows) {
  AFCMutex mutex("send");
  EXPECT_THROW(mutex.unlock(), AFCMutexException);
  Holder holder(mutex);
  EXPECT_THROW(mutex.unlock(), AFCMutexException);
}

TEST(Mutex, LockAfterTheOwnerEndedReportsTheAbandonedMutexOnce) {
  // A fresh name on every run keeps the log's repeat filter out of repeated test runs.
  static int run = 0;
  const std::string name = "session" + std::to_string(++run);
  AFCMutex mutex(name);
  std::thread([&] { mutex.lock(); }).join();
  std::vector<std::string> messages;
  {
    CapturedErrLog log;
    {
      AFCMutexLock lock(mutex);
      EXPECT_THROW(mutex.tryLock(0), AFCMutexDeadLockException) << "the locker is the owner now";
    }
    AFCMutexLock again(mutex);
    messages = log.messages();
  }
  EXPECT_EQ(messages, std::vector<std::string>{"Mutex " + name + " was abandoned!"});
}

TEST(Mutex, LockingIsSkippedWhileTheProcessShutsDown) {
  AFCMutex mutex("send");
  Holder holder(mutex);
  afcSetProcessShuttingDown(true);
  const bool locked = mutex.lock();
  const bool tried = mutex.tryLock(20);
  { AFCMutexLock lock(mutex); }
  afcSetProcessShuttingDown(false);
  EXPECT_FALSE(locked);
  EXPECT_FALSE(tried);
}

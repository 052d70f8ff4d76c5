#include "foundation/event.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

TEST(Event, AutoResetEventLetsOneWaitPassPerSignal) {
  AFCEvent event;
  EXPECT_FALSE(event.wait(0));
  EXPECT_FALSE(event.wait(20));
  event.signal();
  event.signal();  // signals do not add up
  EXPECT_TRUE(event.wait(0));
  EXPECT_FALSE(event.wait(0));
}

TEST(Event, ManualResetEventStaysSignalledUntilReset) {
  AFCEvent event(true);
  event.signal();
  EXPECT_TRUE(event.wait(0));
  event.wait();
  event.reset();
  EXPECT_FALSE(event.wait(0));
}

TEST(Event, SignalFromAnotherThreadEndsAWaitWithoutLimit) {
  AFCEvent request, answer;
  int value = 0;  // handed over by the events alone
  std::thread peer([&] {
    request.wait();
    value = 42;
    answer.signal();
  });
  request.signal();
  answer.wait();
  EXPECT_EQ(value, 42);
  peer.join();
}

TEST(Event, AutoResetSignalReleasesExactlyOneOfTwoWaiters) {
  AFCEvent event, passed;
  std::atomic<int> through{0};
  auto waiter = [&] {
    event.wait();
    ++through;
    passed.signal();
  };
  std::thread first(waiter), second(waiter);
  event.signal();
  passed.wait();
  EXPECT_EQ(through.load(), 1);
  EXPECT_FALSE(event.wait(0)) << "the signal was consumed by the waiter it released";
  event.signal();
  first.join();
  second.join();
  EXPECT_EQ(through.load(), 2);
}

TEST(Event, ManualResetSignalReleasesEveryWaiter) {
  AFCEvent event(true);
  std::vector<std::thread> waiters;
  for (int i = 0; i < 3; ++i) waiters.emplace_back([&] { event.wait(); });
  event.signal();
  for (auto& waiter : waiters) waiter.join();
  EXPECT_TRUE(event.wait(0));
}

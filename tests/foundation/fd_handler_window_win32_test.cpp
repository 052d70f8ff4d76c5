#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "foundation/fd_handler_window.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/foundation/loopback.h"

namespace {
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

template <class Done>
void pumpUntil(AFCFDHandlerWindow& handler, Done done) {
  for (int pass = 0; pass < 50 && !done(); ++pass) handler.mainLoop(-2);
}
}  // namespace

TEST(FDHandlerWindow, DeliversReadsFirstAndThePeerCloseOnceAfterTheLastByte) {
  AFCFDHandlerWindow handler;
  LoopbackPair pair;
  std::vector<uint32_t> events;
  std::string data;
  AFCFDRequestCallback request(AFCFDRequest::KIND_SOCKET, pair.client.getDescriptor(), AFC_FD_READ,
                               [&](AFCFDRequest&, uint32_t e) {
                                 events.push_back(e);
                                 char byte;
                                 if ((e & AFC_FD_READ) != 0) {
                                   data.append(&byte, pair.client.readAvailable(&byte, 1));
                                 }
                               });
  handler.addRequest(request);
  pair.send("xyz");
  pair.peer.close();
  pumpUntil(handler, [&] { return !events.empty() && events.back() == AFC_FD_CLOSE; });
  EXPECT_EQ(data, "xyz");
  ASSERT_FALSE(events.empty());
  EXPECT_EQ(events.back(), uint32_t{AFC_FD_CLOSE});
  EXPECT_EQ(std::count(events.begin(), events.end(), uint32_t{AFC_FD_CLOSE}), 1);
  handler.removeRequest(request);
}

TEST(FDHandlerWindow, RefusesAWaitableHandleBeforeRegisteringIt) {
  AFCFDHandlerWindow handler;
  AFCFDRequestCallback request(AFCFDRequest::KIND_HANDLE, 1, 0, [](AFCFDRequest&, uint32_t) {});
  try {
    handler.addRequest(request);
    FAIL() << "registered a handle";
  } catch (const AFCFDHandlerWindowHandleException& e) {
    EXPECT_EQ(e.toString(), "Waiting for HANDLE is not supported in Window FD Handler");
  }
  EXPECT_EQ(handler.getRequestCount(), 0u);
}

TEST(FDHandlerWindow, APositiveTimeoutEndsByTheTimerAndAWakeUpEndsAWaitWithoutLimit) {
  AFCFDHandlerWindow handler;
  const auto start = Clock::now();
  handler.mainLoop(30);
  EXPECT_GE(Clock::now() - start, 25ms);
  std::thread([&] { EXPECT_TRUE(handler.wakeUp()); }).join();
  handler.mainLoop(-1);
}

TEST(FDHandlerWindow, AnExceptionFromACallbackIsLoggedAndTheLoopGoesOn) {
  CapturedErrLog log;
  AFCFDHandlerWindow handler;
  LoopbackPair pair;
  int calls = 0;
  AFCFDRequestCallback request(AFCFDRequest::KIND_SOCKET, pair.client.getDescriptor(), AFC_FD_READ,
                               [&](AFCFDRequest&, uint32_t) {
                                 char byte;
                                 pair.client.readAvailable(&byte, 1);
                                 if (++calls == 1) throw AFCException("window callback failed");
                               });
  handler.addRequest(request);
  pair.send("a");
  pumpUntil(handler, [&] { return calls == 1; });
  pair.send("b");
  pumpUntil(handler, [&] { return calls == 2; });
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"AFCFDRequest::callNotify returned with exception: window "
                                     "callback failed"});
  handler.removeRequest(request);
}

TEST(FDHandlerWindow, IsTheDefaultHandlerOfAThread) {
  std::thread([] {
    AFCDefaultFDHandler holder;
    EXPECT_NE(dynamic_cast<AFCFDHandlerWindow*>(&holder.get()), nullptr);
  }).join();
}

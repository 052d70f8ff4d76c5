#include "foundation/fd_handler.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "foundation/event.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/foundation/loopback.h"

namespace {
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// Records the events of a request on the client side of a loopback pair, reading at most
// `chunk` bytes per read notification.
struct Recorder {
  Recorder(AFCFDAsyncRegistry& registry, AFCSocket& socket, uint32_t mask, std::size_t chunk = 64)
      : request(AFCFDRequest::KIND_SOCKET, socket.getDescriptor(), mask,
                [this, &socket, chunk](AFCFDRequest&, uint32_t e) {
                  events.push_back(e);
                  if ((e & AFC_FD_READ) == 0) return;
                  std::string bytes(chunk, '\0');
                  bytes.resize(socket.readAvailable(bytes.data(), chunk));
                  data += bytes;
                }) {
    registry.addRequest(request);
  }
  std::vector<uint32_t> events;
  std::string data;
  AFCFDRequestCallback request;
};

// Pumps with -2 until the condition holds; bounded so that a fault fails instead of hanging.
template <class Handler, class Done>
void pumpUntil(Handler& handler, Done done) {
  for (int pass = 0; pass < 50 && !done(); ++pass) handler.mainLoop(-2);
}

template <class Handler>
class FDHandlerTest : public ::testing::Test {
 protected:
  Handler handler;
  LoopbackPair pair;
};

using Variants = ::testing::Types<AFCFDHandlerSelect, AFCFDHandlerEvent>;
TYPED_TEST_SUITE(FDHandlerTest, Variants);

// A fresh text per run and variant keeps the log's repeat filter out of the way.
std::string uniqueText(const std::string& text) {
  static int run = 0;
  return text + " " + std::to_string(++run);
}
}  // namespace

TYPED_TEST(FDHandlerTest, ReportsReadableDataAndMinusTwoReturnsAfterHandlingIt) {
  Recorder recorder(this->handler, this->pair.client, AFC_FD_READ);
  this->pair.send("abc");
  this->handler.mainLoop(-2);
  EXPECT_EQ(recorder.events, std::vector<uint32_t>{AFC_FD_READ});
  EXPECT_EQ(recorder.data, "abc");
}

TYPED_TEST(FDHandlerTest, DeliversAPeerCloseOnlyAfterEveryByteWasRead) {
  Recorder recorder(this->handler, this->pair.client, AFC_FD_READ, 1);
  this->pair.send("xyz");
  this->pair.peer.close();
  pumpUntil(this->handler,
            [&] { return !recorder.events.empty() && recorder.events.back() == AFC_FD_CLOSE; });
  EXPECT_EQ(recorder.events,
            (std::vector<uint32_t>{AFC_FD_READ, AFC_FD_READ, AFC_FD_READ, AFC_FD_CLOSE}));
  EXPECT_EQ(recorder.data, "xyz");
  // The close is reported once.
  this->handler.mainLoop(0);
  EXPECT_EQ(recorder.events.size(), 4u);
}

TYPED_TEST(FDHandlerTest, ReportsWritableOnceAfterRegistration) {
  Recorder recorder(this->handler, this->pair.client, AFC_FD_WRITE);
  this->handler.mainLoop(0);
  this->handler.mainLoop(0);
  EXPECT_EQ(recorder.events, std::vector<uint32_t>{AFC_FD_WRITE});
}

TYPED_TEST(FDHandlerTest, AnExceptionFromACallbackIsLoggedOnceAndTheLoopGoesOn) {
  CapturedErrLog log;
  const std::string text = uniqueText("boom");
  LoopbackPair other;
  AFCFDRequestCallback thrower(AFCFDRequest::KIND_SOCKET, this->pair.client.getDescriptor(),
                               AFC_FD_READ, [&](AFCFDRequest&, uint32_t) {
                                 char bytes[8];
                                 this->pair.client.readAvailable(bytes, sizeof bytes);
                                 throw AFCException(text);
                               });
  this->handler.addRequest(thrower);
  Recorder recorder(this->handler, other.client, AFC_FD_READ);
  this->pair.send("1");
  other.send("2");
  pumpUntil(this->handler, [&] { return !recorder.data.empty(); });
  EXPECT_EQ(recorder.data, "2");
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"AFCFDRequest::callNotify returned with exception: " + text});
}

TYPED_TEST(FDHandlerTest, AnUnknownExceptionFromACallbackIsLoggedAsSuch) {
  CapturedErrLog log;
  AFCFDRequestCallback thrower(AFCFDRequest::KIND_SOCKET, this->pair.client.getDescriptor(),
                               AFC_FD_WRITE, [](AFCFDRequest&, uint32_t) { throw 42; });
  this->handler.addRequest(thrower);
  this->handler.mainLoop(0);
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"AFCFDRequest::callNotify returned with unknown exception!"});
}

TYPED_TEST(FDHandlerTest, ZeroTakesOnlyWhatIsPendingAndAPositiveTimeoutWaitsThatLong) {
  Recorder recorder(this->handler, this->pair.client, AFC_FD_READ);
  auto start = Clock::now();
  this->handler.mainLoop(0);
  EXPECT_LT(Clock::now() - start, 1s);
  start = Clock::now();
  this->handler.mainLoop(30);
  EXPECT_GE(Clock::now() - start, 25ms);
  EXPECT_LT(Clock::now() - start, 2s);
  EXPECT_TRUE(recorder.events.empty());
}

TYPED_TEST(FDHandlerTest, ARequestMayRemoveItselfInItsCallback) {
  int calls = 0;
  AFCFDRequestCallback request(AFCFDRequest::KIND_SOCKET, this->pair.client.getDescriptor(),
                               AFC_FD_READ, [&](AFCFDRequest& self, uint32_t) {
                                 ++calls;
                                 this->handler.removeRequest(self);
                               });
  this->handler.addRequest(request);
  this->pair.send("a");
  this->handler.mainLoop(-2);
  EXPECT_FALSE(this->handler.contains(request));
  this->handler.mainLoop(20);
  EXPECT_EQ(calls, 1);
}

TYPED_TEST(FDHandlerTest, AWaitingConnectionIsServedThroughTheHandlerAndItsFailureLogged) {
  CapturedErrLog log;
  const std::string text = uniqueText("refused");
  struct Server : AFCServerSocket {
    void serveClient() override {
      accept(accepted);
      throw AFCException(text);
    }
    std::string text;
    AFCClientSocket accepted;
  } server;
  server.text = text;
  server.bind(0, "127.0.0.1");
  server.listen();
  server.setEventMask(AFC_FD_ACCEPT);
  this->handler.addRequest(server);
  AFCClientSocket client;
  client.connect("127.0.0.1", server.getLocalPort());
  pumpUntil(this->handler, [&] { return server.accepted.isOpen(); });
  EXPECT_TRUE(server.accepted.isOpen());
  EXPECT_EQ(log.messages(), std::vector<std::string>{"AFCServerSocket: client exception: " + text});
}

TEST(FDRequest, AppliesItsPendingMaskWhenAddedAndAtOnceWhileRegistered) {
  AFCFDHandlerSelect handler;
  AFCFDRequestCallback request(AFCFDRequest::KIND_SOCKET, AFC_INVALID_SOCKET, AFC_FD_READ,
                               [](AFCFDRequest&, uint32_t) {});
  request.setEventMask(AFC_FD_READ | AFC_FD_CLOSE);
  EXPECT_EQ(request.getEventMask(), 0u);
  handler.addRequest(request);
  EXPECT_EQ(request.getEventMask(), uint32_t{AFC_FD_READ | AFC_FD_CLOSE});
  EXPECT_EQ(request.getRegistry(), &handler);
  request.setEventMask(AFC_FD_WRITE);
  EXPECT_EQ(request.getEventMask(), uint32_t{AFC_FD_WRITE});
}

TEST(FDRequest, LeavesItsRegistryWhenDestroyedAndMovesWhenAddedElsewhere) {
  AFCFDHandlerSelect first, second;
  {
    AFCFDRequestCallback request(AFCFDRequest::KIND_SOCKET, AFC_INVALID_SOCKET, 0,
                                 [](AFCFDRequest&, uint32_t) {});
    first.addRequest(request);
    second.addRequest(request);
    EXPECT_EQ(first.getRequestCount(), 0u);
    EXPECT_EQ(second.getRequestCount(), 1u);
  }
  EXPECT_EQ(second.getRequestCount(), 0u);
}

TEST(FDHandler, TheBaseLoopOnlyReportsThatItCannotRun) {
  CapturedErrLog log;
  struct Bare : AFCFDHandler {
  } bare;
  bare.mainLoop(0);
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"AFCFDHandler: simpleMainLoop is not supported"});
  EXPECT_FALSE(bare.wakeUp());
}

TEST(FDHandler, EachThreadHasItsOwnDefaultHandlerUntilItsLastHolderGoes) {
  {
    AFCDefaultFDHandler mine;
    {
      AFCDefaultFDHandler again;
      EXPECT_EQ(&again.get(), &mine.get());
    }
    EXPECT_EQ(AFCFDHandler::getThreadHandler(), &mine.get());
    AFCFDHandler* theirs = nullptr;
    std::thread([&] {
      {
        AFCDefaultFDHandler holder;
        theirs = &holder.get();
      }
      EXPECT_EQ(AFCFDHandler::getThreadHandler(), nullptr);
    }).join();
    EXPECT_NE(theirs, &mine.get());
  }
  EXPECT_EQ(AFCFDHandler::getThreadHandler(), nullptr);
}

TEST(FDHandlerEvent, AWakeUpFromAnotherThreadEndsAWaitWithoutLimit) {
  AFCFDHandlerEvent handler;
  std::thread waiter([&] { handler.mainLoop(-1); });
  EXPECT_TRUE(handler.wakeUp());
  waiter.join();
}

TEST(FDHandlerEvent, WaitsForWorkWithoutDispatchingIt) {
  AFCFDHandlerEvent handler;
  LoopbackPair pair;
  Recorder recorder(handler, pair.client, AFC_FD_READ);
  EXPECT_EQ(handler.waitForEvents(0), AFCFDHandlerEvent::WaitResult::TimedOut);
  pair.send("q");
  EXPECT_EQ(handler.waitForEvents(2000), AFCFDHandlerEvent::WaitResult::Ready);
  EXPECT_TRUE(recorder.events.empty());
  handler.mainLoop(0);
  EXPECT_EQ(recorder.data, "q");
  handler.wakeUp();
  EXPECT_EQ(handler.waitForEvents(2000), AFCFDHandlerEvent::WaitResult::Woken);
}

// The pattern for a test that lets a handler run on a thread of its own: the pump thread loops
// until told to stop; requests may be added from the test's thread, which wakes the pump.
TEST(FDHandlerEvent, CanBePumpedOnItsOwnThreadWhileRequestsAreAddedFromAnother) {
  AFCFDHandlerEvent handler;
  std::atomic<bool> stop{false};
  std::thread pump([&] {
    while (!stop.load()) handler.mainLoop(-1);
  });
  LoopbackPair pair;
  AFCEvent called;
  std::thread::id calledOn;
  AFCFDRequestCallback request(AFCFDRequest::KIND_SOCKET, pair.client.getDescriptor(), AFC_FD_READ,
                               [&](AFCFDRequest&, uint32_t) {
                                 char byte;
                                 pair.client.readAvailable(&byte, 1);
                                 calledOn = std::this_thread::get_id();
                                 called.signal();
                               });
  handler.addRequest(request);
  pair.send("!");
  EXPECT_TRUE(called.wait(5000));
  const std::thread::id pumpId = pump.get_id();
  stop.store(true);
  handler.wakeUp();
  pump.join();
  EXPECT_EQ(calledOn, pumpId);
  handler.removeRequest(request);
}

TEST(FDEventMask, MapsToWinSockNetworkEventsAndBackWithCloseAlwaysWatched) {
  EXPECT_EQ(afcFDMaskToNetworkEvents(AFC_FD_READ | AFC_FD_WRITE), 0x23u);
  EXPECT_EQ(afcFDMaskToNetworkEvents(AFC_FD_ACCEPT), 0x28u);
  EXPECT_EQ(afcFDMaskToNetworkEvents(AFC_FD_CONNECT), 0x30u);
  EXPECT_EQ(afcFDNetworkEventsToMask(0x3b),
            uint32_t{AFC_FD_READ | AFC_FD_WRITE | AFC_FD_ACCEPT | AFC_FD_CONNECT | AFC_FD_CLOSE});
  // FD_OOB has no place in the mask.
  EXPECT_EQ(afcFDNetworkEventsToMask(0x04), 0u);
}

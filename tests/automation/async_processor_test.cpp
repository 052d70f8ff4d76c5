#include "automation/async_processor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "client/client_tcp.h"
#include "tests/client/loopback_peer.h"
#include "tests/foundation/loopback.h"

namespace {
using namespace std::chrono_literals;

// Reads what arrives on the client side of a loopback pair, through the processor's registry.
struct Reader {
  Reader(CAsyncProcessor& processor, AFCClientSocket& socket)
      : request(AFCFDRequest::KIND_SOCKET, socket.getDescriptor(), AFC_FD_READ,
                [this, &socket](AFCFDRequest&, uint32_t) {
                  ++calls;
                  char bytes[64];
                  data.append(bytes, socket.readAvailable(bytes, sizeof bytes));
                }) {
    processor.getRegistry().addRequest(request);
  }
  int calls = 0;
  std::string data;
  AFCFDRequestCallback request;
};

// Closes the processor from a thread of its own once done() holds, or after five seconds so
// that a fault fails the test instead of hanging it.
template <class Done>
std::thread closeWhen(CAsyncProcessor& processor, Done done) {
  return std::thread([&processor, done] {
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    while (!done() && std::chrono::steady_clock::now() < deadline) std::this_thread::sleep_for(1ms);
    processor.close();
  });
}

TEST(AsyncProcessor, ReportsPendingWorkAndProcessDispatchesItOnce) {
  CAsyncProcessor processor;
  LoopbackPair pair;
  Reader reader(processor, pair.client);
  processor.process();  // nothing pending: returns at once
  EXPECT_EQ(reader.calls, 0);
  pair.send("abc");
  EXPECT_TRUE(processor.waitEvent());
  processor.process();
  EXPECT_EQ(reader.data, "abc");
  processor.process();
  EXPECT_EQ(reader.calls, 1);
}

TEST(AsyncProcessor, AClosedProcessorWaitsNoMoreEvenWithWorkPending) {
  CAsyncProcessor processor;
  LoopbackPair pair;
  Reader reader(processor, pair.client);
  pair.send("x");
  ASSERT_TRUE(processor.waitEvent());  // the work is pending from here on
  processor.close();
  EXPECT_FALSE(processor.waitEvent());
  EXPECT_FALSE(processor.waitEvent());
  processor.process();
  EXPECT_EQ(reader.data, "x");
}

TEST(AsyncProcessor, ACloseFromAnotherThreadEndsAWaitInProgress) {
  CAsyncProcessor processor;
  std::atomic<bool> waiting{false};
  std::thread closer = closeWhen(processor, [&] { return waiting.load(); });
  waiting = true;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(processor.waitEvent());
  EXPECT_LT(std::chrono::steady_clock::now() - start, 4s);
  closer.join();
}

struct Messages : VXServerMessageListener {
  void onMessage(const std::string& text) override {
    seen.push_back(text);
    count = static_cast<int>(seen.size());
  }
  std::vector<std::string> seen;
  std::atomic<int> count{0};
};

TEST(AsyncProcessor, CarriesASessionsEventsToTheScriptLoopOnItsThread) {
  CAsyncProcessor processor;
  LoopbackPeer peer;
  VXClientTcp session;
  Messages messages;
  session.setServerAddress(peer.address());
  session.setAsyncRegistry(&processor.getRegistry());
  session.addServerMessageListener(&messages);
  peer.serve([](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    // The messages follow the client's first action, so that none rides in with the handshake.
    c.readUntil(0);
    for (const char* text : {"one", "two", "three"}) c.send(packetBytes(16, stringBytes(text)));
  });
  ASSERT_TRUE(session.connect());
  session.sendMessage("go");
  const std::thread::id script = std::this_thread::get_id();
  std::thread closer = closeWhen(processor, [&] { return messages.count == 3; });
  int rounds = 0;
  while (processor.waitEvent()) {
    processor.process();
    ++rounds;
    EXPECT_EQ(std::this_thread::get_id(), script);
  }
  closer.join();
  EXPECT_EQ(messages.seen, (std::vector<std::string>{"one", "two", "three"}));
  EXPECT_GE(rounds, 1);
  session.close();
  peer.join();
}

}  // namespace

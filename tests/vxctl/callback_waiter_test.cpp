#include "tools/vxctl/callback_waiter.h"

#include <gtest/gtest.h>

#include "client/client_tcp.h"
#include "tests/client/loopback_peer.h"

namespace {

using namespace std::chrono_literals;

TEST(CallbackWaiter, AConfirmationThatCameBeforeTheIdsWereKnownCounts) {
  VXCtlCallbackWaiter waiter;
  waiter.onCommandCallback(4);
  waiter.expect({3, 4, 5});
  waiter.onCommandCallback(5);
  waiter.onCommandCallback(9);
  EXPECT_EQ(waiter.pending(), std::vector<int32_t>{3});
}

// The confirmations arrive through a real session from a loopback server, one of them never.
TEST(CallbackWaiter, WaitsForTheServersConfirmationsAndGivesUpAtTheLimit) {
  LoopbackPeer peer;
  peer.serve([](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    c.send(packetBytes(14, int32Bytes(21)) + packetBytes(14, int32Bytes(22)));
  });
  AFCFDHandlerEvent handler;
  VXClientTcp session;
  session.setServerAddress(peer.address());
  session.setAsyncRegistry(&handler);
  VXCtlCallbackWaiter waiter;
  session.addCommandCallbackListener(&waiter);
  ASSERT_TRUE(session.connect());

  waiter.expect({21, 22});
  EXPECT_TRUE(waiter.wait(handler, 2s));
  waiter.expect({23});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(waiter.wait(handler, 100ms));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
  EXPECT_EQ(waiter.pending(), std::vector<int32_t>{23});

  session.removeCommandCallbackListener(&waiter);
  session.close();
}

TEST(CallbackWaiter, StopsWaitingWhenAskedTo) {
  AFCFDHandlerEvent handler;
  VXCtlCallbackWaiter waiter;
  waiter.expect({1});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(waiter.wait(handler, 10s, [] { return true; }));
  EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
}

}  // namespace

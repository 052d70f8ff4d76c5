#include "client/client_tcp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "client/client_exceptions.h"
#include "client/login.h"
#include "foundation/fd_handler.h"
#include "tests/client/loopback_peer.h"
#include "tests/support/failure_text.h"

namespace {

void setEnvironment(const char* name, const char* value) {
#ifdef _WIN32
  _putenv_s(name, value ? value : "");
#else
  if (value) {
    setenv(name, value, 1);
  } else {
    unsetenv(name);
  }
#endif
}

// Sets an environment variable for one test and puts the old value back.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const char* value) : name_(name) {
    const char* old = std::getenv(name);
    if (old) old_ = old;
    had_ = old != nullptr;
    setEnvironment(name, value);
  }
  ~ScopedEnvironment() { setEnvironment(name_, had_ ? old_.c_str() : nullptr); }

 private:
  const char* name_;
  std::string old_;
  bool had_ = false;
};

struct Events : VXConnectListener, VXDisconnectListener, VXServerMessageListener {
  std::vector<std::string> seen;
  void onServerConnect(int32_t index) override {
    seen.push_back("connect " + std::to_string(index));
  }
  void onServerDisconnect(int32_t index) override {
    seen.push_back("disconnect " + std::to_string(index));
  }
  void onMessage(const std::string& text) override { seen.push_back("message " + text); }
};

// A session on a loopback peer, its events pumped by the test's own handler.
class ClientTcp : public ::testing::Test {
 protected:
  void SetUp() override {
    session_.setServerAddress(peer_.address());
    session_.setAsyncRegistry(&handler_);
    session_.addConnectListener(&events_);
    session_.addDisconnectListener(&events_);
    session_.addServerMessageListener(&events_);
  }
  void TearDown() override {
    session_.close();
    peer_.join();
  }
  // Pumps the handler until the condition holds or two seconds have passed.
  bool pumpUntil(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!done() && std::chrono::steady_clock::now() < deadline) handler_.mainLoop(10);
    return done();
  }

  LoopbackPeer peer_;
  AFCFDHandlerEvent handler_;
  VXClientTcp session_;
  Events events_;
};

TEST_F(ClientTcp, ConnectsRunsTheHandshakeAndCallsTheConnectListeners) {
  peer_.serve([](PeerConnection& c) {
    EXPECT_EQ(c.readPacket().type, 5u);
    c.send(noLoginVersion());
  });
  EXPECT_TRUE(session_.connect());
  EXPECT_TRUE(session_.isOpen());
  EXPECT_EQ(session_.getConnectedHost(), "127.0.0.1");
  EXPECT_EQ(session_.getServerVersion(), "2295beta6");
  EXPECT_EQ(events_.seen, std::vector<std::string>{"connect 0"});
}

TEST_F(ClientTcp, LogsInWithTheResponseToTheChallenge) {
  const Bytes challenge(16, 0x5A);
  session_.setPassword("secret");
  peer_.serve([&](PeerConnection& c) {
    c.readPacket();
    c.send(versionReply(2295, 7));
    EXPECT_EQ(c.readPacket().type, 17u);
    c.send(packetBytes(18, challenge));
    const WrittenPacket response = c.readPacket();
    EXPECT_EQ(response.type, 19u);
    EXPECT_EQ(response.payload, vxLoginResponse("secret", challenge));
    c.send(packetBytes(20, {1}));
  });
  EXPECT_TRUE(session_.connect());
}

TEST_F(ClientTcp, AWrongPasswordFailsTheConnect) {
  session_.setPassword("wrong");
  peer_.serve([](PeerConnection& c) {
    c.readPacket();
    c.send(versionReply(2295, 7));
    c.readPacket();
    c.send(packetBytes(18, Bytes(16, 1)));
    c.readPacket();
    c.send(packetBytes(20, {0}));
  });
  EXPECT_EQ(failureOf<VXClientException>([&] { session_.connect(); }), "Incorrect password.");
  EXPECT_FALSE(session_.isOpen());
}

TEST_F(ClientTcp, APacketSplitAtAnyOffsetReadsAsTheWholeFeed) {
  // Two messages, sent in two writes split at each offset in turn: a header or a payload comes
  // in parts, and the client waits for the rest of it.
  const Bytes feed = packetBytes(16, stringBytes("first")) + packetBytes(16, stringBytes("second"));
  // A copy: the peer may still be in its loop when the test's last message is in.
  peer_.serve([feed](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    for (std::size_t split = 1; split < feed.size(); ++split) {
      c.send(Bytes(feed.begin(), feed.begin() + static_cast<std::ptrdiff_t>(split)));
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      c.send(Bytes(feed.begin() + static_cast<std::ptrdiff_t>(split), feed.end()));
    }
  });
  ASSERT_TRUE(session_.connect());
  const std::size_t rounds = feed.size() - 1;
  EXPECT_TRUE(pumpUntil([&] { return events_.seen.size() == 1 + 2 * rounds; }));
  std::vector<std::string> expected{"connect 0"};
  for (std::size_t i = 0; i < rounds; ++i) {
    expected.insert(expected.end(), {"message first", "message second"});
  }
  EXPECT_EQ(events_.seen, expected);
}

TEST_F(ClientTcp, DispatchesAsynchronousPacketsBeforeTheReplyTheyPreceded) {
  peer_.serve([](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    EXPECT_EQ(c.readPacket().type, 3u);
    // Two events and the reply in one write: one receive on the client's side.
    VXZonesState zones;
    zones.set("L3", true);
    AFCPersistentOutputStreamBuffer out;
    zones.write(out);
    const Bytes state(out.getBuffer().data(), out.getBuffer().data() + out.getBuffer().size());
    c.send(packetBytes(16, stringBytes("one")) + packetBytes(16, stringBytes("two")) +
           packetBytes(4, state));
  });
  session_.connect();
  VXZonesState zones;
  zones.set("L3", false);
  session_.getZoneState1(zones);
  EXPECT_TRUE(zones.get("L3"));
  EXPECT_EQ(events_.seen, (std::vector<std::string>{"connect 0", "message one", "message two"}));
}

TEST_F(ClientTcp, EventsWhileIdleArriveThroughTheRegistry) {
  peer_.serve([](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    EXPECT_EQ(c.readPacket().type, 0u);  // the client's message: it is idle from here on
    c.send(packetBytes(16, stringBytes("a")) + packetBytes(16, stringBytes("b")));
  });
  session_.connect();
  session_.sendMessage("ready");
  EXPECT_TRUE(pumpUntil([&] { return events_.seen.size() == 3; }));
  EXPECT_EQ(events_.seen, (std::vector<std::string>{"connect 0", "message a", "message b"}));
}

TEST_F(ClientTcp, APeerCloseRunsTheDisconnectListenersOnceAndAReconnectResubscribes) {
  struct Zones : VXZoneStateListener {
    void onZoneStateChange(const VXZonesState&) override {}
  } zones;
  session_.addZoneNotifyListener("L3", &zones);
  peer_.serve([](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    c.readUntil(7);
    c.close();
  });
  session_.connect();
  EXPECT_TRUE(pumpUntil([&] { return !session_.isOpen(); }));
  handler_.mainLoop(20);
  EXPECT_EQ(events_.seen, (std::vector<std::string>{"connect 0", "disconnect 0"}));

  std::vector<uint32_t> types;
  peer_.serve([&](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    for (const WrittenPacket& packet : c.readUntil(7)) types.push_back(packet.type);
  });
  session_.connect();
  session_.close();
  peer_.join();
  EXPECT_EQ(types, std::vector<uint32_t>{7});
  EXPECT_EQ(events_.seen.back(), "connect 0");
}

TEST_F(ClientTcp, AReplyFollowedAtOnceByTheServersCloseIsStillRead) {
  peer_.serve([](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    c.close();
  });
  EXPECT_TRUE(session_.connect());
  EXPECT_EQ(session_.getServerVersion(), "2295beta6");
  EXPECT_TRUE(pumpUntil([&] { return !session_.isOpen(); }));
  EXPECT_EQ(events_.seen, (std::vector<std::string>{"connect 0", "disconnect 0"}));
}

TEST_F(ClientTcp, ABadMagicFromThePeerClosesTheSessionWithALogLine) {
  peer_.serve([](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    c.send(Bytes{'B', 'A', 'D', '!', 0, 0, 0, 16, 0, 0, 0, 0});
  });
  // The bad packet may come in with the version reply or after it: either way the session
  // ends with one disconnect.
  session_.connect();
  EXPECT_TRUE(pumpUntil([&] { return !session_.isOpen(); }));
  EXPECT_EQ(std::count(events_.seen.begin(), events_.seen.end(), "disconnect 0"), 1);
}

TEST_F(ClientTcp, RefusesToChangeTheRegistryWhileOpen) {
  peer_.serve([](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
  });
  session_.connect();
  AFCFDHandlerEvent other;
  EXPECT_THROW(session_.setAsyncRegistry(&other), VXClientException);
  session_.setAsyncRegistry(nullptr);  // always accepted
}

TEST(ClientTcpAddress, ARefusedConnectionNamesTheSocketError) {
  AFCServerSocket closed;
  closed.bind(0, "127.0.0.1");
  const int port = closed.getLocalPort();
  closed.close();
  VXClientTcp session;
  session.setServerAddress("127.0.0.1:" + std::to_string(port));
  EXPECT_THAT(failureOf<VXClientException>([&] { session.connect(); }),
              ::testing::StartsWith("Vexel connection failed, Can't connect to 127.0.0.1"));
  EXPECT_FALSE(session.isOpen());
}

TEST(ClientTcpAddress, ChoosesFromTheVX2HOSTListByClientIndex) {
  ScopedEnvironment hosts("VX2HOST", "a,b,c");
  EXPECT_EQ(VXClientTcp(0).getServerAddress(), "a,b,c");
  EXPECT_EQ(VXClientTcp(2).getServerAddress(), "b");
  EXPECT_EQ(VXClientTcp(3).getServerAddress(), "c");
  EXPECT_EQ(VXClientTcp(4).getServerAddress(), "");
  VXClientTcp explicitOne(2);
  explicitOne.setServerAddress("render1:7000");
  EXPECT_EQ(explicitOne.getServerAddress(), "render1:7000");
  ScopedEnvironment none("VX2HOST", nullptr);
  EXPECT_EQ(VXClientTcp(2).getServerAddress(), "localhost");
}

TEST(ClientTcpAddress, AnIndexPastTheListFailsTheConnectWithoutTryingAHost) {
  ScopedEnvironment hosts("VX2HOST", "a");
  VXClientTcp session(3);
  EXPECT_EQ(failureOf<VXClientException>([&] { session.connect(); }),
            "Vexel connection failed, VX2HOST has no entry for client index 3");
}

TEST(ClientTcpAddress, AnUnreadablePortIsAWrongPortNumber) {
  VXClientTcp session;
  session.setServerAddress("127.0.0.1:http");
  EXPECT_EQ(failureOf<VXClientException>([&] { session.connect(); }),
            "Vexel connection failed, Wrong port number");
  EXPECT_EQ(session.getConnectFailure(), "Vexel connection failed, Wrong port number");
}

}  // namespace

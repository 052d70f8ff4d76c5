#include "tools/vxsim/sim_server.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>

#include "client/client_exceptions.h"
#include "client/client_tcp.h"
#include "foundation/attribute_string.h"
#include "tests/vxsim/running_server.h"
#include "tests/vxsim/sim_test_support.h"
#include "tools/vxsim/sim_console.h"

namespace {

class SimServer : public ::testing::Test {
 protected:
  void TearDown() override {
    first_.close();
    second_.close();
  }
  void connect(VXClientTcp& session, const RunningServer& server) {
    session.setServerAddress(server.address());
    session.setAsyncRegistry(&handler_);
    session.setPassword("secret");
    ASSERT_TRUE(session.connect());
  }
  bool pumpUntil(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
    while (!done() && std::chrono::steady_clock::now() < deadline) handler_.mainLoop(10);
    return done();
  }

  AFCFDHandlerEvent handler_;
  VXClientTcp first_{1};
  VXClientTcp second_{2};
  std::vector<std::string> seen_;
  RecordingListener listener_{&seen_};
};

VXSimOptions secretOptions() {
  VXSimOptions options;
  options.password = "secret";
  options.version = vxSimParseVersion("2295beta8");
  return options;
}

}  // namespace

TEST_F(SimServer, TwoTcpClientsShareOneSceneAndGetTheirEvents) {
  RunningServer server(secretOptions());
  second_.addZoneNotifyListener("L3", &listener_);
  second_.addServerMessageListener(&listener_);
  connect(first_, server);
  connect(second_, server);
  EXPECT_EQ(first_.getServerVersion(), "2295beta8");

  first_.createNode("Text", "txt", "");
  first_.setAttribute("txt", "Text", std::make_unique<AFCAttributeString>("on air"));
  // Two connections keep no order between them: a round trip of the first makes sure the
  // server has applied its action before the second asks.
  ASSERT_NE(first_.remoteGetAttr("Root/txt.Text"), nullptr);
  const auto text = second_.remoteGetAttr("Root/txt.Text");
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->toString(), "on air");

  VXZonesState zones;
  zones.set("L3", true);
  first_.setZoneState(zones);
  server.console("message hello");
  EXPECT_TRUE(pumpUntil([&] { return seen_.size() == 2; }));
  ASSERT_EQ(seen_.size(), 2u);
  EXPECT_EQ(seen_[0].rfind("l: zones ", 0), 0u);
  EXPECT_EQ(seen_[1], "l: message hello");
}

TEST_F(SimServer, ADropFromTheConsoleDisconnectsTheClients) {
  RunningServer server(secretOptions());
  first_.addDisconnectListener(&listener_);
  connect(first_, server);
  server.console("drop");
  EXPECT_TRUE(pumpUntil([&] { return !first_.isOpen(); }));
  EXPECT_EQ(seen_, std::vector<std::string>{"l: disconnect 1"});
}

TEST_F(SimServer, AWrongPasswordFailsTheTcpConnect) {
  RunningServer server(secretOptions());
  first_.setServerAddress(server.address());
  first_.setAsyncRegistry(&handler_);
  first_.setPassword("guess");
  EXPECT_THROW(first_.connect(), VXClientException);
  EXPECT_FALSE(first_.isOpen());
}

TEST_F(SimServer, WhileAReplyIsHeldBackTheOtherClientsAreServed) {
  RunningServer server(secretOptions());
  AFCFDHandlerEvent waitingHandler;  // not pumped: the request reads its reply itself
  first_.setServerAddress(server.address());
  first_.setAsyncRegistry(&waitingHandler);
  first_.setPassword("secret");
  ASSERT_TRUE(first_.connect());
  second_.addCommandCallbackListener(&listener_);
  connect(second_, server);
  ASSERT_EQ(server.command("fault delay 1000"), "faults: delay 1000 ms\n");

  std::atomic<bool> answered{false};
  VXZonesState asked;
  asked.set("L3", true);
  std::thread waiting([&] {
    first_.getZoneState1(asked);
    answered.store(true);
  });
  // A callback is no reply: it comes back at once, while the first client still waits.
  const int32_t id = second_.commandCallback();
  EXPECT_TRUE(pumpUntil([&] { return !seen_.empty(); }));
  EXPECT_FALSE(answered.load());
  EXPECT_EQ(seen_, std::vector<std::string>{"l: callback " + std::to_string(id)});
  waiting.join();
  EXPECT_TRUE(answered.load());
  EXPECT_FALSE(asked.get("L3"));
}

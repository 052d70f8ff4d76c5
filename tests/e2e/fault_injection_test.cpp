// The client session against a simulator told to misbehave: each fault the operator injects
// must end in the client's own failure, with its own texts, and never in a crash or a hang.
#include <gtest/gtest.h>

#include <chrono>

#include "client/client_exceptions.h"
#include "foundation/attribute_string.h"
#include "tests/e2e/pumped_session.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"
#include "tests/vxsim/running_server.h"

namespace {

using Clock = std::chrono::steady_clock;

class FaultInjection : public ::testing::Test {
 protected:
  void SetUp() override {
    session_.addDisconnectListener(&client_.recorder);
    session_.addServerMessageListener(&client_.recorder);
    ASSERT_TRUE(session_.connect());
  }
  bool pumpUntilDisconnected() {
    return client_.pumpUntil([&] { return !seen_.empty() && seen_.back() == "l: disconnect 0"; });
  }
  bool logged(const std::string& message) const {
    const auto messages = log_.messages();
    return std::find(messages.begin(), messages.end(), message) != messages.end();
  }

  CapturedErrLog log_;
  RunningServer server_;
  PumpedSession client_{server_.address()};
  LoopbackSession& session_ = client_.session;
  const std::vector<std::string>& seen_ = client_.seen;
};

}  // namespace

TEST_F(FaultInjection, ABadMagicOnAnEventFailsTheStreamAndReportsTheDisconnect) {
  ASSERT_EQ(server_.command("fault magic"), "faults: bad magic\n");
  server_.command("message hello");
  ASSERT_TRUE(pumpUntilDisconnected());
  EXPECT_EQ(seen_, std::vector<std::string>{"l: disconnect 0"});  // the message never arrives
  EXPECT_FALSE(session_.isOpen());
  EXPECT_TRUE(logged("VX2Client: IO error, Communication error, Bad magic in packet header"));
}

TEST_F(FaultInjection, ABadMagicOnAReplyFailsTheRequestWithTheReadersText) {
  server_.command("fault magic");
  VXZonesState zones;
  zones.set("L3", true);
  EXPECT_EQ(failureOf<VXCommunicationErrorException>([&] { session_.getZoneState1(zones); }),
            "Communication error, Bad magic in packet header");
}

TEST_F(FaultInjection, AnOverLongLengthIsRefusedBeforeItsPayloadIsRead) {
  ASSERT_EQ(server_.command("fault length"), "faults: bad length\n");
  server_.command("message hello");
  ASSERT_TRUE(pumpUntilDisconnected());
  EXPECT_EQ(seen_, std::vector<std::string>{"l: disconnect 0"});
  EXPECT_TRUE(logged("Declared packet length 10000001, PacketType=16"));
  EXPECT_TRUE(logged("VX2Client: IO error, Communication error, Wrong packet length"));
}

TEST_F(FaultInjection, AnOverLongLengthOnAReplyFailsTheRequest) {
  server_.command("fault length");
  EXPECT_EQ(
      failureOf<VXCommunicationErrorException>([&] { (void)session_.remoteGetAttr("Root.Text"); }),
      "Communication error, Wrong packet length");
}

TEST_F(FaultInjection, AServerClosingAfterNPacketsIsADisconnectAndLaterRequestsFail) {
  ASSERT_EQ(server_.command("fault close 2"), "faults: close after 2 packets\n");
  session_.createNode("Group", "first", "Root");
  session_.createNode("Group", "second", "Root");
  ASSERT_TRUE(pumpUntilDisconnected());
  EXPECT_FALSE(session_.isOpen());
  EXPECT_EQ(failureOf<VXCommunicationErrorException>(
                [&] { (void)session_.remoteGetAttr("Root/first.Text"); }),
            "Communication error, Not connected");

  // Once the fault is off the session connects again.
  server_.command("fault off");
  ASSERT_TRUE(session_.connect());
  EXPECT_TRUE(session_.isOpen());
  server_.stop();
  // The close came after the second packet, which was still served.
  EXPECT_NE(server_.hub().getScene().find("Root/second"), nullptr);
}

TEST_F(FaultInjection, ADelayedReplyStillComesBackMatchedToItsRequest) {
  session_.createNode("Text", "t", "Root");
  session_.setAttribute("Root/t", "Text", std::make_unique<AFCAttributeString>("one"));
  session_.setAttribute("Root/t", "Style", std::make_unique<AFCAttributeString>("two"));
  ASSERT_EQ(server_.command("fault delay 300"), "faults: delay 300 ms\n");
  const auto start = Clock::now();
  const auto text = session_.remoteGetAttr("Root/t.Text");
  const auto elapsed = Clock::now() - start;
  const auto style = session_.remoteGetAttr("Root/t.Style");
  ASSERT_NE(text, nullptr);
  ASSERT_NE(style, nullptr);
  EXPECT_EQ(text->toString(), "one");
  EXPECT_EQ(style->toString(), "two");
  EXPECT_GE(elapsed, std::chrono::milliseconds(300));
  EXPECT_TRUE(session_.isOpen());
}

// A session that the server drops: the client is told, connects again, and the handshake sends
// its registrations again, so zone notifications, the error-log subscription and the project
// work on the new connection as they did on the old one.
#include <gtest/gtest.h>

#include "tests/e2e/pumped_session.h"
#include "tests/vxsim/running_server.h"

namespace {

class Reconnect : public ::testing::Test {
 protected:
  void SetUp() override {
    client_.session.addConnectListener(&client_.recorder);
    client_.session.addDisconnectListener(&client_.recorder);
    client_.session.addZoneNotifyListener("L3", &client_.recorder);
    client_.session.addErrLogListener(&client_.recorder);
    client_.session.addServerMessageListener(&client_.recorder);
    client_.session.setProject("Show");
    ASSERT_TRUE(client_.session.connect());
  }

  // Drops every client from the operator's console and waits until the client has been told.
  void dropAndWait() {
    server_.console("drop");
    ASSERT_TRUE(client_.pumpUntil([&] { return client_.saw("disconnect 0"); }));
  }

  RunningServer server_;
  PumpedSession client_{server_.address()};
};

TEST_F(Reconnect, TheClientIsToldOnceAndIsClosedAfterADrop) {
  dropAndWait();
  EXPECT_FALSE(client_.session.isOpen());
  client_.pumpUntil([] { return false; }, std::chrono::milliseconds(100));
  EXPECT_EQ(std::count(client_.seen.begin(), client_.seen.end(), "l: disconnect 0"), 1);
  EXPECT_EQ(client_.session.getServerVersionMajor(), 0u);  // forgotten with the connection
}

TEST_F(Reconnect, RegistrationsAndTheProjectAreSentAgainByTheNextHandshake) {
  dropAndWait();
  client_.seen.clear();
  ASSERT_TRUE(client_.session.connect());
  EXPECT_EQ(client_.seen, std::vector<std::string>{"l: connect 0"});

  server_.console("zone L3 on");
  ASSERT_TRUE(client_.pumpUntil([&] { return client_.sawPrefix("zones "); }));
  server_.console("errlog WARNING after the drop");
  ASSERT_TRUE(client_.pumpUntil([&] { return client_.saw("errlog after the drop"); }));
  server_.console("message still here");
  ASSERT_TRUE(client_.pumpUntil([&] { return client_.saw("message still here"); }));
  ASSERT_TRUE(client_.sync());
  server_.stop();
  // The project went out by the first handshake and again by the second one.
  EXPECT_EQ(server_.hub().getScene().getProjects(), (std::vector<std::string>{"Show", "Show"}));
}

TEST_F(Reconnect, ARegistrationRemovedWhileClosedIsNotSentAgain) {
  dropAndWait();
  client_.session.removeZoneNotifyListener("L3", &client_.recorder);
  client_.session.addZoneNotifyListener("L4", &client_.recorder);
  client_.session.removeErrLogListener(&client_.recorder);
  ASSERT_TRUE(client_.session.connect());
  client_.seen.clear();
  server_.console("zone L3 on");
  server_.console("errlog ERROR not for this client");
  server_.console("zone L4 on");
  ASSERT_TRUE(client_.pumpUntil([&] { return client_.sawPrefix("zones "); }));
  ASSERT_TRUE(client_.sync());
  ASSERT_EQ(client_.seen.size(), 1u);
  EXPECT_NE(client_.seen.front().find("L4"), std::string::npos);
  EXPECT_EQ(client_.seen.front().find("L3"), std::string::npos);
}

TEST_F(Reconnect, ASecondDropIsToldAgainAndTheClientComesBackAgain) {
  dropAndWait();
  ASSERT_TRUE(client_.session.connect());
  client_.seen.clear();
  dropAndWait();
  ASSERT_TRUE(client_.session.connect());
  EXPECT_EQ(client_.seen, (std::vector<std::string>{"l: disconnect 0", "l: connect 0"}));
  client_.session.createNode("Group", "back", "Root");
  ASSERT_TRUE(client_.sync());
  server_.stop();
  EXPECT_NE(server_.hub().getScene().find("Root/back"), nullptr);
}

TEST_F(Reconnect, ARequestThatMeetsTheDropFailsAndTheClientIsStillToldOnce) {
  server_.console("drop");
  // The close has arrived, but no callback has seen it yet: the request is the first to.
  ASSERT_EQ(client_.handler.waitForEvents(3000), AFCFDHandlerEvent::WaitResult::Ready);
  EXPECT_THROW(client_.session.remoteGetAttr("Root.Size"), AFCException);
  ASSERT_TRUE(client_.pumpUntil([&] { return client_.saw("disconnect 0"); }));
  client_.pumpUntil([] { return false; }, std::chrono::milliseconds(100));
  EXPECT_EQ(std::count(client_.seen.begin(), client_.seen.end(), "l: disconnect 0"), 1);
  EXPECT_FALSE(client_.session.isOpen());
  EXPECT_TRUE(client_.session.connect());
}

}  // namespace

// The client session against the simulator's server on 127.0.0.1: every kind of command record
// goes out through the session's builder operations, and the simulator's scene shows each one
// applied; the packets that come back (callbacks, zone notifications, error-log entries,
// messages, pick results) reach the session's listeners.
#include <gtest/gtest.h>

#include "client/client_tcp.h"
#include "client/listeners.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/errlog_event.h"
#include "tests/e2e/pumped_session.h"
#include "tests/vxsim/running_server.h"

namespace {

struct Events : VXErrLogListener,
                VXZoneStateListener,
                VXCallbackCommandListener,
                VXServerMessageListener,
                VXPickResultListener {
  std::vector<std::string> seen;
  void onNewErrLog(const AFCErrLogEvent& entry) override {
    seen.push_back("errlog");
    (void)entry;
  }
  void onZoneStateChange(const VXZonesState& zones) override {
    seen.push_back(std::string("zone ") + (zones.get("L3") ? "on" : "off"));
  }
  void onCommandCallback(int32_t id) override { seen.push_back("callback " + std::to_string(id)); }
  void onMessage(const std::string& text) override { seen.push_back("message " + text); }
  void onPickResult(const std::string&) override { seen.push_back("pick"); }
  bool has(const std::string& event) const {
    return std::find(seen.begin(), seen.end(), event) != seen.end();
  }
};

class SessionAgainstSimulator : public ::testing::Test {
 protected:
  void SetUp() override {
    session_.addErrLogListener(&events_);
    session_.addZoneNotifyListener("L3", &events_);
    session_.addCommandCallbackListener(&events_);
    session_.addServerMessageListener(&events_);
    session_.addPickResultListener(&events_);
    ASSERT_TRUE(session_.connect());
  }

  RunningServer server_;
  PumpedSession client_{server_.address()};
  LoopbackSession& session_ = client_.session;
  Events events_;
};

TEST_F(SessionAgainstSimulator, EveryCommandRecordIsAppliedToTheScene) {
  AFCRef<VXAnimation> animation(new VXAnimation);
  animation->createChannel().setDestination("Root/t:Alpha");
  session_.setProject("Show");
  session_.beginImmediate(false);
  session_.createNode("Group", "t", "Root");
  session_.createNode("Text", "name", "Root/t");
  session_.copyNode("Root/t/name", "role", "Root/t");
  session_.renameTarget("Root/t/role", "title");
  session_.setAttribute("Root/t/name", "Text", std::make_unique<AFCAttributeWString>(u"Jane"));
  session_.createEffect("Blur", "fx", "Root/t");
  session_.activateEffect("Root/t/fx");
  session_.loadScene("Lower", "Root/t", "bg");
  session_.transactionBegin("T", false);
  session_.activateAnimation("in", "Root/t", VXActivateAnimationOptions());
  session_.activateAnimationObj(animation, "Root/t", VXActivateAnimationOptions());
  session_.storeAnimation("kept", "Root/t", animation);
  session_.accelerateAnimation("in", "Root/t", 2.0f, 0);
  session_.stopAnimation("in", "Root/t", 5);
  session_.removeAnimation("kept", "Root/t");
  session_.activateAction("act", "T", false, "Root/t");
  session_.transactionEnd();
  session_.transactionRoll("T");
  session_.transactionStop("T");
  session_.preview(7);
  session_.beginSequencePreview(8);
  session_.endSequencePreview(8);
  session_.preload("Root/t");
  session_.sendMessage("hello");
  session_.wait(40);
  session_.deleteEffect("Root/t/fx");
  session_.end();
  ASSERT_TRUE(client_.sync());
  server_.stop();

  const VXSimScene& scene = server_.hub().getScene();
  ASSERT_NE(scene.find("Root/t/name"), nullptr);
  ASSERT_NE(scene.find("Root/t/title"), nullptr);
  EXPECT_EQ(scene.find("Root/t/role"), nullptr);
  EXPECT_EQ(scene.find("Root/t/fx"), nullptr);
  EXPECT_EQ(scene.find("Root/t/bg")->sceneName, "Lower");
  EXPECT_EQ(scene.find("Root/t/name")->attributes.at("Text")->toString(), "Jane");
  EXPECT_EQ(scene.getTransactions(),
            (std::vector<std::string>{"begin T", "end", "roll T", "stop T"}));
  EXPECT_EQ(scene.getActions().size(), 1u);
  EXPECT_EQ(scene.getPreviews().size(), 3u);
  EXPECT_EQ(scene.getPreloads().size(), 1u);
  EXPECT_EQ(scene.getMessages(), std::vector<std::string>{"hello"});
  EXPECT_EQ(scene.getProjects(), std::vector<std::string>{"Show"});
  EXPECT_EQ(scene.getWaitTotal(), 40);
  const VXSimNode& title = *scene.find("Root/t");
  EXPECT_FALSE(title.animations.at("in").running);
  EXPECT_EQ(title.animations.at("in").speed, 2.0f);
  EXPECT_EQ(title.animations.count("kept"), 0u);  // stored, then removed
  EXPECT_TRUE(title.animations.at("<client>").running);
}

TEST_F(SessionAgainstSimulator, DeleteNodeAndZoneStateChangeTheScene) {
  session_.createNode("Group", "gone", "Root");
  session_.deleteNode("Root/gone");
  VXZonesState zones;
  zones.set("L3", true);
  session_.setZoneState(zones);
  ASSERT_TRUE(client_.pumpUntil([&] { return events_.has("zone on"); }));
  ASSERT_TRUE(client_.sync());
  server_.stop();
  EXPECT_EQ(server_.hub().getScene().find("Root/gone"), nullptr);
  EXPECT_TRUE(server_.hub().getScene().getZones().get("L3"));
}

TEST_F(SessionAgainstSimulator, ServerPacketsReachTheListeners) {
  session_.deleteNode("Root/missing");  // cannot be applied: an error-log entry comes back
  ASSERT_TRUE(client_.pumpUntil([&] { return events_.has("errlog"); }));
  server_.console("message from the operator");
  ASSERT_TRUE(client_.pumpUntil([&] { return events_.has("message from the operator"); }));
  session_.createNode("Group", "p", "Root");
  session_.remoteInvoke("::Pick.sendRequest", {});
  ASSERT_TRUE(client_.pumpUntil([&] { return events_.has("pick"); }));
  VXZonesState asked;
  asked.set("L3", true);
  session_.getZoneState1(asked);
  EXPECT_FALSE(asked.get("L3"));
}

}  // namespace

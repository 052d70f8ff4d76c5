#include "tools/vxsim/sim_hub.h"

#include <gtest/gtest.h>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/vxsim/sim_test_support.h"

TEST(SimHub, ActionsOfTheClientChangeTheSharedScene) {
  VXSimHub hub;
  PipedSession session(hub, 1);
  session.connect();
  session.beginImmediate(false);
  session.createNode("Group", "title", "");
  session.setAttribute("title", "Text", std::make_unique<AFCAttributeString>("Hello"));
  session.setAttribute("title", "Alpha", std::make_unique<AFCAttributeFloat>(0.5f));
  session.transactionBegin("T1", false);
  session.transactionEnd();
  session.sendMessage("hi");
  session.end();
  const VXSimNode* title = hub.getScene().find("Root/title");
  ASSERT_NE(title, nullptr);
  EXPECT_EQ(title->type, "Group");
  EXPECT_EQ(title->attributes.at("Text")->toString(), "Hello");
  EXPECT_NE(dynamic_cast<const AFCAttributeFloat*>(title->attributes.at("Alpha").get()), nullptr);
  EXPECT_EQ(hub.getScene().getTransactions(), (std::vector<std::string>{"begin T1", "end"}));
  EXPECT_EQ(hub.getScene().getMessages(), std::vector<std::string>{"hi"});
}

TEST(SimHub, AnUnappliableCommandBecomesAnErrLogEntryForSubscribersOnly) {
  RecordingHub recording;
  std::vector<std::string> seen;
  RecordingListener listener(&seen, "a");
  PipedSession subscriber(recording.hub, 1);
  PipedSession other(recording.hub, 2);
  subscriber.addErrLogListener(&listener);
  subscriber.connect();
  other.connect();
  other.beginImmediate(false);
  other.deleteNode("missing");
  other.createNode("Group", "after", "");
  other.end();
  subscriber.dispatchPending();
  EXPECT_EQ(seen,
            std::vector<std::string>{
                "a: errlog client 2: DeleteNode missing failed, Node not found: Root/missing"});
  EXPECT_NE(recording.hub.getScene().find("after"), nullptr);  // the action went on
  EXPECT_EQ(other.bytesPending(), 0u);
  EXPECT_EQ(recording.lines.at(recording.lines.size() - 2),
            "client 2: action on channel 0: DeleteNode missing; Create node Group as /after;");
  EXPECT_EQ(recording.lines.back(),
            "ERROR client 2: DeleteNode missing failed, Node not found: Root/missing");
}

TEST(SimHub, ACallbackComesToItsSenderAfterTheRestOfItsAction) {
  VXSimHub hub;
  std::vector<std::string> seen;
  RecordingListener listener(&seen);
  PipedSession session(hub, 1);
  session.addErrLogListener(&listener);
  session.addCommandCallbackListener(&listener);
  session.connect();
  session.beginImmediate(false);
  const int32_t id = session.commandCallback();
  session.deleteNode("missing");
  session.end();
  session.dispatchPending();
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0].rfind("l: errlog ", 0), 0u);
  EXPECT_EQ(seen[1], "l: callback " + std::to_string(id));
}

TEST(SimHub, AZoneChangeIsSentToTheClientsRegisteredForThatZone) {
  VXSimHub hub;
  std::vector<std::string> seen;
  RecordingListener l3(&seen, "l3");
  RecordingListener l4(&seen, "l4");
  PipedSession first(hub, 1);
  PipedSession second(hub, 2);
  first.addZoneNotifyListener("L3", &l3);
  second.addZoneNotifyListener("L4", &l4);
  first.connect();
  second.connect();
  VXZonesState zones;
  zones.set("L3", true);
  second.setZoneState(zones);  // as a command of an action
  first.dispatchPending();
  second.dispatchPending();
  ASSERT_EQ(seen.size(), 1u);
  EXPECT_EQ(seen[0].rfind("l3: zones ", 0), 0u);

  VXZonesState asked;
  asked.set("L3", false);
  asked.set("L9", true);
  second.getZoneState1(asked);
  EXPECT_TRUE(asked.get("L3"));
  EXPECT_FALSE(asked.get("L9"));
}

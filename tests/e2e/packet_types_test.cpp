// Every packet type between the client session and the simulator's server, end to end, for
// what the session tests against the simulator do not show already: the version reply's words,
// unregistering zones and unsubscribing the error log, the server's error entries with their
// level and text, and remote-object requests of every kind.
#include <gtest/gtest.h>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/errlog_event.h"
#include "tests/e2e/pumped_session.h"
#include "tests/support/failure_text.h"
#include "tests/vxsim/running_server.h"

namespace {

// Error-log entries as "LEVEL area: message".
struct Entries : VXErrLogListener {
  std::vector<std::string> lines;
  void onNewErrLog(const AFCErrLogEvent& entry) override {
    lines.push_back(entry.getTypeString() + " " + entry.getArea() + ": " + entry.getMessage());
  }
};

class PacketTypes : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(client_.session.connect()); }

  RunningServer server_;
  PumpedSession client_{server_.address()};
};

TEST(PacketTypesVersion, TheVersionReplyGivesTheServersWordsAndAnOldServerIsNotAskedToLogIn) {
  VXSimOptions options;
  options.version = vxSimParseVersion("2295beta3 debug");
  options.version.word2 = 4711;
  options.password = "unused";  // older than the login: the client never answers a challenge
  RunningServer server(options);
  PumpedSession client(server.address());
  ASSERT_TRUE(client.session.connect());
  EXPECT_EQ(client.session.getServerVersion(), "2295beta3 debug");
  EXPECT_EQ(client.session.getServerVersionMajor(), 2295u);
  EXPECT_EQ(client.session.getServerVersionMinor(), 103u);
  EXPECT_EQ(client.session.getServerVersionBuild(), 4711u);
}

TEST_F(PacketTypes, AnUnregisteredZoneIsNoLongerNotified) {
  client_.session.addZoneNotifyListener("L3", &client_.recorder);
  client_.session.addZoneNotifyListener("Bug", &client_.recorder);
  server_.console("zone L3 on");
  ASSERT_TRUE(client_.pumpUntil([&] { return client_.sawPrefix("zones "); }));
  client_.session.removeZoneNotifyListener("L3", &client_.recorder);
  ASSERT_TRUE(client_.sync());  // the server has taken the unregistration
  client_.seen.clear();
  server_.console("zone L3 off");
  server_.console("zone Bug on");
  ASSERT_TRUE(client_.pumpUntil([&] { return client_.sawPrefix("zones "); }));
  ASSERT_EQ(client_.seen.size(), 1u);
  EXPECT_NE(client_.seen.front().find("Bug"), std::string::npos);
  EXPECT_EQ(client_.seen.front().find("L3"), std::string::npos);
}

TEST_F(PacketTypes, ServerErrorsReachTheErrLogListenersWithTheirLevelAndTextUntilUnsubscribed) {
  Entries entries;
  client_.session.addErrLogListener(&entries);
  client_.session.addServerMessageListener(&client_.recorder);
  client_.session.deleteNode("Root/missing");  // cannot be applied
  server_.console("errlog WARNING disk almost full");
  ASSERT_TRUE(client_.pumpUntil([&] { return entries.lines.size() == 2; }));
  EXPECT_EQ(entries.lines[0],
            "ERROR vxsim: client 1: DeleteNode Root/missing failed, Node not found: Root/missing");
  EXPECT_EQ(entries.lines[1], "WARNING vxsim: disk almost full");

  client_.session.removeErrLogListener(&entries);
  ASSERT_TRUE(client_.sync());
  server_.console("errlog ERROR nobody listens");
  server_.console("message after the errlog");
  ASSERT_TRUE(client_.pumpUntil([&] { return client_.saw("message after the errlog"); }));
  EXPECT_EQ(entries.lines.size(), 2u);
}

TEST_F(PacketTypes, PacketsSentBeforeAReplyAreDispatchedBeforeTheRequestReturns) {
  Entries entries;
  client_.session.addErrLogListener(&entries);
  client_.session.addServerMessageListener(&client_.recorder);
  client_.session.createNode("Text", "txt", "Root");
  client_.session.setAttribute("Root/txt", "Size", std::make_unique<AFCAttributeInt32>(1));
  client_.session.roaCall(VXROARequest("Root/txt.Size", VX_ROA_WATCH_ATTR));
  client_.session.deleteNode("Root/missing");
  const AFCAttributeInt32 size(2);
  client_.session.remoteSetAttr("Root/txt.Size", &size);  // no pumping from here on
  EXPECT_EQ(entries.lines.size(), 1u);
  EXPECT_EQ(client_.seen, std::vector<std::string>{"l: message Root/txt.Size=2"});
}

TEST_F(PacketTypes, RemoteAttributesAreSetAndReadSynchronouslyAndWithoutReply) {
  client_.session.createNode("Text", "txt", "Root");
  const AFCAttributeInt32 size(24);
  client_.session.remoteSetAttr("Root/txt.Size", &size);
  const auto back = client_.session.remoteGetAttr("Root/txt.Size");
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->getInt(), 24);

  const AFCAttributeString text("breaking");
  client_.session.remoteSetAttrAsync("Root/txt.Text", &text);
  client_.session.remoteSetAttrAsync("Root/none.Text", &text);  // fails on the server, silently
  EXPECT_EQ(client_.session.remoteGetAttr("Root/txt.Text")->toString(), "breaking");
  EXPECT_EQ(failureOf([&] { client_.session.remoteGetAttr("Root/none.Text"); }),
            "Remote exception: object Root/none not found!");
  const auto first = client_.session.remoteInvoke("::Preview.generateID", {});
  const auto second = client_.session.remoteInvoke("::Preview.generateID", {});
  EXPECT_EQ(second->getInt(), first->getInt() + 1);
}

TEST_F(PacketTypes, ARemoteWatchTellsTheChangesOfAnotherClientAsMessages) {
  PumpedSession other(server_.address());
  ASSERT_TRUE(other.session.connect());
  client_.session.addServerMessageListener(&client_.recorder);
  client_.session.createNode("Text", "txt", "Root");
  client_.session.setAttribute("Root/txt", "Text", std::make_unique<AFCAttributeString>("a"));
  client_.session.roaCall(VXROARequest("Root/txt.Text", VX_ROA_WATCH_ATTR));
  other.session.setAttribute("Root/txt", "Text", std::make_unique<AFCAttributeString>("b"));
  const AFCAttributeString remote("c");
  other.session.remoteSetAttr("Root/txt.Text", &remote);
  ASSERT_TRUE(client_.pumpUntil([&] { return client_.seen.size() == 2; }));
  EXPECT_EQ(client_.seen,
            (std::vector<std::string>{"l: message Root/txt.Text=b", "l: message Root/txt.Text=c"}));
}

TEST_F(PacketTypes, AMultipleGetAndTheFeatureListComeBackAsValueReplies) {
  client_.session.createNode("Text", "txt", "Root");
  client_.session.setAttribute("Root/txt", "Text", std::make_unique<AFCAttributeString>("x"));
  client_.session.setAttribute("Root/txt", "Size", std::make_unique<AFCAttributeInt32>(9));
  VXROAValues names;
  names.push_back(std::make_unique<AFCAttributeString>("Size"));
  names.push_back(std::make_unique<AFCAttributeString>("Text"));
  const auto values =
      client_.session.roaCall(VXROARequest("Root/txt", VX_ROA_GET_MULTI_ATTR, std::move(names)));
  ASSERT_EQ(values->getValues().size(), 2u);
  EXPECT_EQ(values->getValues()[0]->getInt(), 9);
  EXPECT_EQ(values->getValues()[1]->toString(), "x");

  const auto features = client_.session.roaCall(VXROARequest("::Server", VX_ROA_FEATURES));
  std::vector<int32_t> kinds;
  for (const auto& value : features->getValues()) kinds.push_back(value->getInt());
  EXPECT_NE(std::find(kinds.begin(), kinds.end(), VX_ROA_WATCH_ATTR), kinds.end());
  EXPECT_NE(std::find(kinds.begin(), kinds.end(), VX_ROA_SET_ATTR_ASYNC), kinds.end());
}

// A local class with the name of the simulator's node type, so that a listing can be matched.
const AFCClass& creditsClass() {
  static const AFCClass& record =
      (new AFCClassEx("Credits", &AFCObject::staticClass()))->registerClass();
  return record;
}

TEST_F(PacketTypes, APropertyListingIsMatchedToTheLocalClassOfTheNodesType) {
  creditsClass();
  client_.session.createNode("Credits", "roll", "Root");
  client_.session.setAttribute("Root/roll", "Speed", std::make_unique<AFCAttributeInt32>(3));
  const std::optional<VXROAClassInfo> listing = client_.session.remoteEnumProps("Root/roll");
  ASSERT_TRUE(listing.has_value());
  EXPECT_EQ(listing->localClass, &creditsClass());
  ASSERT_EQ(listing->properties.size(), 1u);
  EXPECT_EQ(listing->properties[0]->toString(), "Speed");
  // Scripts reach the same listing by name.
  AFCAttributeString path("Root/roll");
  AFCAttribute* const arguments[] = {&path};
  const auto named =
      client_.session.getClass()->findMethod("fetchGet")->invoke(&client_.session, arguments);
  EXPECT_EQ(named->toString(), "Credits");
}

}  // namespace

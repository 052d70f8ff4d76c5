#include "tools/vxctl/watcher.h"

#include <gtest/gtest.h>

#include <sstream>

#include "client/client_tcp.h"
#include "client/object_attribute.h"
#include "client/register.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/fd_handler.h"
#include "tests/client/loopback_peer.h"

namespace {

using namespace std::chrono;

class Watcher : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { registerClientClasses(); }

  static VXCtlClock::time_point fixedTime() {
    return VXCtlClock::time_point(sys_days{year{2026} / November / 23} + hours{20});
  }

  std::ostringstream out;
};

// The session reaches listeners by method name with one attribute; the watcher is called the
// same way here.
TEST_F(Watcher, EveryEventKindBecomesOneTimeStampedLine) {
  VXCtlWatcher watcher(out, false, fixedTime);
  AFCAttributeString message("hello there");
  vxCallListener(watcher.messageListener(), "onMessage", message);
  AFCAttributeString pick("node1");
  vxCallListener(watcher.pickListener(), "onPickResult", pick);
  AFCAttributeInt32 id(5);
  vxCallListener(watcher.callbackListener(), "onCommandCallback", id);
  AFCErrLogEvent entry(AFC_ERRLOG_WARNING, "net", AFCTimestamp(), "a.cpp", 3, "slow");
  VXObjectAttribute entryValue(&entry);
  vxCallListener(watcher.errLogListener(), "onNewErrLog", entryValue);
  EXPECT_FALSE(watcher.disconnected());
  AFCAttributeInt32 client(0);
  vxCallListener(watcher.disconnectListener(), "onServerDisconnect", client);
  EXPECT_TRUE(watcher.disconnected());

  std::istringstream lines(out.str());
  std::vector<std::string> all;
  for (std::string line; std::getline(lines, line);) all.push_back(line);
  ASSERT_EQ(all.size(), 5u);
  EXPECT_EQ(all[0], R"(2026-11-23T20:00:00.000Z message text="hello there")");
  EXPECT_EQ(all[1], "2026-11-23T20:00:00.000Z pick result=node1");
  EXPECT_EQ(all[2], "2026-11-23T20:00:00.000Z callback id=5");
  EXPECT_EQ(
      all[3].rfind("2026-11-23T20:00:00.000Z errlog level=WARNING area=net source=a.cpp:3", 0), 0u);
  EXPECT_EQ(all[4], "2026-11-23T20:00:00.000Z disconnect client=0");
}

TEST_F(Watcher, JsonOutputIsOneObjectPerLine) {
  VXCtlWatcher watcher(out, true, fixedTime);
  VXZonesState zones;
  zones.set("main", true);
  zones.set("aux", false);
  watcher.zoneListener().onZoneStateChange(zones);
  EXPECT_EQ(out.str(),
            "{\"time\":\"2026-11-23T20:00:00.000Z\",\"event\":\"zone\",\"zone\":\"aux\","
            "\"state\":\"off\"}\n"
            "{\"time\":\"2026-11-23T20:00:00.000Z\",\"event\":\"zone\",\"zone\":\"main\","
            "\"state\":\"on\"}\n");
}

// A real session on a loopback server: the subscriptions go out in the handshake, and what the
// server sends comes out as lines until it hangs up.
TEST_F(Watcher, WatchesASessionUntilTheServerHangsUp) {
  LoopbackPeer peer;
  AFCFDHandlerEvent handler;
  VXClientTcp session;
  session.setServerAddress(peer.address());
  session.setAsyncRegistry(&handler);
  VXCtlWatcher watcher(out, false, fixedTime);
  watcher.subscribe(session, {"main"});
  std::vector<uint32_t> subscriptions;
  peer.serve([&](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    for (const WrittenPacket& packet : c.readUntil(7)) subscriptions.push_back(packet.type);
    c.send(packetBytes(16, stringBytes("cue 1")));
    c.close();
  });
  ASSERT_TRUE(session.connect());
  const auto deadline = steady_clock::now() + seconds(2);
  while (!watcher.disconnected() && steady_clock::now() < deadline) handler.mainLoop(10);
  watcher.unsubscribe(session, {"main"});
  session.close();
  peer.join();
  EXPECT_EQ(subscriptions, (std::vector<uint32_t>{11, 7}));  // error log, then the zone
  EXPECT_EQ(out.str(),
            "2026-11-23T20:00:00.000Z message text=\"cue 1\"\n"
            "2026-11-23T20:00:00.000Z disconnect client=0\n");
}

}  // namespace

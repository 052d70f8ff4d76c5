#include "tools/vxctl/watcher.h"

#include <gtest/gtest.h>

#include <sstream>

#include "client/object_attribute.h"
#include "client/register.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"

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

}  // namespace

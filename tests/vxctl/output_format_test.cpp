#include "tools/vxctl/output_format.h"

#include <gtest/gtest.h>

#include "client/register.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"

namespace {

using namespace std::chrono;

class OutputFormat : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { registerClientClasses(); }

  // 2026-11-23 19:54:18.123 UTC.
  static VXCtlClock::time_point when() {
    return VXCtlClock::time_point(sys_days{year{2026} / November / 23} + hours{19} + minutes{54} +
                                  seconds{18} + milliseconds{123});
  }
};

TEST_F(OutputFormat, TimesAreUtcWithMilliseconds) {
  EXPECT_EQ(vxctlTimeText(when()), "2026-11-23T19:54:18.123Z");
  EXPECT_EQ(vxctlTimeText(VXCtlClock::time_point(sys_days{year{1999} / January / 2})),
            "1999-01-02T00:00:00.000Z");
}

TEST_F(OutputFormat, ValuesBecomeTheirJsonCounterparts) {
  EXPECT_EQ(vxctlValueJson(nullptr), VXCtlJson(nullptr));
  EXPECT_EQ(vxctlValueJson(std::make_unique<AFCAttributeInt32>().get()), VXCtlJson(nullptr));
  EXPECT_EQ(vxctlValueJson(std::make_unique<AFCAttributeInt32>(-3).get()), VXCtlJson(-3));
  EXPECT_EQ(vxctlValueJson(std::make_unique<AFCAttributeInt64>(int64_t{1} << 40).get()),
            VXCtlJson(int64_t{1} << 40));
  EXPECT_EQ(vxctlValueJson(std::make_unique<AFCAttributeFloat>(1.5f).get()), VXCtlJson(1.5));
  EXPECT_EQ(vxctlValueJson(std::make_unique<AFCAttributeBool>(true).get()), VXCtlJson(true));
  EXPECT_EQ(vxctlValueJson(std::make_unique<AFCAttributeString>("hi").get()), VXCtlJson("hi"));
  EXPECT_EQ(vxctlValueJson(
                std::make_unique<AFCAttributeColor>(AFCAttributeColor::Value{1, 0, 0.5f, 1}).get())
                .dump(),
            "[1.0,0.0,0.5,1.0]");
}

TEST_F(OutputFormat, UndefinedVectorChannelsAreNull) {
  AFCAttributeVec3f vector;
  vector.setChannelValue(0, 2.0);
  vector.setChannelValue(2, 4.0);
  EXPECT_EQ(vxctlValueJson(&vector).dump(), "[2.0,null,4.0]");
}

TEST_F(OutputFormat, HumanFieldsQuoteOnlyTextThatNeedsIt) {
  const VXCtlJson fields = {{"zone", "main"}, {"text", "two words"}, {"empty", ""},
                            {"id", 7},        {"on", true},          {"eq", "a=b"}};
  EXPECT_EQ(vxctlHumanFields(fields),
            R"(zone=main text="two words" empty="" id=7 on=true eq="a=b")");
}

TEST_F(OutputFormat, AnEventIsOneLineOfTextOrOneJsonObject) {
  VXCtlEvent event = vxctlSimpleEvent(when(), "message", "text", "line one\nline two");
  EXPECT_EQ(vxctlEventLine(event), R"(2026-11-23T19:54:18.123Z message text="line one\nline two")");
  EXPECT_EQ(vxctlEventJson(event),
            R"({"time":"2026-11-23T19:54:18.123Z","event":"message","text":"line one\nline two"})");
}

TEST_F(OutputFormat, TextThatIsNotUtf8DoesNotStopTheOutput) {
  const VXCtlEvent event = vxctlSimpleEvent(when(), "pick", "result", "caf\xe9");
  EXPECT_EQ(
      vxctlEventJson(event),
      "{\"time\":\"2026-11-23T19:54:18.123Z\",\"event\":\"pick\",\"result\":\"caf\xEF\xBF\xBD\"}");
  EXPECT_NE(vxctlEventLine(event).find("result="), std::string::npos);
}

TEST_F(OutputFormat, AZoneRecordGivesOneEventPerZoneInNameOrder) {
  VXZonesState zones;
  zones.set("pip", false);
  zones.set("main", true);
  const auto events = vxctlZoneEvents(when(), zones);
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(vxctlEventLine(events[0]), "2026-11-23T19:54:18.123Z zone zone=main state=on");
  EXPECT_EQ(vxctlEventJson(events[1]),
            R"({"time":"2026-11-23T19:54:18.123Z","event":"zone","zone":"pip","state":"off"})");
}

TEST_F(OutputFormat, AnErrorLogEntryCarriesLevelAreaSourceAndMessage) {
  const AFCErrLogEvent entry(AFC_ERRLOG_ERROR, "render", AFCTimestamp(), "scene.cpp", 42,
                             "Scene not found");
  const VXCtlEvent event = vxctlErrLogEvent(when(), entry);
  EXPECT_EQ(event.kind, "errlog");
  EXPECT_EQ(event.fields["level"], "ERROR");
  EXPECT_EQ(event.fields["area"], "render");
  EXPECT_EQ(event.fields["source"], "scene.cpp:42");
  EXPECT_EQ(event.fields["message"], "Scene not found");
  EXPECT_NE(vxctlEventLine(event).find("level=ERROR area=render source=scene.cpp:42"),
            std::string::npos);
}

}  // namespace

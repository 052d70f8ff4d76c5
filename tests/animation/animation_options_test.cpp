#include "animation/animation_options.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "animation/register.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/foundation/errlog_capture.h"
#include "wire_bytes.h"

namespace {

using wire::Bytes;

VXActivateAnimationOptions sampleOptions(int32_t watchID = 7) {
  VXActivateAnimationOptions options;
  options.offset = 1000000;
  options.skip = -2;
  options.playMode = VX_PLAY_MODE_BACKWARD;
  options.enableFinish = false;
  options.name = "ab";
  options.watchID = watchID;
  options.speed = 0.5f;
  return options;
}

// The fields every version carries, between the name and the optional tail.
Bytes times() {
  using namespace wire;
  return cat({i64(1000000), i64(-2), i64(kVXTimeInfinite), i32(2)});
}

TEST(OptionsPersistence, DefaultsAsLiteralBytes) {
  const Bytes expected = {
      0xDA, 0x0B, 0,    0,    0,    0,                             // name
      0xDA, 0x07, 0,    0,    0,    0,    0,    0,    0,    0,     // offset
      0xDA, 0x07, 0,    0,    0,    0,    0,    0,    0,    0,     // skip
      0xDA, 0x07, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,  // end: infinite
      0xDA, 0x05, 0,    0,    0,    1,                             // FORWARD
      0xDA, 0x09, 0x3F, 0x80, 0,    0,                             // speed 1.0
      0xDA, 0x02, 1};                                              // enableFinish
  EXPECT_EQ(wire::written(VXActivateAnimationOptions(), 2294017), expected);
}

// The name from 2000001, a non-zero watch id from 2293006, the speed from 2294011.
TEST(OptionsPersistence, WritesEachFieldFromTheVersionThatKnowsIt) {
  using namespace wire;
  const Bytes name = str("ab"), watch = i32(7), speed = f32(0.5f), finish = boolean(false);
  EXPECT_EQ(written(sampleOptions(), 2000000), cat({times(), finish}));
  EXPECT_EQ(written(sampleOptions(), 2000001), cat({name, times(), finish}));
  EXPECT_EQ(written(sampleOptions(), 2293005), cat({name, times(), finish}));
  EXPECT_EQ(written(sampleOptions(), 2293006), cat({name, times(), watch, finish}));
  EXPECT_EQ(written(sampleOptions(0), 2293006), cat({name, times(), finish}));
  EXPECT_EQ(written(sampleOptions(), 2294010), cat({name, times(), watch, finish}));
  EXPECT_EQ(written(sampleOptions(), 2294011), cat({name, times(), watch, speed, finish}));
  EXPECT_EQ(written(sampleOptions(0), 2294011), cat({name, times(), speed, finish}));
  EXPECT_EQ(written(sampleOptions(), 2294017), written(sampleOptions(), 2294011));
}

TEST(OptionsPersistence, ReadBackGivesDefaultsForWhatTheVersionLeftOut) {
  const VXActivateAnimationOptions original = sampleOptions();
  const struct {
    uint32_t version;
    const char* name;
    int32_t watchID;
    float speed;
  } cases[] = {{2000000, "", 0, 1.0f},
               {2000001, "ab", 0, 1.0f},
               {2293006, "ab", 7, 1.0f},
               {2294010, "ab", 7, 1.0f},
               {2294011, "ab", 7, 0.5f}};
  for (const auto& c : cases) {
    VXActivateAnimationOptions expected = original;
    expected.name = c.name;
    expected.watchID = c.watchID;
    expected.speed = c.speed;
    VXActivateAnimationOptions copy;
    // The reader goes by type codes, so the version of the reading stream does not matter.
    ASSERT_EQ(wire::readInto(copy, wire::written(original, c.version), 2000000), "") << c.version;
    EXPECT_EQ(copy, expected) << c.version;
  }
}

TEST(OptionsPersistence, ReadTakesTheNameOnlyFromAnEightBitString) {
  using namespace wire;
  Bytes wide = str("ab");
  wide[1] = 0x0E;
  VXActivateAnimationOptions options;
  EXPECT_EQ(readInto(options, cat({wide, times(), boolean(true)})),
            "Bad header type (got=0xe, exp=0x7)");
  EXPECT_EQ(options, VXActivateAnimationOptions());
}

TEST(OptionsPersistence, ShortOrOddBytesFailWithTheStreamsErrorsAndChangeNothing) {
  using namespace wire;
  const Bytes full = written(sampleOptions(), 2294011);
  VXActivateAnimationOptions options;
  for (std::size_t cut = 0; cut < full.size(); ++cut) {
    EXPECT_EQ(readInto(options, Bytes(full.begin(), full.begin() + cut)), "Incorrect data length")
        << cut;
    ASSERT_EQ(options, VXActivateAnimationOptions()) << cut;
  }
  EXPECT_EQ(readInto(options, Bytes{0xDB, 0x07}), "Header expected");
  EXPECT_EQ(readInto(options, cat({times(), f32(1.0f), i32(3)})),
            "Bad header type (got=0x5, exp=0x2)");
}

TEST(OptionsText, PrintsTimesAsSecondsAnInfiniteEndAsInfAndTheModeByName) {
  EXPECT_EQ(VXActivateAnimationOptions().toString(),
            "offset=0.000000,skip=0.000000,end=INF,playMode=FORWARD,enableFinish=true,name=,"
            "speed=1.000000");
  VXActivateAnimationOptions options = sampleOptions();
  options.end = 2500000;
  EXPECT_EQ(options.toString(),
            "offset=1.000000,skip=-0.000002,end=2.500000,playMode=BACKWARD,enableFinish=false,"
            "name=ab,speed=0.500000");
  options.playMode = 6;
  EXPECT_NE(options.toString().find(",playMode=<unknown>,"), std::string::npos);
}

TEST(PlayModeText, MapsTheSixModesAndNothingElse) {
  const char* names[] = {"FIRST", "FORWARD", "BACKWARD", "LAST", "DEMAND", "STOP"};
  for (int32_t id = 0; id < 6; ++id) {
    EXPECT_STREQ(vxPlayModeToString(id), names[id]);
    EXPECT_EQ(vxPlayModeFromString(names[id]), id);
  }
  EXPECT_STREQ(vxPlayModeToString(6), "<unknown>");
  EXPECT_STREQ(vxPlayModeToString(-1), "<unknown>");
  EXPECT_EQ(vxPlayModeFromString("stop"), std::nullopt);
  EXPECT_EQ(vxPlayModeFromString("MSTOP"), std::nullopt);
}

// Reflective calls on an options object made through the class registry.
class OptionsReflection : public ::testing::Test {
 protected:
  void SetUp() override {
    registerAnimationClasses();
    const AFCClass* record = AFCClass::forName("VXActivateAnimationOptionsObject");
    ASSERT_NE(record, nullptr);
    object_.reset(dynamic_cast<VXActivateAnimationOptionsObject*>(record->newInstance()));
    ASSERT_NE(object_, nullptr);
  }
  AFCResult call(const char* method, std::vector<AFCAttribute*> args = {}) {
    return object_->getClass()->invoke(object_.get(), method, args);
  }
  template <class Kind, class Value>
  void set(const char* method, Value value) {
    Kind argument(value);
    call(method, {&argument});
  }
  const VXActivateAnimationOptions& options() const { return object_->getOptions(); }
  std::unique_ptr<VXActivateAnimationOptionsObject> object_;
};

TEST_F(OptionsReflection, ReadsAndSetsThePlayMode) {
  set<AFCAttributeInt32>("setPlayMode", 3);
  EXPECT_EQ(call("getPlayMode")->toString(), "3");
  EXPECT_EQ(call("getPlayModeToString")->toString(), "LAST");
  set<AFCAttributeString>("setPlayModeFromString", "DEMAND");
  EXPECT_EQ(options().playMode, VX_PLAY_MODE_DEMAND);
}

TEST_F(OptionsReflection, LogsAnUnknownPlayModeTextAndKeepsTheMode) {
  CapturedErrLog log;
  set<AFCAttributeString>("setPlayModeFromString", "backward");
  EXPECT_EQ(options().playMode, VX_PLAY_MODE_FORWARD);
  EXPECT_EQ(log.messages(), std::vector<std::string>{"Unknown playMode type backward"});
}

TEST_F(OptionsReflection, PresentsTheTimesAsFloatSeconds) {
  set<AFCAttributeFloat>("setOffsetFromFloat", 1.5f);
  set<AFCAttributeFloat>("setSkipFromFloat", -0.25f);
  set<AFCAttributeFloat>("setEndFromFloat", 10.0f);
  EXPECT_EQ(options().offset, 1500000);
  EXPECT_EQ(options().skip, -250000);
  EXPECT_EQ(options().end, 10000000);
  EXPECT_EQ(call("getOffsetToFloat")->toString(), "1.500000");
  EXPECT_EQ(call("getSkipToFloat")->toString(), "-0.250000");
  EXPECT_EQ(call("getEndToFloat")->toString(), "10.000000");
}

TEST_F(OptionsReflection, SetsTheRemainingFields) {
  set<AFCAttributeBool>("setEnableFinish", false);
  set<AFCAttributeString>("setName", "intro");
  set<AFCAttributeInt32>("setWatchID", 42);
  set<AFCAttributeFloat>("setSpeed", 2.0f);
  EXPECT_EQ(call("getEnableFinish")->toString(), "False");
  EXPECT_EQ(call("getName")->toString(), "intro");
  EXPECT_EQ(options().watchID, 42);
  EXPECT_EQ(options().speed, 2.0f);
}

TEST_F(OptionsReflection, ChecksArgumentCountAndKinds) {
  AFCAttributeInt32 number(1);
  AFCAttributeString text("FIRST");
  EXPECT_THROW(call("setSpeed", {&number}), AFCInvalidArgumentTypeException);
  EXPECT_THROW(call("setPlayModeFromString", {&number}), AFCInvalidArgumentTypeException);
  EXPECT_THROW(call("setName", {}), AFCInvalidArgumentCountException);
  EXPECT_THROW(call("getPlayMode", {&text}), AFCInvalidArgumentCountException);
  EXPECT_THROW(call("setWatchID", {nullptr}), AFCNullPointerException);
  EXPECT_EQ(options(), VXActivateAnimationOptions());
}

}  // namespace

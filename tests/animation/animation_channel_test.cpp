#include "animation/animation_channel.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "animation/register.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "tests/support/failure_text.h"
#include "wire_bytes.h"

namespace {

using Keyframe = VXAnimationChannel::Keyframe;
using wire::Bytes;

Keyframe keyframe(int64_t time, float value) {
  Keyframe k;
  k.time = time;
  k.value = value;
  return k;
}

// n1:pos.x, CYCLE before, INHERIT after, one keyframe with tangents and extra floats.
VXAnimationChannel sampleChannel() {
  VXAnimationChannel channel;
  channel.setDestination("n1:pos.x");
  channel.setBefore(VX_BEYOND_CYCLE);
  channel.setAfter(VX_BEYOND_INHERIT);
  Keyframe k = keyframe(1500000, 2.5f);
  k.inTangent = {0.5f, -1.0f};
  k.inTangentExtra = 0.25f;
  k.inInterpolation = VX_INTERPOLATION_STEP;
  k.outTangent = {1.0f, 2.0f};
  k.outTangentExtra = 0.75f;
  k.outInterpolation = VX_INTERPOLATION_LINEAR;
  channel.addKeyframe(k);
  return channel;
}

Bytes sampleHead() {
  using namespace wire;
  return cat({str("n1"), str("pos"), str("x"), i32(1), i32(7), u32(1), i64(1500000), f32(2.5f)});
}

// Split at the first colon and at the first full stop after it; a full stop before the colon
// belongs to the address.
TEST(ChannelDestination, SplitsAddressMessageAndChannel) {
  const struct {
    const char *destination, *address, *msgName, *name;
  } cases[] = {{"n1:pos.x", "n1", "pos", "x"},
               {"pos", "", "pos", ""},
               {"a/b:c:d.e.f", "a/b", "c:d", "e.f"},
               {"n.1:pos", "n.1", "pos", ""}};
  VXAnimationChannel channel;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.destination);
    channel.setDestination(c.destination);
    EXPECT_EQ(channel.getTargetAddress(), c.address);
    EXPECT_EQ(channel.getMsgName(), c.msgName);
    EXPECT_EQ(channel.getName(), c.name);
    EXPECT_EQ(channel.getDestination(), c.destination);
  }
}

TEST(ChannelKeyframes, AreAppendedWithoutSortingOrMerging) {
  VXAnimationChannel channel;
  channel.addKeyframe(2000000, 1.0f, VX_INTERPOLATION_LINEAR, VX_INTERPOLATION_STEP);
  channel.addKeyframe(1000000, 2.0f, VX_INTERPOLATION_SMOOTH, VX_INTERPOLATION_SMOOTH);
  channel.addKeyframe(1000000, 3.0f, VX_INTERPOLATION_FLAT, VX_INTERPOLATION_FIXED);
  const auto& keys = channel.getKeyframes();
  ASSERT_EQ(keys.size(), 3u);
  EXPECT_EQ(keys[0].time, 2000000);
  EXPECT_EQ(keys[0].outInterpolation, VX_INTERPOLATION_STEP);
  EXPECT_EQ(keys[1].value, 2.0f);
  EXPECT_EQ(keys[2].value, 3.0f);
  EXPECT_EQ(keys[2].inTangent, (std::array<float, 2>{0.0f, 0.0f}));
}

TEST(ChannelKeyframes, SetReplacesTheFirstKeyframeAtThatTimeAndKeepsItsExtraFloats) {
  VXAnimationChannel channel = sampleChannel();
  channel.addKeyframe(keyframe(1500000, 9.0f));
  Keyframe update = keyframe(1500000, 4.0f);
  update.inTangent = {3.0f, 4.0f};
  update.outInterpolation = VX_INTERPOLATION_FIXED;
  channel.setKeyframeWithTangents(update);
  const Keyframe& first = channel.getKeyframes()[0];
  EXPECT_EQ(first.value, 4.0f);
  EXPECT_EQ(first.inTangent, (std::array<float, 2>{3.0f, 4.0f}));
  EXPECT_EQ(first.outInterpolation, VX_INTERPOLATION_FIXED);
  EXPECT_EQ(first.inTangentExtra, 0.25f);
  EXPECT_EQ(channel.getKeyframes()[1].value, 9.0f);
}

TEST(ChannelKeyframes, SetAndRemoveNeedKeyframes) {
  VXAnimationChannel channel;
  EXPECT_THROW(channel.setKeyframeWithTangents(keyframe(0, 1.0f)), VXEmptyChannelException);
  EXPECT_EQ(failureOf<VXEmptyChannelException>([&] { channel.removeKeyframes(0, 10); }),
            "Empty animation channel");
  channel.addKeyframe(keyframe(5, 1.0f));
  EXPECT_THROW(channel.setKeyframeWithTangents(keyframe(6, 1.0f)), AFCIllegalArgumentException);
}

TEST(ChannelKeyframes, RemoveTakesEveryKeyframeInTheClosedRange) {
  VXAnimationChannel channel;
  for (int64_t time : {5, 1, 3, 7, 3}) channel.addKeyframe(keyframe(time, 0.0f));
  EXPECT_EQ(channel.removeKeyframes(3, 5), 3);
  ASSERT_EQ(channel.getKeyframes().size(), 2u);
  EXPECT_EQ(channel.getKeyframes()[0].time, 1);
  EXPECT_EQ(channel.getKeyframes()[1].time, 7);
  EXPECT_EQ(channel.removeKeyframes(8, 9), 0);
}

TEST(ChannelPersistence, CarriesTheExtraTangentFloatsFrom2294017Only) {
  using namespace wire;
  EXPECT_EQ(written(sampleChannel(), 2294016),
            cat({sampleHead(), f32(0.5f), f32(-1.0f), i32(3), f32(1.0f), f32(2.0f), i32(0)}));
  const Bytes extra = cat({sampleHead(), f32(0.5f), f32(-1.0f), f32(0.25f), i32(3), f32(1.0f),
                           f32(2.0f), f32(0.75f), i32(0)});
  EXPECT_EQ(written(sampleChannel(), 2294017), extra);
  EXPECT_EQ(written(sampleChannel(), AFCPersistentStream::kCurrentVersion), extra);
}

TEST(ChannelPersistence, RoundTripsAtEitherSideOfTheThreshold) {
  const VXAnimationChannel original = sampleChannel();
  for (uint32_t version : {2294016u, 2294017u}) {
    VXAnimationChannel copy;
    ASSERT_EQ(wire::readInto(copy, wire::written(original, version), version), "") << version;
    EXPECT_EQ(copy.getDestination(), "n1:pos.x");
    EXPECT_EQ(copy.getBefore(), VX_BEYOND_CYCLE);
    EXPECT_EQ(copy.getAfter(), VX_BEYOND_INHERIT);
    Keyframe expected = original.getKeyframes()[0];
    if (version < VXAnimationChannel::kTangentExtraVersion) {
      expected.inTangentExtra = expected.outTangentExtra = 0.0f;
    }
    ASSERT_EQ(copy.getKeyframes().size(), 1u);
    EXPECT_EQ(copy.getKeyframes()[0], expected) << version;
  }
}

TEST(ChannelPersistence, AReaderOfAnOlderVersionRejectsTheExtraFloats) {
  VXAnimationChannel copy;
  EXPECT_EQ(wire::readInto(copy, wire::written(sampleChannel(), 2294017), 2294016),
            "Bad header type (got=0x9, exp=0x5)");
}

TEST(ChannelPersistence, AFailedReadLeavesTheChannelAsItWas) {
  const Bytes full = wire::written(sampleChannel(), 2294017);
  VXAnimationChannel channel;
  channel.setDestination("keep:me.too");
  for (std::size_t cut : {std::size_t{0}, std::size_t{1}, std::size_t{20}, full.size() - 1}) {
    EXPECT_EQ(wire::readInto(channel, Bytes(full.begin(), full.begin() + cut)),
              "Incorrect data length")
        << cut;
    EXPECT_EQ(channel.getDestination(), "keep:me.too");
    EXPECT_TRUE(channel.getKeyframes().empty());
  }
}

TEST(ChannelPersistence, AHugeKeyframeCountFailsAtTheEndOfTheBytes) {
  using namespace wire;
  VXAnimationChannel channel;
  const Bytes bytes =
      cat({str(""), str("m"), str(""), i32(0), i32(0), u32(0xFFFFFFFFu), i64(1), f32(1.0f)});
  EXPECT_EQ(readInto(channel, bytes), "Incorrect data length");
  EXPECT_EQ(readInto(channel, Bytes{0x00, 0x0B}), "Header expected");
}

TEST(ChannelText, DumpsOneLinePerFieldAndKeyframeThenAnEmptyLine) {
  EXPECT_EQ(sampleChannel().toString(),
            "  targetAddress 'n1'\n"
            "  msgName pos\n"
            "  channelName x\n"
            "  before CYCLE\n"
            "  after INHERIT\n"
            "    time 1.500000  value 2.500000  in.tangent [0.5, -1]  in.interpolation STEP"
            "  out.tangent [1, 2]  out.interpolation LINEAR\n"
            "\n");
}

// Reflective calls on a channel made through the class registry.
class ChannelReflection : public ::testing::Test {
 protected:
  void SetUp() override {
    registerAnimationClasses();
    const AFCClass* record = AFCClass::forName("VXChannel");
    ASSERT_NE(record, nullptr);
    channel_.reset(dynamic_cast<VXAnimationChannel*>(record->newInstance()));
    ASSERT_NE(channel_, nullptr);
  }
  AFCResult call(const char* method, std::vector<AFCAttribute*> args = {}) {
    return channel_->getClass()->invoke(channel_.get(), method, args);
  }
  std::string callError(const char* method, std::vector<AFCAttribute*> args) {
    return failureOf([&] { call(method, std::move(args)); });
  }
  std::unique_ptr<VXAnimationChannel> channel_;
};

TEST_F(ChannelReflection, SetsAndReadsTheDestination) {
  AFCAttributeString destination("n1:pos.x");
  call("setDestination", {&destination});
  EXPECT_EQ(call("getDestination")->toString(), "n1:pos.x");
  EXPECT_EQ(call("getTargetAddress")->toString(), "n1");
  EXPECT_EQ(call("getName")->toString(), "x");
}

TEST_F(ChannelReflection, SetsBeyondByTextIncludingInherit) {
  AFCAttributeString before("PRE_OSCILLATE"), after("INHERIT");
  call("setBefore", {&before});
  call("setAfter", {&after});
  EXPECT_EQ(channel_->getBefore(), 5);
  EXPECT_EQ(channel_->getAfter(), 7);
  EXPECT_EQ(call("getBefore")->toString(), "OSCILLATE");
  EXPECT_EQ(call("getAfter")->toString(), "INHERIT");
}

TEST_F(ChannelReflection, AddsSetsAndRemovesKeyframes) {
  AFCAttributeInt64 time(1000000);
  AFCAttributeFloat value(2.0f), newValue(5.0f);
  AFCAttributeString in("TAN_STEP"), out("bogus");
  AFCAttributeVec4f tangents({1.0f, 2.0f, 3.0f, 4.0f});
  call("addKeyframe", {&time, &value, &in, &out});
  call("addKeyframeWithTangents", {&time, &value, &out, &in, &tangents});
  call("setKeyframeWithTangents", {&time, &newValue, &in, &in, &tangents});
  const auto& keys = channel_->getKeyframes();
  ASSERT_EQ(keys.size(), 2u);
  EXPECT_EQ(keys[0].value, 5.0f);
  EXPECT_EQ(keys[0].inInterpolation, VX_INTERPOLATION_STEP);
  EXPECT_EQ(keys[0].outTangent, (std::array<float, 2>{3.0f, 4.0f}));
  EXPECT_EQ(keys[1].inInterpolation, VX_INTERPOLATION_SMOOTH);
  EXPECT_EQ(keys[1].inTangent, (std::array<float, 2>{1.0f, 2.0f}));

  AFCAttributeInt64 from(0), to(kVXTimeInfinite);
  EXPECT_EQ(call("removeKeyframes", {&from, &to})->toString(), "2");
  EXPECT_EQ(callError("removeKeyframes", {&from, &to}), "Empty animation channel");
}

TEST_F(ChannelReflection, TangentMethodsNameAWrongKindByItsPositionFromOne) {
  AFCAttributeInt64 time(0);
  AFCAttributeFloat value(1.0f);
  AFCAttributeString text("LINEAR");
  AFCAttributeVec4f tangents({0.0f, 0.0f, 0.0f, 0.0f});
  AFCAttributeInt32 wrong(1);
  const std::vector<AFCAttribute*> good = {&time, &value, &text, &text, &tangents};
  for (const char* method : {"addKeyframeWithTangents", "setKeyframeWithTangents"}) {
    for (std::size_t i = 0; i < good.size(); ++i) {
      std::vector<AFCAttribute*> args = good;
      args[i] = &wrong;
      EXPECT_EQ(callError(method, args),
                "Illegal Argument Exception, args[" + std::to_string(i + 1) + "]")
          << method;
    }
    EXPECT_EQ(callError(method, {&time, &value, &text, &text}), "Invalid argument count");
    EXPECT_EQ(callError(method, {nullptr, &value, &text, &text, &tangents}),
              "Null pointer to args[0]");
  }
  EXPECT_TRUE(channel_->getKeyframes().empty());
}

TEST_F(ChannelReflection, OtherMethodsCheckTheDeclaredKinds) {
  AFCAttributeInt32 wrong(1);
  AFCAttributeFloat value(1.0f);
  AFCAttributeString text("LINEAR");
  EXPECT_THROW(call("addKeyframe", {&wrong, &value, &text, &text}),
               AFCInvalidArgumentTypeException);
  EXPECT_THROW(call("setDestination", {&wrong}), AFCInvalidArgumentTypeException);
  EXPECT_EQ(callError("getName", {&text}), "Invalid argument count");
}

}  // namespace

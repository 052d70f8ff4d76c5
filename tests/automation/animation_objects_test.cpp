#include "automation/animation_objects.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"

namespace {

TEST(AnimationChannelObject, WithoutANativeChannelAnswersEveryMemberInvalidArgument) {
  CAnimationChannel channel;
  std::string text = "unchanged";
  const std::function<CCallResult()> members[] = {
      [&] { return channel.getDestination(text); },
      [&] { return channel.setDestination("n:pos.x"); },
      [&] { return channel.getAfter(text); },
      [&] { return channel.setAfter("CYCLE"); },
      [&] { return channel.getBefore(text); },
      [&] { return channel.setBefore("CYCLE"); },
      [&] { return channel.addKeyframe(0, 1, "LINEAR", "LINEAR"); },
      [&] { return channel.addKeyframeWithTangents(0, 1, "LINEAR", "LINEAR", 1, 2, 3, 4); },
  };
  for (const auto& member : members) EXPECT_EQ(member(), CCallResult::InvalidArgument);
  EXPECT_EQ(text, "unchanged");
}

TEST(AnimationChannelObject, DrivesItsNativeChannelByNames) {
  CAnimation animation;
  CAnimationChannel channel = animation.createChannel();
  EXPECT_EQ(channel.setDestination("n1:pos.x"), CCallResult::Ok);
  EXPECT_EQ(channel.setAfter("OSCILLATE"), CCallResult::Ok);
  EXPECT_EQ(channel.setBefore("CYCLE_OFFSET"), CCallResult::Ok);
  EXPECT_EQ(channel.addKeyframe(1.5f, 2.0f, "LINEAR", "STEP"), CCallResult::Ok);
  EXPECT_EQ(channel.addKeyframeWithTangents(-0.25f, 3.0f, "FIXED", "SMOOTH", 1, 2, 3, 4),
            CCallResult::Ok);
  std::string destination, after, before;
  channel.getDestination(destination);
  channel.getAfter(after);
  channel.getBefore(before);
  EXPECT_EQ(destination + " " + after + " " + before, "n1:pos.x OSCILLATE CYCLE_OFFSET");

  using Keyframe = VXAnimationChannel::Keyframe;
  const Keyframe first{.time = 1500000,
                       .value = 2.0f,
                       .inInterpolation = VX_INTERPOLATION_LINEAR,
                       .outInterpolation = VX_INTERPOLATION_STEP};
  const Keyframe second{.time = -250000,
                        .value = 3.0f,
                        .inTangent = {1, 2},
                        .inInterpolation = VX_INTERPOLATION_FIXED,
                        .outTangent = {3, 4}};
  EXPECT_EQ(channel.getNative()->getKeyframes(), (std::vector<Keyframe>{first, second}));
}

TEST(AnimationChannelObject, RefusesNamesOutsideTheEnumerationsAndKeepsTheChannel) {
  CAnimation animation;
  CAnimationChannel channel = animation.createChannel();
  const std::pair<std::function<void()>, std::string> rows[] = {
      {[&] { channel.addKeyframe(0, 1, "TAN_STEP", "LINEAR"); }, "Invalid enum name 'TAN_STEP'"},
      {[&] { channel.addKeyframe(0, 1, "LINEAR", "linear"); }, "Invalid enum name 'linear'"},
      {[&] { channel.setAfter("INHERIT"); }, "Invalid enum name 'INHERIT'"},
      {[&] { channel.setBefore("PRE_CYCLE"); }, "Invalid enum name 'PRE_CYCLE'"},
  };
  for (const auto& [call, expected] : rows) EXPECT_EQ(failureOf(call), expected);
  EXPECT_TRUE(channel.getNative()->getKeyframes().empty());
  EXPECT_EQ(channel.getNative()->getAfter(), VX_BEYOND_CONSTANT);
}

TEST(AnimationObject, HandsOutOneChannelPerCallThatOutlivesTheObject) {
  CAnimationChannel first, second;
  AFCRef<VXAnimation> native;
  {
    CAnimation animation;
    native = animation.getNative();
    first = animation.createChannel();
    second = animation.createChannel();
  }
  ASSERT_EQ(native->getChannelCount(), 2);
  EXPECT_EQ(first.getNative(), &native->getChannel(0));
  EXPECT_EQ(second.getNative(), &native->getChannel(1));
  native->removeChannel(first.getNative()->getKey());
  EXPECT_EQ(first.setDestination("x"), CCallResult::InvalidArgument);
}

TEST(AnimationOptionsObject, StartsWithTheRecordDefaultsAndStoresEachMemberInItsField) {
  CAnimationOptions options;
  EXPECT_EQ(options.getNative(), VXActivateAnimationOptions());
  EXPECT_EQ(options.getPlayMode() + std::to_string(options.getEnableFinish()), "FORWARD1");
  EXPECT_EQ(options.getEnd(), vxTimeToSeconds(kVXTimeInfinite));
  options.setOffset(1.5f);
  options.setSkip(-0.25f);
  options.setEnd(10.0f);
  options.setPlayMode("BACKWARD");
  options.setEnableFinish(5);
  options.setName("in");
  options.setWatchID(9);
  const VXActivateAnimationOptions expected{.offset = 1500000,
                                            .skip = -250000,
                                            .end = 10000000,
                                            .playMode = VX_PLAY_MODE_BACKWARD,
                                            .name = "in",
                                            .watchID = 9};
  EXPECT_EQ(options.getNative(), expected);
  EXPECT_EQ(options.getOffset(), 1.5f);
  EXPECT_EQ(options.getSkip(), -0.25f);
  EXPECT_EQ(options.getPlayMode() + std::to_string(options.getEnableFinish()), "BACKWARD1");
  options.setEnableFinish(0);
  EXPECT_EQ(options.getEnableFinish(), 0);
}

TEST(AnimationOptionsObject, KeepsThePlayModeForAnUnknownNameAndLogsIt) {
  // A fresh text per run keeps the log's repeat filter out of the way.
  static int run = 0;
  const std::string unknown = "backward" + std::to_string(++run);
  CapturedErrLog log;
  CAnimationOptions options;
  options.setPlayMode("STOP");
  options.setPlayMode(unknown);
  EXPECT_EQ(options.getPlayMode(), "STOP");
  EXPECT_EQ(log.messages(), std::vector<std::string>{"Unknown playMode type " + unknown});
}

}  // namespace

#include "commands/animation_commands.h"

#include <gtest/gtest.h>

#include "commands/action.h"
#include "tests/animation/wire_bytes.h"
#include "tests/commands/command_test_support.h"

namespace {

using wire::cat;

wire::Bytes objectWritten(const AFCPersistent& object, uint32_t version) {
  AFCPersistentOutputStreamBuffer out(version);
  out.writeObject(&object);
  const AFCBuffer& buffer = out.getBuffer();
  return wire::Bytes(buffer.data(), buffer.data() + buffer.size());
}

VXActivateAnimationOptions options() {
  VXActivateAnimationOptions options;
  options.offset = 5;
  options.name = "n";
  options.watchID = 9;
  options.speed = 2.0f;
  return options;
}

// One channel "Root/a:Alpha" with one keyframe at time 10, value 0.5, linear both ways.
AFCRef<VXAnimation> animation() {
  AFCRef<VXAnimation> animation(new VXAnimation);
  VXAnimationChannel& channel = animation->createChannel();
  channel.setDestination("Root/a:Alpha");
  channel.addKeyframe(10, 0.5f, VX_INTERPOLATION_LINEAR, VX_INTERPOLATION_LINEAR);
  return animation;
}

wire::Bytes animationBytes(bool extraTangents) {
  using namespace wire;
  const Bytes tangentExtra = extraTangents ? f32(0) : Bytes{};
  return cat({str(""), i32(1),                                               //
              str("Root/a"), str("Alpha"), str(""), i32(0), i32(0), u32(1),  //
              i64(10), f32(0.5f), f32(0), f32(0), tangentExtra, i32(VX_INTERPOLATION_LINEAR),
              f32(0), f32(0), tangentExtra, i32(VX_INTERPOLATION_LINEAR)});
}

// The options as each server version carries them: the name above 2000000, the watch id from
// 2293006, the speed from 2294011.
wire::Bytes optionsBytes(uint32_t version) {
  using namespace wire;
  return cat({version > 2000000 ? str("n") : Bytes{}, i64(5), i64(0), i64(INT64_MAX),
              i32(VX_PLAY_MODE_FORWARD), version >= 2293006 ? i32(9) : Bytes{},
              version >= 2294011 ? f32(2.0f) : Bytes{}, boolean(true)});
}

class AnimationCommands : public ::testing::TestWithParam<uint32_t> {};

TEST_P(AnimationCommands, ActivateByNameWritesTargetOptionsThenName) {
  const uint32_t version = GetParam();
  VXActivateAnimationCommand command("in", "Root/t", options());
  EXPECT_EQ(objectWritten(command, version),
            cat({newObjectHeader("VXActivateAnimationCommand"), kBasePart, wire::str("Root/t"),
                 optionsBytes(version), wire::str("in")}));
}

TEST_P(AnimationCommands, ClientAnimationTravelsAfterTheOptions) {
  const uint32_t version = GetParam();
  VXActivateClientAnimationCommand command(animation(), "Root/t", options());
  EXPECT_EQ(objectWritten(command, version),
            cat({newObjectHeader("VXActivateClientAnimationCommand"), kBasePart,
                 wire::str("Root/t"), optionsBytes(version), animationBytes(version >= 2294017)}));
}

TEST_P(AnimationCommands, StoreWritesNameTargetThenTheAnimation) {
  const uint32_t version = GetParam();
  VXStoreLocalAnimationCommand command("in", "Root/t", animation());
  EXPECT_EQ(objectWritten(command, version),
            cat({newObjectHeader("VXStoreLocalAnimationCommand"), kBasePart, wire::str("in"),
                 wire::str("Root/t"), animationBytes(version >= 2294017)}));
}

TEST_P(AnimationCommands, EveryFormReadsBackThroughTheRegistry) {
  const uint32_t version = GetParam();
  VXChannelAction action(3);
  action.addCommand(std::make_unique<VXActivateAnimationCommand>("in", "Root/t", options()));
  action.addCommand(
      std::make_unique<VXActivateClientAnimationCommand>(animation(), "Root/t", options()));
  action.addCommand(std::make_unique<VXStoreLocalAnimationCommand>("in", "Root/t", animation()));
  const wire::Bytes bytes = objectWritten(action, version);
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size(), version);
  auto copy = in.readOwnedObject<VXAction>();
  EXPECT_TRUE(in.atEnd());
  ASSERT_EQ(copy->getCommands().size(), 3u);
  // Older servers get fewer option fields (the name, the speed); from 2294011 on, all of them
  // that show in the text travel.
  for (std::size_t i = 0; version >= 2294011 && i < 3; ++i) {
    EXPECT_EQ(copy->getCommands()[i]->toString(), action.getCommands()[i]->toString());
  }
  // Written again for the same server, the copy gives the same bytes.
  EXPECT_EQ(objectWritten(*copy, version), bytes);
}

INSTANTIATE_TEST_SUITE_P(AtEachServerVersionThreshold, AnimationCommands,
                         ::testing::Values(2000000u, 2000001u, 2293005u, 2293006u, 2294010u,
                                           2294011u, 2294016u, 2294017u));

TEST(AnimationCommandText, NamesTheTargetOptionsAndWhatIsAnimated) {
  VXActivateAnimationCommand byName("in", "Root/t", VXActivateAnimationOptions());
  EXPECT_EQ(byName.toString(), "Animate target=Root/t, opts=(" +
                                   VXActivateAnimationOptions().toString() + "), Name=in");
  VXActivateClientAnimationCommand client(animation(), "Root/t", VXActivateAnimationOptions());
  EXPECT_EQ(client.toString(),
            "Animate target=Root/t, opts=(" + VXActivateAnimationOptions().toString() + "), Obj");
  EXPECT_EQ(VXStoreLocalAnimationCommand("in", "Root/t", animation()).toString(),
            "StoreLocalAnimation in on Root/t");
}

TEST(AnimationCommandClone, SharesTheAnimationAndCopiesTheOptions) {
  AFCRef<VXAnimation> shared = animation();
  VXActivateClientAnimationCommand command(shared, "Root/t", options());
  std::unique_ptr<VXActivateClientAnimationCommand> copy(command.clone());
  EXPECT_EQ(copy->getAnimation().get(), shared.get());
  EXPECT_EQ(copy->getOptions(), command.getOptions());
  copy->applyNodePrefix("_Br5_Title_1");
  EXPECT_EQ(copy->getTarget(), "_Br5_Title_1/Root/t");
  EXPECT_EQ(command.getTarget(), "Root/t");
}

TEST(AnimationCommandRead, AFreshAnimationReplacesTheOldOne) {
  AFCRef<VXAnimation> original = animation();
  VXStoreLocalAnimationCommand command("in", "Root/t", original);
  const wire::Bytes bytes = objectWritten(command, AFCPersistentStream::kCurrentVersion);
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  auto copy = in.readOwnedObject<VXStoreLocalAnimationCommand>();
  EXPECT_NE(copy->getAnimation().get(), original.get());
  EXPECT_EQ(copy->getAnimation()->getChannelCount(), 1);
  EXPECT_EQ(original->getChannelCount(), 1);
}

TEST(AnimationCommandRegistry, TheBaseIsNotCreatedByName) {
  const std::string text = readObjectError(
      cat({newObjectHeader("VXActivateAnimationCommandBase"), kBasePart, wire::str("t")}));
  EXPECT_NE(text.find("Can't find class"), std::string::npos) << text;
}

}  // namespace

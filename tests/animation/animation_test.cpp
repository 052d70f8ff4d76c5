#include "animation/animation.h"

#include <gtest/gtest.h>

#include <vector>

#include "animation/register.h"
#include "foundation/attribute_scalar.h"
#include "wire_bytes.h"

namespace {

using wire::Bytes;

TEST(Animation, GivesEachNewChannelANewKeyAndFindsItByKey) {
  AFCRef<VXAnimation> animation(new VXAnimation());
  VXAnimationChannel& first = animation->createChannel();
  VXAnimationChannel& second = animation->createChannel();
  EXPECT_NE(first.getKey(), second.getKey());
  EXPECT_EQ(animation->findChannel(first.getKey()), &first);
  EXPECT_EQ(animation->findChannel(second.getKey()), &second);
  EXPECT_EQ(animation->findChannel(12345), nullptr);
  EXPECT_EQ(animation->getChannelCount(), 2);
  EXPECT_EQ(&animation->getChannel(1), &second);
  EXPECT_THROW(animation->getChannel(2), AFCRangeException);
}

TEST(Animation, CopiesAChannelToTheEndUnderANewKey) {
  VXAnimation animation;
  VXAnimationChannel& original = animation.createChannel();
  original.setDestination("n:pos.y");
  original.addKeyframe(1, 2.0f, 0, 0);
  animation.createChannel();
  VXAnimationChannel& copy = animation.copyChannel(original.getKey());
  EXPECT_NE(copy.getKey(), original.getKey());
  EXPECT_EQ(&animation.getChannel(2), &copy);
  EXPECT_EQ(copy.getDestination(), "n:pos.y");
  EXPECT_EQ(copy.getKeyframes(), original.getKeyframes());
}

TEST(Animation, RemovesAChannelAndForgetsItsKey) {
  VXAnimation animation;
  const int32_t first = animation.createChannel().getKey();
  const int32_t second = animation.createChannel().getKey();
  animation.removeChannel(first);
  EXPECT_EQ(animation.findChannel(first), nullptr);
  EXPECT_EQ(animation.getChannelCount(), 1);
  EXPECT_EQ(animation.getChannel(0).getKey(), second);
  EXPECT_THROW(animation.removeChannel(first), AFCIllegalArgumentException);
  EXPECT_THROW(animation.copyChannel(first), AFCIllegalArgumentException);
}

TEST(AnimationPersistence, WritesAnEmptyStringAndTheChannelCountFirst) {
  const Bytes empty = {0xDA, 0x0B, 0, 0, 0, 0, 0xDA, 0x05, 0, 0, 0, 0};
  EXPECT_EQ(wire::written(VXAnimation(), 2294017), empty);

  using namespace wire;
  VXAnimation animation;
  animation.createChannel().setDestination("a");
  animation.createChannel().setDestination("b");
  const Bytes channel = cat({str(""), str("a"), str(""), i32(0), i32(0), u32(0)});
  const Bytes other = cat({str(""), str("b"), str(""), i32(0), i32(0), u32(0)});
  EXPECT_EQ(written(animation, 2294017), cat({str(""), i32(2), channel, other}));
}

TEST(AnimationPersistence, RoundTripsChannelsInOrderWithNewKeys) {
  VXAnimation original;
  VXAnimationChannel& a = original.createChannel();
  a.setDestination("n1:pos.x");
  a.addKeyframe(-5, 1.0f, 0, 4);
  original.createChannel().setDestination("n2:alpha");
  const Bytes bytes = wire::written(original, 2294017);

  VXAnimation copy;
  copy.createChannel().setDestination("dropped");
  ASSERT_EQ(wire::readInto(copy, bytes, 2294017), "");
  ASSERT_EQ(copy.getChannelCount(), 2);
  EXPECT_EQ(copy.getChannel(0).getDestination(), "n1:pos.x");
  EXPECT_EQ(copy.getChannel(0).getKeyframes(), a.getKeyframes());
  EXPECT_EQ(copy.getChannel(1).getDestination(), "n2:alpha");
  EXPECT_EQ(copy.findChannel(copy.getChannel(1).getKey()), &copy.getChannel(1));
  EXPECT_EQ(copy.toString(), original.toString());
}

TEST(AnimationPersistence, ReadFailuresLeaveTheAnimationUnchanged) {
  using namespace wire;
  VXAnimation animation;
  animation.createChannel().setDestination("keep");
  const Bytes good = written(animation, 2294017);
  const Bytes failures[] = {
      {},
      Bytes(good.begin(), good.end() - 1),
      cat({str(""), i32(-1)}),
      cat({str(""), i32(0x7FFFFFFF), str("")}),
      cat({str(""), u32(1)}),
  };
  const char* texts[] = {"Incorrect data length", "Incorrect data length", "Bad channel count",
                         "Incorrect data length", "Bad header type (got=0x6, exp=0x5)"};
  for (std::size_t i = 0; i < std::size(failures); ++i) {
    EXPECT_EQ(readInto(animation, failures[i]), texts[i]) << i;
    ASSERT_EQ(animation.getChannelCount(), 1);
    EXPECT_EQ(animation.getChannel(0).getDestination(), "keep");
  }
}

TEST(AnimationReflection, CreatesCopiesAndRemovesChannelsByKey) {
  registerAnimationClasses();
  const AFCClass* record = AFCClass::forName("VXAnimation");
  ASSERT_NE(record, nullptr);
  std::unique_ptr<AFCObject> object(record->newInstance());
  auto* animation = dynamic_cast<VXAnimation*>(object.get());
  ASSERT_NE(animation, nullptr);

  AFCResult key = record->invoke(animation, "createChannel", {});
  AFCAttribute* keyArg[] = {key.get()};
  AFCResult copyKey = record->invoke(animation, "copyChannel", keyArg);
  EXPECT_NE(copyKey->getInt(), key->getInt());
  EXPECT_EQ(animation->getChannelCount(), 2);
  record->invoke(animation, "removeChannel", keyArg);
  EXPECT_EQ(animation->getChannelCount(), 1);
  EXPECT_EQ(animation->getChannel(0).getKey(), copyKey->getInt());
  EXPECT_THROW(record->invoke(animation, "removeChannel", keyArg), AFCIllegalArgumentException);

  AFCAttributeInt64 wrongKind(1);
  AFCAttribute* wrongArg[] = {&wrongKind};
  EXPECT_THROW(record->invoke(animation, "copyChannel", wrongArg), AFCInvalidArgumentTypeException);
}

}  // namespace

#include "commands/command_list_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "commands/animation_commands.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "tests/commands/command_test_support.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"
#include "tests/support/recording_builder.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(CommandListBuilder, GeneratesNoNameNamesPerBuilderStartingAtOne) {
  VXRecordingBuilder builder;
  EXPECT_EQ(builder.createNode("Group", "", "Root"), "NoName1");
  EXPECT_EQ(builder.createNode("Group", "", "Root"), "NoName2");
  EXPECT_EQ(builder.createNode("Group", "Named", "Root"), "Named");
  EXPECT_EQ(builder.createEffect("Blur", "", "Root/a"), "NoName3");
  VXRecordingBuilder other;
  EXPECT_EQ(other.createNode("Group", "", ""), "NoName1");
  ASSERT_EQ(builder.sent().size(), 4u);
  EXPECT_THAT(builder.sent()[0].commands, ElementsAre("Create node Group as Root/NoName1"));
  EXPECT_THAT(builder.sent()[3].commands, ElementsAre("Create effect Blur as Root/a/NoName3"));
}

TEST(CommandListBuilder, RejectsMissingNamesBeforeMakingARecord) {
  VXRecordingBuilder builder;
  auto value = [] { return std::make_unique<AFCAttributeInt32>(1); };
  const std::string bad = "Illegal Argument Exception, No ";
  const std::pair<std::function<void()>, std::string> rows[] = {
      {[&] { builder.createNode("", "n", "Root"); }, bad + "node type"},
      {[&] { builder.deleteNode(""); }, bad + "node name"},
      {[&] { builder.renameTarget("a", ""); }, bad + "node name"},
      {[&] { builder.setAttribute("", "x", value()); }, bad + "node name"},
      {[&] { builder.setAttribute("a", "", value()); }, bad + "attribute name"},
      {[&] { builder.setAttribute("a", "x", nullptr); }, "Null pointer to AFCAttribute"},
      {[&] { builder.storeAnimation("", "a", new VXAnimation); }, bad + "anim name"},
      {[&] { builder.transactionRoll(""); }, bad + "transaction name"},
      {[&] { builder.transactionStop(""); }, bad + "transaction name"},
      {[&] { builder.transactionBegin("", false); }, bad + "transaction name"},
  };
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    EXPECT_EQ(failureOf(rows[i].first), rows[i].second) << "row " << i;
  }
  EXPECT_TRUE(builder.sent().empty());
  // A missing effect name or address is not checked.
  builder.deleteEffect("");
  builder.activateEffect("");
  EXPECT_EQ(builder.sent().size(), 2u);
}

TEST(CommandListBuilder, MakesTheRecordOfEachMethodWithItsArguments) {
  VXRecordingBuilder builder;
  builder.copyNode("Root/src", "copy", "Root/dst");
  builder.setAttribute("Root/t", "Text", std::make_unique<AFCAttributeString>("Hi"));
  builder.loadScene("Lower", "Root", "lt");
  builder.loadScene("Lower", "Root", "lt", "Root/extra");
  builder.preload("Root/lt");
  builder.stopAnimation("in", "Root/lt", 5);
  builder.accelerateAnimation("in", "Root/lt", 2.0f, 5);
  builder.removeAnimation("in", "Root/lt");
  builder.activateAction("act", "T", false, "Root/lt");
  builder.transactionBegin("T", true);
  builder.transactionEnd();
  builder.sendMessage("hi");
  builder.wait(40);
  builder.preview(7);
  builder.beginSequencePreview(8);
  builder.endSequencePreview(8);
  std::vector<std::string> texts;
  for (const auto& sent : builder.sent()) {
    ASSERT_EQ(sent.commands.size(), 1u);
    texts.push_back(sent.commands[0]);
  }
  EXPECT_THAT(texts,
              ElementsAre("CopyNode Root/src to Root/dst/copy", "Set Root/t:Text=Hi",
                          "LoadScene Lower to parent Root", "LoadScene Lower to parent Root",
                          "PreloadCommand Root/lt", "StopAnimation in on Root/lt",
                          "AccelerateAnimation in on Root/lt", "RemoveLocalAnimation in on Root/lt",
                          "ActivateAction act on Root/lt", "TransactionBegin T", "TransactionEnd",
                          "Message %dhi", "Wait 40", "Preview 7 type 0", "Preview 8 type 1",
                          "Preview 8 type 2"));
}

TEST(CommandListBuilder, CallbackIdsComeFromOneCounterForTheProcess) {
  VXRecordingBuilder first;
  VXRecordingBuilder second;
  const int32_t a = first.commandCallback();
  const int32_t b = second.commandCallback();
  EXPECT_GE(a, 1);
  EXPECT_EQ(b, a + 1);
  EXPECT_THAT(second.sent()[0].commands, ElementsAre("Callback " + std::to_string(b)));

  // Concurrent callers never share an id.
  std::vector<int32_t> ids(2000);
  std::thread other([&] {
    VXRecordingBuilder builder(false);
    for (int i = 0; i < 1000; ++i) ids[i] = builder.commandCallback();
  });
  VXRecordingBuilder builder(false);
  for (int i = 1000; i < 2000; ++i) ids[i] = builder.commandCallback();
  other.join();
  std::sort(ids.begin(), ids.end());
  EXPECT_EQ(std::adjacent_find(ids.begin(), ids.end()), ids.end());
}

TEST(CommandListBuilder, DropsAVectorWithANaNChannelAndLogsIt) {
  CapturedErrLog log;
  VXRecordingBuilder builder;
  auto vec = std::make_unique<AFCAttributeVec3f>();
  vec->setChannelValue(0, 1);
  vec->setChannelValue(1, std::numeric_limits<double>::quiet_NaN());
  vec->setChannelValue(2, 3);
  const std::string text = vec->toString();
  builder.setAttribute("Root/a", "Position", std::move(vec));
  EXPECT_TRUE(builder.sent().empty());
  EXPECT_THAT(log.messages(),
              ElementsAre("vx2.setAttribute(Root/a,Position) called with invalid value " + text));
}

TEST(CommandListBuilder, TestsFloatingScalarsButLetsInfinitiesAndOtherScalarsPass) {
  CapturedErrLog log;
  VXRecordingBuilder builder;
  builder.setAttribute("a", "f", std::make_unique<AFCAttributeFloat>(NAN));
  builder.setAttribute("a", "d", std::make_unique<AFCAttributeDouble>(NAN));
  EXPECT_TRUE(builder.sent().empty());
  builder.setAttribute("a", "f", std::make_unique<AFCAttributeFloat>(INFINITY));
  builder.setAttribute("a", "i", std::make_unique<AFCAttributeInt32>(3));
  EXPECT_EQ(builder.sent().size(), 2u);
  EXPECT_EQ(log.messages().size(), 2u);
}

TEST(CommandListBuilder, ActivatesAClientAnimationOrAnEmptyOneWhenStopping) {
  VXRecordingBuilder builder;
  AFCRef<VXAnimation> animation(new VXAnimation);
  animation->createChannel();
  VXActivateAnimationOptions play;
  builder.activateAnimationObj(animation, "Root/a", play);
  VXActivateAnimationOptions stop;
  stop.playMode = VX_PLAY_MODE_STOP;
  builder.activateAnimationObj(animation, "Root/a", stop);
  ASSERT_EQ(builder.sent().size(), 2u);
  // The played animation carries its channel; the stopping one is a fresh, empty animation.
  EXPECT_GT(builder.sent()[0].bytes.size(), builder.sent()[1].bytes.size());
  AFCPersistentInputStreamBuffer in(builder.sent()[1].bytes.data(), builder.sent()[1].bytes.size());
  auto action = in.readOwnedObject<VXAction>();
  const auto* command =
      dynamic_cast<const VXActivateClientAnimationCommand*>(action->getCommands().at(0).get());
  ASSERT_NE(command, nullptr);
  EXPECT_EQ(command->getAnimation()->getChannelCount(), 0);
  EXPECT_EQ(animation->getChannelCount(), 1);
}

}  // namespace

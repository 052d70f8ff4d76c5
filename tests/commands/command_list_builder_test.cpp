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
#include "foundation/errlog.h"
#include "foundation/errlog_backend.h"
#include "tests/commands/command_test_support.h"
#include "tests/support/recording_builder.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string thrownText(const std::function<void()>& call) {
  try {
    call();
  } catch (const AFCException& e) {
    return e.what();
  }
  return "";
}

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
  EXPECT_EQ(thrownText([&] { builder.createNode("", "n", "Root"); }),
            "Illegal Argument Exception, No node type");
  EXPECT_EQ(thrownText([&] { builder.deleteNode(""); }), "Illegal Argument Exception, No node name");
  EXPECT_EQ(thrownText([&] { builder.renameTarget("a", ""); }), "Illegal Argument Exception, No node name");
  EXPECT_EQ(thrownText([&] { builder.setAttribute("", "x", value()); }),
            "Illegal Argument Exception, No node name");
  EXPECT_EQ(thrownText([&] { builder.setAttribute("a", "", value()); }),
            "Illegal Argument Exception, No attribute name");
  EXPECT_EQ(thrownText([&] { builder.setAttribute("a", "x", nullptr); }),
            "Null pointer to AFCAttribute");
  EXPECT_EQ(thrownText([&] { builder.storeAnimation("", "a", new VXAnimation); }),
            "Illegal Argument Exception, No anim name");
  for (auto call : {&VXCommandListBuilder::transactionRoll,
                    &VXCommandListBuilder::transactionStop}) {
    EXPECT_EQ(thrownText([&] { (builder.*call)(""); }), "Illegal Argument Exception, No transaction name");
  }
  EXPECT_EQ(thrownText([&] { builder.transactionBegin("", false); }),
            "Illegal Argument Exception, No transaction name");
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

class NaNCheck : public ::testing::Test {
 protected:
  void SetUp() override { AFCErrLog::instance().addBackend(memory_); }
  void TearDown() override { AFCErrLog::instance().removeBackend(memory_.get()); }
  std::shared_ptr<AFCErrLogBackendMemory> memory_ = std::make_shared<AFCErrLogBackendMemory>();
  VXRecordingBuilder builder_;
};

TEST_F(NaNCheck, DropsAVectorWithANaNChannelAndLogsIt) {
  auto vec = std::make_unique<AFCAttributeVec3f>();
  vec->setChannelValue(0, 1);
  vec->setChannelValue(1, std::numeric_limits<double>::quiet_NaN());
  vec->setChannelValue(2, 3);
  const std::string text = vec->toString();
  builder_.setAttribute("Root/a", "Position", std::move(vec));
  EXPECT_TRUE(builder_.sent().empty());
  EXPECT_THAT(memory_->messages(),
              ElementsAre("vx2.setAttribute(Root/a,Position) called with invalid value " + text));
}

TEST_F(NaNCheck, TestsFloatingScalarsButLetsInfinitiesAndOtherScalarsPass) {
  builder_.setAttribute("a", "f", std::make_unique<AFCAttributeFloat>(NAN));
  builder_.setAttribute("a", "d", std::make_unique<AFCAttributeDouble>(NAN));
  EXPECT_TRUE(builder_.sent().empty());
  builder_.setAttribute("a", "f", std::make_unique<AFCAttributeFloat>(INFINITY));
  builder_.setAttribute("a", "i", std::make_unique<AFCAttributeInt32>(3));
  EXPECT_EQ(builder_.sent().size(), 2u);
  EXPECT_EQ(memory_->events().size(), 2u);
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

#include "commands/node_commands.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/commands/command_test_support.h"

namespace {

// AFCAttributeString "ab" as a nested object: base part, defined flag, the text.
const Bytes kTextAb =
    newObjectHeader("AFCAttributeString") + kBasePart + boolBytes(true) + stringBytes("ab");

TEST(NodeCommands, WriteTheirFieldsInWireOrderAndNameThemInTheirText) {
  const Bytes x = stringBytes("Root/x");
  expectGolden({
      {"VXSetAttributeCommand",
       std::make_shared<VXSetAttributeCommand>("Root/t/txt", "Text",
                                               std::make_unique<AFCAttributeString>("ab")),
       stringBytes("Root/t/txt") + stringBytes("Text") + kTextAb, "Set Root/t/txt:Text=ab"},
      {"VXCreateNodeCommand", std::make_shared<VXCreateNodeCommand>("Group", "n1", "Root/t"),
       stringBytes("Group") + stringBytes("n1") + stringBytes("Root/t"),
       "Create node Group as Root/t/n1"},
      // No target of its own: source, name, parent.
      {"VXCopyNodeCommand", std::make_shared<VXCopyNodeCommand>("Root/a", "b", "Root/p"),
       stringBytes("Root/a") + stringBytes("b") + stringBytes("Root/p"),
       "CopyNode Root/a to Root/p/b"},
      {"VXCreateEffectCommand", std::make_shared<VXCreateEffectCommand>("Blur", "e1", "Root/t"),
       stringBytes("Blur") + stringBytes("e1") + stringBytes("Root/t"),
       "Create effect Blur as Root/t/e1"},
      {"VXRenameTargetCommand", std::make_shared<VXRenameTargetCommand>("Root/a", "b"),
       stringBytes("Root/a") + stringBytes("b"), "Rename Root/a to b"},
      {"VXDeleteNodeCommand", std::make_shared<VXDeleteNodeCommand>("Root/x"), x,
       "DeleteNode Root/x"},
      {"VXActivateEffectCommand", std::make_shared<VXActivateEffectCommand>("Root/x"), x,
       "ActivateEffect Root/x"},
      {"VXDeleteEffectCommand", std::make_shared<VXDeleteEffectCommand>("Root/x"), x,
       "DeleteEffect Root/x"},
      {"VXPreloadCommand", std::make_shared<VXPreloadCommand>("Root/x"), x,
       "PreloadCommand Root/x"},
      {"VXLoadSceneCommand", std::make_shared<VXLoadSceneCommand>("scene", "Root/p", "n"),
       stringBytes("scene") + stringBytes("Root/p") + stringBytes("n"),
       "LoadScene scene to parent Root/p"},
      // With an extra address: the mark 2 and the address come first.
      {"VXLoadSceneCommand", std::make_shared<VXLoadSceneCommand>("scene", "Root/p", "n", "Root/x"),
       int8Bytes(2) + x + stringBytes("scene") + stringBytes("Root/p") + stringBytes("n"),
       "LoadScene scene to parent Root/p"},
  });
}

TEST(SetAttributeCommand, RefusesANullValueOrOneThatIsNotAnAttribute) {
  const Bytes start =
      newObjectHeader("VXSetAttributeCommand") + kBasePart + stringBytes("n") + stringBytes("Text");
  EXPECT_EQ(readObjectError(start + kNullObject), "Null pointer to Attribute");
  EXPECT_NE(readObjectError(start + newObjectHeader("VXWaitCommand") + kBasePart + int32Bytes(1)),
            "");
}

TEST(SetAttributeCommand, CloneOwnsACopyOfTheValue) {
  const VXSetAttributeCommand command("n", "Pos", std::make_unique<AFCAttributeInt32>(7));
  std::unique_ptr<VXSetAttributeCommand> copy(command.clone());
  ASSERT_TRUE(copy->getValue());
  EXPECT_NE(copy->getValue(), command.getValue());
  EXPECT_EQ(copy->toString(), "Set n:Pos=7");
}

TEST(NodeCommands, ReadBackTheFieldsThatTheTextDoesNotShow) {
  auto copy = roundTrip(VXCopyNodeCommand("Root/a", "b", "Root/p"));
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->getTarget(), "");
  EXPECT_EQ(copy->getSrcAddress(), "Root/a");
  EXPECT_EQ(copy->getNodeName(), "b");
  EXPECT_EQ(copy->getParentAddress(), "Root/p");

  for (const std::string extra : {"", "Root/x"}) {
    auto scene = roundTrip(VXLoadSceneCommand("scene", "Root/p", "n", extra));
    ASSERT_TRUE(scene);
    EXPECT_EQ(scene->getExtraAddress(), extra);
    EXPECT_EQ(scene->getSceneName(), "scene");
    EXPECT_EQ(scene->getNodeName(), "n");
  }
}

TEST(LoadSceneCommand, PrefixesTheExtraAddressAndLeavesAnAbsentOneAbsent) {
  VXLoadSceneCommand with("scene", "p", "n", "x");
  with.applyNodePrefix("Root/t");
  EXPECT_EQ(with.getTarget(), "Root/t/p");
  EXPECT_EQ(with.getExtraAddress(), "Root/t/x");

  VXLoadSceneCommand without("scene", "p", "n");
  without.applyNodePrefix("Root/t");
  EXPECT_EQ(without.getTarget(), "Root/t/p");
  EXPECT_EQ(without.getExtraAddress(), "");
}

}  // namespace

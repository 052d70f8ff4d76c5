#include "commands/node_commands.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/commands/command_test_support.h"

namespace {

std::unique_ptr<AFCAttribute> text(const std::string& value) {
  return std::make_unique<AFCAttributeString>(value);
}

// AFCAttributeString "ab" as a nested object: base part, defined flag, the text.
const Bytes kTextAb =
    newObjectHeader("AFCAttributeString") + kBasePart + boolBytes(true) + stringBytes("ab");

TEST(SetAttributeCommand, WritesTargetNameAndTheValueObject) {
  const VXSetAttributeCommand command("Root/t/txt", "Text", text("ab"));
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXSetAttributeCommand") + kBasePart +
                                      stringBytes("Root/t/txt") + stringBytes("Text") + kTextAb);
  EXPECT_EQ(command.toString(), "Set Root/t/txt:Text=ab");
}

TEST(SetAttributeCommand, ReadsBackItsValue) {
  const Bytes bytes = newObjectHeader("VXSetAttributeCommand") + kBasePart + stringBytes("n") +
                      stringBytes("Text") + kTextAb;
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  auto command = in.readOwnedObject<VXSetAttributeCommand>();
  ASSERT_TRUE(command && command->getValue());
  EXPECT_EQ(command->getTarget(), "n");
  EXPECT_EQ(command->getAttrName(), "Text");
  EXPECT_EQ(command->getValue()->toString(), "ab");
}

TEST(SetAttributeCommand, RefusesANullValue) {
  const Bytes bytes = newObjectHeader("VXSetAttributeCommand") + kBasePart + stringBytes("n") +
                      stringBytes("Text") + kNullObject;
  EXPECT_EQ(readObjectError(bytes), "Null pointer to Attribute");
}

TEST(SetAttributeCommand, RefusesAValueThatIsNotAnAttribute) {
  const Bytes bytes = newObjectHeader("VXSetAttributeCommand") + kBasePart + stringBytes("n") +
                      stringBytes("Text") + newObjectHeader("VXWaitCommand") + kBasePart +
                      int32Bytes(1);
  EXPECT_NE(readObjectError(bytes), "");
}

TEST(SetAttributeCommand, CloneOwnsACopyOfTheValue) {
  const VXSetAttributeCommand command("n", "Pos", std::make_unique<AFCAttributeInt32>(7));
  std::unique_ptr<VXSetAttributeCommand> copy(command.clone());
  ASSERT_TRUE(copy->getValue());
  EXPECT_NE(copy->getValue(), command.getValue());
  EXPECT_EQ(copy->toString(), "Set n:Pos=7");
  EXPECT_EQ(objectBytes(*copy), objectBytes(command));
}

TEST(CreateNodeCommand, WritesTypeNameThenParent) {
  const VXCreateNodeCommand command("Group", "n1", "Root/t");
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXCreateNodeCommand") + kBasePart +
                                      stringBytes("Group") + stringBytes("n1") +
                                      stringBytes("Root/t"));
  EXPECT_EQ(command.toString(), "Create node Group as Root/t/n1");
}

TEST(CopyNodeCommand, WritesSourceNameAndParentButNoTarget) {
  const VXCopyNodeCommand command("Root/a", "b", "Root/p");
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXCopyNodeCommand") + kBasePart +
                                      stringBytes("Root/a") + stringBytes("b") +
                                      stringBytes("Root/p"));
  EXPECT_EQ(command.toString(), "CopyNode Root/a to Root/p/b");
}

TEST(CopyNodeCommand, KeepsAnEmptyTargetThroughARoundTrip) {
  auto copy = roundTrip(VXCopyNodeCommand("Root/a", "b", "Root/p"));
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->getTarget(), "");
  EXPECT_EQ(copy->getSrcAddress(), "Root/a");
  EXPECT_EQ(copy->getNodeName(), "b");
  EXPECT_EQ(copy->getParentAddress(), "Root/p");
}

TEST(CreateEffectCommand, WritesTypeNameThenParent) {
  const VXCreateEffectCommand command("Blur", "e1", "Root/t");
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXCreateEffectCommand") + kBasePart +
                                      stringBytes("Blur") + stringBytes("e1") +
                                      stringBytes("Root/t"));
  EXPECT_EQ(command.toString(), "Create effect Blur as Root/t/e1");
}

TEST(RenameTargetCommand, WritesTargetThenNewName) {
  const VXRenameTargetCommand command("Root/a", "b");
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXRenameTargetCommand") + kBasePart +
                                      stringBytes("Root/a") + stringBytes("b"));
  EXPECT_EQ(command.toString(), "Rename Root/a to b");
}

template <class Command>
void expectTargetOnly(const std::string& className, const std::string& word) {
  const Command command("Root/x");
  EXPECT_EQ(objectBytes(command), newObjectHeader(className) + kBasePart + stringBytes("Root/x"));
  EXPECT_EQ(command.toString(), word + " Root/x");
}

TEST(TargetOnlyCommands, WriteTheirTargetAndNameItInTheirText) {
  expectTargetOnly<VXDeleteNodeCommand>("VXDeleteNodeCommand", "DeleteNode");
  expectTargetOnly<VXActivateEffectCommand>("VXActivateEffectCommand", "ActivateEffect");
  expectTargetOnly<VXDeleteEffectCommand>("VXDeleteEffectCommand", "DeleteEffect");
  expectTargetOnly<VXPreloadCommand>("VXPreloadCommand", "PreloadCommand");
}

TEST(LoadSceneCommand, WithoutExtraAddressWritesThreeStrings) {
  const VXLoadSceneCommand command("scene", "Root/p", "n");
  const Bytes expected = newObjectHeader("VXLoadSceneCommand") + kBasePart + stringBytes("scene") +
                         stringBytes("Root/p") + stringBytes("n");
  EXPECT_EQ(objectBytes(command), expected);
  EXPECT_EQ(command.toString(), "LoadScene scene to parent Root/p");

  auto copy = roundTrip(command);
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->getExtraAddress(), "");
  EXPECT_EQ(objectBytes(*copy), expected);
}

TEST(LoadSceneCommand, WithExtraAddressWritesTheMarkAndFourStrings) {
  const VXLoadSceneCommand command("scene", "Root/p", "n", "Root/x");
  const Bytes expected = newObjectHeader("VXLoadSceneCommand") + kBasePart + int8Bytes(2) +
                         stringBytes("Root/x") + stringBytes("scene") + stringBytes("Root/p") +
                         stringBytes("n");
  EXPECT_EQ(objectBytes(command), expected);

  auto copy = roundTrip(command);
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->getExtraAddress(), "Root/x");
  EXPECT_EQ(copy->getSceneName(), "scene");
  EXPECT_EQ(copy->getTarget(), "Root/p");
  EXPECT_EQ(copy->getNodeName(), "n");
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

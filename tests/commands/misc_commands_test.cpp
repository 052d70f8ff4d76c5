#include "commands/misc_commands.h"

#include <gtest/gtest.h>

#include "tests/commands/command_test_support.h"

namespace {

TEST(SetProjectCommand, WritesTheProjectName) {
  EXPECT_EQ(objectBytes(VXSetProjectCommand("Show")),
            newObjectHeader("VXSetProjectCommand") + kBasePart + stringBytes("Show"));
  EXPECT_EQ(VXSetProjectCommand("Show").toString(), "SetProject Show");
}

TEST(CallbackCommand, WritesTheIdAsInt32) {
  EXPECT_EQ(objectBytes(VXCallbackCommand(-2)),
            newObjectHeader("VXCallbackCommand") + kBasePart + int32Bytes(-2));
  EXPECT_EQ(VXCallbackCommand(12).toString(), "Callback 12");
}

TEST(MessageCommand, TravelsAsAWideString) {
  EXPECT_EQ(objectBytes(VXMessageCommand("hi")),
            newObjectHeader("VXMessageCommand") + kBasePart + wstringBytes("hi"));
}

TEST(MessageCommand, ReadsEitherStringKind) {
  for (const Bytes& text : {wstringBytes("hi"), stringBytes("hi")}) {
    const Bytes bytes = newObjectHeader("VXMessageCommand") + kBasePart + text;
    AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
    auto command = in.readOwnedObject<VXMessageCommand>();
    ASSERT_TRUE(command);
    EXPECT_EQ(command->getMessage(), "hi");
  }
}

TEST(MessageCommand, NonAsciiTextSurvivesTheRoundTrip) {
  // UTF-8 on POSIX; on Windows the same bytes are valid code-page 1252 text.
  const std::string text = "Gr\xC3\xBC\xC3\x9F\x65";
  const Bytes bytes = objectBytes(VXMessageCommand(text));
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  auto command = in.readOwnedObject<VXMessageCommand>();
  ASSERT_TRUE(command);
  EXPECT_EQ(command->getMessage(), text);
}

TEST(MessageCommand, TextKeepsTheUnsubstitutedPlaceholder) {
  const std::string text = VXMessageCommand("hi").toString();
  EXPECT_EQ(text, "Message %dhi");
  EXPECT_EQ(text.size(), 12u);
}

TEST(WaitCommand, WritesTheTimeAsInt32) {
  EXPECT_EQ(objectBytes(VXWaitCommand(40)),
            newObjectHeader("VXWaitCommand") + kBasePart + int32Bytes(40));
  EXPECT_EQ(VXWaitCommand(40).toString(), "Wait 40");
}

TEST(PreviewCommand, WritesIdTypeAndTwoZeroWords) {
  EXPECT_EQ(objectBytes(VXPreviewCommand(5, VXPreviewCommand::kSequenceEnd)),
            newObjectHeader("VXPreviewCommand") + kBasePart + int32Bytes(5) + int32Bytes(2) +
                int32Bytes(0) + int32Bytes(0));
  EXPECT_EQ(VXPreviewCommand(5).getPreviewType(), VXPreviewCommand::kSingle);
  EXPECT_EQ(VXPreviewCommand(5, 1).toString(), "Preview 5 type 1");
}

}  // namespace

#include "commands/misc_commands.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/commands/command_test_support.h"

namespace {

TEST(MiscCommands, WriteTheirFieldsInWireOrderAndNameThemInTheirText) {
  expectGolden({
      {"VXSetProjectCommand", std::make_shared<VXSetProjectCommand>("Show"), stringBytes("Show"),
       "SetProject Show"},
      {"VXCallbackCommand", std::make_shared<VXCallbackCommand>(-2), int32Bytes(-2), "Callback -2"},
      // A wide string on the wire; the text keeps the unsubstituted placeholder.
      {"VXMessageCommand", std::make_shared<VXMessageCommand>("hi"), wstringBytes("hi"),
       "Message %dhi"},
      {"VXWaitCommand", std::make_shared<VXWaitCommand>(40), int32Bytes(40), "Wait 40"},
      {"VXPreviewCommand", std::make_shared<VXPreviewCommand>(5, VXPreviewCommand::kSequenceEnd),
       int32Bytes(5) + int32Bytes(2) + int32Bytes(0) + int32Bytes(0), "Preview 5 type 2"},
  });
  EXPECT_EQ(VXPreviewCommand(5).getPreviewType(), VXPreviewCommand::kSingle);
}

TEST(MessageCommand, ReadsEitherStringKindAndKeepsNonAsciiText) {
  // UTF-8 on POSIX; on Windows the same bytes are valid code-page 1252 text.
  const std::string umlauts = "Gr\xC3\xBC\xC3\x9F\x65";
  const Bytes header = newObjectHeader("VXMessageCommand") + kBasePart;
  for (const Bytes& bytes : {header + wstringBytes("hi"), header + stringBytes("hi"),
                             objectBytes(VXMessageCommand(umlauts))}) {
    AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
    auto command = in.readOwnedObject<VXMessageCommand>();
    ASSERT_TRUE(command);
    EXPECT_EQ(command->getMessage(), bytes.back() == 'i' ? "hi" : umlauts);
  }
}

}  // namespace

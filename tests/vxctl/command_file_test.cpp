#include "tools/vxctl/command_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "client/client_tcp.h"
#include "client/register.h"
#include "tests/client/loopback_peer.h"
#include "tests/support/recording_builder.h"
#include "tools/vxctl/value_syntax.h"

namespace {

using ::testing::ElementsAre;

class CommandFile : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { registerClientClasses(); }

  static std::vector<VXCtlCommand> parse(const std::string& text) {
    std::istringstream in(text);
    return vxctlParseCommandFile(in, "show.vx");
  }

  static std::string errorOf(const std::string& text) {
    try {
      parse(text);
    } catch (const VXCtlSyntaxException& e) {
      return e.getMessage();
    }
    return "no error";
  }
};

TEST_F(CommandFile, WordsKeepQuotedTextAndBracketsTogether) {
  EXPECT_THAT(vxctlSplitWords("  set a/b  text \"hello world\"  "),
              ElementsAre("set", "a/b", "text", "\"hello world\""));
  EXPECT_THAT(vxctlSplitWords("set n color color:[1, 0, 0, 1]"),
              ElementsAre("set", "n", "color", "color:[1, 0, 0, 1]"));
  EXPECT_THAT(vxctlSplitWords(R"(message "say \"hi\" now")"),
              ElementsAre("message", R"("say \"hi\" now")"));
  EXPECT_THROW(vxctlSplitWords("message \"open"), VXCtlSyntaxException);
  EXPECT_THROW(vxctlSplitWords("set a b [1, 2"), VXCtlSyntaxException);
}

TEST_F(CommandFile, AGoodFileGivesEveryCommandAndSkipsCommentsAndBlankLines) {
  const auto commands = parse(
      "# lower third\n"
      "\n"
      "create Text \"Lower Third\" root\r\n"
      "   # indented comment\n"
      "set root/lt text \"Jane Doe\"\n"
      "set root/lt pos [0.5, -0.2]\n"
      "load intro root intro1\n"
      "message go\n"
      "wait 250\n"
      "callback\n"
      "delete root/old\n");
  ASSERT_EQ(commands.size(), 8u);
  EXPECT_EQ(commands[0].kind, VXCtlCommand::Kind::kCreate);
  EXPECT_THAT(commands[0].args, ElementsAre("Text", "Lower Third", "root"));
  EXPECT_THAT(commands[1].args, ElementsAre("root/lt", "text"));
  EXPECT_EQ(vxctlValueToText(*commands[1].value), "\"Jane Doe\"");
  EXPECT_EQ(vxctlTypeName(*commands[2].value), "vec2f");
  EXPECT_THAT(commands[3].args, ElementsAre("intro", "root", "intro1"));
  EXPECT_THAT(commands[4].args, ElementsAre("go"));
  EXPECT_EQ(commands[5].milliseconds, 250);
  EXPECT_EQ(commands[6].kind, VXCtlCommand::Kind::kCallback);
  EXPECT_EQ(commands[7].kind, VXCtlCommand::Kind::kDelete);
}

TEST_F(CommandFile, ABadLineNamesTheFileAndLine) {
  EXPECT_EQ(errorOf("# ok\nset a b 1\nset a b 12abc\n"),
            "show.vx:3: Not a number: \"12abc\" (quote it to send it as a string)");
  EXPECT_EQ(errorOf("\n\nfly away\n"),
            "show.vx:3: Unknown command \"fly\" (set, create, delete, load, message, wait, "
            "callback)");
  EXPECT_EQ(errorOf("create Text name\n"), "show.vx:1: Usage: create TYPE NAME PARENT");
  EXPECT_EQ(errorOf("callback now\n"), "show.vx:1: Usage: callback");
  EXPECT_EQ(errorOf("wait soon\n"), "show.vx:1: Not a time in milliseconds: \"soon\"");
  EXPECT_EQ(errorOf("wait -5\n"), "show.vx:1: Not a time in milliseconds: \"-5\"");
  EXPECT_EQ(errorOf("message \"unterminated\n"), "show.vx:1: Unterminated string: \"unterminated");
  EXPECT_EQ(errorOf("set a b c d\n"), "show.vx:1: Usage: set ADDRESS ATTR VALUE");
}

TEST_F(CommandFile, AllCommandsGoInOneActionInFileOrder) {
  VXRecordingBuilder builder(false);
  const auto ids = vxctlSend(parse("create Text t root\nset root/t text hi\ncallback\n"
                                   "load s root n\nmessage m\nwait 10\ndelete root/t\n"),
                             builder, std::nullopt);
  ASSERT_EQ(builder.sent().size(), 1u);
  ASSERT_EQ(ids.size(), 1u);
  // Argument order as the builder takes it: type, name, parent; scene, parent, node.
  EXPECT_THAT(builder.sent()[0].commands,
              ElementsAre("Create node Text as root/t", "Set root/t:text=hi",
                          "Callback " + std::to_string(ids[0]), "LoadScene s to parent root",
                          "Message %dm", "Wait 10", "DeleteNode root/t"));
}

TEST_F(CommandFile, ATransactionWrapsTheCommandsInsideTheAction) {
  VXRecordingBuilder builder(false);
  vxctlSend(parse("delete a\ndelete b\n"), builder, std::string("show"));
  ASSERT_EQ(builder.sent().size(), 1u);
  EXPECT_THAT(builder.sent()[0].commands, ElementsAre("TransactionBegin show", "DeleteNode a",
                                                      "DeleteNode b", "TransactionEnd"));
}

TEST_F(CommandFile, ACommandTheBuilderRefusesSendsNothing) {
  VXRecordingBuilder builder(false);
  EXPECT_THROW(vxctlSend(parse("delete a\nset \"\" attr 1\n"), builder, std::string("t")),
               AFCException);
  EXPECT_TRUE(builder.sent().empty());
  EXPECT_EQ(builder.depth(), 0);
}

TEST_F(CommandFile, CallbacksGetIncreasingIds) {
  VXRecordingBuilder builder(false);
  const auto ids = vxctlSend(parse("callback\ncallback\n"), builder, std::nullopt);
  ASSERT_EQ(ids.size(), 2u);
  EXPECT_LT(ids[0], ids[1]);
}

TEST_F(CommandFile, ASessionPutsTheWholeFileOnTheWireAsOnePacket) {
  LoopbackPeer peer;
  std::vector<uint32_t> types;
  peer.serve([&](PeerConnection& c) {
    c.readPacket();
    c.send(noLoginVersion());
    try {
      for (;;) types.push_back(c.readPacket().type);
    } catch (const AFCSocketDisconnectedException&) {
      // the client is done
    }
  });
  VXClientTcp session;
  session.setServerAddress(peer.address());
  ASSERT_TRUE(session.connect());
  vxctlSend(parse("create Text t root\nset root/t text hi\ndelete root/t\n"), session,
            std::string("show"));
  session.close();
  peer.join();
  EXPECT_EQ(types, std::vector<uint32_t>{0});
}

}  // namespace

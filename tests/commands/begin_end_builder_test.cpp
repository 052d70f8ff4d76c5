#include "commands/begin_end_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "commands/misc_commands.h"
#include "tests/commands/command_test_support.h"
#include "tests/support/recording_builder.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class BeginEndBuilder : public ::testing::Test {
 protected:
  std::vector<std::string> classes() const {
    std::vector<std::string> names;
    for (const auto& sent : builder_.sent()) names.push_back(sent.className);
    return names;
  }
  VXRecordingBuilder builder_;
};

TEST_F(BeginEndBuilder, SendsEachRecordAloneOutsideABracket) {
  builder_.wait(1);
  builder_.setChannel(3);
  builder_.wait(2);
  EXPECT_THAT(classes(), ElementsAre("VXImmediateAction", "VXChannelAction"));
  EXPECT_EQ(builder_.sent()[1].channel, 3u);
  EXPECT_THAT(builder_.sent()[1].commands, ElementsAre("Wait 2"));
}

TEST_F(BeginEndBuilder, CollectsRecordsUntilTheOutermostEnd) {
  EXPECT_EQ(builder_.beginImmediate(true), 0);
  builder_.wait(1);
  builder_.wait(2);
  EXPECT_THAT(builder_.sent(), IsEmpty());
  builder_.end();
  ASSERT_EQ(builder_.sent().size(), 1u);
  EXPECT_EQ(builder_.sent()[0].className, "VXImmediateAction");  // not merged at depth 0
  EXPECT_THAT(builder_.sent()[0].commands, ElementsAre("Wait 1", "Wait 2"));
  EXPECT_EQ(builder_.traceText(), "beginImmediate , channel 0\nend (sending)\n");
}

TEST_F(BeginEndBuilder, FoldsANestedBeginAndClosesTheTransactionItLeftOpen) {
  builder_.wait(1);
  builder_.beginImmediate(false);
  builder_.wait(2);
  EXPECT_EQ(builder_.beginImmediate(true), 1);
  builder_.transactionBegin("T", false);
  builder_.end();
  builder_.wait(3);
  builder_.end();
  ASSERT_EQ(builder_.sent().size(), 2u);
  EXPECT_THAT(builder_.sent()[1].commands,
              ElementsAre("Wait 2", "TransactionBegin T", "TransactionEnd", "Wait 3"));
  EXPECT_EQ(builder_.traceText(),
            "beginImmediate , channel 0\n"
            "beginImmediate (nested), channel 0\n"
            "end (merge)\n"
            "transactionEnd() implicit due to merge\n"
            "end (sending)\n");
}

TEST_F(BeginEndBuilder, AddsNoImplicitEndWhenTheNestedTransactionWasClosed) {
  builder_.beginImmediate(false);
  builder_.beginImmediate(true);
  builder_.transactionBegin("T", false);
  builder_.transactionEnd();
  builder_.end();
  builder_.end();
  ASSERT_EQ(builder_.sent().size(), 1u);
  EXPECT_THAT(builder_.sent()[0].commands, ElementsAre("TransactionBegin T", "TransactionEnd"));
}

TEST_F(BeginEndBuilder, AnUnnestedBeginInsideABracketIsSentByItselfFirst) {
  builder_.setChannel(5);
  builder_.beginImmediate(false);
  builder_.wait(1);
  builder_.beginImmediate(false);
  builder_.wait(2);
  builder_.end();
  builder_.end();
  ASSERT_EQ(builder_.sent().size(), 2u);
  EXPECT_THAT(builder_.sent()[0].commands, ElementsAre("Wait 2"));
  EXPECT_THAT(builder_.sent()[1].commands, ElementsAre("Wait 1"));
  EXPECT_EQ(builder_.sent()[1].className, "VXChannelAction");
  EXPECT_THAT(builder_.traceText(), ::testing::EndsWith("end (sending), channel 5\n"));
}

TEST_F(BeginEndBuilder, EndWithoutBeginOnlyTraces) {
  builder_.end();
  EXPECT_THAT(builder_.sent(), IsEmpty());
  EXPECT_EQ(builder_.traceText(), "end (no begin!)\n");
}

TEST_F(BeginEndBuilder, RollbackDiscardsOpenActionsDownToTheLevel) {
  EXPECT_TRUE(builder_.rollback(0));
  builder_.beginImmediate(false);
  builder_.wait(1);
  builder_.beginImmediate(true);
  builder_.wait(2);
  EXPECT_TRUE(builder_.rollback(2));
  EXPECT_FALSE(builder_.rollback(1));
  EXPECT_EQ(builder_.depth(), 1);
  EXPECT_FALSE(builder_.rollback(0));
  EXPECT_EQ(builder_.depth(), 0);
  EXPECT_THAT(builder_.sent(), IsEmpty());
  EXPECT_THAT(builder_.traceText(), ::testing::HasSubstr("rollback 1 2\n"));
  EXPECT_THAT(builder_.traceText(), ::testing::EndsWith("rollback 0 1\n"));
}

TEST_F(BeginEndBuilder, RollbackOfTwoLevelsAtOnce) {
  builder_.beginImmediate(false);
  builder_.beginImmediate(true);
  builder_.wait(1);
  EXPECT_FALSE(builder_.rollback(0));
  EXPECT_EQ(builder_.depth(), 0);
  builder_.wait(2);  // sent alone again
  ASSERT_EQ(builder_.sent().size(), 1u);
  EXPECT_THAT(builder_.sent()[0].commands, ElementsAre("Wait 2"));
}

TEST_F(BeginEndBuilder, FlushEndsDownToTheLevelAndReturnsTheDepth) {
  builder_.beginImmediate(false);
  builder_.wait(1);
  builder_.beginImmediate(true);
  builder_.wait(2);
  builder_.beginImmediate(true);
  EXPECT_EQ(builder_.flush(1), 1);
  EXPECT_THAT(builder_.sent(), IsEmpty());
  EXPECT_EQ(builder_.flush(0), 0);
  ASSERT_EQ(builder_.sent().size(), 1u);
  EXPECT_THAT(builder_.sent()[0].commands, ElementsAre("Wait 1", "Wait 2"));
}

TEST_F(BeginEndBuilder, ClearOpenActionsDropsEveryChannelUnsent) {
  builder_.beginImmediate(false);
  builder_.wait(1);
  builder_.setChannel(2);
  builder_.beginImmediate(false);
  builder_.clearOpenActions();
  EXPECT_EQ(builder_.depth(), 0);
  builder_.setChannel(0);
  EXPECT_EQ(builder_.depth(), 0);
  builder_.end();
  EXPECT_THAT(builder_.sent(), IsEmpty());
}

TEST_F(BeginEndBuilder, AFailedEndLeavesTheActionOpen) {
  builder_.beginImmediate(false);
  builder_.wait(1);
  builder_.failNextSend("wire down");
  EXPECT_THROW(builder_.end(), AFCException);
  EXPECT_EQ(builder_.depth(), 1);
  builder_.end();
  builder_.failNextSend("wire down");
  EXPECT_THROW(builder_.wait(2), AFCException);
  ASSERT_EQ(builder_.sent().size(), 1u);
  EXPECT_THAT(builder_.sent()[0].commands, ElementsAre("Wait 1"));
  EXPECT_EQ(builder_.depth(), 0);
}

TEST_F(BeginEndBuilder, ANegativeLevelCountsAsZero) {
  for (bool roll : {true, false}) {
    builder_.beginImmediate(false);
    builder_.beginImmediate(true);
    if (roll) {
      EXPECT_FALSE(builder_.rollback(-1));
    } else {
      EXPECT_EQ(builder_.flush(-1), 0);
    }
    EXPECT_EQ(builder_.depth(), 0);
  }
  EXPECT_EQ(builder_.sent().size(), 1u);
}

TEST_F(BeginEndBuilder, AClearFromAnotherThreadDropsTheActionsAtTheirNextUse) {
  builder_.beginImmediate(false);
  builder_.wait(1);
  std::thread([&] { builder_.clearOpenActions(); }).join();
  EXPECT_EQ(builder_.depth(), 0);
  builder_.wait(2);
  builder_.end();
  ASSERT_EQ(builder_.sent().size(), 1u);
  EXPECT_THAT(builder_.sent()[0].commands, ElementsAre("Wait 2"));
}

// Races here are found by the ThreadSanitizer build.
TEST(BeginEndBuilderThreads, ThreadsOnDifferentChannelsBuildIndependently) {
  VXRecordingBuilder builder(false);  // trace lines of several threads would interleave
  constexpr int kActions = 200;
  std::vector<std::thread> threads;
  for (uint32_t channel = 1; channel <= 4; ++channel) {
    threads.emplace_back([&, channel] {
      builder.setChannel(channel);
      for (int i = 0; i < kActions; ++i) {
        builder.beginImmediate(false);
        builder.wait(static_cast<int32_t>(channel));
        builder.end();
      }
    });
  }
  for (auto& thread : threads) thread.join();
  std::map<uint32_t, int> perChannel;
  for (const auto& sent : builder.sent()) {
    EXPECT_THAT(sent.commands, ElementsAre("Wait " + std::to_string(sent.channel)));
    ++perChannel[sent.channel];
  }
  EXPECT_THAT(perChannel, ElementsAre(std::pair{1u, kActions}, std::pair{2u, kActions},
                                      std::pair{3u, kActions}, std::pair{4u, kActions}));
}

TEST_F(BeginEndBuilder, EachThreadBuildsOnItsOwnChannel) {
  builder_.setDefaultChannel(9);
  builder_.beginImmediate(false);
  builder_.wait(1);
  std::thread other([&] {
    EXPECT_EQ(builder_.getChannel(), 9u);  // the default until the thread sets its own
    builder_.setChannel(4);
    builder_.beginImmediate(false);
    builder_.wait(2);
    builder_.end();
  });
  other.join();
  EXPECT_EQ(builder_.getChannel(), 9u);
  builder_.end();
  ASSERT_EQ(builder_.sent().size(), 2u);
  EXPECT_EQ(builder_.sent()[0].channel, 4u);
  EXPECT_THAT(builder_.sent()[0].commands, ElementsAre("Wait 2"));
  EXPECT_EQ(builder_.sent()[1].channel, 9u);
  EXPECT_THAT(builder_.sent()[1].commands, ElementsAre("Wait 1"));
}

TEST_F(BeginEndBuilder, ANewBuilderDoesNotInheritAnEarlierOnesThreadChannel) {
  auto first = std::make_unique<VXRecordingBuilder>();
  first->setChannel(7);
  first.reset();
  VXRecordingBuilder second;
  EXPECT_EQ(second.getChannel(), 0u);
}

TEST_F(BeginEndBuilder, SentBytesReadBackAsTheSameAction) {
  builder_.setChannel(2);
  builder_.beginImmediate(false);
  builder_.wait(1);
  builder_.sendMessage("x");
  builder_.end();
  const auto& bytes = builder_.sent()[0].bytes;
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  auto action = in.readOwnedObject<VXAction>();
  EXPECT_EQ(action->getChannel(), 2u);
  ASSERT_EQ(action->getCommands().size(), 2u);
  EXPECT_EQ(action->getCommands()[1]->toString(), "Message %dx");
}

}  // namespace

#include "commands/transaction_commands.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/commands/command_test_support.h"

namespace {

TEST(TransactionCommands, WriteTheNameAndFlagTheyCarryAndNameThemInTheirText) {
  expectGolden({
      {"VXTransactionBeginCommand", std::make_shared<VXTransactionBeginCommand>("T1", true),
       stringBytes("T1") + boolBytes(true), "TransactionBegin T1"},
      {"VXTransactionStopCommand", std::make_shared<VXTransactionStopCommand>("T1"),
       stringBytes("T1"), "TransactionStop T1"},
      {"VXTransactionRollCommand", std::make_shared<VXTransactionRollCommand>("T1"),
       stringBytes("T1"), "TransactionRoll T1"},
      {"VXTransactionEndCommand",
       std::make_shared<VXTransactionEndCommand>(),
       {},
       "TransactionEnd"},
  });
}

TEST(TransactionCommands, BaseHasItsOwnTextButIsNotReadByName) {
  EXPECT_EQ(VXTransactionBaseCommand("T1").toString(), "TransactionBase T1");
  EXPECT_EQ(readObjectError(objectBytes(VXTransactionBaseCommand("T1"))),
            "Can't find class VXTransactionBaseCommand");
}

TEST(TransactionCommands, DefaultNameFillsOnlyAnEmptyName) {
  VXTransactionRollCommand named("A");
  named.bindDefaultName("T");
  EXPECT_EQ(named.getTransactionName(), "A");

  VXTransactionBeginCommand begin("", true);
  begin.bindDefaultName("T");
  EXPECT_EQ(begin.getTransactionName(), "T");
  EXPECT_TRUE(begin.getFlag());
}

}  // namespace

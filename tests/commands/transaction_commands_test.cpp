#include "commands/transaction_commands.h"

#include <gtest/gtest.h>

#include "tests/commands/command_test_support.h"

namespace {

TEST(TransactionCommands, BeginWritesNameAndFlag) {
  const VXTransactionBeginCommand command("T1", true);
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXTransactionBeginCommand") + kBasePart +
                                      stringBytes("T1") + boolBytes(true));
  EXPECT_EQ(command.toString(), "TransactionBegin T1");
}

TEST(TransactionCommands, StopAndRollWriteTheNameAlone) {
  EXPECT_EQ(objectBytes(VXTransactionStopCommand("T1")),
            newObjectHeader("VXTransactionStopCommand") + kBasePart + stringBytes("T1"));
  EXPECT_EQ(objectBytes(VXTransactionRollCommand("T1")),
            newObjectHeader("VXTransactionRollCommand") + kBasePart + stringBytes("T1"));
  EXPECT_EQ(VXTransactionStopCommand("T1").toString(), "TransactionStop T1");
  EXPECT_EQ(VXTransactionRollCommand("T1").toString(), "TransactionRoll T1");
}

TEST(TransactionCommands, EndCarriesNoFields) {
  EXPECT_EQ(objectBytes(VXTransactionEndCommand()),
            newObjectHeader("VXTransactionEndCommand") + kBasePart);
  EXPECT_EQ(VXTransactionEndCommand().toString(), "TransactionEnd");
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

  VXTransactionRollCommand unnamed;
  unnamed.bindDefaultName("T");
  EXPECT_EQ(unnamed.getTransactionName(), "T");

  VXTransactionBeginCommand begin("", true);
  begin.bindDefaultName("T");
  EXPECT_EQ(begin.getTransactionName(), "T");
  EXPECT_TRUE(begin.getFlag());
}

}  // namespace

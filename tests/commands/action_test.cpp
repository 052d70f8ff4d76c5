#include "commands/action.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "commands/misc_commands.h"
#include "commands/transaction_commands.h"
#include "foundation/attribute_scalar.h"
#include "tests/commands/command_test_support.h"

namespace {

const Bytes kWait1 = newObjectHeader("VXWaitCommand") + kBasePart + int32Bytes(1);
const Bytes kEnd = newObjectHeader("VXTransactionEndCommand") + kBasePart;

std::vector<std::string> texts(const VXAction& action) {
  std::vector<std::string> out;
  for (const auto& record : action.getCommands()) out.push_back(record->toString());
  return out;
}

template <class Action>
std::unique_ptr<Action> readAction(const Bytes& bytes) {
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  auto action = in.readOwnedObject<Action>();
  EXPECT_TRUE(in.atEnd());
  return action;
}

TEST(Action, EmptyActionsWriteTheBasePartAndCountZero) {
  EXPECT_EQ(objectBytes(VXImmediateAction()),
            newObjectHeader("VXImmediateAction") + kBasePart + uint32Bytes(0x06, 0));
  EXPECT_EQ(objectBytes(VXChannelAction(3)),
            newObjectHeader("VXChannelAction") + kBasePart + uint32Bytes(0x06, 0) + int32Bytes(3));
}

TEST(Action, WritesEachRecordAsANewObjectInOrder) {
  VXChannelAction action(0x80000001u);
  action.addCommand(std::make_unique<VXWaitCommand>(1));
  action.addCommand(std::make_unique<VXTransactionEndCommand>());
  const Bytes expected = newObjectHeader("VXChannelAction") + kBasePart + uint32Bytes(0x06, 2) +
                         kWait1 + kEnd + int32Bytes(static_cast<int32_t>(0x80000001u));
  EXPECT_EQ(objectBytes(action), expected);

  auto copy = readAction<VXAction>(expected);
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->getClass(), &VXChannelAction::staticClass());
  EXPECT_EQ(copy->getChannel(), 0x80000001u);
  EXPECT_EQ(texts(*copy), (std::vector<std::string>{"Wait 1", "TransactionEnd"}));
}

TEST(Action, IgnoresNullRecords) {
  VXImmediateAction action;
  action.addCommand(nullptr);
  EXPECT_TRUE(action.getCommands().empty());

  const Bytes withNull = newObjectHeader("VXImmediateAction") + kBasePart + uint32Bytes(0x06, 2) +
                         kNullObject + kWait1;
  auto copy = readAction<VXImmediateAction>(withNull);
  ASSERT_TRUE(copy);
  EXPECT_EQ(texts(*copy), std::vector<std::string>{"Wait 1"});
}

TEST(Action, MergedActionIsWrittenAndReadAsAnImmediateActionOnChannelZero) {
  EXPECT_EQ(VXImmediateAction().getChannel(), 0u);
  VXMergedAction merged;
  EXPECT_EQ(merged.getChannel(), 0u);
  merged.addCommand(std::make_unique<VXWaitCommand>(1));
  EXPECT_EQ(merged.getClass(), &VXImmediateAction::staticClass());
  EXPECT_EQ(merged.toString(), "VXImmediateAction");
  EXPECT_EQ(objectBytes(merged),
            newObjectHeader("VXImmediateAction") + kBasePart + uint32Bytes(0x06, 1) + kWait1);
}

TEST(Action, RootIsRegisteredButCannotBeMade) {
  const Bytes bytes = newObjectHeader("VXAction") + kBasePart + uint32Bytes(0x06, 0);
  EXPECT_EQ(readObjectError(bytes), "Bad type of created instance");
}

TEST(Action, ReadingRefusesARecordThatIsNotACommandOrTheSameRecordTwice) {
  const Bytes start = newObjectHeader("VXImmediateAction") + kBasePart;
  EXPECT_NE(readObjectError(start + uint32Bytes(0x06, 1) + newObjectHeader("AFCAttributeInt32") +
                            kBasePart + boolBytes(true) + int32Bytes(5)),
            "");
  // The second entry refers back to the first record: it would have two owners.
  EXPECT_NE(readObjectError(start + uint32Bytes(0x06, 2) + kWait1 + uint32Bytes(0x0C, 1)), "");
}

TEST(Action, HugeCountOnShortDataFailsWithoutTouchingTheAction) {
  VXChannelAction action(4);
  action.addCommand(std::make_unique<VXWaitCommand>(9));
  for (const Bytes& contents :
       {kBasePart + uint32Bytes(0x06, 0xFFFFFFFF) + kWait1,
        kBasePart + uint32Bytes(0x06, 1) + kWait1}) {  // the channel is missing
    AFCPersistentInputStreamBuffer in(contents.data(), contents.size());
    EXPECT_THROW(action.read(in), AFCPersistentReadException2);
    EXPECT_EQ(action.getChannel(), 4u);
    EXPECT_EQ(texts(action), std::vector<std::string>{"Wait 9"});
  }
}

TEST(MergedAction, TracksWhetherItsTransactionIsOpen) {
  VXMergedAction merged;
  merged.addCommand(std::make_unique<VXTransactionBeginCommand>("T", false));
  EXPECT_TRUE(merged.isInTransaction());
  merged.addCommand(std::make_unique<VXWaitCommand>(1));
  EXPECT_TRUE(merged.isInTransaction());
  merged.addCommand(std::make_unique<VXTransactionEndCommand>());
  EXPECT_FALSE(merged.isInTransaction());
}

TEST(MergedAction, ReadingRecomputesTheTransactionState) {
  const Bytes contents = kBasePart + uint32Bytes(0x06, 1) +
                         newObjectHeader("VXTransactionBeginCommand") + kBasePart +
                         stringBytes("T") + boolBytes(false);
  AFCPersistentInputStreamBuffer in(contents.data(), contents.size());
  VXMergedAction merged;
  merged.read(in);
  EXPECT_TRUE(merged.isInTransaction());
  EXPECT_EQ(texts(merged), std::vector<std::string>{"TransactionBegin T"});
}

TEST(MergedAction, FoldingAppendsAfterTheParentsRecordsAndClosesAnOpenTransactionOnce) {
  const struct {
    std::vector<std::string> merged;  // "B" a begin, "E" an end, else a wait of that time
    std::vector<std::string> parent;
  } rows[] = {
      {{"B"}, {"Wait 1", "TransactionBegin T", "TransactionEnd"}},
      {{"B", "E"}, {"Wait 1", "TransactionBegin T", "TransactionEnd"}},
      {{"2", "3"}, {"Wait 1", "Wait 2", "Wait 3"}},
  };
  for (const auto& row : rows) {
    VXChannelAction parent(2);
    parent.addCommand(std::make_unique<VXWaitCommand>(1));
    VXMergedAction merged;
    for (const std::string& record : row.merged) {
      if (record == "B") {
        merged.addCommand(std::make_unique<VXTransactionBeginCommand>("T", false));
      } else if (record == "E") {
        merged.addCommand(std::make_unique<VXTransactionEndCommand>());
      } else {
        merged.addCommand(std::make_unique<VXWaitCommand>(std::stoi(record)));
      }
    }
    merged.foldInto(parent);
    EXPECT_EQ(texts(parent), row.parent);
    EXPECT_TRUE(merged.getCommands().empty());
  }
}

}  // namespace

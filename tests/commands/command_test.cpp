#include "commands/command.h"

#include <gtest/gtest.h>

#include "tests/commands/command_test_support.h"

namespace {

TEST(Command, RootIsWrittenAsItsBasePartAlone) {
  EXPECT_EQ(objectBytes(VXCommand()), newObjectHeader("VXCommand") + kBasePart);
  auto copy = roundTrip(VXCommand());
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->getClass(), &VXCommand::staticClass());
}

TEST(Command, RecordsWithoutTextOfTheirOwnShowTheirClassName) {
  EXPECT_EQ(VXCommand().toString(), "class VXCommand");
  EXPECT_EQ(VXCommandWithTarget("a").toString(), "class VXCommandWithTarget");
}

TEST(CommandWithTarget, NonEmptyPrefixGoesInFrontOfTheComponents) {
  VXCommandWithTarget command("/txt//a/");
  command.applyNodePrefix("Root/_Br5_Title_1/");
  EXPECT_EQ(command.getTarget(), "Root/_Br5_Title_1/txt/a");
}

TEST(CommandWithTarget, EmptyPrefixLeavesTheTargetAsItWas) {
  VXCommandWithTarget command("/txt//a/");
  command.applyNodePrefix("");
  EXPECT_EQ(command.getTarget(), "/txt//a/");
}

TEST(CommandWithTarget, EmptyTargetBecomesThePrefix) {
  VXCommandWithTarget command;
  command.applyNodePrefix("Root/t");
  EXPECT_EQ(command.getTarget(), "Root/t");
}

TEST(CommandWithTarget, IsNotHandedOutByTheRegistry) {
  EXPECT_EQ(AFCClass::forName("VXCommandWithTarget"), nullptr);
  EXPECT_TRUE(VXCommandWithTarget::staticClass().isSubclassOf(VXCommand::staticClass()));
  EXPECT_EQ(readObjectError(objectBytes(VXCommandWithTarget("a"))),
            "Can't find class VXCommandWithTarget");
}

}  // namespace

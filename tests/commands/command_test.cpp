#include "commands/command.h"

#include <gtest/gtest.h>

#include "tests/commands/command_test_support.h"

namespace {

TEST(Command, RootIsWrittenAsItsBasePartAloneAndShowsItsClassName) {
  EXPECT_EQ(objectBytes(VXCommand()), newObjectHeader("VXCommand") + kBasePart);
  EXPECT_EQ(VXCommand().toString(), "class VXCommand");
  EXPECT_EQ(VXCommandWithTarget("a").toString(), "class VXCommandWithTarget");
}

TEST(CommandWithTarget, ANonEmptyPrefixGoesInFrontOfTheComponents) {
  const struct {
    const char* target;
    const char* prefix;
    const char* expected;
  } rows[] = {
      {"/txt//a/", "Root/_Br5_Title_1/", "Root/_Br5_Title_1/txt/a"},
      {"/txt//a/", "", "/txt//a/"},
      {"", "Root/t", "Root/t"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.target) + " + " + row.prefix);
    VXCommandWithTarget command(row.target);
    command.applyNodePrefix(row.prefix);
    EXPECT_EQ(command.getTarget(), row.expected);
  }
}

TEST(CommandWithTarget, IsNotHandedOutByTheRegistry) {
  EXPECT_EQ(AFCClass::forName("VXCommandWithTarget"), nullptr);
  EXPECT_TRUE(VXCommandWithTarget::staticClass().isSubclassOf(VXCommand::staticClass()));
  EXPECT_EQ(readObjectError(objectBytes(VXCommandWithTarget("a"))),
            "Can't find class VXCommandWithTarget");
}

}  // namespace

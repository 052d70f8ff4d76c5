#include "commands/animation_control_commands.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "tests/commands/command_test_support.h"

namespace {

constexpr int64_t kInfinite = std::numeric_limits<int64_t>::max();

TEST(StopAnimationCommand, WritesNameTargetAndTime) {
  const VXStopAnimationCommand command("in", "Root/t", kInfinite);
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXStopAnimationCommand") + kBasePart +
                                      stringBytes("in") + stringBytes("Root/t") +
                                      int64Bytes(0x7FFFFFFFFFFFFFFF));
  EXPECT_EQ(command.toString(), "StopAnimation in on Root/t");
}

TEST(AccelerateAnimationCommand, WritesNameTargetSpeedAndTime) {
  const VXAccelerateAnimationCommand command("in", "Root/t", 1.0f, -2);
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXAccelerateAnimationCommand") + kBasePart +
                                      stringBytes("in") + stringBytes("Root/t") +
                                      uint32Bytes(0x09, 0x3F800000) + int64Bytes(-2));
  EXPECT_EQ(command.toString(), "AccelerateAnimation in on Root/t");
}

TEST(RemoveLocalAnimationCommand, WritesNameThenTarget) {
  const VXRemoveLocalAnimationCommand command("in", "Root/t");
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXRemoveLocalAnimationCommand") + kBasePart +
                                      stringBytes("in") + stringBytes("Root/t"));
  EXPECT_EQ(command.toString(), "RemoveLocalAnimation in on Root/t");
}

TEST(ActivateActionCommand, WritesActionTransactionFlagThenTarget) {
  const VXActivateActionCommand command("go", "T1", true, "Root/t");
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXActivateActionCommand") + kBasePart +
                                      stringBytes("go") + stringBytes("T1") + boolBytes(true) +
                                      stringBytes("Root/t"));
  EXPECT_EQ(command.toString(), "ActivateAction go on Root/t");
}

TEST(ActivateActionCommand, DefaultNameFillsOnlyAnEmptyTransactionName) {
  VXActivateActionCommand named("go", "A", false, "t");
  named.bindDefaultName("T");
  EXPECT_EQ(named.getTransactionName(), "A");

  VXActivateActionCommand unnamed("go", "", false, "t");
  unnamed.bindDefaultName("T");
  EXPECT_EQ(unnamed.getTransactionName(), "T");
}

}  // namespace

#include "commands/animation_control_commands.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>

#include "tests/commands/command_test_support.h"

namespace {

TEST(AnimationControlCommands, WriteTheirFieldsInWireOrderAndNameThemInTheirText) {
  expectGolden({
      {"VXStopAnimationCommand",
       std::make_shared<VXStopAnimationCommand>("in", "Root/t",
                                                std::numeric_limits<int64_t>::max()),
       stringBytes("in") + stringBytes("Root/t") + int64Bytes(0x7FFFFFFFFFFFFFFF),
       "StopAnimation in on Root/t"},
      {"VXAccelerateAnimationCommand",
       std::make_shared<VXAccelerateAnimationCommand>("in", "Root/t", 1.0f, -2),
       stringBytes("in") + stringBytes("Root/t") + uint32Bytes(0x09, 0x3F800000) + int64Bytes(-2),
       "AccelerateAnimation in on Root/t"},
      {"VXRemoveLocalAnimationCommand",
       std::make_shared<VXRemoveLocalAnimationCommand>("in", "Root/t"),
       stringBytes("in") + stringBytes("Root/t"), "RemoveLocalAnimation in on Root/t"},
      {"VXActivateActionCommand",
       std::make_shared<VXActivateActionCommand>("go", "T1", true, "Root/t"),
       stringBytes("go") + stringBytes("T1") + boolBytes(true) + stringBytes("Root/t"),
       "ActivateAction go on Root/t"},
  });
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

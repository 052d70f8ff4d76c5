#include "animation/animation_time.h"

#include <gtest/gtest.h>

namespace {

// Frames and clock modes divide by 25 first; any mode other than 1, 2 and 3 is the clock.
TEST(AnimationTimeText, PrintsEveryDisplayModeWithTheSignBeforeTheMagnitude) {
  EXPECT_EQ(vxGetTimeDisplayMode(), VX_TIME_DISPLAY_MICROS);
  const int64_t clockTime = 3723LL * 25 * 1000000 + 100;  // 1 h 2 min 3 s and 4 after the division
  const struct {
    int mode;
    int64_t time;
    const char* text;
  } cases[] = {
      {VX_TIME_DISPLAY_MICROS, 1500000, "1.500000"},
      {VX_TIME_DISPLAY_MICROS, 0, "0.000000"},
      {VX_TIME_DISPLAY_MICROS, 7, "0.000007"},
      {VX_TIME_DISPLAY_MICROS, -1, "-0.000001"},
      {VX_TIME_DISPLAY_MICROS, -2500000, "-2.500000"},
      {VX_TIME_DISPLAY_MICROS, std::numeric_limits<int64_t>::min(), "-9223372036854.775808"},
      {VX_TIME_DISPLAY_SECONDS, -2500000, "-2"},
      {VX_TIME_DISPLAY_SECONDS, 1999999, "1"},
      {VX_TIME_DISPLAY_SECONDS, kVXTimeInfinite, "9223372036854"},
      {VX_TIME_DISPLAY_FRAMES, 50000000, "2.000000"},
      {VX_TIME_DISPLAY_FRAMES, 37500025, "1.500001"},
      {VX_TIME_DISPLAY_CLOCK, clockTime, "01:02:03:000004"},
      {VX_TIME_DISPLAY_CLOCK, -25, "-00:00:00:000001"},
      {4, clockTime, "01:02:03:000004"},
      {4, -25, "-00:00:00:000001"},
      {-1, clockTime, "01:02:03:000004"},
      {-1, -25, "-00:00:00:000001"},
  };
  for (const auto& c : cases) {
    vxSetTimeDisplayMode(c.mode);
    EXPECT_EQ(vxTimeToString(c.time), c.text) << "mode " << c.mode;
  }
  vxSetTimeDisplayMode(VX_TIME_DISPLAY_MICROS);
}

TEST(AnimationTimeSeconds, ConvertBothWaysRoundingToTheNearestMicrosecond) {
  EXPECT_FLOAT_EQ(vxTimeToSeconds(1500000), 1.5f);
  EXPECT_EQ(vxTimeFromSeconds(1.5f), 1500000);
  EXPECT_EQ(vxTimeFromSeconds(-0.25f), -250000);
  // 0.1f is 0.100000001490116...: the nearest microsecond is 100000.
  EXPECT_EQ(vxTimeFromSeconds(0.1f), 100000);
}

TEST(AnimationTimeSeconds, OutOfRangeSecondsSaturateAndNaNGivesZero) {
  EXPECT_EQ(vxTimeFromSeconds(1e30f), kVXTimeInfinite);
  EXPECT_EQ(vxTimeFromSeconds(vxTimeToSeconds(kVXTimeInfinite)), kVXTimeInfinite);
  EXPECT_EQ(vxTimeFromSeconds(-1e30f), std::numeric_limits<int64_t>::min());
  EXPECT_EQ(vxTimeFromSeconds(std::numeric_limits<float>::quiet_NaN()), 0);
}

}  // namespace

#include "animation/animation_time.h"

#include <gtest/gtest.h>

namespace {

// Each test chooses a display mode; the default comes back afterwards.
class AnimationTimeText : public ::testing::Test {
 protected:
  void TearDown() override { vxSetTimeDisplayMode(VX_TIME_DISPLAY_MICROS); }
};

TEST_F(AnimationTimeText, DefaultModePrintsSecondsAndMicroseconds) {
  EXPECT_EQ(vxGetTimeDisplayMode(), 3);
  EXPECT_EQ(vxTimeToString(1500000), "1.500000");
  EXPECT_EQ(vxTimeToString(0), "0.000000");
  EXPECT_EQ(vxTimeToString(7), "0.000007");
}

TEST_F(AnimationTimeText, NegativeTimesCarryALeadingMinusBeforeTheirMagnitude) {
  EXPECT_EQ(vxTimeToString(-1), "-0.000001");
  EXPECT_EQ(vxTimeToString(-2500000), "-2.500000");
  EXPECT_EQ(vxTimeToString(std::numeric_limits<int64_t>::min()), "-9223372036854.775808");
  vxSetTimeDisplayMode(VX_TIME_DISPLAY_SECONDS);
  EXPECT_EQ(vxTimeToString(-2500000), "-2");
}

TEST_F(AnimationTimeText, SecondsModePrintsWholeSecondsOnly) {
  vxSetTimeDisplayMode(VX_TIME_DISPLAY_SECONDS);
  EXPECT_EQ(vxTimeToString(1999999), "1");
  EXPECT_EQ(vxTimeToString(kVXTimeInfinite), "9223372036854");
}

TEST_F(AnimationTimeText, FramesModeSplitsTheTimeDividedByTwentyFive) {
  vxSetTimeDisplayMode(VX_TIME_DISPLAY_FRAMES);
  // 50,000,000 / 25 = 2,000,000: 2 and 0; 37,500,025 / 25 = 1,500,001.
  EXPECT_EQ(vxTimeToString(50000000), "2.000000");
  EXPECT_EQ(vxTimeToString(37500025), "1.500001");
}

TEST_F(AnimationTimeText, AnyOtherModePrintsHoursMinutesSecondsAndRemainder) {
  for (int mode : {0, 4, -1}) {
    vxSetTimeDisplayMode(mode);
    // (1 h 2 min 3 s) * 25 * 10^6 + 4 * 25: after the division 3723 s and 4.
    EXPECT_EQ(vxTimeToString(3723LL * 25 * 1000000 + 100), "01:02:03:000004") << mode;
    EXPECT_EQ(vxTimeToString(-25), "-00:00:00:000001") << mode;
  }
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

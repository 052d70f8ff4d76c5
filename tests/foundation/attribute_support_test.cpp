#include "foundation/attribute_support.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

namespace {

TEST(AttributeSupport, TruncationClampsInsteadOfOverflowing) {
  EXPECT_EQ(afcTruncateToInt32(-2.9), -2);
  EXPECT_EQ(afcTruncateToInt32(2147483648.0), INT32_MAX);
  EXPECT_EQ(afcTruncateToInt32(-2147483649.0), INT32_MIN);
  EXPECT_EQ(afcTruncateToInt32(NAN), 0);
  EXPECT_EQ(afcTruncateToInt64(9.3e18), INT64_MAX);
  EXPECT_EQ(afcTruncateToInt64(-INFINITY), INT64_MIN);
}

TEST(AttributeSupport, BiasRoundsValuesJustBelowAnInteger) {
  EXPECT_EQ(afcBiasedInt32(2.9999), 3);
  EXPECT_EQ(afcBiasedInt32(2.998), 2);
  EXPECT_EQ(afcBiasedInt32(-0.5), 0);
  EXPECT_EQ(afcBiasedInt32(-1.0), 0);  // -0.999 truncates toward zero
}

TEST(AttributeSupport, FormatsTheLargestDoubleInFull) {
  const std::string text = afcFormatDouble("%f", DBL_MAX);
  EXPECT_EQ(text.size(), 316u);
  EXPECT_EQ(text.substr(text.size() - 7), ".000000");
}

TEST(AttributeSupport, LeadingNumberNeedsADigitAtTheStart) {
  EXPECT_EQ(afcLeadingNumber("  -1.5e1x"), -15.0);
  EXPECT_FALSE(afcLeadingNumber("x1").has_value());
  EXPECT_FALSE(afcLeadingNumber("").has_value());
}

}  // namespace

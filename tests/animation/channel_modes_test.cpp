#include "animation/channel_modes.h"

#include <gtest/gtest.h>

#include "foundation/animation_enums.h"

namespace {

TEST(InterpolationText, AcceptsNamesWithAndWithoutTheTanPrefixAndPrintsThem) {
  const char* names[] = {"LINEAR", "SMOOTH", "FLAT", "STEP", "FIXED"};
  for (int32_t id = 0; id < 5; ++id) {
    EXPECT_EQ(vxInterpolationFromString(names[id]), id) << names[id];
    EXPECT_EQ(vxInterpolationFromString(std::string("TAN_") + names[id]), id) << names[id];
    EXPECT_STREQ(vxInterpolationToString(id), names[id]);
  }
}

TEST(InterpolationText, MapsEveryOtherTextAndIdToSmooth) {
  for (const char* text : {"linear", "", "TAN_", "TAN_TAN_STEP", "STEP "}) {
    EXPECT_EQ(vxInterpolationFromString(text), 1) << text;
  }
  EXPECT_STREQ(vxInterpolationToString(5), "SMOOTH");
  EXPECT_STREQ(vxInterpolationToString(-1), "SMOOTH");
}

TEST(BeyondText, AcceptsPreAndPostFormsExceptForRelative) {
  const struct {
    const char* name;
    int32_t id;
  } cases[] = {{"CYCLE", 1}, {"CYCLE_OFFSET", 2}, {"IDENTITY", 3}, {"LINEAR", 4}, {"OSCILLATE", 5}};
  for (const auto& c : cases) {
    const std::string name = c.name;
    EXPECT_EQ(vxBeyondFromString(name), c.id) << name;
    EXPECT_EQ(vxBeyondFromString("PRE_" + name), c.id) << name;
    EXPECT_EQ(vxBeyondFromString("POST_" + name), c.id) << name;
  }
  EXPECT_EQ(vxBeyondFromString("RELATIVE"), 6);
  EXPECT_EQ(vxBeyondFromString("PRE_RELATIVE"), 0);
  EXPECT_EQ(vxBeyondFromString("POST_INHERIT"), 0);
  EXPECT_EQ(vxBeyondFromString("PRE_POST_CYCLE"), 0);
  EXPECT_EQ(vxBeyondFromString("cycle"), 0);
}

// INHERIT exists by text only; the enum class lacks it.
TEST(BeyondText, PrintsTheEnumClassNamesInheritAndConstantForUnknownIds) {
  registerAnimationEnums();
  const AFCEnumClass& beyond = AFCEnumClass::forName("VXChannelBeyondEnum");
  for (int32_t id = 0; id <= 6; ++id) EXPECT_EQ(vxBeyondToString(id), beyond.getValueName(id));
  EXPECT_EQ(vxBeyondFromString("INHERIT"), 7);
  EXPECT_STREQ(vxBeyondToString(7), "INHERIT");
  EXPECT_FALSE(beyond.hasId(7));
  EXPECT_STREQ(vxBeyondToString(8), "CONSTANT");
  EXPECT_STREQ(vxBeyondToString(-1), "CONSTANT");
}

}  // namespace

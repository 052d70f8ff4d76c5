#include "animation/channel_modes.h"

#include <gtest/gtest.h>

#include "foundation/animation_enums.h"

namespace {

TEST(InterpolationText, AcceptsNamesWithAndWithoutTheTanPrefix) {
  EXPECT_EQ(vxInterpolationFromString("LINEAR"), 0);
  EXPECT_EQ(vxInterpolationFromString("TAN_LINEAR"), 0);
  EXPECT_EQ(vxInterpolationFromString("FLAT"), 2);
  EXPECT_EQ(vxInterpolationFromString("TAN_FLAT"), 2);
  EXPECT_EQ(vxInterpolationFromString("STEP"), 3);
  EXPECT_EQ(vxInterpolationFromString("TAN_STEP"), 3);
  EXPECT_EQ(vxInterpolationFromString("FIXED"), 4);
  EXPECT_EQ(vxInterpolationFromString("TAN_FIXED"), 4);
}

TEST(InterpolationText, MapsEveryOtherTextToSmooth) {
  for (const char* text : {"SMOOTH", "TAN_SMOOTH", "linear", "", "TAN_", "TAN_TAN_STEP", "STEP "}) {
    EXPECT_EQ(vxInterpolationFromString(text), 1) << text;
  }
}

TEST(InterpolationText, PrintsSmoothForEveryUnknownId) {
  EXPECT_STREQ(vxInterpolationToString(0), "LINEAR");
  EXPECT_STREQ(vxInterpolationToString(1), "SMOOTH");
  EXPECT_STREQ(vxInterpolationToString(2), "FLAT");
  EXPECT_STREQ(vxInterpolationToString(3), "STEP");
  EXPECT_STREQ(vxInterpolationToString(4), "FIXED");
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

TEST(BeyondText, InheritExistsByTextWhileTheEnumClassLacksIt) {
  registerAnimationEnums();
  EXPECT_EQ(vxBeyondFromString("INHERIT"), 7);
  EXPECT_STREQ(vxBeyondToString(7), "INHERIT");
  EXPECT_FALSE(AFCEnumClass::forName("VXChannelBeyondEnum").hasId(7));
}

TEST(BeyondText, PrintsTheEnumClassNamesAndConstantForUnknownIds) {
  registerAnimationEnums();
  const AFCEnumClass& beyond = AFCEnumClass::forName("VXChannelBeyondEnum");
  for (int32_t id = 0; id <= 6; ++id) EXPECT_EQ(vxBeyondToString(id), beyond.getValueName(id));
  EXPECT_STREQ(vxBeyondToString(8), "CONSTANT");
  EXPECT_STREQ(vxBeyondToString(-1), "CONSTANT");
}

}  // namespace

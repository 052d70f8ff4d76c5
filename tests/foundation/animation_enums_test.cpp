#include "foundation/animation_enums.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

std::vector<std::string> valueNames(const char* enumName) {
  const AFCEnumClass& enumClass = AFCEnumClass::forName(enumName);
  std::vector<std::string> names;
  for (int32_t id = 0; enumClass.hasId(id); ++id) names.push_back(enumClass.getValueName(id));
  return names;
}

TEST(AnimationEnums, RegistersTheThreeClassesWithTheirIds) {
  registerAnimationEnums();
  EXPECT_EQ(valueNames("VXChannelInterpolationEnum"),
            (std::vector<std::string>{"LINEAR", "SMOOTH", "FLAT", "STEP", "FIXED"}));
  EXPECT_EQ(valueNames("VXChannelBeyondEnum"),
            (std::vector<std::string>{"CONSTANT", "CYCLE", "CYCLE_OFFSET", "IDENTITY", "LINEAR",
                                      "OSCILLATE", "RELATIVE"}));
  EXPECT_EQ(
      valueNames("VXActivateAnimationOptionsPlayModeEnum"),
      (std::vector<std::string>{"MFIRST", "MFORWARD", "MBACKWARD", "MLAST", "MDEMAND", "MSTOP"}));
}

TEST(AnimationEnums, BeyondHasNoInheritValue) {
  registerAnimationEnums();
  EXPECT_FALSE(AFCEnumClass::forName("VXChannelBeyondEnum").hasId(7));
}

TEST(AnimationEnums, RegistrationFromManyThreadsYieldsOneClass) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back([] { registerAnimationEnums(); });
  for (std::thread& t : threads) t.join();
  registerAnimationEnums();
  const AFCEnumClass* first = AFCEnumClass::find("VXChannelBeyondEnum");
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->getId("RELATIVE"), 6);
}

}  // namespace

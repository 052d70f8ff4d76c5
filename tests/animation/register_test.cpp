#include "animation/register.h"

#include <gtest/gtest.h>

#include <memory>

#include "foundation/class.h"
#include "foundation/enum.h"

namespace {

TEST(AnimationRegistration, MakesEveryClassOfTheLayerAndTheFoundationFindableByName) {
  registerAnimationClasses();
  registerAnimationClasses();  // a second call changes nothing
  for (const char* name : {"VXAnimation", "VXChannel", "VXActivateAnimationOptionsObject"}) {
    const AFCClass* record = AFCClass::forName(name);
    ASSERT_NE(record, nullptr) << name;
    EXPECT_EQ(record->getName(), name);
    std::unique_ptr<AFCObject> instance(record->newInstance());
    ASSERT_NE(instance, nullptr) << name;
    EXPECT_EQ(instance->getClass(), record);
  }
  EXPECT_EQ(AFCClass::forName("VXAnimationChannel"), nullptr);
  EXPECT_NE(AFCClass::forName("AFCAttributeVec4f"), nullptr);
  EXPECT_NE(AFCEnumClass::find("VXActivateAnimationOptionsPlayModeEnum"), nullptr);
}

}  // namespace

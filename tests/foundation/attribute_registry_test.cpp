#include "foundation/attribute_registry.h"

#include <gtest/gtest.h>

#include <memory>

#include "foundation/attribute.h"
#include "foundation/class.h"
#include "foundation/enum.h"

namespace {

TEST(AttributeRegistry, EveryKindIsCreatedByNameAndStartsUndefined) {
  registerAttributeClasses();
  for (const char* name :
       {"AFCAttributeBool", "AFCAttributeInt32", "AFCAttributeInt64", "AFCAttributeFloat",
        "AFCAttributeDouble", "AFCAttributeString", "AFCAttributeWString", "AFCAttributeVec2f",
        "AFCAttributeVec3f", "AFCAttributeVec4f", "AFCAttributeVecNf", "AFCAttributeVec2s",
        "AFCAttributeColor", "AFCAttributeDate", "AFCAttributeTime", "AFCAttributeTimestamp",
        "AFCAttributeBuffer", "AFCAttributeEnum"}) {
    SCOPED_TRACE(name);
    const AFCClass* record = AFCClass::forName(name);
    ASSERT_NE(record, nullptr);
    EXPECT_TRUE(record->isSubclassOf(AFCAttribute::staticClass()));
    std::unique_ptr<AFCObject> instance(record->newInstance());
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->getClass(), record);
    EXPECT_EQ(instance->toString(), "<undefined>");
  }
}

TEST(AttributeRegistry, BasesAreAbstractAndTheRootHasItsMethods) {
  registerAttributeClasses();
  for (const char* name :
       {"AFCAttribute", "AFCSingleChannelAttribute", "AFCMultiChannelAttribute"}) {
    ASSERT_NE(AFCClass::forName(name), nullptr) << name;
    EXPECT_EQ(AFCClass::forName(name)->newInstance(), nullptr) << name;
  }
  const AFCMethod* toString = AFCClass::forName("AFCAttributeVec2f")->findMethod("toString");
  ASSERT_NE(toString, nullptr);
  EXPECT_EQ(toString->toString(), "toString () returning AFCAttributeString");
  EXPECT_NE(AFCClass::forName("AFCAttribute")->findMethod("fromAttribute"), nullptr);
  EXPECT_NE(AFCEnumClass::find("VXActivateAnimationOptionsPlayModeEnum"), nullptr);
}

}  // namespace

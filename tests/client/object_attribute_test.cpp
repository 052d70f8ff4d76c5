#include "client/object_attribute.h"

#include <gtest/gtest.h>

#include "tests/client/scripted_session.h"

TEST(ObjectAttribute, RefersToItsObjectWithoutOwningIt) {
  VXZonesStateObject zones;
  zones.getZones().set("B", false);
  zones.getZones().set("A", true);
  VXObjectAttribute value(&zones);
  EXPECT_EQ(value.getAs<VXZonesStateObject>(), &zones);
  EXPECT_EQ(value.getAs<VXAction>(), nullptr);
  EXPECT_EQ(value.toString(), "A=1,B=0");
  std::unique_ptr<VXObjectAttribute> copy(value.clone());
  EXPECT_TRUE(copy->equals(value));
  value.set(nullptr);
  EXPECT_FALSE(value.isDefined());
  EXPECT_EQ(value.toString(), "<undefined>");
}

TEST(ObjectAttribute, HasNoPersistedForm) {
  VXZonesStateObject zones;
  VXObjectAttribute value(&zones);
  AFCPersistentOutputStreamBuffer out;
  EXPECT_THROW(value.write(out), AFCPersistentWriteException);
}

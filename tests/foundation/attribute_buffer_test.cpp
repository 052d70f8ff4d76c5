#include "foundation/attribute_buffer.h"

#include <gtest/gtest.h>

#include "tests/foundation/attribute_test_support.h"

namespace {

TEST(AttributeBuffer, WritesOnlyTheCountWhenEmpty) {
  EXPECT_EQ(contentBytes(AFCAttributeBuffer(AFCBuffer())),
            kBasePart + boolBytes(true) + uint32Bytes(0x06, 0));
}

TEST(AttributeBuffer, WritesTheCountThenOneBinaryBlock) {
  const Bytes expected = kBasePart + boolBytes(true) + uint32Bytes(0x06, 3) + uint32Bytes(0x0D, 3) +
                         Bytes{'a', 'b', 'c'};
  EXPECT_EQ(contentBytes(AFCAttributeBuffer(AFCBuffer("abc", 3))), expected);
}

TEST(AttributeBuffer, TextFormAndKeyAreTheBytes) {
  AFCAttributeBuffer value;
  value.fromString(std::string("a\0b", 3));
  EXPECT_EQ(value.get().size(), 3u);
  EXPECT_EQ(value.toString(), std::string("a\0b", 3));
  EXPECT_EQ(value.getKey(), std::string("Buffera\0b", 9));
}

TEST(AttributeBuffer, RejectsACountLargerThanTheStream) {
  const Bytes contents = kBasePart + boolBytes(true) + uint32Bytes(0x06, 0xFFFFFFF0u) +
                         uint32Bytes(0x0D, 3) + Bytes{'a', 'b', 'c'};
  AFCAttributeBuffer value(AFCBuffer("xy", 2));
  EXPECT_EQ(readError(value, contents), "Incorrect data length");
  EXPECT_EQ(value.toString(), "xy");
}

}  // namespace

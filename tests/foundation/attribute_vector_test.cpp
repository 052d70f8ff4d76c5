#include "foundation/attribute_vector.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/foundation/attribute_test_support.h"

namespace {

std::vector<float> floatsAfter(const std::string& key, std::size_t offset) {
  std::vector<float> floats((key.size() - offset) / sizeof(float));
  std::memcpy(floats.data(), key.data() + offset, floats.size() * sizeof(float));
  return floats;
}

TEST(AttributeVector, KeysCarryTheKindTagAndTheChannelBytes) {
  const std::string key2 = AFCAttributeVec2f({1.0f, 2.0f}).getKey();
  EXPECT_EQ(key2.substr(0, 2), "2f");
  EXPECT_EQ(floatsAfter(key2, 2), (std::vector<float>{1.0f, 2.0f}));
  EXPECT_EQ(AFCAttributeVec3f().getKey().substr(0, 2), "3f");
  EXPECT_EQ(AFCAttributeVec4f().getKey().size(), 2u + 16u);
  const std::string colour = AFCAttributeColor({0.5f, 0, 0, 1}).getKey();
  EXPECT_EQ(colour.substr(0, 1), "C");
  EXPECT_EQ(floatsAfter(colour, 1), (std::vector<float>{0.5f, 0, 0, 1}));
  EXPECT_EQ(AFCAttributeVec2s({1, 2}).getKey().substr(0, 2), "2s");
}

TEST(AttributeVector, TypedGetNeedsADefinedChannel) {
  EXPECT_THROW(AFCAttributeVec3f().get(), AFCUndefinedAttributeValue);
  AFCAttributeVec3f value;
  value.set({1.0f, 2.0f, 3.0f});
  EXPECT_EQ(value.getDefinedMask(), 0x7u);
  EXPECT_EQ(value.get()[2], 3.0f);
}

TEST(AttributeVec2s, StoresChannelsWithTheIntegerBias) {
  AFCAttributeVec2s value;
  value.fromString("[2.9999, -0.5]");
  EXPECT_EQ(value.get(), (AFCAttributeVec2s::Value{3, 0}));
  EXPECT_EQ(value.toString(), "[3, 0]");
}

TEST(AttributeVecNf, TextSetsTheNumberOfChannels) {
  AFCAttributeVecNf value;
  value.fromString("[1, , 3]");
  EXPECT_EQ(value.getChannelCount(), 3);
  EXPECT_EQ(value.toString(), "[1, , 3]");
  for (const char* empty : {"[]", "[ ]", "[\t]", "[ \t ]"}) {
    value.fromString(empty);
    EXPECT_EQ(value.getChannelCount(), 0) << empty;
    EXPECT_FALSE(value.isDefined());
  }
  value.fromString("4.5");
  EXPECT_EQ(value.toString(), "[4.5]");
}

TEST(AttributeVecNf, ChannelsFrom31UpShareOneBit) {
  AFCAttributeVecNf value;
  value.fromString("[" + std::string(39, ',') + "]");
  ASSERT_EQ(value.getChannelCount(), 40);
  value.setChannelValue(35, 1.0);
  EXPECT_TRUE(value.isChannelDefined(31));
  EXPECT_TRUE(value.isChannelDefined(39));
  EXPECT_FALSE(value.isChannelDefined(30));
  EXPECT_EQ(value.getDefinedMask(), 0x80000000u);
}

TEST(AttributeVecNf, KeyCarriesTheCount) {
  const std::string key = AFCAttributeVecNf({7.0f, 8.0f}).getKey();
  ASSERT_EQ(key.size(), 2u + 4u + 8u);
  uint32_t count;
  std::memcpy(&count, key.data() + 2, 4);
  EXPECT_EQ(count, 2u);
  EXPECT_EQ(floatsAfter(key, 6), (std::vector<float>{7.0f, 8.0f}));
}

TEST(AttributeVecNf, WritesTheCountBeforeTheFloats) {
  const Bytes expected = kBasePart + uint32Bytes(0x06, 0x1) + uint32Bytes(0x06, 1) +
                         Bytes{0xDA, 0x09, 0x3F, 0x80, 0x00, 0x00};
  EXPECT_EQ(contentBytes(AFCAttributeVecNf({1.0f})), expected);
}

TEST(AttributeVecNf, RejectsACountLargerThanTheStreamWithoutChangingItself) {
  const Bytes contents = kBasePart + uint32Bytes(0x06, 0x1) + uint32Bytes(0x06, 0x7FFFFFFF) +
                         Bytes{0xDA, 0x09, 0x3F, 0x80, 0x00, 0x00};
  AFCAttributeVecNf value({5.0f, 6.0f});
  EXPECT_EQ(readError(value, contents), "Incorrect data length");
  EXPECT_EQ(value.get(), (std::vector<float>{5.0f, 6.0f}));
  EXPECT_EQ(value.getDefinedMask(), 0x3u);
}

TEST(AttributeVector, AssignsOnlyFromItsOwnKind) {
  AFCAttributeColor colour;
  EXPECT_FALSE(colour.assignTyped(AFCAttributeVec4f({1, 2, 3, 4})));
  EXPECT_TRUE(colour.assignTyped(AFCAttributeColor({1, 2, 3, 4})));
  EXPECT_EQ(colour.toString(), "[1, 2, 3, 4]");
}

}  // namespace

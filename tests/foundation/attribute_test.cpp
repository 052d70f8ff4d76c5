#include "foundation/attribute.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/animation_enums.h"
#include "foundation/attribute_buffer.h"
#include "foundation/attribute_date_time.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/enum.h"
#include "tests/foundation/attribute_test_support.h"
#include "tests/support/failure_text.h"

namespace {

// A defined value of each kind, chosen so that a lost byte would show; the pointer picks the
// kind.
AFCAttributeBool sampleOf(AFCAttributeBool*) { return AFCAttributeBool(true); }
AFCAttributeInt32 sampleOf(AFCAttributeInt32*) { return AFCAttributeInt32(-123456789); }
AFCAttributeInt64 sampleOf(AFCAttributeInt64*) { return AFCAttributeInt64(-(int64_t{1} << 40)); }
AFCAttributeFloat sampleOf(AFCAttributeFloat*) { return AFCAttributeFloat(-0.15625f); }
AFCAttributeDouble sampleOf(AFCAttributeDouble*) { return AFCAttributeDouble(1.0 / 3.0); }
AFCAttributeString sampleOf(AFCAttributeString*) {
  return AFCAttributeString("Gr\xC3\xBC\xC3\x9F");
}
AFCAttributeWString sampleOf(AFCAttributeWString*) {
  return AFCAttributeWString(u"\u00C4pfel \u20AC");
}
AFCAttributeVec2f sampleOf(AFCAttributeVec2f*) { return AFCAttributeVec2f({1.5f, -2.25f}); }
AFCAttributeVec3f sampleOf(AFCAttributeVec3f*) { return AFCAttributeVec3f({1.0f, 2.0f, 3.5f}); }
AFCAttributeVec4f sampleOf(AFCAttributeVec4f*) { return AFCAttributeVec4f({0.5f, 0.25f, 0, -1}); }
AFCAttributeColor sampleOf(AFCAttributeColor*) { return AFCAttributeColor({1.0f, 0.5f, 0, 0.75f}); }
AFCAttributeVec2s sampleOf(AFCAttributeVec2s*) { return AFCAttributeVec2s({-7, 65536}); }
AFCAttributeVecNf sampleOf(AFCAttributeVecNf*) { return AFCAttributeVecNf({0.5f, 1.5f, 2.5f}); }
AFCAttributeDate sampleOf(AFCAttributeDate*) { return AFCAttributeDate(AFCDate(24, 12, 2023)); }
AFCAttributeTime sampleOf(AFCAttributeTime*) { return AFCAttributeTime(AFCTime(23, 59, 58)); }
AFCAttributeTimestamp sampleOf(AFCAttributeTimestamp*) {
  return AFCAttributeTimestamp(AFCTimestamp(AFCDate(29, 2, 2024), AFCTime(7, 5, 3)));
}
AFCAttributeBuffer sampleOf(AFCAttributeBuffer*) {
  return AFCAttributeBuffer(AFCBuffer("\0\1\xFFz", 4));
}
AFCAttributeEnum sampleOf(AFCAttributeEnum*) {
  registerAnimationEnums();
  return AFCAttributeEnum(AFCEnumClass::forName("VXChannelBeyondEnum"), 5);
}

template <class T>
T sample() {
  return sampleOf(static_cast<T*>(nullptr));
}

template <class T>
class EveryAttributeKind : public ::testing::Test {};

using Kinds =
    ::testing::Types<AFCAttributeBool, AFCAttributeInt32, AFCAttributeInt64, AFCAttributeFloat,
                     AFCAttributeDouble, AFCAttributeString, AFCAttributeWString, AFCAttributeVec2f,
                     AFCAttributeVec3f, AFCAttributeVec4f, AFCAttributeColor, AFCAttributeVec2s,
                     AFCAttributeVecNf, AFCAttributeDate, AFCAttributeTime, AFCAttributeTimestamp,
                     AFCAttributeBuffer, AFCAttributeEnum>;
TYPED_TEST_SUITE(EveryAttributeKind, Kinds);

TYPED_TEST(EveryAttributeKind, ReadsBackWhatItWrote) {
  const TypeParam original = sample<TypeParam>();
  ASSERT_TRUE(original.isDefined());
  const std::unique_ptr<AFCAttribute> copy = roundTrip(original);
  ASSERT_NE(dynamic_cast<TypeParam*>(copy.get()), nullptr);
  EXPECT_TRUE(copy->equals(original));
  EXPECT_EQ(copy->toString(), original.toString());
  EXPECT_EQ(copy->getKey(), original.getKey());
}

TYPED_TEST(EveryAttributeKind, StartsUndefinedAndStaysSoThroughTextAndStream) {
  const TypeParam fresh;
  EXPECT_FALSE(fresh.isDefined());
  EXPECT_EQ(fresh.toString(), "<undefined>");
  TypeParam value = sample<TypeParam>();
  value.fromString("<undefined>");
  EXPECT_FALSE(value.isDefined());
  const std::unique_ptr<AFCAttribute> copy = roundTrip(value);
  EXPECT_FALSE(copy->isDefined());
  EXPECT_EQ(copy->toString(), "<undefined>");
}

TYPED_TEST(EveryAttributeKind, ClonesAndCopiesFromItsOwnKind) {
  const TypeParam original = sample<TypeParam>();
  const std::unique_ptr<AFCAttribute> copy(original.clone());
  EXPECT_EQ(copy->getClass(), &TypeParam::staticClass());
  EXPECT_TRUE(copy->equals(original));
  TypeParam target;
  if constexpr (std::is_same_v<TypeParam, AFCAttributeEnum>) target = sample<TypeParam>();
  target.setUndefined();
  target.fromAttribute(original);
  EXPECT_TRUE(target.equals(original));
}

TYPED_TEST(EveryAttributeKind, LeavesItselfAsItWasWhenTheStreamEndsEarly) {
  const TypeParam written = sample<TypeParam>();
  Bytes contents = contentBytes(written);
  contents.pop_back();
  TypeParam target;
  if constexpr (std::is_same_v<TypeParam, AFCAttributeEnum>) target = sample<TypeParam>();
  target.setUndefined();
  EXPECT_EQ(readError(target, contents), "Incorrect data length");
  EXPECT_FALSE(target.isDefined());
}

TEST(Attribute, Int32HasTheGoldenWireForm) {
  const Bytes expected = newObjectHeader("AFCAttributeInt32") + kBasePart + boolBytes(true) +
                         Bytes{0xDA, 0x05, 0xFF, 0xFF, 0xFF, 0xFE};
  EXPECT_EQ(objectBytes(AFCAttributeInt32(-2)), expected);
}

TEST(Attribute, MultiChannelWritesItsMaskThenEveryChannel) {
  AFCAttributeVec2f value;
  value.setChannelValue(1, 1.0);
  const Bytes expected = kBasePart + uint32Bytes(0x06, 0x2) +
                         Bytes{0xDA, 0x09, 0x00, 0x00, 0x00, 0x00} +
                         Bytes{0xDA, 0x09, 0x3F, 0x80, 0x00, 0x00};
  EXPECT_EQ(contentBytes(value), expected);
}

TEST(Attribute, HashOfAKindWithoutOneNamesTheClass) {
  EXPECT_EQ(failureOf<AFCAttributeGetHashValueNotImplementedException>(
                [] { AFCAttributeVec2f().getHashValue(); }),
            "Attribute AFCAttributeVec2f not implemented getHashValue method");
}

TEST(Attribute, FromAttributeFallsBackToTheTextFormAndAnUndefinedSourceUndefines) {
  AFCAttributeInt32 target;
  target.fromAttribute(AFCAttributeString("42 apples"));
  EXPECT_EQ(target.get(), 42);
  target.fromAttribute(AFCAttributeString());
  EXPECT_FALSE(target.isDefined());
  AFCAttributeVec3f vector;
  vector.fromAttribute(AFCAttributeVec2f({1.0f, 2.0f}));
  EXPECT_EQ(vector.toString(), "[1, 2, ]");
}

TEST(Attribute, GetIntAndGetDoubleParseTheTextForm) {
  EXPECT_EQ(AFCAttributeDouble(-2.7).getInt(), -2);
  EXPECT_EQ(AFCAttributeString("17.5x").getDouble(), 17.5);
  EXPECT_EQ(AFCAttributeDouble().getDoubleOrZero(), 0.0);
  EXPECT_EQ(AFCAttributeBool(true).getInt(), 0);  // "True" holds no number
}

TEST(Attribute, ReflectiveMethodsWorkByName) {
  const AFCClass& record = AFCAttribute::staticClass();
  AFCAttributeInt32 value(7);
  AFCResult text = record.invoke(&value, "toString", {});
  ASSERT_NE(dynamic_cast<AFCAttributeString*>(text.get()), nullptr);
  EXPECT_EQ(text->toString(), "7");

  AFCAttributeString nine("9");
  AFCAttribute* const fromText[] = {&nine};
  EXPECT_EQ(record.invoke(&value, "fromString", fromText), nullptr);
  EXPECT_EQ(value.get(), 9);

  AFCAttributeDouble source(3.9);
  AFCAttribute* const fromSource[] = {&source};
  AFCAttributeInt32::staticClass().invoke(&value, "fromAttribute", fromSource);
  EXPECT_EQ(value.get(), 3);
  EXPECT_THROW(record.invoke(&value, "fromString", {}), AFCInvalidArgumentCountException);
}

// Empty places stay empty, a lone number is channel 0, a stray character ends the parse.
TEST(MultiChannelAttribute, ParsesItsTextFormPlaceByPlace) {
  const struct {
    const char* text;
    const char* printed;
    uint32_t mask;
  } cases[] = {
      {"[1, , 3]", "[1, , 3]", 0x5}, {"7", "[7, , ]", 0x1}, {"[1.5, x, 3]", "[1.5, , ]", 0x1}};
  for (const auto& c : cases) {
    AFCAttributeVec3f value({9.0f, 9.0f, 9.0f});
    value.fromString(c.text);
    EXPECT_EQ(value.toString(), c.printed) << c.text;
    EXPECT_EQ(value.getDefinedMask(), c.mask) << c.text;
  }
  AFCAttributeVec3f value({9.0f, 9.0f, 9.0f});
  value.fromString("nothing");
  EXPECT_FALSE(value.isDefined());
}

TEST(MultiChannelAttribute, IgnoresChannelsOutOfRange) {
  AFCAttributeVec2f value;
  value.fromString("[1, 2, 3, 4]");
  value.setChannelValue(-1, 5.0);
  EXPECT_EQ(value.toString(), "[1, 2]");
  EXPECT_FALSE(value.isChannelDefined(-1));
  EXPECT_EQ(value.getChannelValue(7), 0.0);
}

TEST(MultiChannelAttribute, NaNIsNeverEqual) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  AFCAttributeVec2f a, b;
  a.setChannelValue(0, nan);
  b.setChannelValue(0, nan);
  EXPECT_FALSE(a.equals(b));
  EXPECT_FALSE(a.equals(a));
}

TEST(MultiChannelAttribute, EqualityNeedsTheSameClassAndChannels) {
  EXPECT_FALSE(AFCAttributeVec4f({1, 2, 3, 4}).equals(AFCAttributeColor({1, 2, 3, 4})));
  AFCAttributeVec2f partly;
  partly.setChannelValue(0, 1.0);
  EXPECT_FALSE(partly.equals(AFCAttributeVec2f({1.0f, 0.0f})));
}

}  // namespace

#include "foundation/attribute_scalar.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/failure_text.h"

namespace {

TEST(AttributeBool, ParsesTextAsTheScriptsWriteItAndPrintsAndKeysItsValue) {
  const struct {
    const char* text;
    bool value;
  } cases[] = {{" true", true}, {"\tT", true}, {"False", false}, {"f", false},  {"", false},
               {"0.5", false},  {"1", true},   {" 2.5", true},   {"yes", false}};
  for (const auto& c : cases) {
    AFCAttributeBool value;
    value.fromString(c.text);
    EXPECT_EQ(value.get(), c.value) << c.text;
  }
  EXPECT_EQ(AFCAttributeBool(true).toString(), "True");
  EXPECT_EQ(AFCAttributeBool(false).toString(), "False");
  EXPECT_EQ(AFCAttributeBool(true).getKey(), "T");
  EXPECT_EQ(AFCAttributeBool(false).getKey(), "F");
}

TEST(AttributeInt32, NumericSetRoundsWithTheBiasWhileTextTruncates) {
  AFCAttributeInt32 value;
  value.setValue(2.9999);
  EXPECT_EQ(value.get(), 3);
  value.setValue(-0.5);
  EXPECT_EQ(value.get(), 0);
  value.fromString("2.9999");
  EXPECT_EQ(value.get(), 2);
  value.fromString("-7.9e0 rest");
  EXPECT_EQ(value.get(), -7);
}

TEST(AttributeInt32, ClampsNumbersBeyondItsRange) {
  AFCAttributeInt32 value;
  value.fromString("1e12");
  EXPECT_EQ(value.get(), INT32_MAX);
  value.setValue(-1e12);
  EXPECT_EQ(value.get(), INT32_MIN);
  value.fromString("nonsense");
  EXPECT_EQ(value.get(), 0);
}

TEST(AttributeInt32, TakesFloatsThroughTheirIntegerText) {
  AFCAttributeInt32 value;
  EXPECT_TRUE(value.assignTyped(AFCAttributeDouble(2.7)));
  EXPECT_EQ(value.get(), 2);
  EXPECT_TRUE(value.assignTyped(AFCAttributeFloat()));
  EXPECT_EQ(value.get(), 0);
  EXPECT_FALSE(value.assignTyped(AFCAttributeInt64(5)));
}

TEST(AttributeInt32, HashesToItsValueAndKeysItsBytes) {
  const AFCAttributeInt32 value(-2);
  EXPECT_EQ(value.getHashValue(), 0xFFFFFFFEu);
  const std::string key = value.getKey();
  ASSERT_EQ(key.size(), 7u);
  int32_t stored;
  std::memcpy(&stored, key.data() + 3, 4);
  EXPECT_EQ(key.substr(0, 3), "I32");
  EXPECT_EQ(stored, -2);
}

TEST(AttributeInt32, TypedGetOfAnUndefinedValueNamesTheClass) {
  EXPECT_EQ(failureOf<AFCUndefinedAttributeValue>([] { AFCAttributeInt32().get(); }),
            "Undefined value of type AFCAttributeInt32");
}

TEST(AttributeInt64, KeyShowsOnlyTheLow32Bits) {
  EXPECT_EQ(AFCAttributeInt64((int64_t{1} << 32) + 5).getKey(), "AI64:5");
  EXPECT_EQ(AFCAttributeInt64(int64_t{0x80000000}).getKey(), "AI64:-2147483648");
  EXPECT_EQ(AFCAttributeInt64(-3).getKey(), "AI64:-3");
}

TEST(AttributeInt64, KeepsEveryDigitInTextAndAssignment) {
  AFCAttributeInt64 value;
  value.fromString("-9007199254740993");
  EXPECT_EQ(value.get(), -9007199254740993);
  EXPECT_EQ(value.toString(), "-9007199254740993");
  EXPECT_TRUE(value.assignTyped(AFCAttributeInt32(-4)));
  EXPECT_EQ(value.get(), -4);
}

TEST(AttributeFloat, PrintsSixDecimals) {
  EXPECT_EQ(AFCAttributeFloat(1.5f).toString(), "1.500000");
  EXPECT_EQ(AFCAttributeDouble(-0.25).toString(), "-0.250000");
}

TEST(AttributeDouble, TakesNumericKindsWithoutLosingPrecision) {
  AFCAttributeDouble value;
  value.fromAttribute(AFCAttributeFloat(1e-7f));
  EXPECT_EQ(value.get(), static_cast<double>(1e-7f));
  value.fromAttribute(AFCAttributeInt64(int64_t{1} << 40));
  EXPECT_EQ(value.get(), 1099511627776.0);
  EXPECT_FALSE(value.assignTyped(AFCAttributeBool(true)));
}

TEST(AttributeDouble, KeyIsTheTagAndTheBytes) {
  const std::string key = AFCAttributeDouble(0.5).getKey();
  ASSERT_EQ(key.size(), 6u + sizeof(double));
  double stored;
  std::memcpy(&stored, key.data() + 6, sizeof stored);
  EXPECT_EQ(key.substr(0, 6), "Double");
  EXPECT_EQ(stored, 0.5);
}

TEST(AttributeScalar, EqualityComparesKindAndValue) {
  EXPECT_TRUE(AFCAttributeInt32(3).equals(AFCAttributeInt32(3)));
  EXPECT_FALSE(AFCAttributeInt32(3).equals(AFCAttributeInt32(4)));
  EXPECT_FALSE(AFCAttributeInt32(3).equals(AFCAttributeInt64(3)));
  EXPECT_FALSE(AFCAttributeInt32(0).equals(AFCAttributeInt32()));
  AFCAttributeFloat nan(std::numeric_limits<float>::quiet_NaN());
  EXPECT_FALSE(nan.equals(nan));
}

}  // namespace

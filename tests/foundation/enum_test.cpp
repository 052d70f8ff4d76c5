#include "foundation/enum.h"

#include <gtest/gtest.h>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/foundation/attribute_test_support.h"
#include "tests/support/failure_text.h"

namespace {

// Two registered classes of the tests' own: ids 0, 1, 3 and 2, 3.
const AFCEnumClass& modes() {
  static const AFCEnumClass& registered = []() -> const AFCEnumClass& {
    auto c = std::make_unique<AFCEnumClass>("TestModeEnum");
    c->addValue("OFF", 0);
    c->addValue("ON", 1);
    c->addValue("AUTO", 3);
    return AFCEnumClass::registerEnumClass(std::move(c));
  }();
  return registered;
}

const AFCEnumClass& colours() {
  static const AFCEnumClass& registered = []() -> const AFCEnumClass& {
    auto c = std::make_unique<AFCEnumClass>("TestColourEnum");
    c->addValue("RED", 2);
    c->addValue("BLUE", 3);
    return AFCEnumClass::registerEnumClass(std::move(c));
  }();
  return registered;
}

// The contents of a defined enum attribute up to its class name; the id follows.
Bytes headOf(const std::string& className) {
  return kBasePart + boolBytes(true) + stringBytes(className);
}

TEST(EnumClass, RejectsADuplicateNameOrId) {
  AFCEnumClass beyond("Beyond");
  beyond.addValue("CYCLE", 1);
  EXPECT_EQ(failureOf([&] { beyond.addValue("CYCLE", 1); }), "Duplicate enum value");
  EXPECT_THROW(beyond.addValue("CYCLE", 2), AFCEnumDuplicateException);
  EXPECT_THROW(beyond.addValue("OTHER", 1), AFCEnumDuplicateException);
}

TEST(EnumClass, MapsNamesAndIdsBothWays) {
  EXPECT_EQ(modes().getId("AUTO"), 3);
  EXPECT_EQ(modes().getValueName(1), "ON");
  EXPECT_EQ(failureOf([] { modes().getId("on"); }), "Invalid enum name 'on'");
  EXPECT_EQ(failureOf([] { modes().getValueName(2); }), "Invalid enum id 2");
}

TEST(EnumClass, RegistryKeepsTheFirstClassOfAName) {
  const AFCEnumClass& first = modes();
  auto again = std::make_unique<AFCEnumClass>("TestModeEnum");
  EXPECT_EQ(&AFCEnumClass::registerEnumClass(std::move(again)), &first);
  EXPECT_EQ(AFCEnumClass::find("TestModeEnum"), &first);
  EXPECT_EQ(AFCEnumClass::find("NoSuchEnum"), nullptr);
  EXPECT_THROW(AFCEnumClass::forName("NoSuchEnum"), AFCEnumNotFoundException);
}

TEST(AttributeEnum, ConstructorChecksTheId) {
  EXPECT_EQ(failureOf([] { AFCAttributeEnum(modes(), 9); }), "Invalid enum id 9");
  const AFCAttributeEnum unchecked(modes());
  EXPECT_FALSE(unchecked.isDefined());
  EXPECT_EQ(AFCAttributeEnum(modes(), 3).toString(), "AUTO");
}

TEST(AttributeEnum, NumbersRoundHalfUpAndUnknownIdsAreIgnored) {
  AFCAttributeEnum value(modes(), 0);
  value.setFromNumber(0.6);
  EXPECT_EQ(value.get(), 1);
  value.setFromNumber(2.5);  // id 3
  EXPECT_EQ(value.get(), 3);
  value.setFromNumber(1.4);  // id 1
  EXPECT_EQ(value.get(), 1);
  value.setFromNumber(2.4);  // id 2 is not in the class
  EXPECT_EQ(value.get(), 1);
  value.setValue(-0.5);  // rounds to 0
  EXPECT_EQ(value.get(), 0);
}

TEST(AttributeEnum, AssignsFromTheSameClassAndFromNumbers) {
  AFCAttributeEnum value(modes(), 0);
  EXPECT_TRUE(value.assign(AFCAttributeEnum(modes(), 3)));
  EXPECT_EQ(value.get(), 3);
  EXPECT_FALSE(value.assign(AFCAttributeEnum(colours(), 2)));
  EXPECT_TRUE(value.assign(AFCAttributeDouble(1.9)));  // getInt: 1
  EXPECT_EQ(value.get(), 1);
  EXPECT_FALSE(value.assign(AFCAttributeInt32(2)));
  EXPECT_FALSE(value.assign(AFCAttributeString("3")));
  EXPECT_EQ(value.get(), 1);
}

TEST(AttributeEnum, ParsesValueNamesAndNumbers) {
  AFCAttributeEnum value(modes());
  value.fromString("AUTO");
  EXPECT_EQ(value.get(), 3);
  value.fromString("1");
  EXPECT_EQ(value.getValueName(), "ON");
  value.fromString("PURPLE");
  EXPECT_EQ(value.get(), 1);
}

TEST(AttributeEnum, EqualityIgnoresTheClassAndKeyShowsTheId) {
  EXPECT_TRUE(AFCAttributeEnum(modes(), 3).equals(AFCAttributeEnum(colours(), 3)));
  EXPECT_FALSE(AFCAttributeEnum(modes(), 3).equals(AFCAttributeEnum(modes(), 1)));
  EXPECT_EQ(AFCAttributeEnum(modes(), 3).getKey(), "AEnum:3");
}

TEST(AttributeEnum, WritesTheClassNameThenTheId) {
  EXPECT_EQ(contentBytes(AFCAttributeEnum(modes(), 3)),
            headOf("TestModeEnum") + uint32Bytes(0x05, 3));
}

TEST(AttributeEnum, RefusesAnotherClassBeforeReadingTheId) {
  // Nothing follows the class name: reading the id first would fail for the missing bytes.
  AFCAttributeEnum value(modes(), 1);
  EXPECT_EQ(readError(value, headOf("TestColourEnum")), "Enum class doesn't match");
  EXPECT_EQ(value.get(), 1);
}

TEST(AttributeEnum, RefusesADefinedIdTheClassLacks) {
  AFCAttributeEnum value(modes(), 1);
  EXPECT_EQ(readError(value, headOf("TestModeEnum") + uint32Bytes(0x05, 2)), "Invalid enum id 2");
  EXPECT_EQ(value.get(), 1);
}

TEST(AttributeEnum, WithoutAClassTakesTheOneItReads) {
  AFCAttributeEnum value;
  EXPECT_EQ(readError(value, headOf("TestModeEnum") + uint32Bytes(0x05, 3)), "");
  EXPECT_EQ(value.getEnumClass(), &modes());
  EXPECT_EQ(value.toString(), "AUTO");

  AFCAttributeEnum other;
  EXPECT_EQ(readError(other, headOf("NoSuchEnum")), "NoSuchEnum");  // AFCEnumNotFoundException
  EXPECT_EQ(other.getEnumClass(), nullptr);
}

TEST(AttributeEnum, WithoutAClassRefusesWhatNeedsOne) {
  AFCAttributeEnum value;
  EXPECT_EQ(failureOf([&] { value.set(0); }), "Bad enum type");
  EXPECT_EQ(failureOf([&] { contentBytes(value); }), "Bad enum type");
  value.setFromNumber(1.0);
  EXPECT_FALSE(value.isDefined());
}

}  // namespace

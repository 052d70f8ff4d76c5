#include "tools/vxctl/value_syntax.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "client/register.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"

namespace {

using ::testing::HasSubstr;

class ValueSyntax : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { registerClientClasses(); }

  // The kind's prefix name and the value's text form, for compact expectations.
  static std::pair<std::string, std::string> parsed(std::string_view text) {
    const auto value = vxctlParseValue(text);
    return {vxctlTypeName(*value), value->toString()};
  }

  static std::string errorOf(std::string_view text) {
    try {
      vxctlParseValue(text);
    } catch (const VXCtlSyntaxException& e) {
      return e.getMessage();
    }
    return "no error";
  }
};

TEST_F(ValueSyntax, WholeNumbersAreThirtyTwoBitIntegers) {
  EXPECT_EQ(parsed("42"), std::make_pair(std::string("int"), std::string("42")));
  EXPECT_EQ(parsed("-7"), std::make_pair(std::string("int"), std::string("-7")));
  EXPECT_EQ(parsed("+3"), std::make_pair(std::string("int"), std::string("3")));
  EXPECT_EQ(parsed("2147483647").second, "2147483647");
}

TEST_F(ValueSyntax, NumbersWithAPointOrExponentAreFloats) {
  const auto value = vxctlParseValue("1.5");
  ASSERT_EQ(vxctlTypeName(*value), "float");
  EXPECT_FLOAT_EQ(static_cast<AFCAttributeFloat&>(*value).get(), 1.5f);
  EXPECT_FLOAT_EQ(static_cast<AFCAttributeFloat&>(*vxctlParseValue("-2e3")).get(), -2000.0f);
  EXPECT_FLOAT_EQ(static_cast<AFCAttributeFloat&>(*vxctlParseValue(".5")).get(), 0.5f);
}

TEST_F(ValueSyntax, TrueAndFalseInAnyCaseAreBools) {
  EXPECT_EQ(parsed("true"), std::make_pair(std::string("bool"), std::string("True")));
  EXPECT_EQ(parsed("FALSE"), std::make_pair(std::string("bool"), std::string("False")));
}

TEST_F(ValueSyntax, QuotedTextIsAStringWithEscapesResolved) {
  EXPECT_EQ(parsed("\"hello world\""),
            std::make_pair(std::string("string"), std::string("hello world")));
  EXPECT_EQ(parsed(R"("say \"hi\"\n\\")").second, "say \"hi\"\n\\");
  EXPECT_EQ(parsed("\"42\""), std::make_pair(std::string("string"), std::string("42")));
  EXPECT_EQ(parsed("\"\"").second, "");
}

TEST_F(ValueSyntax, BareWordsThatAreNotNumbersAreStrings) {
  EXPECT_EQ(parsed("hello"), std::make_pair(std::string("string"), std::string("hello")));
  EXPECT_EQ(parsed("truely"), std::make_pair(std::string("string"), std::string("truely")));
  EXPECT_EQ(parsed("-"), std::make_pair(std::string("string"), std::string("-")));
}

TEST_F(ValueSyntax, VectorLengthChoosesTheVectorKind) {
  EXPECT_EQ(parsed("[1,2]").first, "vec2f");
  EXPECT_EQ(parsed("[1, 2, 3]").first, "vec3f");
  EXPECT_EQ(parsed("[ 1 , 2 , 3 , 4 ]").first, "vec4f");
  EXPECT_EQ(parsed("[1]").first, "vecnf");
  EXPECT_EQ(parsed("[1,2,3,4,5]"),
            std::make_pair(std::string("vecnf"), std::string("[1, 2, 3, 4, 5]")));
  EXPECT_EQ(parsed("[0.5, -1e2]").second, "[0.5, -100]");
}

TEST_F(ValueSyntax, PrefixesForceTheKind) {
  EXPECT_EQ(parsed("int:5"), std::make_pair(std::string("int"), std::string("5")));
  EXPECT_EQ(parsed("float:5"), std::make_pair(std::string("float"), std::string("5.000000")));
  EXPECT_EQ(parsed("double:0.1").first, "double");
  EXPECT_EQ(parsed("int64:9000000000"),
            std::make_pair(std::string("int64"), std::string("9000000000")));
  EXPECT_EQ(parsed("string:5"), std::make_pair(std::string("string"), std::string("5")));
  EXPECT_EQ(parsed("string:\"a b\""), std::make_pair(std::string("string"), std::string("a b")));
  EXPECT_EQ(parsed("string:"), std::make_pair(std::string("string"), std::string("")));
  EXPECT_EQ(parsed("bool:on"), std::make_pair(std::string("bool"), std::string("True")));
  EXPECT_EQ(parsed("bool:0"), std::make_pair(std::string("bool"), std::string("False")));
  EXPECT_EQ(parsed("color:[1,0,0,1]"),
            std::make_pair(std::string("color"), std::string("[1, 0, 0, 1]")));
  EXPECT_EQ(parsed("vecnf:[1,2,3]").first, "vecnf");
  EXPECT_EQ(parsed("vec2s:[3, -4]"), std::make_pair(std::string("vec2s"), std::string("[3, -4]")));
  EXPECT_EQ(parsed("FLOAT:2").first, "float");
}

TEST_F(ValueSyntax, UndefinedAfterAPrefixGivesAnUndefinedValueOfThatKind) {
  const auto value = vxctlParseValue("float:<undefined>");
  EXPECT_EQ(vxctlTypeName(*value), "float");
  EXPECT_FALSE(value->isDefined());
  EXPECT_EQ(parsed("<undefined>").first, "string");
}

TEST_F(ValueSyntax, TextThatStartsLikeANumberButIsNotOneIsRefused) {
  EXPECT_THAT(errorOf("12abc"), HasSubstr("Not a number: \"12abc\" (quote it"));
  EXPECT_THAT(errorOf("1,5"), HasSubstr("Not a number: \"1,5\""));
  EXPECT_THAT(errorOf("1.2.3"), HasSubstr("Not a number"));
}

TEST_F(ValueSyntax, IntegersOutOfRangeAreRefusedWithAHint) {
  EXPECT_EQ(errorOf("3000000000"),
            "Integer out of 32-bit range: 3000000000 (write int64: for a 64-bit integer)");
  EXPECT_EQ(errorOf("int:3000000000"), "Integer out of 32-bit range: 3000000000");
  EXPECT_EQ(errorOf("int64:99999999999999999999"),
            "Integer out of 64-bit range: 99999999999999999999");
  EXPECT_EQ(errorOf("int:1.5"), "Not an integer: \"1.5\"");
}

TEST_F(ValueSyntax, MalformedValuesNameTheProblem) {
  EXPECT_EQ(errorOf(""), "Empty value");
  EXPECT_EQ(errorOf("\"open"), "Unterminated string: \"open");
  EXPECT_EQ(errorOf("\"a\"b\""), "Text after closing quote: \"a\"b\"");
  EXPECT_EQ(errorOf(R"("a\q")"), R"(Unknown escape \q in "a\q")");
  EXPECT_EQ(errorOf("[1, 2"), "Unterminated vector: [1, 2");
  EXPECT_EQ(errorOf("[]"), "Empty vector: []");
  EXPECT_EQ(errorOf("[1,,3]"), "Empty place in vector: [1,,3]");
  EXPECT_EQ(errorOf("[1, x]"), "Not a number: \"x\"");
  EXPECT_EQ(errorOf("float:"), "Missing value after float:");
  EXPECT_EQ(errorOf("bool:maybe"), "Not a bool: \"maybe\" (true/false, on/off, yes/no, 1/0)");
}

TEST_F(ValueSyntax, VectorPrefixesCheckTheCount) {
  EXPECT_EQ(errorOf("color:[1,0,0]"), "color takes 4 numbers, not 3: [1,0,0]");
  EXPECT_EQ(errorOf("vec3f:[1,2]"), "vec3f takes 3 numbers, not 2: [1,2]");
  EXPECT_EQ(errorOf("vec2s:[1.5, 2]"), "Not an integer: \"1.5\"");
  EXPECT_EQ(errorOf("vec2f:5"), "Not a vector: \"5\" (write [a, b, ...])");
}

TEST_F(ValueSyntax, UnknownPrefixesAreRefusedAndQuotingAvoidsThem) {
  EXPECT_THAT(errorOf("flaot:5"), HasSubstr("Unknown type \"flaot:\" (known: int, int64, float"));
  EXPECT_THAT(errorOf("http://host"), HasSubstr("quote the text to send it as a string"));
  EXPECT_EQ(parsed("\"http://host\"").second, "http://host");
}

TEST_F(ValueSyntax, PrintedValuesReadBackAsTheSameKindAndValue) {
  const std::unique_ptr<AFCAttribute> values[] = {
      std::make_unique<AFCAttributeInt32>(-12),
      std::make_unique<AFCAttributeInt64>(int64_t{5}),
      std::make_unique<AFCAttributeFloat>(5.0f),
      std::make_unique<AFCAttributeFloat>(0.1f),
      std::make_unique<AFCAttributeFloat>(std::numeric_limits<float>::infinity()),
      std::make_unique<AFCAttributeDouble>(0.1),
      std::make_unique<AFCAttributeBool>(true),
      std::make_unique<AFCAttributeString>("42"),
      std::make_unique<AFCAttributeString>("a \"b\"\n\\c"),
      std::make_unique<AFCAttributeString>("int:5"),
      std::make_unique<AFCAttributeVec2f>(AFCAttributeVec2f::Value{1.0f, 2.5f}),
      std::make_unique<AFCAttributeVec3f>(AFCAttributeVec3f::Value{1, 2, 3}),
      std::make_unique<AFCAttributeVec4f>(AFCAttributeVec4f::Value{1, 2, 3, 4}),
      std::make_unique<AFCAttributeColor>(AFCAttributeColor::Value{1, 0, 0, 1}),
      std::make_unique<AFCAttributeVecNf>(std::vector<float>{1, 2}),
      std::make_unique<AFCAttributeVecNf>(std::vector<float>{7}),
      std::make_unique<AFCAttributeVec2s>(AFCAttributeVec2s::Value{3, -4}),
      std::make_unique<AFCAttributeFloat>(),
  };
  for (const auto& value : values) {
    const std::string text = vxctlValueToText(*value);
    const auto back = vxctlParseValue(text);
    EXPECT_EQ(vxctlTypeName(*back), vxctlTypeName(*value)) << text;
    EXPECT_EQ(back->toString(), value->toString()) << text;
  }
}

TEST_F(ValueSyntax, PrintedValuesUsePrefixesOnlyWhereNeeded) {
  EXPECT_EQ(vxctlValueToText(AFCAttributeInt32(42)), "42");
  EXPECT_EQ(vxctlValueToText(AFCAttributeFloat(5.0f)), "5.0");
  EXPECT_EQ(vxctlValueToText(AFCAttributeFloat(1.5f)), "1.5");
  EXPECT_EQ(vxctlValueToText(AFCAttributeDouble(1.5)), "double:1.5");
  EXPECT_EQ(vxctlValueToText(AFCAttributeString("hi")), "\"hi\"");
  EXPECT_EQ(vxctlValueToText(AFCAttributeVec3f({1, 2, 3})), "[1.0, 2.0, 3.0]");
  EXPECT_EQ(vxctlValueToText(AFCAttributeColor({1, 0, 0, 1})), "color:[1.0, 0.0, 0.0, 1.0]");
  EXPECT_EQ(vxctlValueToText(AFCAttributeInt32()), "int:<undefined>");
}

}  // namespace

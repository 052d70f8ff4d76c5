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

TEST_F(ValueSyntax, TheTextChoosesTheKindUnlessAPrefixForcesIt) {
  const struct {
    const char* text;
    const char* kind;
    const char* value;  // nullptr: not compared
  } rows[] = {
      // Whole numbers are 32-bit integers; a point or an exponent makes a float.
      {"42", "int", "42"},
      {"-7", "int", "-7"},
      {"+3", "int", "3"},
      {"2147483647", "int", "2147483647"},
      {"1.5", "float", "1.500000"},
      {"-2e3", "float", "-2000.000000"},
      {".5", "float", "0.500000"},
      // True and false in any case; quoted text with its escapes resolved; other bare words.
      {"true", "bool", "True"},
      {"FALSE", "bool", "False"},
      {"\"hello world\"", "string", "hello world"},
      {R"("say \"hi\"\n\\")", "string", "say \"hi\"\n\\"},
      {"\"42\"", "string", "42"},
      {"\"\"", "string", ""},
      {"hello", "string", "hello"},
      {"truely", "string", "truely"},
      {"-", "string", "-"},
      {"<undefined>", "string", nullptr},
      {"\"http://host\"", "string", "http://host"},
      // The vector's length chooses its kind.
      {"[1,2]", "vec2f", nullptr},
      {"[1, 2, 3]", "vec3f", nullptr},
      {"[ 1 , 2 , 3 , 4 ]", "vec4f", nullptr},
      {"[1]", "vecnf", nullptr},
      {"[1,2,3,4,5]", "vecnf", "[1, 2, 3, 4, 5]"},
      {"[0.5, -1e2]", "vec2f", "[0.5, -100]"},
      // Prefixes, in any case.
      {"int:5", "int", "5"},
      {"float:5", "float", "5.000000"},
      {"double:0.1", "double", nullptr},
      {"int64:9000000000", "int64", "9000000000"},
      {"string:5", "string", "5"},
      {"string:\"a b\"", "string", "a b"},
      {"string:", "string", ""},
      {"bool:on", "bool", "True"},
      {"bool:0", "bool", "False"},
      {"color:[1,0,0,1]", "color", "[1, 0, 0, 1]"},
      {"vecnf:[1,2,3]", "vecnf", nullptr},
      {"vec2s:[3, -4]", "vec2s", "[3, -4]"},
      {"FLOAT:2", "float", nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    const auto [kind, value] = parsed(row.text);
    EXPECT_EQ(kind, row.kind);
    if (row.value) {
      EXPECT_EQ(value, row.value);
    }
  }
}

TEST_F(ValueSyntax, UndefinedAfterAPrefixGivesAnUndefinedValueOfThatKind) {
  const auto value = vxctlParseValue("float:<undefined>");
  EXPECT_EQ(vxctlTypeName(*value), "float");
  EXPECT_FALSE(value->isDefined());
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

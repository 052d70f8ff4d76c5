#include "automation/script_value.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "tests/automation/script_objects.h"
#include "tests/support/failure_text.h"

namespace {

using Kind = ScriptValue::Kind;

// Class name and text form of the attribute a value converts to.
std::string attributeOf(const ScriptValue& value) {
  const std::unique_ptr<AFCAttribute> attribute = value.toAttribute();
  return std::string(attribute->getClass()->getName()) + " " + attribute->toString();
}

ScriptValue array(std::vector<ScriptValue> members) {
  return ScriptValue::object(std::make_shared<FakeScriptArray>(std::move(members)));
}

TEST(ScriptValueToAttribute, MakesTheAttributeOfEachKind) {
  const std::pair<ScriptValue, std::string> rows[] = {
      {ScriptValue(), "AFCAttributeInt32 <undefined>"},
      {ScriptValue::null(), "AFCAttributeInt32 <undefined>"},
      {ScriptValue::integer(-7, 16), "AFCAttributeInt32 -7"},
      {ScriptValue::integer(-5000000000, 64), "AFCAttributeInt32 -2147483648"},
      {ScriptValue::unsignedInteger(4294967295u), "AFCAttributeInt32 2147483647"},
      {ScriptValue::float32(1.5f), "AFCAttributeFloat 1.500000"},
      {ScriptValue::float64(2.25), "AFCAttributeDouble 2.250000"},
      {ScriptValue::boolean(true), "AFCAttributeBool True"},
      {ScriptValue::boolWord(0), "AFCAttributeBool False"},
      {ScriptValue::text(u"Hi"), "AFCAttributeWString Hi"},
      {array({ScriptValue::integer(1), ScriptValue::float64(2), ScriptValue::float32(3)}),
       "AFCAttributeVec3f [1, 2, 3]"},
  };
  for (const auto& [value, expected] : rows) {
    EXPECT_EQ(attributeOf(value), expected) << static_cast<int>(value.getKind());
  }
}

TEST(ScriptValueToAttribute, RefusesWhatASetCannotSendWithItsText) {
  auto lengthless = std::make_shared<FakeScriptArray>(std::vector<ScriptValue>{});
  lengthless->fail("length", ScriptObject::Lookup::NoSuchMember);
  auto unreadable = std::make_shared<FakeScriptArray>(std::vector<ScriptValue>{});
  unreadable->fail("length", ScriptObject::Lookup::ReadFailed);
  auto textLength = std::make_shared<FakeScriptArray>(std::vector<ScriptValue>{});
  textLength->setLength(ScriptValue::text(u"abc"));
  const std::string bad = "Illegal Argument Exception, ";
  const std::pair<ScriptValue, std::string> rows[] = {
      {ScriptValue::date(45000.5), bad + "unsupported value type"},
      {ScriptValue::unknown(textLength), bad + "unsupported value type"},
      {ScriptValue::other(), bad + "unsupported value type"},
      {ScriptValue::object(lengthless), bad + "array does not have 'length' property"},
      {ScriptValue::object(nullptr), bad + "array does not have 'length' property"},
      {ScriptValue::object(unreadable), bad + "failed to get array length"},
      {ScriptValue::object(textLength), bad + "failed to get array length"},
  };
  for (const auto& [value, expected] : rows) {
    EXPECT_EQ(failureOf([&] { value.toAttribute(); }), expected);
  }
}

TEST(ScriptArrayToVector, TakesUpToFourNumbersAndSkipsWhatIsNotOne) {
  auto gaps = std::make_shared<FakeScriptArray>(std::vector<ScriptValue>{
      ScriptValue::integer(1), ScriptValue::integer(2), ScriptValue::integer(3)});
  gaps->fail("1", ScriptObject::Lookup::NoSuchMember);
  gaps->fail("2", ScriptObject::Lookup::ReadFailed);
  const auto number = [](int n) { return ScriptValue::integer(n); };
  const std::pair<ScriptValue, std::string> rows[] = {
      {array({}), "AFCAttributeVec2f [0, 0]"},
      {array({number(1)}), "AFCAttributeVec2f [1, 0]"},
      {array({number(1), number(2), number(3), number(4), number(5)}),
       "AFCAttributeVec4f [1, 2, 3, 4]"},
      {array({ScriptValue::text(u"abc"), ScriptValue::text(u"2.5")}), "AFCAttributeVec2f [0, 2.5]"},
      {array({ScriptValue::boolean(true), ScriptValue::unsignedInteger(7, 8), ScriptValue::date(1),
              ScriptValue::null()}),
       "AFCAttributeVec4f [-1, 7, 0, 0]"},
      {array({array({number(1)}), ScriptValue::float64(-0.5)}), "AFCAttributeVec2f [0, -0.5]"},
      {ScriptValue::object(gaps), "AFCAttributeVec3f [1, 0, 0]"},
  };
  for (const auto& [value, expected] : rows) EXPECT_EQ(attributeOf(value), expected);
}

// Kind, then what the value holds, as one text.
std::string describe(const ScriptValue& value) {
  static const char* const kinds[] = {"Empty",  "Null", "Integer", "Float",
                                      "Double", "Bool", "Text"};
  const std::string kind = kinds[static_cast<int>(value.getKind())];
  if (value.getKind() == Kind::Empty) return kind;
  if (value.getKind() == Kind::Text) return kind + " " + ScriptValue::toBytes(value.getText());
  const std::string bits =
      value.getKind() == Kind::Integer ? std::to_string(value.getIntegerBits()) : "";
  return kind + bits + " " + std::to_string(value.getNumber());
}

TEST(ScriptValueFromAttribute, GivesEachAttributeItsScriptKindAndTrueAsOne) {
  using std::make_shared;
  const std::pair<std::shared_ptr<AFCAttribute>, std::string> rows[] = {
      {nullptr, "Empty"},
      {make_shared<AFCAttributeInt32>(), "Empty"},
      {make_shared<AFCAttributeInt32>(-3), "Integer32 -3.000000"},
      {make_shared<AFCAttributeInt64>(int64_t{1} << 40), "Integer64 1099511627776.000000"},
      {make_shared<AFCAttributeFloat>(0.5f), "Float 0.500000"},
      {make_shared<AFCAttributeDouble>(-1.25), "Double -1.250000"},
      {make_shared<AFCAttributeBool>(true), "Bool 1.000000"},
      {make_shared<AFCAttributeBool>(false), "Bool 0.000000"},
      {make_shared<AFCAttributeWString>(u"wide"), "Text wide"},
      {make_shared<AFCAttributeString>("plain"), "Text plain"},
      {make_shared<AFCAttributeVec3f>(AFCAttributeVec3f::Value{1, 2, 3}), "Text [1, 2, 3]"},
  };
  for (const auto& [attribute, expected] : rows) {
    EXPECT_EQ(describe(ScriptValue::fromAttribute(attribute.get())), expected);
  }
}

}  // namespace

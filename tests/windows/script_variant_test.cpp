// VARIANT onto ScriptValue for the kinds the command list's set does not show, and ScriptValue
// back onto the VARIANT a script gets.
#include "automation/com/script_variant.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/windows/dispatch_call.h"
#include "tests/windows/script_array.h"

namespace {
// "KIND BITS SIGNED" of an integer, "KIND" of the rest, "KIND null" of a null object.
std::string kindOf(const ScriptValue& value) {
  std::string out = std::to_string(static_cast<int>(value.getKind()));
  if (value.getKind() == ScriptValue::Kind::Integer) {
    out += " " + std::to_string(value.getIntegerBits()) + (value.isSigned() ? " signed" : "");
  }
  if (value.isObjectKind() && !value.getObject()) out += " null";
  return out;
}

TEST(ScriptVariant, TakesEachTypeAsItsKind) {
  using Kind = ScriptValue::Kind;
  const auto kind = [](Kind k) { return std::to_string(static_cast<int>(k)); };
  ScriptArray array({});
  VARIANT unknown = numberArgument(VT_UNKNOWN, 0), nullObject = numberArgument(VT_DISPATCH, 0);
  unknown.punkVal = &array;
  LONG referenced = 1;
  VARIANT byReference = numberArgument(VT_BYREF | VT_I4, 0);
  byReference.plVal = &referenced;
  const std::pair<VARIANT, std::string> rows[] = {
      {numberArgument(VT_I1, -3), kind(Kind::Integer) + " 8 signed"},
      {numberArgument(VT_UI2, 3), kind(Kind::Integer) + " 16"},
      {numberArgument(VT_UI8, 3), kind(Kind::Integer) + " 64"},
      {numberArgument(VT_INT, 3), kind(Kind::Integer) + " 32 signed"},
      {realArgument(VT_DATE, 2), kind(Kind::Date)},
      {unknown, kind(Kind::Unknown)},
      {nullObject, kind(Kind::Object) + " null"},
      {missingArgument(), kind(Kind::Other)},
      {byReference, kind(Kind::Other)},
  };
  for (const auto& [value, expected] : rows) {
    EXPECT_EQ(kindOf(scriptValueFromVariant(value)), expected) << value.vt;
  }
}

// A VBScript variable passed as a name or an object is a reference to the variable's VARIANT.
TEST(ScriptVariant, TakesTheValueAVariableRefersToForANameOrObject) {
  Texts t;
  ScriptArray array({});
  VARIANT name = t(L"fade"), object = numberArgument(VT_DISPATCH, 0);
  object.pdispVal = &array;
  LONG number = 3;
  VARIANT toName = numberArgument(VT_BYREF | VT_VARIANT, 0),
          toObject = numberArgument(VT_BYREF | VT_VARIANT, 0),
          toNumber = numberArgument(VT_BYREF | VT_I4, 0);
  toName.pvarVal = &name;
  toObject.pvarVal = &object;
  toNumber.plVal = &number;
  using Kind = ScriptValue::Kind;
  const std::pair<VARIANT, Kind> rows[] = {
      {toName, Kind::Text}, {toObject, Kind::Object},         {toNumber, Kind::Integer},
      {name, Kind::Text},   {missingArgument(), Kind::Other},
  };
  for (const auto& [value, expected] : rows) {
    EXPECT_EQ(scriptArgumentFromVariant(value).getKind(), expected) << value.vt;
    if (value.vt & VT_BYREF) {
      EXPECT_EQ(scriptValueFromVariant(value).getKind(), Kind::Other);
    }
  }
  EXPECT_EQ(scriptArgumentFromVariant(toName).getText(), u"fade");
}

TEST(ScriptVariant, GivesScriptsTheValueWithItsType) {
  const std::pair<ScriptValue, std::string> rows[] = {
      {ScriptValue(), "0 "},
      {ScriptValue::integer(-7), "3 -7"},
      {ScriptValue::integer(1LL << 40, 64), "20 1099511627776"},
      {ScriptValue::float32(1.5f), "4 1.5"},
      {ScriptValue::float64(2.25), "5 2.25"},
      {ScriptValue::boolWord(1), "11 1"},
      {ScriptValue::text(u"abc"), "8 abc"},
  };
  for (const auto& [value, expected] : rows) {
    const CUniqueVariant made = variantFromScriptValue(value);
    EXPECT_EQ(std::to_string(made.get().vt) + " " + textOf(made.get()), expected);
  }
}
}  // namespace

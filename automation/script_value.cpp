#include "automation/script_value.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_support.h"
#include "foundation/attribute_vector.h"
#include "foundation/charset.h"

ScriptValue ScriptValue::integer(int64_t value, int bits) {
  ScriptValue result(Kind::Integer);
  result.integer_ = static_cast<uint64_t>(value);
  result.bits_ = bits;
  result.signed_ = true;
  return result;
}

ScriptValue ScriptValue::unsignedInteger(uint64_t value, int bits) {
  ScriptValue result(Kind::Integer);
  result.integer_ = value;
  result.bits_ = bits;
  return result;
}

ScriptValue ScriptValue::float32(float value) {
  ScriptValue result(Kind::Float);
  result.real_ = value;
  return result;
}

ScriptValue ScriptValue::float64(double value) {
  ScriptValue result(Kind::Double);
  result.real_ = value;
  return result;
}

ScriptValue ScriptValue::boolWord(int16_t word) {
  ScriptValue result(Kind::Bool);
  result.integer_ = static_cast<uint64_t>(word);
  return result;
}

ScriptValue ScriptValue::text(std::u16string value) {
  ScriptValue result(Kind::Text);
  result.text_ = std::move(value);
  return result;
}

void ScriptValue::setTextFromBytes(std::string_view bytes) {
  if (kind_ != Kind::Text) {
    std::u16string storage = std::move(text_);
    *this = ScriptValue(Kind::Text);
    text_ = std::move(storage);
  }
  AFCCharset::toUtf16(AFC_CHARSET_DEFAULT, bytes, text_);
}

ScriptValue ScriptValue::date(double days) {
  ScriptValue result(Kind::Date);
  result.real_ = days;
  return result;
}

ScriptValue ScriptValue::object(std::shared_ptr<ScriptObject> object) {
  ScriptValue result(Kind::Object);
  result.object_ = std::move(object);
  return result;
}

ScriptValue ScriptValue::unknown(std::shared_ptr<ScriptObject> object) {
  ScriptValue result(Kind::Unknown);
  result.object_ = std::move(object);
  return result;
}

int32_t ScriptValue::getInt32() const {
  constexpr int64_t low = std::numeric_limits<int32_t>::min();
  constexpr int64_t high = std::numeric_limits<int32_t>::max();
  if (!signed_) return static_cast<int32_t>(std::min<uint64_t>(integer_, high));
  return static_cast<int32_t>(std::clamp(static_cast<int64_t>(integer_), low, high));
}

double ScriptValue::getNumber() const {
  switch (kind_) {
    case Kind::Integer:
      return signed_ ? static_cast<double>(static_cast<int64_t>(integer_))
                     : static_cast<double>(integer_);
    case Kind::Bool:
      return getBoolWord();
    default:
      return real_;
  }
}

namespace {
// The number an array member stands for, when it stands for one.
std::optional<double> componentOf(const ScriptValue& member) {
  switch (member.getKind()) {
    case ScriptValue::Kind::Integer:
    case ScriptValue::Kind::Float:
    case ScriptValue::Kind::Double:
    case ScriptValue::Kind::Bool:
      return member.getNumber();
    case ScriptValue::Kind::Text:
      return afcLeadingNumber(ScriptValue::toBytes(member.getText()));
    default:
      return std::nullopt;
  }
}

std::unique_ptr<AFCAttribute> zeroVector(int64_t length) {
  if (length < 3) return std::make_unique<AFCAttributeVec2f>(AFCAttributeVec2f::Value{});
  if (length == 3) return std::make_unique<AFCAttributeVec3f>(AFCAttributeVec3f::Value{});
  return std::make_unique<AFCAttributeVec4f>(AFCAttributeVec4f::Value{});
}
}  // namespace

std::unique_ptr<AFCAttribute> ScriptValue::arrayToVector(ScriptObject& array) {
  ScriptValue length;
  switch (array.getMember("length", length)) {
    case ScriptObject::Lookup::NoSuchMember:
      throw AFCIllegalArgumentException("array does not have 'length' property");
    case ScriptObject::Lookup::ReadFailed:
      throw AFCIllegalArgumentException("failed to get array length");
    case ScriptObject::Lookup::Found:
      break;
  }
  const std::optional<double> count = componentOf(length);
  if (!count) throw AFCIllegalArgumentException("failed to get array length");
  const int64_t n = std::min<int64_t>(afcTruncateToInt64(*count), 4);
  std::unique_ptr<AFCAttribute> vector = zeroVector(n);
  for (int64_t i = 0; i < n; ++i) {
    ScriptValue member;
    if (array.getMember(std::to_string(i), member) != ScriptObject::Lookup::Found) continue;
    if (const std::optional<double> number = componentOf(member)) {
      vector->setChannelValue(static_cast<int>(i), *number);
    }
  }
  return vector;
}

std::unique_ptr<AFCAttribute> ScriptValue::toAttribute() const {
  switch (kind_) {
    case Kind::Empty:
    case Kind::Null:
      return std::make_unique<AFCAttributeInt32>();
    case Kind::Integer:
      return std::make_unique<AFCAttributeInt32>(getInt32());
    case Kind::Float:
      return std::make_unique<AFCAttributeFloat>(static_cast<float>(real_));
    case Kind::Double:
      return std::make_unique<AFCAttributeDouble>(real_);
    case Kind::Bool:
      return std::make_unique<AFCAttributeBool>(getBoolWord() != 0);
    case Kind::Text:
      return std::make_unique<AFCAttributeWString>(text_);
    case Kind::Object:
      if (object_) return arrayToVector(*object_);
      // A null object has no "length" to look up.
      throw AFCIllegalArgumentException("array does not have 'length' property");
    default:
      throw AFCIllegalArgumentException("unsupported value type");
  }
}

ScriptValue ScriptValue::fromAttribute(const AFCAttribute* attribute) {
  if (attribute == nullptr || !attribute->isDefined()) return ScriptValue();
  if (const auto* value = dynamic_cast<const AFCAttributeInt32*>(attribute)) {
    return integer(value->get());
  }
  if (const auto* value = dynamic_cast<const AFCAttributeInt64*>(attribute)) {
    return integer(value->get(), 64);
  }
  if (const auto* value = dynamic_cast<const AFCAttributeFloat*>(attribute)) {
    return float32(value->get());
  }
  if (const auto* value = dynamic_cast<const AFCAttributeDouble*>(attribute)) {
    return float64(value->get());
  }
  if (const auto* value = dynamic_cast<const AFCAttributeBool*>(attribute)) {
    return boolWord(value->get() ? 1 : 0);
  }
  if (const auto* value = dynamic_cast<const AFCAttributeWString*>(attribute)) {
    return text(value->get());
  }
  return text(fromBytes(attribute->toString()));
}

std::string ScriptValue::toBytes(std::u16string_view text) {
  return AFCCharset::fromUtf16(AFC_CHARSET_DEFAULT, text);
}

std::u16string ScriptValue::fromBytes(std::string_view bytes) {
  return AFCCharset::toUtf16(AFC_CHARSET_DEFAULT, bytes);
}

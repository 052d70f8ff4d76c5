#include "foundation/attribute.h"

#include <cmath>
#include <cstdlib>
#include <memory>

#include "foundation/attribute_string.h"
#include "foundation/attribute_support.h"
#include "foundation/class.h"

namespace {
constexpr std::string_view kUndefinedText = "<undefined>";

// The record of AFCAttribute before its methods are added. The single- and multi-channel
// records name it as their parent; they cannot go through AFCAttribute::staticClass(), whose
// methods name AFCAttributeString, itself a descendant.
AFCClassEx& bareAttributeRecord() {
  static AFCClassEx* record = new AFCClassEx("AFCAttribute", &AFCPersistent::staticClass());
  return *record;
}

AFCAttribute& asAttribute(AFCObject* object) {
  auto* attribute = dynamic_cast<AFCAttribute*>(object);
  if (attribute == nullptr) throw AFCNullPointerException("this");
  return *attribute;
}

const AFCClass& completeAttributeRecord() {
  AFCClassEx& record = bareAttributeRecord();
  const AFCClass* anyAttribute = &record;
  record
      .method("toString", {}, &AFCAttributeString::staticClass(),
              [](AFCObject* object, AFCArguments) -> AFCResult {
                return std::make_unique<AFCAttributeString>(asAttribute(object).toString());
              })
      // The text is the argument's text form, so a String, a WString or a number will do.
      .method("fromString", {anyAttribute}, nullptr,
              [](AFCObject* object, AFCArguments args) -> AFCResult {
                asAttribute(object).fromString(args[0]->toString());
                return {};
              })
      .method("fromAttribute", {anyAttribute}, nullptr,
              [](AFCObject* object, AFCArguments args) -> AFCResult {
                asAttribute(object).fromAttribute(*args[0]);
                return {};
              });
  return record.registerClass();
}
}  // namespace

const AFCClass& AFCAttribute::staticClass() {
  static const AFCClass& record = completeAttributeRecord();
  return record;
}

uint32_t AFCAttribute::getHashValue() const { throwNotImplemented("getHashValue"); }

std::string AFCAttribute::toString() const {
  return isDefined() ? valueToString() : std::string(kUndefinedText);
}

bool AFCAttribute::equals(const AFCAttribute& other) const {
  return isDefined() == other.isDefined() && getClass()->getName() == other.getClass()->getName();
}

double AFCAttribute::getDoubleOrZero() const { return isDefined() ? getDouble() : 0.0; }

int32_t AFCAttribute::getInt() const {
  const std::string text = toString();
  const long long value = std::strtoll(text.c_str(), nullptr, 10);
  return afcTruncateToInt32(static_cast<double>(value));
}

double AFCAttribute::getDouble() const { return afcLeadingNumber(toString()).value_or(0.0); }

void AFCAttribute::fromString(std::string_view text) {
  if (text == kUndefinedText) {
    setUndefined();
  } else {
    parseValue(text);
  }
}

void AFCAttribute::fromAttribute(const AFCAttribute& source) {
  if (!source.isDefined()) {
    setUndefined();
  } else if (!assignTyped(source)) {
    fromString(source.toString());
  }
}

void AFCAttribute::throwNotImplemented(const char* operation) const {
  throw AFCAttributeGetHashValueNotImplementedException(
      "Attribute " + getClass()->getName() + " not implemented " + operation + " method");
}

// --- single channel ---

const AFCClass& AFCSingleChannelAttribute::staticClass() {
  static const AFCClass& record =
      (new AFCClassEx("AFCSingleChannelAttribute", &bareAttributeRecord()))->registerClass();
  return record;
}

double AFCSingleChannelAttribute::getChannelValue(int channel) const {
  return channel == 0 ? getDoubleOrZero() : 0.0;
}

void AFCSingleChannelAttribute::checkDefined() const {
  if (!defined_) afcThrowUndefined(*this);
}

// --- multi channel ---

const AFCClass& AFCMultiChannelAttribute::staticClass() {
  static const AFCClass& record =
      (new AFCClassEx("AFCMultiChannelAttribute", &bareAttributeRecord()))->registerClass();
  return record;
}

bool AFCMultiChannelAttribute::isChannelDefined(int channel) const {
  return channel >= 0 && (definedMask_ & channelBit(channel)) != 0;
}

bool AFCMultiChannelAttribute::equals(const AFCAttribute& other) const {
  if (!AFCAttribute::equals(other)) return false;
  const int count = getChannelCount();
  if (count != other.getChannelCount()) return false;
  for (int channel = 0; channel < count; ++channel) {
    if (isChannelDefined(channel) != other.isChannelDefined(channel)) return false;
    const double mine = getChannelValue(channel);
    const double theirs = other.getChannelValue(channel);
    // NaN compares unequal to everything, itself included.
    if (!(mine == theirs)) return false;
  }
  return true;
}

std::string AFCMultiChannelAttribute::valueToString() const {
  std::string text = "[";
  const int count = getChannelCount();
  for (int channel = 0; channel < count; ++channel) {
    if (channel > 0) text += ", ";
    if (isChannelDefined(channel)) text += afcFormatDouble("%lg", getChannelValue(channel));
  }
  text += "]";
  return text;
}

namespace {
bool isBlank(char c) { return c == ' ' || c == '\t'; }
}  // namespace

void AFCMultiChannelAttribute::parseValue(std::string_view text) {
  setUndefined();
  const std::size_t open = text.find('[');
  if (open == std::string_view::npos) {
    if (auto number = afcLeadingNumber(text)) setChannelValue(0, *number);
    return;
  }
  const std::string body(text.substr(open + 1));  // strtod needs a terminated string
  const char* p = body.c_str();
  for (int channel = 0;; ++channel) {
    char* end = nullptr;
    const double number = std::strtod(p, &end);
    if (end != p) {
      setChannelValue(channel, number);
      p = end;
    }
    while (isBlank(*p)) ++p;
    if (*p != ',') break;  // "]", the end, or anything else ends the list
    ++p;
  }
}

#include "foundation/attribute_scalar.h"

#include <cstdlib>

#include "foundation/attribute_support.h"

AFC_IMPLEMENT_CLASS(AFCAttributeBool, AFCSingleChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeInt32, AFCSingleChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeInt64, AFCSingleChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeFloat, AFCSingleChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeDouble, AFCSingleChannelAttribute)

std::optional<double> afcNumericValue(const AFCAttribute& attribute) {
  if (auto* a = dynamic_cast<const AFCAttributeInt32*>(&attribute)) return a->getChannelValue(0);
  if (auto* a = dynamic_cast<const AFCAttributeInt64*>(&attribute)) return a->getChannelValue(0);
  if (auto* a = dynamic_cast<const AFCAttributeFloat*>(&attribute)) return a->getChannelValue(0);
  if (auto* a = dynamic_cast<const AFCAttributeDouble*>(&attribute)) return a->getChannelValue(0);
  return std::nullopt;
}

namespace {
// Equal kinds and equal values; the base has compared definedness and class names.
template <class Kind>
bool sameValue(const Kind& self, const AFCAttribute& other) {
  const auto* typed = dynamic_cast<const Kind*>(&other);
  return typed != nullptr && self.AFCAttribute::equals(other) &&
         typed->getChannelValue(0) == self.getChannelValue(0);
}
}  // namespace

// --- Bool ---

bool AFCAttributeBool::get() const {
  checkDefined();
  return value_;
}

void AFCAttributeBool::set(bool value) {
  value_ = value;
  defined_ = true;
}

bool AFCAttributeBool::equals(const AFCAttribute& other) const { return sameValue(*this, other); }

double AFCAttributeBool::getChannelValue(int channel) const {
  return channel == 0 && value_ ? 1.0 : 0.0;
}

void AFCAttributeBool::setChannelValue(int channel, double value) {
  if (channel == 0) set(value != 0.0);
}

bool AFCAttributeBool::assignTyped(const AFCAttribute& source) {
  const auto* typed = dynamic_cast<const AFCAttributeBool*>(&source);
  if (typed == nullptr) return false;
  set(typed->value_);
  return true;
}

void AFCAttributeBool::parseValue(std::string_view text) {
  std::size_t first = 0;
  while (first < text.size() && (text[first] == ' ' || text[first] == '\t')) ++first;
  text.remove_prefix(first);
  if (text.empty()) {
    set(false);
  } else if (text.front() == 'T' || text.front() == 't') {
    set(true);
  } else if (text.front() == 'F' || text.front() == 'f') {
    set(false);
  } else {
    set(afcLeadingNumber(text).value_or(0.0) >= 1.0);
  }
}

void AFCAttributeBool::write(AFCPersistentOutputStream& out) const {
  AFCSingleChannelAttribute::write(out);
  out.writeBool(value_);
}

void AFCAttributeBool::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    value_ = in.readBool();
  });
}

// --- Int32 ---

int32_t AFCAttributeInt32::get() const {
  checkDefined();
  return value_;
}

void AFCAttributeInt32::set(int32_t value) {
  value_ = value;
  defined_ = true;
}

bool AFCAttributeInt32::equals(const AFCAttribute& other) const { return sameValue(*this, other); }

double AFCAttributeInt32::getChannelValue(int channel) const { return channel == 0 ? value_ : 0.0; }

void AFCAttributeInt32::setChannelValue(int channel, double value) {
  if (channel == 0) set(afcBiasedInt32(value));
}

bool AFCAttributeInt32::assignTyped(const AFCAttribute& source) {
  if (const auto* typed = dynamic_cast<const AFCAttributeInt32*>(&source)) {
    set(typed->value_);
    return true;
  }
  if (dynamic_cast<const AFCAttributeFloat*>(&source) != nullptr ||
      dynamic_cast<const AFCAttributeDouble*>(&source) != nullptr) {
    set(source.getInt());
    return true;
  }
  return false;
}

std::string AFCAttributeInt32::getKey() const {
  std::string key = "I32";
  afcAppendRaw(key, value_);
  return key;
}

void AFCAttributeInt32::parseValue(std::string_view text) {
  set(afcTruncateToInt32(afcLeadingNumber(text).value_or(0.0)));
}

void AFCAttributeInt32::write(AFCPersistentOutputStream& out) const {
  AFCSingleChannelAttribute::write(out);
  out.writeInt32(value_);
}

void AFCAttributeInt32::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    value_ = in.readInt32();
  });
}

// --- Int64 ---

int64_t AFCAttributeInt64::get() const {
  checkDefined();
  return value_;
}

void AFCAttributeInt64::set(int64_t value) {
  value_ = value;
  defined_ = true;
}

bool AFCAttributeInt64::equals(const AFCAttribute& other) const {
  const auto* typed = dynamic_cast<const AFCAttributeInt64*>(&other);
  return typed != nullptr && AFCAttribute::equals(other) && typed->value_ == value_;
}

double AFCAttributeInt64::getChannelValue(int channel) const {
  return channel == 0 ? static_cast<double>(value_) : 0.0;
}

void AFCAttributeInt64::setChannelValue(int channel, double value) {
  if (channel == 0) set(afcTruncateToInt64(value + 0.001));
}

bool AFCAttributeInt64::assignTyped(const AFCAttribute& source) {
  if (const auto* typed = dynamic_cast<const AFCAttributeInt64*>(&source)) {
    set(typed->value_);
    return true;
  }
  if (const auto* typed = dynamic_cast<const AFCAttributeInt32*>(&source)) {
    set(static_cast<int32_t>(typed->getChannelValue(0)));
    return true;
  }
  return false;
}

std::string AFCAttributeInt64::getKey() const {
  return "AI64:" + std::to_string(static_cast<int32_t>(value_));
}

void AFCAttributeInt64::parseValue(std::string_view text) {
  const std::string copy(text);  // strtoll needs a terminated string
  set(std::strtoll(copy.c_str(), nullptr, 10));
}

void AFCAttributeInt64::write(AFCPersistentOutputStream& out) const {
  AFCSingleChannelAttribute::write(out);
  out.writeInt64(value_);
}

void AFCAttributeInt64::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    value_ = in.readInt64();
  });
}

// --- Float ---

float AFCAttributeFloat::get() const {
  checkDefined();
  return value_;
}

void AFCAttributeFloat::set(float value) {
  value_ = value;
  defined_ = true;
}

bool AFCAttributeFloat::equals(const AFCAttribute& other) const { return sameValue(*this, other); }

double AFCAttributeFloat::getChannelValue(int channel) const { return channel == 0 ? value_ : 0.0; }

void AFCAttributeFloat::setChannelValue(int channel, double value) {
  if (channel == 0) set(static_cast<float>(value));
}

bool AFCAttributeFloat::assignTyped(const AFCAttribute& source) {
  const std::optional<double> value = afcNumericValue(source);
  if (!value) return false;
  set(static_cast<float>(*value));
  return true;
}

std::string AFCAttributeFloat::getKey() const {
  std::string key = "F";
  afcAppendRaw(key, value_);
  return key;
}

std::string AFCAttributeFloat::valueToString() const { return afcFormatDouble("%f", value_); }

void AFCAttributeFloat::parseValue(std::string_view text) {
  set(static_cast<float>(afcLeadingNumber(text).value_or(0.0)));
}

void AFCAttributeFloat::write(AFCPersistentOutputStream& out) const {
  AFCSingleChannelAttribute::write(out);
  out.writeFloat(value_);
}

void AFCAttributeFloat::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    value_ = in.readFloat();
  });
}

// --- Double ---

double AFCAttributeDouble::get() const {
  checkDefined();
  return value_;
}

void AFCAttributeDouble::set(double value) {
  value_ = value;
  defined_ = true;
}

bool AFCAttributeDouble::equals(const AFCAttribute& other) const { return sameValue(*this, other); }

double AFCAttributeDouble::getChannelValue(int channel) const {
  return channel == 0 ? value_ : 0.0;
}

void AFCAttributeDouble::setChannelValue(int channel, double value) {
  if (channel == 0) set(value);
}

bool AFCAttributeDouble::assignTyped(const AFCAttribute& source) {
  const std::optional<double> value = afcNumericValue(source);
  if (!value) return false;
  set(*value);
  return true;
}

std::string AFCAttributeDouble::getKey() const {
  std::string key = "Double";
  afcAppendRaw(key, value_);
  return key;
}

std::string AFCAttributeDouble::valueToString() const { return afcFormatDouble("%lf", value_); }

void AFCAttributeDouble::parseValue(std::string_view text) {
  set(afcLeadingNumber(text).value_or(0.0));
}

void AFCAttributeDouble::write(AFCPersistentOutputStream& out) const {
  AFCSingleChannelAttribute::write(out);
  out.writeDouble(value_);
}

void AFCAttributeDouble::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    value_ = in.readDouble();
  });
}

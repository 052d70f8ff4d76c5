#include "foundation/attribute_string.h"

#include "foundation/attribute_support.h"
#include "foundation/charset.h"

AFC_IMPLEMENT_CLASS(AFCAttributeString, AFCSingleChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeWString, AFCSingleChannelAttribute)

// --- String ---

const std::string& AFCAttributeString::get() const {
  checkDefined();
  return value_;
}

void AFCAttributeString::set(std::string value) {
  value_ = std::move(value);
  defined_ = true;
}

uint32_t AFCAttributeString::getHashValue() const {
  return afcHashBytes(value_.data(), value_.size());
}

bool AFCAttributeString::equals(const AFCAttribute& other) const {
  const auto* typed = dynamic_cast<const AFCAttributeString*>(&other);
  return typed != nullptr && AFCAttribute::equals(other) && typed->value_ == value_;
}

void AFCAttributeString::setChannelValue(int channel, double value) {
  if (channel == 0) set(afcFormatDouble("%lg", value));
}

bool AFCAttributeString::assignTyped(const AFCAttribute& source) {
  if (const auto* typed = dynamic_cast<const AFCAttributeString*>(&source)) {
    set(typed->value_);
    return true;
  }
  if (dynamic_cast<const AFCAttributeWString*>(&source) != nullptr) {
    // Straight from the text form: a wide text "<undefined>" must not undefine this one.
    set(source.valueToString());
    return true;
  }
  return false;
}

void AFCAttributeString::write(AFCPersistentOutputStream& out) const {
  AFCSingleChannelAttribute::write(out);
  out.writeString(value_);
}

void AFCAttributeString::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    value_ = in.readString();
  });
}

// --- WString ---

const std::u16string& AFCAttributeWString::get() const {
  checkDefined();
  return value_;
}

void AFCAttributeWString::set(std::u16string value) {
  value_ = std::move(value);
  defined_ = true;
}

uint32_t AFCAttributeWString::getHashValue() const {
  // Byte by byte, low byte first, so the hash is the same on every machine.
  std::string bytes;
  bytes.reserve(value_.size() * 2);
  for (char16_t unit : value_) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return afcHashBytes(bytes.data(), bytes.size());
}

bool AFCAttributeWString::equals(const AFCAttribute& other) const {
  const auto* typed = dynamic_cast<const AFCAttributeWString*>(&other);
  return typed != nullptr && AFCAttribute::equals(other) && typed->value_ == value_;
}

void AFCAttributeWString::setChannelValue(int channel, double value) {
  if (channel == 0) parseValue(afcFormatDouble("%lg", value));
}

bool AFCAttributeWString::assignTyped(const AFCAttribute& source) {
  if (const auto* typed = dynamic_cast<const AFCAttributeWString*>(&source)) {
    set(typed->value_);
    return true;
  }
  if (dynamic_cast<const AFCAttributeString*>(&source) != nullptr) {
    parseValue(source.valueToString());
    return true;
  }
  return false;
}

std::string AFCAttributeWString::getKey() const {
  return std::string(reinterpret_cast<const char*>(value_.data()),
                     value_.size() * sizeof(char16_t));
}

std::string AFCAttributeWString::valueToString() const {
  return AFCCharset::fromUtf16(AFC_CHARSET_DEFAULT, value_);
}

void AFCAttributeWString::parseValue(std::string_view text) {
  set(AFCCharset::toUtf16(AFC_CHARSET_DEFAULT, text));
}

void AFCAttributeWString::write(AFCPersistentOutputStream& out) const {
  AFCSingleChannelAttribute::write(out);
  out.writeWString(value_);
}

void AFCAttributeWString::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    value_ = in.readWString();
  });
}

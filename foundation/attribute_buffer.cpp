#include "foundation/attribute_buffer.h"

#include "foundation/attribute_support.h"

AFC_IMPLEMENT_CLASS(AFCAttributeBuffer, AFCSingleChannelAttribute)

const AFCBuffer& AFCAttributeBuffer::get() const {
  checkDefined();
  return value_;
}

void AFCAttributeBuffer::set(const AFCBuffer& value) {
  value_ = value;
  defined_ = true;
}

bool AFCAttributeBuffer::equals(const AFCAttribute& other) const {
  const auto* typed = dynamic_cast<const AFCAttributeBuffer*>(&other);
  return typed != nullptr && AFCAttribute::equals(other) && typed->value_ == value_;
}

void AFCAttributeBuffer::setChannelValue(int channel, double value) {
  if (channel == 0) parseValue(afcFormatDouble("%lg", value));
}

bool AFCAttributeBuffer::assignTyped(const AFCAttribute& source) {
  const auto* typed = dynamic_cast<const AFCAttributeBuffer*>(&source);
  if (typed == nullptr) return false;
  set(typed->value_);
  return true;
}

std::string AFCAttributeBuffer::getKey() const {
  std::string key = "Buffer";
  key += value_.view();
  return key;
}

void AFCAttributeBuffer::parseValue(std::string_view text) {
  set(AFCBuffer(text.data(), text.size()));
}

void AFCAttributeBuffer::write(AFCPersistentOutputStream& out) const {
  AFCSingleChannelAttribute::write(out);
  out.writeBuffer(value_);
}

void AFCAttributeBuffer::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    AFCBuffer value;
    in.readBuffer(value);
    value_ = value;
  });
}

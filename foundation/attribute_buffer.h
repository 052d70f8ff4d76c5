#pragma once
// The binary kind: a byte buffer, written as its count and (when not empty) one binary block.
// Its text form is the bytes taken as characters.
//
// Plain single-owner value (the buffer is its own copy), not thread safe.
#include <string>
#include <string_view>

#include "foundation/attribute.h"
#include "foundation/buffer.h"

class AFCAttributeBuffer : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeBuffer() = default;
  explicit AFCAttributeBuffer(const AFCBuffer& value) { set(value); }
  AFCAttributeBuffer* clone() const override { return new AFCAttributeBuffer(*this); }

  const AFCBuffer& get() const;
  void set(const AFCBuffer& value);

  bool equals(const AFCAttribute& other) const override;
  // Channel 0 takes the number's "%lg" text as bytes.
  void setChannelValue(int channel, double value) override;
  bool assignTyped(const AFCAttribute& source) override;
  // "Buffer" and the bytes.
  std::string getKey() const override;
  std::string valueToString() const override { return std::string(value_.view()); }
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  AFCBuffer value_;
};

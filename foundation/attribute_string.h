#pragma once
// The text kinds: 8-bit strings and wide (UTF-16) strings. The wide kind carries script text;
// its 8-bit text form goes through the default character set.
//
// Plain single-owner values, not thread safe. Typed get() of an undefined value throws
// AFCUndefinedAttributeValue.
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/attribute.h"

class AFCAttributeString : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeString() = default;
  explicit AFCAttributeString(std::string value) { set(std::move(value)); }
  AFCAttributeString* clone() const override { return new AFCAttributeString(*this); }

  const std::string& get() const;
  void set(std::string value);

  // A stable hash of the text.
  uint32_t getHashValue() const override;
  bool equals(const AFCAttribute& other) const override;
  // Channel 0 takes the number's "%lg" text.
  void setChannelValue(int channel, double value) override;
  // Takes a String's text, or a WString's text through the default character set.
  bool assignTyped(const AFCAttribute& source) override;
  std::string getKey() const override { return value_; }
  std::string valueToString() const override { return value_; }
  void parseValue(std::string_view text) override { set(std::string(text)); }
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  std::string value_;
};

class AFCAttributeWString : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeWString() = default;
  explicit AFCAttributeWString(std::u16string value) { set(std::move(value)); }
  AFCAttributeWString* clone() const override { return new AFCAttributeWString(*this); }

  const std::u16string& get() const;
  void set(std::u16string value);

  // A stable hash of the UTF-16 units.
  uint32_t getHashValue() const override;
  bool equals(const AFCAttribute& other) const override;
  // Channel 0 takes the number's "%lg" text.
  void setChannelValue(int channel, double value) override;
  // Takes a WString's text, or a String's text through the default character set.
  bool assignTyped(const AFCAttribute& source) override;
  // The units' machine bytes.
  std::string getKey() const override;
  // The text in the default character set.
  std::string valueToString() const override;
  // The text from the default character set.
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  std::u16string value_;
};

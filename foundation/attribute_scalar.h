#pragma once
// The numeric single-channel kinds: bool, 32- and 64-bit integers, float and double.
//
// Plain single-owner values, not thread safe. Typed get() of an undefined value throws
// AFCUndefinedAttributeValue; nothing else throws except stream errors from read().
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/attribute.h"

class AFCAttributeBool : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeBool() = default;
  explicit AFCAttributeBool(bool value) { set(value); }
  AFCAttributeBool* clone() const override { return new AFCAttributeBool(*this); }

  bool get() const;
  void set(bool value);

  bool equals(const AFCAttribute& other) const override;
  double getChannelValue(int channel) const override;
  // Channel 0 becomes true for any non-zero number.
  void setChannelValue(int channel, double value) override;
  bool assignTyped(const AFCAttribute& source) override;
  std::string getKey() const override { return value_ ? "T" : "F"; }
  std::string valueToString() const override { return value_ ? "True" : "False"; }
  // Empty: false; blanks skipped; T/t true, F/f false; else the leading number >= 1.0.
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  bool value_ = false;
};

class AFCAttributeInt32 : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeInt32() = default;
  explicit AFCAttributeInt32(int32_t value) { set(value); }
  AFCAttributeInt32* clone() const override { return new AFCAttributeInt32(*this); }

  int32_t get() const;
  void set(int32_t value);

  uint32_t getHashValue() const override { return static_cast<uint32_t>(value_); }
  bool equals(const AFCAttribute& other) const override;
  double getChannelValue(int channel) const override;
  // Stores value + 0.001 truncated toward zero (2.9999 stores 3).
  void setChannelValue(int channel, double value) override;
  // Takes an Int32's value, and getInt() of a Float or Double (2.7 gives 2).
  bool assignTyped(const AFCAttribute& source) override;
  std::string getKey() const override;
  std::string valueToString() const override { return std::to_string(value_); }
  // The leading floating-point number truncated toward zero (2.9999 gives 2).
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  int32_t value_ = 0;
};

class AFCAttributeInt64 : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeInt64() = default;
  explicit AFCAttributeInt64(int64_t value) { set(value); }
  AFCAttributeInt64* clone() const override { return new AFCAttributeInt64(*this); }

  int64_t get() const;
  void set(int64_t value);

  bool equals(const AFCAttribute& other) const override;
  double getChannelValue(int channel) const override;
  // Stores value + 0.001 truncated toward zero, as every integer kind.
  void setChannelValue(int channel, double value) override;
  // Takes an Int64's or an Int32's value.
  bool assignTyped(const AFCAttribute& source) override;
  // "AI64:%d": only the low 32 bits show; other parts of the system compare these keys.
  std::string getKey() const override;
  std::string valueToString() const override { return std::to_string(value_); }
  // The leading decimal integer.
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  int64_t value_ = 0;
};

class AFCAttributeFloat : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeFloat() = default;
  explicit AFCAttributeFloat(float value) { set(value); }
  AFCAttributeFloat* clone() const override { return new AFCAttributeFloat(*this); }

  float get() const;
  void set(float value);

  bool equals(const AFCAttribute& other) const override;
  double getChannelValue(int channel) const override;
  void setChannelValue(int channel, double value) override;
  // Takes the value of any numeric kind (Int32, Int64, Float, Double) without a text detour.
  bool assignTyped(const AFCAttribute& source) override;
  std::string getKey() const override;
  // "%f": six decimals.
  std::string valueToString() const override;
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  float value_ = 0.0f;
};

class AFCAttributeDouble : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeDouble() = default;
  explicit AFCAttributeDouble(double value) { set(value); }
  AFCAttributeDouble* clone() const override { return new AFCAttributeDouble(*this); }

  double get() const;
  void set(double value);

  bool equals(const AFCAttribute& other) const override;
  double getChannelValue(int channel) const override;
  void setChannelValue(int channel, double value) override;
  // Takes the value of any numeric kind (Int32, Int64, Float, Double) without a text detour.
  bool assignTyped(const AFCAttribute& source) override;
  std::string getKey() const override;
  // "%lf": six decimals.
  std::string valueToString() const override;
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  double value_ = 0.0;
};

// The stored value of an Int32, Int64, Float or Double (defined or not); nullopt for other kinds.
std::optional<double> afcNumericValue(const AFCAttribute& attribute);

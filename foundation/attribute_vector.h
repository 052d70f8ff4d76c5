#pragma once
// The vector kinds: fixed 2-, 3- and 4-float vectors and colours, a pair of 32-bit integers,
// and a float vector of any length. Each channel may be defined or not (the mask of the
// multi-channel base); the text form is "[a, b, c]" with empty places for undefined channels.
//
// Plain single-owner values, not thread safe. Typed get() of an undefined vector throws
// AFCUndefinedAttributeValue; setChannelValue ignores a channel out of range.
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/attribute.h"

// Storage and behaviour of the fixed-size float vectors. Derived names the kind: its class
// record, its clone and its key tag (Derived::kKeyTag).
template <class Derived, int N>
class AFCFloatVectorAttribute : public AFCMultiChannelAttribute {
public:
  using Value = std::array<float, N>;

  AFCFloatVectorAttribute() = default;
  explicit AFCFloatVectorAttribute(const Value& value) { set(value); }

  // Every channel, defined or not; throws when no channel is defined.
  const Value& get() const;
  // Stores every channel and defines them all.
  void set(const Value& value);

  int getChannelCount() const override { return N; }
  double getChannelValue(int channel) const override;
  void setChannelValue(int channel, double value) override;
  // Takes the channels and mask of the same kind.
  bool assignTyped(const AFCAttribute& source) override;
  // The tag and the N floats' machine bytes.
  std::string getKey() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  static bool inRange(int channel) { return channel >= 0 && channel < N; }
  Value values_{};
};

class AFCAttributeVec2f : public AFCFloatVectorAttribute<AFCAttributeVec2f, 2> {
  AFC_DECLARE_CLASS()
public:
  static constexpr const char* kKeyTag = "2f";
  using AFCFloatVectorAttribute::AFCFloatVectorAttribute;
  AFCAttributeVec2f* clone() const override { return new AFCAttributeVec2f(*this); }
};

class AFCAttributeVec3f : public AFCFloatVectorAttribute<AFCAttributeVec3f, 3> {
  AFC_DECLARE_CLASS()
public:
  static constexpr const char* kKeyTag = "3f";
  using AFCFloatVectorAttribute::AFCFloatVectorAttribute;
  AFCAttributeVec3f* clone() const override { return new AFCAttributeVec3f(*this); }
};

class AFCAttributeVec4f : public AFCFloatVectorAttribute<AFCAttributeVec4f, 4> {
  AFC_DECLARE_CLASS()
public:
  static constexpr const char* kKeyTag = "4f";
  using AFCFloatVectorAttribute::AFCFloatVectorAttribute;
  AFCAttributeVec4f* clone() const override { return new AFCAttributeVec4f(*this); }
};

// Red, green, blue, alpha.
class AFCAttributeColor : public AFCFloatVectorAttribute<AFCAttributeColor, 4> {
  AFC_DECLARE_CLASS()
public:
  static constexpr const char* kKeyTag = "C";
  using AFCFloatVectorAttribute::AFCFloatVectorAttribute;
  AFCAttributeColor* clone() const override { return new AFCAttributeColor(*this); }
};

class AFCAttributeVec2s : public AFCMultiChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  using Value = std::array<int32_t, 2>;

  AFCAttributeVec2s() = default;
  explicit AFCAttributeVec2s(const Value& value) { set(value); }
  AFCAttributeVec2s* clone() const override { return new AFCAttributeVec2s(*this); }

  const Value& get() const;
  void set(const Value& value);

  int getChannelCount() const override { return 2; }
  double getChannelValue(int channel) const override;
  // Stores value + 0.001 truncated toward zero, as every integer kind.
  void setChannelValue(int channel, double value) override;
  bool assignTyped(const AFCAttribute& source) override;
  // "2s" and the two integers' machine bytes.
  std::string getKey() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  Value values_{};
};

// Channels from 31 upward share one bit of the mask: defining one defines them all.
class AFCAttributeVecNf : public AFCMultiChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeVecNf() = default;
  explicit AFCAttributeVecNf(std::vector<float> values) { set(std::move(values)); }
  AFCAttributeVecNf* clone() const override { return new AFCAttributeVecNf(*this); }

  const std::vector<float>& get() const;
  // Stores the values and defines every channel (an empty vector stays undefined).
  void set(std::vector<float> values);

  int getChannelCount() const override { return static_cast<int>(values_.size()); }
  double getChannelValue(int channel) const override;
  void setChannelValue(int channel, double value) override;
  bool assignTyped(const AFCAttribute& source) override;
  // "Nf", the count's and the floats' machine bytes.
  std::string getKey() const override;
  // A bracketed text sets the length to its number of places ("[1, , 3]" gives 3 channels,
  // "[]" none); a lone number gives at least one channel.
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  // The count comes from the wire: the floats are read one by one, so a count larger than the
  // stream fails at its end instead of allocating for the count.
  void read(AFCPersistentInputStream& in) override;

private:
  bool inRange(int channel) const { return channel >= 0 && channel < getChannelCount(); }
  std::vector<float> values_;
};

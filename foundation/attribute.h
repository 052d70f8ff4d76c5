#pragma once
// Typed, possibly undefined attribute values: the abstract base and the single- and
// multi-channel bases. The kinds live in attribute_*.h and enum.h.
//
// Values are plain single-owner objects, not thread safe. Parsing never throws: unparsable text
// leaves 0 (numbers) or undefined channels (vectors).
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/persistent_stream.h"

// Typed get of an undefined value: "Undefined value of type " + class name.
AFC_DECLARE_EXCEPTION(AFCUndefinedAttributeValue, AFCException);
// "Attribute " + class name + " not implemented getHashValue method".
AFC_DECLARE_EXCEPTION(AFCAttributeGetHashValueNotImplementedException, AFCException);

class AFCAttribute : public AFCPersistent {
  AFC_DECLARE_CLASS()
public:
  // New attributes are undefined.
  AFCAttribute* clone() const override = 0;
  uint32_t getHashValue() const override;
  // "<undefined>" when not defined, else valueToString().
  std::string toString() const override;

  virtual bool isDefined() const = 0;
  virtual void setUndefined() = 0;
  virtual bool equals(const AFCAttribute& other) const;
  // getDouble() when defined, else 0.0.
  virtual double getDoubleOrZero() const;
  virtual int getChannelCount() const = 0;
  virtual std::string getAuxText() const { return {}; }
  // The channel as a double; 0.0 out of range.
  virtual double getChannelValue(int channel) const = 0;
  // Stores the channel and marks it defined; a channel out of range is ignored.
  virtual void setChannelValue(int channel, double value) = 0;
  virtual void setValue(double value) { setChannelValue(0, value); }
  virtual bool isChannelDefined(int channel) const = 0;
  // Appends toString().
  virtual void printTo(std::string& out) const { out += toString(); }
  // Kind-specific copy from a compatible attribute; false when not compatible.
  virtual bool assignTyped(const AFCAttribute& source) = 0;
  // Tag and raw value bytes, the identity used to compare values across the system.
  virtual std::string getKey() const = 0;
  // Text of a defined value.
  virtual std::string valueToString() const = 0;
  // toString() parsed as a decimal integer / a floating-point number.
  virtual int32_t getInt() const;
  virtual double getDouble() const;
  // Kind-specific parse; marks the value defined.
  virtual void parseValue(std::string_view text) = 0;

  // "<undefined>" makes the value undefined; any other text goes to parseValue.
  void fromString(std::string_view text);
  // Undefined source: undefined; else assignTyped, else fromString(source.toString()).
  void fromAttribute(const AFCAttribute& source);

protected:
  AFCAttribute() = default;
  AFCAttribute(const AFCAttribute&) = default;
  AFCAttribute& operator=(const AFCAttribute&) = default;
  // The error text for an operation a kind does not have.
  [[noreturn]] void throwNotImplemented(const char* operation) const;
};

class AFCSingleChannelAttribute : public AFCAttribute {
  AFC_DECLARE_CLASS()
public:
  bool isDefined() const override { return defined_; }
  void setUndefined() override { defined_ = false; }
  int getChannelCount() const override { return 1; }
  double getChannelValue(int channel) const override;
  bool isChannelDefined(int channel) const override { return channel == 0 && defined_; }
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

protected:
  // Throws AFCUndefinedAttributeValue when not defined.
  void checkDefined() const;
  bool defined_ = false;
};

class AFCMultiChannelAttribute : public AFCAttribute {
  AFC_DECLARE_CLASS()
public:
  bool isDefined() const override { return definedMask_ != 0; }
  void setUndefined() override { definedMask_ = 0; }
  bool isChannelDefined(int channel) const override;
  bool equals(const AFCAttribute& other) const override;
  std::string valueToString() const override;
  // "[a, b, c]" with empty places for undefined channels, or one number for channel 0.
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;
  uint32_t getDefinedMask() const { return definedMask_; }

protected:
  // Channels from 31 upward share bit 31.
  static uint32_t channelBit(int channel) { return 1u << (channel < 31 ? channel : 31); }
  void markDefined(int channel) { definedMask_ |= channelBit(channel); }
  uint32_t definedMask_ = 0;
};

// Inline: each kind's write and read begins with its base's, so the whole of a small attribute
// compiles to one straight run of stream accesses.
inline void AFCSingleChannelAttribute::write(AFCPersistentOutputStream& out) const {
  AFCPersistent::write(out);
  out.writeBool(defined_);
}

inline void AFCSingleChannelAttribute::read(AFCPersistentInputStream& in) {
  AFCPersistent::read(in);
  defined_ = in.readBool();
}

inline void AFCMultiChannelAttribute::write(AFCPersistentOutputStream& out) const {
  AFCPersistent::write(out);
  out.writeUInt32(definedMask_);
}

inline void AFCMultiChannelAttribute::read(AFCPersistentInputStream& in) {
  AFCPersistent::read(in);
  definedMask_ = in.readUInt32();
}

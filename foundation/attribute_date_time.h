#pragma once
// The calendar kinds: date, time of day and timestamp. They travel as their text forms
// (a 0x0B string), which is also what parseValue reads.
//
// Plain single-owner values, not thread safe. parseValue never throws: unreadable text gives
// the default value. read() lets the calendar exception of unreadable wire text through.
#include <string>
#include <string_view>

#include "foundation/attribute.h"
#include "foundation/date_time.h"

// Value is AFCDate, AFCTime or AFCTimestamp. Derived names the kind: its class record, its
// clone and its key tag (Derived::kKeyTag).
template <class Derived, class Value>
class AFCCalendarAttribute : public AFCSingleChannelAttribute {
public:
  AFCCalendarAttribute() = default;
  explicit AFCCalendarAttribute(const Value& value) { set(value); }

  const Value& get() const;
  void set(const Value& value);

  bool equals(const AFCAttribute& other) const override;
  // Channel 0 parses the number's "%lg" text, which no calendar form accepts.
  void setChannelValue(int channel, double value) override;
  bool assignTyped(const AFCAttribute& source) override;
  // The tag and the fields' machine bytes, from the largest unit down.
  std::string getKey() const override;
  std::string valueToString() const override { return value_.toString(); }
  void parseValue(std::string_view text) override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

private:
  Value value_{};
};

class AFCAttributeDate : public AFCCalendarAttribute<AFCAttributeDate, AFCDate> {
  AFC_DECLARE_CLASS()
public:
  static constexpr const char* kKeyTag = "Date";
  using AFCCalendarAttribute::AFCCalendarAttribute;
  AFCAttributeDate* clone() const override { return new AFCAttributeDate(*this); }
};

class AFCAttributeTime : public AFCCalendarAttribute<AFCAttributeTime, AFCTime> {
  AFC_DECLARE_CLASS()
public:
  static constexpr const char* kKeyTag = "Time";
  using AFCCalendarAttribute::AFCCalendarAttribute;
  AFCAttributeTime* clone() const override { return new AFCAttributeTime(*this); }
};

// The text form carries whole seconds: nanoseconds do not travel.
class AFCAttributeTimestamp : public AFCCalendarAttribute<AFCAttributeTimestamp, AFCTimestamp> {
  AFC_DECLARE_CLASS()
public:
  static constexpr const char* kKeyTag = "Timestamp";
  using AFCCalendarAttribute::AFCCalendarAttribute;
  AFCAttributeTimestamp* clone() const override { return new AFCAttributeTimestamp(*this); }
};

#include "foundation/attribute_date_time.h"

#include "foundation/attribute_support.h"

AFC_IMPLEMENT_CLASS(AFCAttributeDate, AFCSingleChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeTime, AFCSingleChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeTimestamp, AFCSingleChannelAttribute)

namespace {
void appendFields(std::string& key, const AFCDate& date) {
  afcAppendRaw(key, date.getYear());
  afcAppendRaw(key, date.getMonth());
  afcAppendRaw(key, date.getDay());
}

void appendFields(std::string& key, const AFCTime& time) {
  afcAppendRaw(key, time.getHour());
  afcAppendRaw(key, time.getMinute());
  afcAppendRaw(key, time.getSecond());
}

void appendFields(std::string& key, const AFCTimestamp& stamp) {
  appendFields(key, stamp.getDate());
  appendFields(key, stamp.getTime());
  afcAppendRaw(key, stamp.getNanos());
}

// The value of the text, or the default value when the text is unreadable.
template <class Value>
Value parseOrDefault(std::string_view text) {
  Value value;
  try {
    value.fromString(text);
  } catch (const AFCDateTimeException&) {
    value = Value();
  }
  return value;
}
}  // namespace

template <class Derived, class Value>
const Value& AFCCalendarAttribute<Derived, Value>::get() const {
  checkDefined();
  return value_;
}

template <class Derived, class Value>
void AFCCalendarAttribute<Derived, Value>::set(const Value& value) {
  value_ = value;
  defined_ = true;
}

template <class Derived, class Value>
bool AFCCalendarAttribute<Derived, Value>::equals(const AFCAttribute& other) const {
  const auto* typed = dynamic_cast<const Derived*>(&other);
  return typed != nullptr && AFCAttribute::equals(other) && typed->value_ == value_;
}

template <class Derived, class Value>
void AFCCalendarAttribute<Derived, Value>::setChannelValue(int channel, double value) {
  if (channel == 0) parseValue(afcFormatDouble("%lg", value));
}

template <class Derived, class Value>
bool AFCCalendarAttribute<Derived, Value>::assignTyped(const AFCAttribute& source) {
  const auto* typed = dynamic_cast<const Derived*>(&source);
  if (typed == nullptr) return false;
  set(typed->value_);
  return true;
}

template <class Derived, class Value>
std::string AFCCalendarAttribute<Derived, Value>::getKey() const {
  std::string key = Derived::kKeyTag;
  appendFields(key, value_);
  return key;
}

template <class Derived, class Value>
void AFCCalendarAttribute<Derived, Value>::parseValue(std::string_view text) {
  set(parseOrDefault<Value>(text));
}

template <class Derived, class Value>
void AFCCalendarAttribute<Derived, Value>::write(AFCPersistentOutputStream& out) const {
  AFCSingleChannelAttribute::write(out);
  out.writeString(value_.toString());
}

template <class Derived, class Value>
void AFCCalendarAttribute<Derived, Value>::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    const std::string text = in.readString();
    // A defined value must be readable; an undefined one may carry any stale text.
    Value value;
    if (defined_) {
      value.fromString(text);
    } else {
      value = parseOrDefault<Value>(text);
    }
    value_ = value;
  });
}

template class AFCCalendarAttribute<AFCAttributeDate, AFCDate>;
template class AFCCalendarAttribute<AFCAttributeTime, AFCTime>;
template class AFCCalendarAttribute<AFCAttributeTimestamp, AFCTimestamp>;

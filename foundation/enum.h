#pragma once
// Enumerations: named tables of (value name, id) pairs kept in a process-wide registry, and the
// attribute kind whose value is an id of one of them.
//
// An enum class is filled before it is registered and never changes or dies afterwards, so
// registered classes are read from any thread without a lock; the registry itself is locked.
// AFCAttributeEnum is a plain single-owner value, not thread safe.
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/attribute.h"

AFC_DECLARE_EXCEPTION(AFCEnumException, AFCException);

// "Duplicate enum value": the name or the id is in the class already.
class AFCEnumDuplicateException : public AFCEnumException {
public:
  AFCEnumDuplicateException() : AFCEnumException("Duplicate enum value") {}
};

// "Invalid enum id " and the id.
class AFCEnumIDNotFoundException : public AFCEnumException {
public:
  explicit AFCEnumIDNotFoundException(int32_t id) : id_(id) {}
  int32_t getId() const noexcept { return id_; }
  void print(std::string& out) const override;

private:
  int32_t id_;
};

// "Invalid enum name '" + name + "'".
class AFCEnumNameNotFoundException : public AFCEnumException {
public:
  explicit AFCEnumNameNotFoundException(std::string name) : name_(std::move(name)) {}
  const std::string& getName() const noexcept { return name_; }
  void print(std::string& out) const override;

private:
  std::string name_;
};

// An enum class that is not registered; the message is its name.
AFC_DECLARE_EXCEPTION(AFCEnumNotFoundException, AFCEnumException);

// "Bad enum type": an enum attribute without an enum class was asked for something that needs
// one (its value name, a typed set, writing).
class AFCEnumBadTypeException : public AFCEnumException {
public:
  AFCEnumBadTypeException() : AFCEnumException("Bad enum type") {}
};

class AFCEnumClass {
public:
  explicit AFCEnumClass(std::string name) : name_(std::move(name)) {}
  AFCEnumClass(const AFCEnumClass&) = delete;
  AFCEnumClass& operator=(const AFCEnumClass&) = delete;

  const std::string& getName() const { return name_; }
  // Adds one pair to both maps; throws AFCEnumDuplicateException when the name or the id is
  // present already.
  void addValue(std::string_view valueName, int32_t id);
  bool hasId(int32_t id) const { return names_.count(id) != 0; }
  std::optional<int32_t> findId(std::string_view valueName) const;
  // Throws AFCEnumNameNotFoundException.
  int32_t getId(std::string_view valueName) const;
  // Throws AFCEnumIDNotFoundException.
  const std::string& getValueName(int32_t id) const;

  // Registers a filled class and returns the registered one: when the name is taken already,
  // the earlier class stays and is returned (so registration may run more than once).
  static const AFCEnumClass& registerEnumClass(std::unique_ptr<AFCEnumClass> enumClass);
  // The registered class of that name; nullptr when unknown.
  static const AFCEnumClass* find(std::string_view name);
  // The registered class of that name; throws AFCEnumNotFoundException when unknown.
  static const AFCEnumClass& forName(std::string_view name);

private:
  std::string name_;
  std::map<std::string, int32_t, std::less<>> ids_;
  std::map<int32_t, std::string> names_;
};

// A single-channel attribute whose value is an id of its enum class. The argument-less
// constructor (used by the persistent reader) makes one without a class; it takes the class
// named by the first value it reads or assigns.
class AFCAttributeEnum : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
public:
  AFCAttributeEnum() = default;
  // Id 0, unchecked, undefined.
  explicit AFCAttributeEnum(const AFCEnumClass& enumClass) : enumClass_(&enumClass) {}
  // A defined value; throws AFCEnumIDNotFoundException when the class lacks the id.
  AFCAttributeEnum(const AFCEnumClass& enumClass, int32_t id);
  AFCAttributeEnum* clone() const override { return new AFCAttributeEnum(*this); }

  // nullptr for an attribute without a class.
  const AFCEnumClass* getEnumClass() const { return enumClass_; }
  int32_t get() const;
  // Throws AFCEnumIDNotFoundException for an id the class lacks, AFCEnumBadTypeException
  // without a class.
  void set(int32_t id);
  // The name of the current id; throws as set does.
  const std::string& getValueName() const;
  // Takes x + 0.5 rounded down when the class has that id; otherwise nothing changes.
  void setFromNumber(double x);
  // Another enum of a class with the same name: its id. A numeric kind (Int32, Int64, Float,
  // Double): its getInt() when the class has that id. Else false and nothing changes.
  bool assign(const AFCAttribute& other);

  bool equals(const AFCAttribute& other) const override;
  double getChannelValue(int channel) const override { return channel == 0 ? value_ : 0.0; }
  // Channel 0: setFromNumber.
  void setChannelValue(int channel, double value) override;
  bool assignTyped(const AFCAttribute& source) override { return assign(source); }
  // "AEnum:%d" with the id.
  std::string getKey() const override { return "AEnum:" + std::to_string(value_); }
  // The value name.
  std::string valueToString() const override { return getValueName(); }
  // A value name of the class, else a number as setFromNumber takes it; else nothing changes.
  void parseValue(std::string_view text) override;
  // The base part, the enum class name, the id.
  void write(AFCPersistentOutputStream& out) const override;
  // Throws "Enum class doesn't match" for another class's name before the id is read, and
  // AFCEnumIDNotFoundException for a defined id the class lacks.
  void read(AFCPersistentInputStream& in) override;

private:
  const AFCEnumClass& requireClass() const;
  const AFCEnumClass* enumClass_ = nullptr;  // registered classes never die
  int32_t value_ = 0;
};

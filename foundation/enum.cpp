#include "foundation/enum.h"

#include <cmath>
#include <mutex>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_support.h"

void AFCEnumIDNotFoundException::print(std::string& out) const {
  out += "Invalid enum id ";
  out += std::to_string(id_);
}

void AFCEnumNameNotFoundException::print(std::string& out) const {
  out += "Invalid enum name '";
  out += name_;
  out += "'";
}

// --- enum classes ---

void AFCEnumClass::addValue(std::string_view valueName, int32_t id) {
  if (ids_.find(valueName) != ids_.end() || hasId(id)) throw AFCEnumDuplicateException();
  ids_.emplace(valueName, id);
  names_.emplace(id, valueName);
}

std::optional<int32_t> AFCEnumClass::findId(std::string_view valueName) const {
  auto it = ids_.find(valueName);
  if (it == ids_.end()) return std::nullopt;
  return it->second;
}

int32_t AFCEnumClass::getId(std::string_view valueName) const {
  if (auto id = findId(valueName)) return *id;
  throw AFCEnumNameNotFoundException(std::string(valueName));
}

const std::string& AFCEnumClass::getValueName(int32_t id) const {
  auto it = names_.find(id);
  if (it == names_.end()) throw AFCEnumIDNotFoundException(id);
  return it->second;
}

namespace {
struct EnumRegistry {
  std::mutex lock;
  // The classes are never freed: attributes keep pointers to them.
  std::map<std::string, const AFCEnumClass*, std::less<>> classes;
};
EnumRegistry& enumRegistry() {
  static EnumRegistry* instance = new EnumRegistry();
  return *instance;
}
}  // namespace

const AFCEnumClass& AFCEnumClass::registerEnumClass(std::unique_ptr<AFCEnumClass> enumClass) {
  EnumRegistry& registry = enumRegistry();
  std::lock_guard guard(registry.lock);
  auto [it, inserted] = registry.classes.emplace(enumClass->getName(), enumClass.get());
  if (inserted) enumClass.release();
  return *it->second;
}

const AFCEnumClass* AFCEnumClass::find(std::string_view name) {
  EnumRegistry& registry = enumRegistry();
  std::lock_guard guard(registry.lock);
  auto it = registry.classes.find(name);
  return it == registry.classes.end() ? nullptr : it->second;
}

const AFCEnumClass& AFCEnumClass::forName(std::string_view name) {
  const AFCEnumClass* found = find(name);
  if (found == nullptr) throw AFCEnumNotFoundException(std::string(name));
  return *found;
}

// --- enum attributes ---

AFC_IMPLEMENT_CLASS(AFCAttributeEnum, AFCSingleChannelAttribute)

AFCAttributeEnum::AFCAttributeEnum(const AFCEnumClass& enumClass, int32_t id)
    : enumClass_(&enumClass) {
  set(id);
}

const AFCEnumClass& AFCAttributeEnum::requireClass() const {
  if (enumClass_ == nullptr) throw AFCEnumBadTypeException();
  return *enumClass_;
}

int32_t AFCAttributeEnum::get() const {
  checkDefined();
  return value_;
}

void AFCAttributeEnum::set(int32_t id) {
  if (!requireClass().hasId(id)) throw AFCEnumIDNotFoundException(id);
  value_ = id;
  defined_ = true;
}

const std::string& AFCAttributeEnum::getValueName() const {
  return requireClass().getValueName(value_);
}

void AFCAttributeEnum::setFromNumber(double x) {
  const double rounded = std::floor(x + 0.5);
  const int32_t id = afcTruncateToInt32(rounded);
  if (enumClass_ == nullptr || id != rounded || !enumClass_->hasId(id)) return;
  value_ = id;
  defined_ = true;
}

bool AFCAttributeEnum::assign(const AFCAttribute& other) {
  if (const auto* typed = dynamic_cast<const AFCAttributeEnum*>(&other)) {
    if (typed->enumClass_ == nullptr) return false;
    if (enumClass_ != nullptr && enumClass_->getName() != typed->enumClass_->getName()) {
      return false;
    }
    enumClass_ = typed->enumClass_;
    value_ = typed->value_;
    defined_ = true;
    return true;
  }
  if (enumClass_ == nullptr || !afcNumericValue(other)) return false;
  const int32_t id = other.getInt();
  if (!enumClass_->hasId(id)) return false;
  value_ = id;
  defined_ = true;
  return true;
}

bool AFCAttributeEnum::equals(const AFCAttribute& other) const {
  const auto* typed = dynamic_cast<const AFCAttributeEnum*>(&other);
  return typed != nullptr && AFCAttribute::equals(other) && typed->value_ == value_;
}

void AFCAttributeEnum::setChannelValue(int channel, double value) {
  if (channel == 0) setFromNumber(value);
}

void AFCAttributeEnum::parseValue(std::string_view text) {
  if (enumClass_ == nullptr) return;
  if (auto id = enumClass_->findId(text)) {
    value_ = *id;
    defined_ = true;
  } else if (auto number = afcLeadingNumber(text)) {
    setFromNumber(*number);
  }
}

void AFCAttributeEnum::write(AFCPersistentOutputStream& out) const {
  const AFCEnumClass& enumClass = requireClass();
  AFCSingleChannelAttribute::write(out);
  out.writeString(enumClass.getName());
  out.writeInt32(value_);
}

void AFCAttributeEnum::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(defined_, [&] {
    AFCSingleChannelAttribute::read(in);
    const std::string name = in.readString();
    if (enumClass_ != nullptr && name != enumClass_->getName()) {
      throw AFCPersistentReadException2("Enum class doesn't match");
    }
    const AFCEnumClass& enumClass =
        enumClass_ != nullptr ? *enumClass_ : AFCEnumClass::forName(name);
    const int32_t id = in.readInt32();
    // An undefined value carries a stale id; only a defined one must be valid.
    if (defined_ && !enumClass.hasId(id)) throw AFCEnumIDNotFoundException(id);
    enumClass_ = &enumClass;
    value_ = id;
  });
}

#pragma once
// Script objects as a host adapter would hand them to the core: a script array whose member
// lookups can be made to fail, and objects of this module that answer with their core object.
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "automation/animation_objects.h"
#include "automation/script_value.h"

class FakeScriptArray : public ScriptObject {
 public:
  explicit FakeScriptArray(std::vector<ScriptValue> members)
      : members_(std::move(members)),
        length_(ScriptValue::integer(static_cast<int64_t>(members_.size()))) {}

  // Makes the lookup of a member ("length", "0", ...) end so.
  void fail(const std::string& name, Lookup lookup) { failures_[name] = lookup; }
  void setLength(ScriptValue length) { length_ = std::move(length); }

  Lookup getMember(std::string_view name, ScriptValue& value) override {
    const std::string key(name);
    if (const auto failure = failures_.find(key); failure != failures_.end()) {
      return failure->second;
    }
    if (key == "length") {
      value = length_;
      return Lookup::Found;
    }
    const std::size_t index = std::stoul(key);
    if (index >= members_.size()) return Lookup::NoSuchMember;
    value = members_[index];
    return Lookup::Found;
  }

 private:
  std::vector<ScriptValue> members_;
  ScriptValue length_;
  std::map<std::string, Lookup> failures_;
};

// An object of this module: answers with its core object, and has no members.
template <class Core>
class FakeModuleObject : public ScriptObject {
 public:
  Lookup getMember(std::string_view, ScriptValue&) override { return Lookup::NoSuchMember; }
  CAnimation* asAnimation() override { return as<CAnimation>(); }
  CAnimationOptions* asAnimationOptions() override { return as<CAnimationOptions>(); }
  Core core;

 private:
  template <class Wanted>
  Wanted* as() {
    if constexpr (std::is_same_v<Core, Wanted>) return &core;
    return nullptr;
  }
};

template <class Core>
std::shared_ptr<FakeModuleObject<Core>> makeModuleObject() {
  return std::make_shared<FakeModuleObject<Core>>();
}

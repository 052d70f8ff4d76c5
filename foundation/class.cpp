#include "foundation/class.h"

#include <map>
#include <mutex>

#include "foundation/attribute.h"
#include "foundation/exception.h"

namespace {
struct Registry {
  std::mutex lock;
  std::map<std::string, const AFCClass*, std::less<>> classes;
};
// Never destroyed: records stay reachable (and valid) until the process ends.
Registry& registry() {
  static Registry* instance = new Registry();
  return *instance;
}
}  // namespace

void afcCheckArguments(const std::vector<const AFCClass*>& params, AFCArguments args) {
  if (args.size() != params.size()) throw AFCInvalidArgumentCountException();
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == nullptr) throw AFCNullPointerException("args[" + std::to_string(i) + "]");
    const AFCClass* expected = params[i];
    const AFCClass* received = args[i]->getClass();
    if (expected != nullptr && !received->isSubclassOf(*expected)) {
      throw AFCInvalidArgumentTypeException(expected->getName(), received->getName());
    }
  }
}

AFCObject* AFCConstructor::newInstance(AFCArguments args) const {
  afcCheckArguments(params_, args);
  return factory_(args);
}

AFCResult AFCMethod::invoke(AFCObject* self, AFCArguments args) const {
  afcCheckArguments(params_, args);
  return invoker_(self, args);
}

std::string AFCMethod::toString() const {
  std::string text = name_ + " (";
  for (std::size_t i = 0; i < params_.size(); ++i) {
    if (i > 0) text += ", ";
    text += params_[i] != nullptr ? params_[i]->getName() : "AFCAttribute";
  }
  text += ")";
  if (result_ != nullptr) text += " returning " + result_->getName();
  return text;
}

AFCResult AFCDeclaredAttribute::get(const AFCObject& object) const { return getter_(object); }

void AFCDeclaredAttribute::set(AFCObject& object, const AFCAttribute& value) const {
  if (const_ || !setter_) throw AFCAccessViolation("Access violation: set const attribute");
  AFCAttribute* const args[] = {const_cast<AFCAttribute*>(&value)};
  afcCheckArguments({type_}, args);
  setter_(object, value);
}

bool AFCClass::isSubclassOf(const AFCClass& other) const {
  for (const AFCClass* c = this; c != nullptr; c = c->parent_) {
    if (c == &other) return true;
  }
  return false;
}

const AFCConstructor* AFCClass::findArgumentless() const {
  for (const AFCConstructor& constructor : constructors_) {
    if (constructor.getParameterTypes().empty()) return &constructor;
  }
  return nullptr;
}

AFCObject* AFCClass::newInstance() const {
  if (newDefault_ != nullptr) return newDefault_();
  const AFCConstructor* constructor = findArgumentless();
  return constructor != nullptr ? constructor->newInstance({}) : nullptr;
}

const AFCMethod* AFCClass::findMethod(std::string_view name) const {
  for (const AFCClass* c = this; c != nullptr; c = c->parent_) {
    for (const AFCMethod& method : c->methods_) {
      if (method.getName() == name) return &method;
    }
  }
  return nullptr;
}

const AFCDeclaredAttribute* AFCClass::findAttribute(std::string_view name) const {
  for (const AFCClass* c = this; c != nullptr; c = c->parent_) {
    for (const AFCDeclaredAttribute& attribute : c->attributes_) {
      if (attribute.getName() == name) return &attribute;
    }
  }
  return nullptr;
}

AFCResult AFCClass::invoke(AFCObject* self, std::string_view method, AFCArguments args) const {
  const AFCMethod* found = findMethod(method);
  if (found == nullptr) {
    throw AFCIllegalArgumentException("no method '" + std::string(method) + "' in class '" +
                                      name_ + "'");
  }
  return found->invoke(self, args);
}

const AFCClass* AFCClass::forName(std::string_view name) {
  if (name.empty()) return &AFCGlobalClassEx::instance();
  Registry& r = registry();
  std::lock_guard guard(r.lock);
  auto it = r.classes.find(name);
  return it == r.classes.end() ? nullptr : it->second;
}

std::vector<std::string> AFCClass::registeredNames() {
  Registry& r = registry();
  std::lock_guard guard(r.lock);
  std::vector<std::string> names;
  for (const auto& [name, record] : r.classes) names.push_back(name);
  return names;
}

AFCClassEx& AFCClassEx::constructor(std::vector<const AFCClass*> params,
                                    AFCConstructor::Factory factory) {
  constructors_.emplace_back(std::move(params), std::move(factory));
  return *this;
}

AFCClassEx& AFCClassEx::method(std::string name, std::vector<const AFCClass*> params,
                               const AFCClass* result, AFCMethod::Invoker invoker) {
  methods_.emplace_back(std::move(name), std::move(params), result, std::move(invoker));
  return *this;
}

AFCClassEx& AFCClassEx::attribute(std::string name, const AFCClass* type,
                                  AFCDeclaredAttribute::Getter getter,
                                  AFCDeclaredAttribute::Setter setter) {
  const bool isConst = !setter;
  attributes_.emplace_back(std::move(name), type, std::move(getter), std::move(setter), isConst);
  return *this;
}

const AFCClass& AFCClassEx::registerClass() {
  Registry& r = registry();
  std::lock_guard guard(r.lock);
  r.classes[name_] = this;
  return *this;
}

AFCGlobalClassEx& AFCGlobalClassEx::instance() {
  static AFCGlobalClassEx* global = [] {
    auto* record = new AFCGlobalClassEx();
    record->registerClass();
    return record;
  }();
  return *global;
}

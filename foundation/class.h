#pragma once
// Run-time class records and reflection: the process-wide registry by class name, argument-less
// construction, methods invoked by name with attribute arguments, and declared attributes.
//
// Records are built once (usually inside a class's staticClass()) and never destroyed. The
// registry is guarded by a lock; records must not change once registered.
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/object.h"

class AFCAttribute;

using AFCArguments = std::span<AFCAttribute* const>;
using AFCResult = std::unique_ptr<AFCAttribute>;

class AFCConstructor {
public:
  using Factory = std::function<AFCObject*(AFCArguments)>;
  AFCConstructor(std::vector<const AFCClass*> params, Factory factory)
      : params_(std::move(params)), factory_(std::move(factory)) {}
  const std::vector<const AFCClass*>& getParameterTypes() const { return params_; }
  // A new instance owned by the caller; the arguments are checked first.
  AFCObject* newInstance(AFCArguments args) const;

private:
  std::vector<const AFCClass*> params_;
  Factory factory_;
};

class AFCMethod {
public:
  using Invoker = std::function<AFCResult(AFCObject* self, AFCArguments args)>;
  AFCMethod(std::string name, std::vector<const AFCClass*> params, const AFCClass* result,
            Invoker invoker)
      : name_(std::move(name)), params_(std::move(params)), result_(result),
        invoker_(std::move(invoker)) {}
  const std::string& getName() const { return name_; }
  const std::vector<const AFCClass*>& getParameterTypes() const { return params_; }
  const AFCClass* getResultType() const { return result_; }
  // Checks count, nulls and kinds, then calls; exceptions of the method pass unchanged.
  AFCResult invoke(AFCObject* self, AFCArguments args) const;
  // "name (T1, T2) returning R"
  std::string toString() const;

private:
  std::string name_;
  std::vector<const AFCClass*> params_;
  const AFCClass* result_;
  Invoker invoker_;
};

// Throws the argument-count, null and kind errors for args against params.
void afcCheckArguments(const std::vector<const AFCClass*>& params, AFCArguments args);

class AFCDeclaredAttribute {
public:
  using Getter = std::function<AFCResult(const AFCObject&)>;
  using Setter = std::function<void(AFCObject&, const AFCAttribute&)>;
  AFCDeclaredAttribute(std::string name, const AFCClass* type, Getter getter, Setter setter,
                       bool isConst)
      : name_(std::move(name)), type_(type), getter_(std::move(getter)),
        setter_(std::move(setter)), const_(isConst) {}
  const std::string& getName() const { return name_; }
  const AFCClass* getType() const { return type_; }
  bool isConst() const { return const_; }
  // A new attribute holding the value.
  AFCResult get(const AFCObject& object) const;
  // Throws AFCAccessViolation for a const attribute, the kind error for a wrong kind.
  void set(AFCObject& object, const AFCAttribute& value) const;

private:
  std::string name_;
  const AFCClass* type_;
  Getter getter_;
  Setter setter_;
  bool const_;
};

class AFCClass {
public:
  AFCClass(std::string name, const AFCClass* parent) : name_(std::move(name)), parent_(parent) {}
  AFCClass(const AFCClass&) = delete;
  AFCClass& operator=(const AFCClass&) = delete;
  virtual ~AFCClass() = default;

  const std::string& getName() const { return name_; }
  const AFCClass* getParent() const { return parent_; }
  bool isSubclassOf(const AFCClass& other) const;

  // A new instance from the argument-less constructor, owned by the caller; nullptr when the
  // class has no such constructor (abstract classes).
  AFCObject* newInstance() const;
  const std::vector<AFCConstructor>& getConstructors() const { return constructors_; }
  const std::vector<AFCMethod>& getMethods() const { return methods_; }
  const std::vector<AFCDeclaredAttribute>& getAttributes() const { return attributes_; }
  // Searches this class, then its parents; nullptr when absent.
  const AFCMethod* findMethod(std::string_view name) const;
  const AFCDeclaredAttribute* findAttribute(std::string_view name) const;
  // Invokes a method by name; an unknown name throws AFCIllegalArgumentException.
  AFCResult invoke(AFCObject* self, std::string_view method, AFCArguments args) const;

  // The registered record of that name; the global class for ""; nullptr when unknown.
  static const AFCClass* forName(std::string_view name);
  static std::vector<std::string> registeredNames();

protected:
  // The first constructor without parameters; nullptr when there is none.
  const AFCConstructor* findArgumentless() const;

  std::string name_;
  const AFCClass* parent_;
  // newInstance() without the argument checks and the call through std::function, for classes
  // whose argument-less constructor is defaultConstructor<T>(): readers create one object per
  // record they read.
  AFCObject* (*newDefault_)() = nullptr;
  std::vector<AFCConstructor> constructors_;
  std::vector<AFCMethod> methods_;
  std::vector<AFCDeclaredAttribute> attributes_;
};

// Registration helpers used while a class record is built.
class AFCClassEx : public AFCClass {
public:
  using AFCClass::AFCClass;

  template <class T>
  AFCClassEx& defaultConstructor() {
    if (findArgumentless() == nullptr) newDefault_ = []() -> AFCObject* { return new T(); };
    constructors_.emplace_back(std::vector<const AFCClass*>{},
                               [](AFCArguments) -> AFCObject* { return new T(); });
    return *this;
  }
  AFCClassEx& constructor(std::vector<const AFCClass*> params, AFCConstructor::Factory factory);
  AFCClassEx& method(std::string name, std::vector<const AFCClass*> params,
                     const AFCClass* result, AFCMethod::Invoker invoker);
  AFCClassEx& attribute(std::string name, const AFCClass* type, AFCDeclaredAttribute::Getter getter,
                        AFCDeclaredAttribute::Setter setter = {});
  // Inserts the record into the registry (a later record of the same name replaces it).
  const AFCClass& registerClass();
};

// The pseudo-class of free functions, registered under the empty name.
class AFCGlobalClassEx : public AFCClassEx {
public:
  AFCGlobalClassEx() : AFCClassEx("", nullptr) {}
  static AFCGlobalClassEx& instance();
};

// Declares the class record accessors of a reflective class.
#define AFC_DECLARE_CLASS()                  \
public:                                      \
  static const AFCClass& staticClass();      \
  const AFCClass* getClass() const override { return &staticClass(); }

// Defines staticClass() for a class with an argument-less constructor and no methods.
#define AFC_IMPLEMENT_CLASS(Name, Parent)                                             \
  const AFCClass& Name::staticClass() {                                               \
    static const AFCClass& record =                                                   \
        (new AFCClassEx(#Name, &Parent::staticClass()))->defaultConstructor<Name>()   \
            .registerClass();                                                         \
    return record;                                                                    \
  }

// Defines staticClass() for an abstract class (no constructor, no methods).
#define AFC_IMPLEMENT_ABSTRACT_CLASS(Name, Parent)                                    \
  const AFCClass& Name::staticClass() {                                               \
    static const AFCClass& record =                                                   \
        (new AFCClassEx(#Name, &Parent::staticClass()))->registerClass();             \
    return record;                                                                    \
  }

// Touches every class record of the foundation so that readers find them by name.
void registerFoundationClasses();

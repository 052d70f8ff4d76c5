#pragma once
// Owners of the automation runtime's resources: a BSTR (SysFreeString), a SAFEARRAY
// (SafeArrayDestroy), an interface reference (Release), all through AFCUniqueHandle, and a
// VARIANT (VariantClear), which is a value rather than a handle and gets its own small class.
// Move-only, not thread safe; releasing never throws.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oleauto.h>

#include <utility>

#include "foundation/unique_handle.h"

struct CBstrTraits {
  using Type = BSTR;
  static Type invalid() noexcept { return nullptr; }
  static void close(Type text) noexcept { SysFreeString(text); }
};
using CUniqueBstr = AFCUniqueHandle<CBstrTraits>;

struct CSafeArrayTraits {
  using Type = SAFEARRAY*;
  static Type invalid() noexcept { return nullptr; }
  static void close(Type array) noexcept { SafeArrayDestroy(array); }
};
using CUniqueSafeArray = AFCUniqueHandle<CSafeArrayTraits>;

template <class Interface>
struct CReleaseTraits {
  using Type = Interface*;
  static Type invalid() noexcept { return nullptr; }
  static void close(Type object) noexcept { object->Release(); }
};
// Owns one reference; addRef(object) adds one for an object the caller does not own.
template <class Interface>
using CUniqueRef = AFCUniqueHandle<CReleaseTraits<Interface>>;

template <class Interface>
CUniqueRef<Interface> addRef(Interface* object) noexcept {
  if (object != nullptr) object->AddRef();
  return CUniqueRef<Interface>(object);
}

class CUniqueVariant {
 public:
  CUniqueVariant() noexcept { VariantInit(&value_); }
  ~CUniqueVariant() { VariantClear(&value_); }
  CUniqueVariant(CUniqueVariant&& other) noexcept : value_(other.release()) {}
  CUniqueVariant& operator=(CUniqueVariant&& other) noexcept {
    if (this != &other) {
      VariantClear(&value_);
      value_ = other.release();
    }
    return *this;
  }
  CUniqueVariant(const CUniqueVariant&) = delete;
  CUniqueVariant& operator=(const CUniqueVariant&) = delete;

  VARIANT& get() noexcept { return value_; }
  const VARIANT& get() const noexcept { return value_; }
  // Clears the value and hands it out for a call that fills it.
  VARIANT* put() noexcept {
    VariantClear(&value_);
    return &value_;
  }
  // Gives up the value without clearing it; this one is left empty.
  VARIANT release() noexcept {
    VARIANT out = value_;
    VariantInit(&value_);
    return out;
  }

 private:
  VARIANT value_;
};

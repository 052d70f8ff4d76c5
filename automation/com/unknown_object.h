#pragma once
// IUnknown written once for every object of the module: CUnknownObject<Primary, Others...>
// implements the interfaces Primary and Others; QueryInterface answers IUnknown (as Primary) and
// each of them by its id; the reference count is atomic; a live object holds one module lock,
// so DllCanUnloadNow says S_FALSE while any object of the module lives.
//
// An object starts with one reference, which its maker hands on or releases (makeObject()
// below), and deletes itself when the last one goes. Any thread. Nothing here throws.
#include <windows.h>

#include <atomic>
#include <utility>

#include "automation/com/com_module.h"

template <class Primary, class... Others>
class CUnknownObject : public Primary, public Others... {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = find(iid);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  CUnknownObject() noexcept { CModule::lock(); }
  virtual ~CUnknownObject() { CModule::unlock(); }
  CUnknownObject(const CUnknownObject&) = delete;
  CUnknownObject& operator=(const CUnknownObject&) = delete;

 private:
  void* find(REFIID iid) noexcept {
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, __uuidof(Primary))) {
      return static_cast<Primary*>(this);
    }
    void* found = nullptr;
    (void)((IsEqualIID(iid, __uuidof(Others)) && (found = static_cast<Others*>(this))) || ...);
    return found;
  }

  std::atomic<ULONG> references_{1};
};

// Makes a Derived from arguments and queries it for iid into object; the result is the query's.
// Throws std::bad_alloc and whatever Derived's constructor throws.
template <class Derived, class... Arguments>
HRESULT makeObject(REFIID iid, void** object, Arguments&&... arguments) {
  Derived* made = new Derived(std::forward<Arguments>(arguments)...);
  const HRESULT result = made->QueryInterface(iid, object);
  made->Release();
  return result;
}

#pragma once
// The class object of one creatable class: CClassFactory<Object> makes an Object (a
// CDispatchObject) for each CreateInstance. Objects cannot be aggregated. LockServer counts in
// the module's lock, and so does each live factory, so that DllCanUnloadNow says S_FALSE while
// a caller holds one.
//
// Any thread; the reference count is atomic. Nothing escapes as an exception: what Object's
// constructor throws is reported through the error boundary with the requested interface id.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <objbase.h>

#include <atomic>

#include "automation/com/com_module.h"
#include "automation/com/dispatch_object.h"
#include "automation/com/error_boundary.h"

template <class Object>
class CClassFactory final : public IClassFactory {
 public:
  // DllGetClassObject's part for one class: a new factory queried for iid.
  static HRESULT create(REFIID iid, void** factory) noexcept {
    return comBoundary(iid, [&] {
      CClassFactory* made = new CClassFactory;
      const HRESULT result = made->QueryInterface(iid, factory);
      made->Release();
      return result;
    });
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return comBoundary(iid, [&] { return makeObject<Object>(iid, object); });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    if (lock) {
      CModule::lock();
    } else {
      CModule::unlock();
    }
    return S_OK;
  }

 private:
  CClassFactory() noexcept { CModule::lock(); }
  ~CClassFactory() { CModule::unlock(); }

  std::atomic<ULONG> references_{1};
};

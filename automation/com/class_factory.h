#pragma once
// The class object of one creatable class: CClassFactory<Object> makes an Object (a
// CDispatchObject) for each CreateInstance. Objects cannot be aggregated. LockServer counts in
// the module's lock, as each live factory does (CUnknownObject), so that DllCanUnloadNow says
// S_FALSE while a caller holds one.
//
// Any thread. Nothing escapes as an exception: what Object's
// constructor throws is reported through the error boundary with the requested interface id.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <objbase.h>

#include "automation/com/com_module.h"
#include "automation/com/error_boundary.h"
#include "automation/com/unknown_object.h"

template <class Object>
class CClassFactory final : public CUnknownObject<IClassFactory> {
 public:
  // DllGetClassObject's part for one class: a new factory queried for iid.
  static HRESULT create(REFIID iid, void** factory) noexcept {
    return comBoundary(iid, [&] { return makeObject<CClassFactory>(iid, factory); });
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
};

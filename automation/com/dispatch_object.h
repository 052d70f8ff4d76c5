#pragma once
// The base of every object of the module: IUnknown and IDispatch written once.
//
// CDispatchObject<Primary, Others...> implements Primary (a dual interface of vxbr5.idl) and
// the further interfaces Others (for example IConnectionPointContainer). QueryInterface answers
// IUnknown, IDispatch, Primary and Others by their ids; the reference count is atomic; a live
// object holds one module lock. GetIDsOfNames and Invoke go to the type library's ITypeInfo for
// Primary, which calls the C++ methods through the vtable: the derived class must declare
// Primary's methods in the order of the IDL, and it does, since it overrides widl's header.
//
// An object starts with one reference, which its maker hands on or releases (makeObject() below).
// Threads: the count may change on any thread; what Invoke calls is the derived class's
// business. Nothing here throws.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oaidl.h>

#include <atomic>
#include <utility>

#include "automation/com/com_module.h"
#include "automation/com/type_library.h"

template <class Primary, class... Others>
class CDispatchObject : public Primary, public Others... {
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

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    const CTypeInfoViews& views = CTypeLibrary::views<Primary>();
    if (FAILED(views.result)) return views.result;
    *info = views.dispatchView;
    (*info)->AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    if (!IsEqualIID(iid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    const CTypeInfoViews& views = CTypeLibrary::views<Primary>();
    if (FAILED(views.result)) return views.result;
    return views.vtableView->GetIDsOfNames(names, count, ids);
  }
  // ITypeInfo::Invoke does not look at the interface id, so it is checked here.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* argumentError) override {
    if (!IsEqualIID(iid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    const CTypeInfoViews& views = CTypeLibrary::views<Primary>();
    if (FAILED(views.result)) return views.result;
    return views.vtableView->Invoke(static_cast<Primary*>(this), id, flags, params, result,
                                    exception, argumentError);
  }

 protected:
  CDispatchObject() noexcept { CModule::lock(); }
  virtual ~CDispatchObject() { CModule::unlock(); }
  CDispatchObject(const CDispatchObject&) = delete;
  CDispatchObject& operator=(const CDispatchObject&) = delete;

 private:
  void* find(REFIID iid) noexcept {
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) ||
        IsEqualIID(iid, __uuidof(Primary))) {
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

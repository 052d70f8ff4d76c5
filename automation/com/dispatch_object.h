#pragma once
// The base of every automation object of the module: IDispatch written once, over CUnknownObject.
//
// CDispatchObject<Primary, Others...> implements Primary (a dual interface of vxbr5.idl) and
// the further interfaces Others (for example IConnectionPointContainer); QueryInterface also
// answers IDispatch. GetIDsOfNames and Invoke go to the type library's ITypeInfo for Primary,
// which calls the C++ methods through the vtable: the derived class must declare Primary's
// methods in the order of the IDL, and it does, since it overrides widl's header.
//
// Threads: as CUnknownObject; what Invoke calls is the derived class's business. Nothing here
// throws.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oaidl.h>

#include "automation/com/type_library.h"
#include "automation/com/unknown_object.h"

template <class Primary, class... Others>
class CDispatchObject : public CUnknownObject<Primary, Others...> {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr || !IsEqualIID(iid, IID_IDispatch)) {
      return CUnknownObject<Primary, Others...>::QueryInterface(iid, object);
    }
    *object = static_cast<Primary*>(this);
    this->AddRef();
    return S_OK;
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
    const HRESULT invoked = views.vtableView->Invoke(static_cast<Primary*>(this), id, flags, params,
                                                     result, exception, argumentError);
    // VBScript's Set statement assigns an object through DISPATCH_PROPERTYPUTREF; our handler
    // properties (onCommandCallback, the client's listeners) are put properties, which the type
    // library's Invoke does not match to a putref. Such an assignment is served as a put.
    if (invoked != DISP_E_MEMBERNOTFOUND || flags != DISPATCH_PROPERTYPUTREF) return invoked;
    return views.vtableView->Invoke(static_cast<Primary*>(this), id, DISPATCH_PROPERTYPUT, params,
                                    result, exception, argumentError);
  }
};

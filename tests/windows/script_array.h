#pragma once
// A script array as JScript hands one over: an IDispatch whose "length" and "0", "1", ...
// members are read as properties. Not reference counted (the test owns it on its stack).
#include <windows.h>

#include <string>
#include <vector>

class ScriptArray final : public IDispatch {
 public:
  // hasLength false: an object without a "length" member.
  explicit ScriptArray(std::vector<VARIANT> members, bool hasLength = true)
      : members_(std::move(members)), hasLength_(hasLength) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  // "length" is id members.size(), "I" is id I.
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    const std::wstring name = names[0];
    if (name == L"length") {
      *ids = static_cast<DISPID>(members_.size());
      return hasLength_ ? S_OK : DISP_E_UNKNOWNNAME;
    }
    *ids = static_cast<DISPID>(std::stoi(name));
    return *ids < static_cast<DISPID>(members_.size()) ? S_OK : DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    if (flags != DISPATCH_PROPERTYGET) return DISP_E_MEMBERNOTFOUND;
    if (id == static_cast<DISPID>(members_.size())) {
      result->vt = VT_I4;
      result->lVal = id;
      return S_OK;
    }
    return VariantCopy(result, &members_[id]);
  }

 private:
  std::vector<VARIANT> members_;
  bool hasLength_;
};

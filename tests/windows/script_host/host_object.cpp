// The host's late-bound objects (host_object.h).
#include "tests/windows/script_host/host_object.h"

#include <exception>

#include "tests/windows/script_host/host_text.h"

HRESULT HostDispatch::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  const bool known =
      IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, also_);
  *object = known ? static_cast<IDispatch*>(this) : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG HostDispatch::AddRef() { return ++references_; }

ULONG HostDispatch::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT HostDispatch::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT HostDispatch::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info != nullptr) *info = nullptr;
  return DISP_E_BADINDEX;
}

CUniqueRef<IDispatch> HostObject::make(Members members) {
  return CUniqueRef<IDispatch>(new HostObject(std::move(members)));
}

HRESULT HostObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  for (UINT index = 0; index < count; ++index) ids[index] = DISPID_UNKNOWN;
  for (size_t member = 0; member < members_.size(); ++member) {
    if (_wcsicmp(members_[member].first.c_str(), names[0]) == 0) {
      ids[0] = static_cast<DISPID>(member + 1);
      return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
    }
  }
  return DISP_E_UNKNOWNNAME;
}

HRESULT HostObject::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                           EXCEPINFO* exception, UINT*) {
  if (id < 1 || static_cast<size_t>(id) > members_.size()) return DISP_E_MEMBERNOTFOUND;
  std::vector<const VARIANT*> arguments;
  for (UINT index = parameters != nullptr ? parameters->cArgs : 0; index-- > 0;) {
    arguments.push_back(&parameters->rgvarg[index]);
  }
  try {
    CUniqueVariant value = members_[static_cast<size_t>(id) - 1].second(arguments);
    if (result != nullptr) *result = value.release();
    return S_OK;
  } catch (const std::exception& e) {
    if (exception == nullptr) return E_FAIL;
    *exception = EXCEPINFO{};
    exception->bstrDescription = SysAllocString(wideFromBytes(e.what()).c_str());
    exception->scode = E_FAIL;
    return DISP_E_EXCEPTION;
  }
}

CUniqueVariant textResult(const std::string& bytes, UINT codePage) {
  CUniqueVariant value;
  value.get().bstrVal = SysAllocString(wideFromBytes(bytes, codePage).c_str());
  value.get().vt = VT_BSTR;
  return value;
}

CUniqueVariant numberResult(size_t number) {
  CUniqueVariant value;
  value.get().lVal = static_cast<LONG>(number);
  value.get().vt = VT_I4;
  return value;
}

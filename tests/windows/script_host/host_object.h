#pragma once
// The host's own late-bound objects (WScript, sim): an IDispatch over a table of named members.
// A member is a function of the call's arguments, in parameter order, that returns the result
// (VT_EMPTY for none); names match without regard to case, as VBScript expects, and every call
// kind (method, property get) reaches the same function. A member that throws std::exception
// fails the call with DISP_E_EXCEPTION and the exception's text as the description.
// Used on the script's thread only.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oaidl.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "automation/com/com_handles.h"

// The IUnknown and the type-less half of IDispatch that the host's objects share: QueryInterface
// answers IUnknown, IDispatch and one further interface id (an event interface a sink serves);
// no type information. Starts with one reference and deletes itself when the last one goes.
class HostDispatch : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;

 protected:
  explicit HostDispatch(const IID& also = IID_IDispatch) : also_(also) {}
  virtual ~HostDispatch() = default;

 private:
  IID also_;
  ULONG references_ = 1;
};

class HostObject final : public HostDispatch {
 public:
  using Member = std::function<CUniqueVariant(const std::vector<const VARIANT*>& arguments)>;
  using Members = std::vector<std::pair<std::wstring, Member>>;

  // The new object with one reference, the caller's.
  static CUniqueRef<IDispatch> make(Members members);

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override;

 private:
  explicit HostObject(Members members) : members_(std::move(members)) {}

  Members members_;  // dispatch id N is members_[N - 1]
};

// A text result of a member, from 8-bit text in the code page, and a number result.
CUniqueVariant textResult(const std::string& bytes, UINT codePage = CP_UTF8);
CUniqueVariant numberResult(size_t number);

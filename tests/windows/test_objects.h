#pragma once
// Small objects for testing the generic COM pieces against the real type library:
// - TestProcessor implements IVXAsyncProcessor on CDispatchObject: waitEvent answers true,
//   process fails with the system exception the test sets, close counts its calls; with
//   events it is also an IVXCmdEvents source;
// - RecordingSink is an IVXCmdEvents sink that writes down every event it gets;
// - errorObject() tells the thread's error object.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "automation/com/bstr_text.h"
#include "automation/com/dispatch_object.h"
#include "automation/com/error_boundary.h"
#include "automation/com/event_source.h"
#include "foundation/exception.h"
#include "tests/windows/vxbr5_module.h"
#include "vxbr5.h"

template <class Base>
class TestProcessorOn final : public Base {
 public:
  HRESULT STDMETHODCALLTYPE waitEvent(VARIANT_BOOL* result) override {
    *result = VARIANT_TRUE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE process() override {
    return comBoundary(IID_IVXAsyncProcessor,
                       []() -> HRESULT { throw AFCIllegalArgumentException("Empty anim name"); });
  }
  HRESULT STDMETHODCALLTYPE close() override {
    ++closed;
    return S_OK;
  }
  void fire(DISPID id, std::initializer_list<CEventSource::Argument> arguments) {
    this->events_.fire(id, arguments);
  }

  int closed = 0;
};
using TestProcessor = TestProcessorOn<CDispatchObject<IVXAsyncProcessor>>;
using TestEventProcessor = TestProcessorOn<CDispatchObjectWithEvents<IVXAsyncProcessor>>;

class RecordingSink final : public IDispatch {
 public:
  explicit RecordingSink(bool answersEvents = true) : answersEvents_(answersEvents) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) ||
                       (answersEvents_ && IsEqualIID(iid, DIID_IVXCmdEvents));
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  // Writes "ID TYPE:VALUE ..." with the arguments in parameter order.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT*, EXCEPINFO*, UINT*) override {
    std::string line = std::to_string(id);
    if (flags != DISPATCH_METHOD) line += " not a method call";
    for (UINT index = parameters->cArgs; index-- > 0;) {
      const VARIANT& argument = parameters->rgvarg[index];
      line += argument.vt == VT_BSTR  ? " BSTR:" + stringFromBstr(argument.bstrVal)
              : argument.vt == VT_I4  ? " I4:" + std::to_string(argument.lVal)
              : argument.vt == VT_INT ? " INT:" + std::to_string(argument.intVal)
                                      : " other";
    }
    calls.push_back(line);
    if (onCall) onCall();
    return S_OK;
  }

  std::vector<std::string> calls;
  std::function<void()> onCall;
  std::atomic<ULONG> references{1};

 private:
  bool answersEvents_;
};

// "ID-matches description" of the thread's error object, "none" without one.
inline std::string errorObject(REFIID expected) {
  IErrorInfo* info = nullptr;
  if (GetErrorInfo(0, &info) != S_OK) return "none";
  const CUniqueRef<IErrorInfo> owned(info);
  GUID guid{};
  BSTR description = nullptr;
  info->GetGUID(&guid);
  info->GetDescription(&description);
  const CUniqueBstr text(description);
  return (IsEqualGUID(guid, expected) ? "id " : "other id ") + stringFromBstr(description);
}

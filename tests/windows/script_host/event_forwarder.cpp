// Events handed to script procedures by name (event_forwarder.h).
#include "tests/windows/script_host/event_forwarder.h"

#include <stdexcept>

#include "tests/windows/script_host/host_object.h"
#include "tests/windows/script_host/host_text.h"

namespace {
// The sink of one connection point: answers the event interface and forwards each call.
class EventSink final : public HostDispatch {
 public:
  EventSink(ScriptEngine& engine, std::wstring prefix, const IID& events, ITypeInfo* names)
      : HostDispatch(events), engine_(engine), prefix_(std::move(prefix)), names_(addRef(names)) {}

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    BSTR name = nullptr;
    UINT count = 0;
    if (FAILED(names_.get()->GetNames(id, &name, 1, &count)) || count == 0) {
      return DISP_E_MEMBERNOTFOUND;
    }
    std::wstring procedure = prefix_ + L"_" + name;
    SysFreeString(name);
    callProcedure(procedure, parameters);
    return S_OK;
  }

 private:
  void callProcedure(std::wstring& procedure, DISPPARAMS* parameters) {
    IDispatch* procedures = engine_.procedures();
    LPOLESTR names[] = {procedure.data()};
    DISPID id = DISPID_UNKNOWN;
    if (procedures == nullptr ||
        FAILED(procedures->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) {
      return;
    }
    DISPPARAMS none{};
    EXCEPINFO exception{};
    const HRESULT result = procedures->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                              parameters != nullptr ? parameters : &none, nullptr,
                                              &exception, nullptr);
    if (FAILED(result) && !engine_.failed()) {
      const BSTR text = exception.bstrDescription;
      engine_.reportError(bytesFromWide(procedure) + " failed: " +
                          (text != nullptr ? bytesFromWide(text) : std::to_string(result)));
    }
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrHelpFile);
  }

  ScriptEngine& engine_;
  std::wstring prefix_;
  CUniqueRef<ITypeInfo> names_;
};

// The type library the source's own type info comes from.
CUniqueRef<ITypeLib> typeLibraryOf(IDispatch* source) {
  ITypeInfo* info = nullptr;
  if (FAILED(source->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info))) {
    throw std::runtime_error("the event source has no type information");
  }
  const CUniqueRef<ITypeInfo> own(info);
  ITypeLib* library = nullptr;
  UINT index = 0;
  if (FAILED(info->GetContainingTypeLib(&library, &index))) {
    throw std::runtime_error("the event source has no type library");
  }
  return CUniqueRef<ITypeLib>(library);
}
}  // namespace

EventForwarding::EventForwarding(ScriptEngine& engine, const std::wstring& sourceName,
                                 IDispatch* source) {
  IConnectionPointContainer* container = nullptr;
  IEnumConnectionPoints* points = nullptr;
  if (FAILED(source->QueryInterface(IID_IConnectionPointContainer,
                                    reinterpret_cast<void**>(&container)))) {
    throw std::runtime_error(bytesFromWide(sourceName) + " fires no events");
  }
  const CUniqueRef<IConnectionPointContainer> ownContainer(container);
  if (FAILED(container->EnumConnectionPoints(&points))) {
    throw std::runtime_error(bytesFromWide(sourceName) + " lists no connection points");
  }
  const CUniqueRef<IEnumConnectionPoints> ownPoints(points);
  const CUniqueRef<ITypeLib> library = typeLibraryOf(source);
  IConnectionPoint* point = nullptr;
  while (points->Next(1, &point, nullptr) == S_OK) {
    CUniqueRef<IConnectionPoint> ownPoint(point);
    IID events{};
    ITypeInfo* names = nullptr;
    if (FAILED(point->GetConnectionInterface(&events)) ||
        FAILED(library.get()->GetTypeInfoOfGuid(events, &names))) {
      throw std::runtime_error(bytesFromWide(sourceName) + ": an event interface is not described");
    }
    const CUniqueRef<ITypeInfo> ownNames(names);
    const CUniqueRef<IDispatch> sink(new EventSink(engine, sourceName, events, names));
    DWORD cookie = 0;
    if (FAILED(point->Advise(sink.get(), &cookie))) {
      throw std::runtime_error(bytesFromWide(sourceName) + " refused the event sink");
    }
    connections_.emplace_back(std::move(ownPoint), cookie);
  }
}

#pragma once
// The IVXCmdEvents connection point of one object (the title manager, the client): sinks
// advise it, and the owner fires events to them through IDispatch::Invoke.
//
// Embedded in its owner, which lists IConnectionPointContainer among its interfaces and
// forwards FindConnectionPoint and EnumConnectionPoints here (CDispatchObjectWithEvents below
// does both); the point shares the owner's reference count, so it lives exactly as long as the
// owner.
//
// Threads: the owner's apartment only (advising, unadvising and firing all happen there), so
// no lock is taken. fire() throws std::bad_alloc when it cannot make the event's texts, before
// any sink is called; the COM methods never throw.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <ocidl.h>

#include <initializer_list>
#include <string_view>
#include <variant>
#include <vector>

#include "automation/com/com_handles.h"
#include "automation/com/dispatch_object.h"

class CEventSource final : public IConnectionPoint {
 public:
  // One argument of an event: a script text, sent as VT_BSTR, or a number, sent as VT_I4.
  using Argument = std::variant<std::u16string_view, long>;

  explicit CEventSource(IConnectionPointContainer& owner) noexcept : owner_(owner) {}
  CEventSource(const CEventSource&) = delete;
  CEventSource& operator=(const CEventSource&) = delete;

  // Calls every sink, in the order they advised, with the event's dispatch id and arguments
  // in the order of its parameters. What a sink returns is ignored; a sink may unadvise
  // during the call.
  void fire(DISPID id, std::initializer_list<Argument> arguments);

  // The owner's IConnectionPointContainer methods.
  HRESULT findConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept;
  HRESULT enumConnectionPoints(IEnumConnectionPoints** points) noexcept;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return owner_.AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return owner_.Release(); }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
  HRESULT STDMETHODCALLTYPE
  GetConnectionPointContainer(IConnectionPointContainer** container) override;
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  // Enumerating the connections is optional for a connection point; this one does not.
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

 private:
  struct Sink {
    DWORD cookie;
    CUniqueRef<IDispatch> events;
  };

  IConnectionPointContainer& owner_;
  std::vector<Sink> sinks_;
  DWORD nextCookie_ = 1;
};

// A dispatch object that is also the container of its one IVXCmdEvents connection point, which
// the derived class fires through events_.
template <class Primary>
class CDispatchObjectWithEvents : public CDispatchObject<Primary, IConnectionPointContainer> {
 public:
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override {
    return events_.enumConnectionPoints(points);
  }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
    return events_.findConnectionPoint(iid, point);
  }

 protected:
  CEventSource events_{*this};
};

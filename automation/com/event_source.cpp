#include "automation/com/event_source.h"

#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <olectl.h>

#include "automation/com/bstr_text.h"
#include "automation/com/error_boundary.h"
#include "automation/com/unknown_object.h"
#include "vxbr5.h"

namespace {
// Enumerates the one connection point of a CEventSource; holds a reference to it (and so to
// its owner) while it lives.
class PointEnumerator final : public CUnknownObject<IEnumConnectionPoints> {
 public:
  PointEnumerator(IConnectionPoint& point, ULONG position) noexcept
      : point_(addRef(&point)), position_(position) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, IConnectionPoint** points, ULONG* fetched) override {
    if (points == nullptr || (count > 1 && fetched == nullptr)) return E_POINTER;
    ULONG given = 0;
    if (count > 0 && position_ == 0) {
      points[0] = addRef(point_.get()).release();
      position_ = 1;
      given = 1;
    }
    if (fetched != nullptr) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    if (count == 0) return S_OK;
    const bool skipped = position_ == 0 && count == 1;
    position_ = 1;
    return skipped ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    position_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints** copy) override {
    if (copy == nullptr) return E_POINTER;
    return comBoundary(IID_IEnumConnectionPoints, [&] {
      *copy = new PointEnumerator(*point_.get(), position_);
      return S_OK;
    });
  }

 private:
  CUniqueRef<IConnectionPoint> point_;
  ULONG position_;
};
}  // namespace

void CEventSource::fire(DISPID id, std::initializer_list<Argument> arguments) {
  // Invoke takes the arguments last to first. The texts stay owned here: an [in] argument is
  // the caller's to free.
  std::vector<CUniqueBstr> texts;
  texts.reserve(arguments.size());
  std::vector<VARIANT> values(arguments.size());
  auto value = values.rbegin();
  for (const Argument& argument : arguments) {
    if (const long* number = std::get_if<long>(&argument)) {
      value->vt = VT_I4;
      value->lVal = *number;
    } else {
      texts.push_back(bstrFromU16(std::get<std::u16string_view>(argument)));
      value->vt = VT_BSTR;
      value->bstrVal = texts.back().get();
    }
    ++value;
  }
  DISPPARAMS parameters{values.data(), nullptr, static_cast<UINT>(values.size()), 0};
  std::vector<CUniqueRef<IDispatch>> calling;
  calling.reserve(sinks_.size());
  for (const Sink& sink : sinks_) calling.push_back(addRef(sink.events.get()));
  for (const CUniqueRef<IDispatch>& sink : calling) {
    sink.get()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                       nullptr, nullptr);
  }
}

HRESULT CEventSource::findConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept {
  if (point == nullptr) return E_POINTER;
  *point = nullptr;
  if (!IsEqualIID(iid, DIID_IVXCmdEvents)) return CONNECT_E_NOCONNECTION;
  *point = this;
  AddRef();
  return S_OK;
}

HRESULT CEventSource::enumConnectionPoints(IEnumConnectionPoints** points) noexcept {
  if (points == nullptr) return E_POINTER;
  *points = nullptr;
  return comBoundary(IID_IConnectionPointContainer, [&] {
    *points = new PointEnumerator(*this, 0);
    return S_OK;
  });
}

HRESULT CEventSource::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IConnectionPoint)) {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  *object = static_cast<IConnectionPoint*>(this);
  AddRef();
  return S_OK;
}

HRESULT CEventSource::GetConnectionInterface(IID* iid) {
  if (iid == nullptr) return E_POINTER;
  *iid = DIID_IVXCmdEvents;
  return S_OK;
}

HRESULT CEventSource::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (container == nullptr) return E_POINTER;
  *container = addRef(&owner_).release();
  return S_OK;
}

HRESULT CEventSource::Advise(IUnknown* sink, DWORD* cookie) {
  if (sink == nullptr || cookie == nullptr) return E_POINTER;
  *cookie = 0;
  IDispatch* events = nullptr;
  if (FAILED(sink->QueryInterface(DIID_IVXCmdEvents, reinterpret_cast<void**>(&events)))) {
    return CONNECT_E_CANNOTCONNECT;
  }
  CUniqueRef<IDispatch> owned(events);
  return comBoundary(IID_IConnectionPoint, [&] {
    sinks_.push_back(Sink{nextCookie_, std::move(owned)});
    *cookie = nextCookie_++;
    return S_OK;
  });
}

HRESULT CEventSource::Unadvise(DWORD cookie) {
  for (auto sink = sinks_.begin(); sink != sinks_.end(); ++sink) {
    if (sink->cookie == cookie) {
      sinks_.erase(sink);
      return S_OK;
    }
  }
  return CONNECT_E_NOCONNECTION;
}

HRESULT CEventSource::EnumConnections(IEnumConnections** connections) {
  if (connections != nullptr) *connections = nullptr;
  return E_NOTIMPL;
}

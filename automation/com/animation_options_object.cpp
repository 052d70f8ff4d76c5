#include "automation/com/animation_options_object.h"

#include <string>
#include <type_traits>

#include "automation/com/bstr_text.h"
#include "automation/com/error_boundary.h"

template <class Value, class Read>
HRESULT CAnimationOptionsObject::get(Value* out, Read read) const {
  if (out == nullptr) return E_POINTER;
  return comBoundary(IID_IVXAnimationOptions, [&] {
    if constexpr (std::is_same_v<Value, BSTR>) {
      *out = bstrFromString(read()).release();
    } else {
      *out = static_cast<Value>(read());
    }
    return S_OK;
  });
}

template <class Write>
HRESULT CAnimationOptionsObject::put(Write write) {
  return comBoundary(IID_IVXAnimationOptions, [&] {
    write();
    return S_OK;
  });
}

HRESULT CAnimationOptionsObject::getNative(hyper* native) {
  if (native == nullptr) return E_POINTER;
  *native = reinterpret_cast<hyper>(&options_);
  return S_OK;
}

HRESULT CAnimationOptionsObject::get_offset(float* pVal) {
  return get(pVal, [&] { return options_.getOffset(); });
}
HRESULT CAnimationOptionsObject::put_offset(float newVal) {
  return put([&] { options_.setOffset(newVal); });
}
HRESULT CAnimationOptionsObject::get_skip(float* pVal) {
  return get(pVal, [&] { return options_.getSkip(); });
}
HRESULT CAnimationOptionsObject::put_skip(float newVal) {
  return put([&] { options_.setSkip(newVal); });
}
HRESULT CAnimationOptionsObject::get_end(float* pVal) {
  return get(pVal, [&] { return options_.getEnd(); });
}
HRESULT CAnimationOptionsObject::put_end(float newVal) {
  return put([&] { options_.setEnd(newVal); });
}
HRESULT CAnimationOptionsObject::get_playMode(BSTR* pVal) {
  return get(pVal, [&] { return options_.getPlayMode(); });
}
HRESULT CAnimationOptionsObject::put_playMode(BSTR newVal) {
  return put([&] { options_.setPlayMode(stringFromBstr(newVal)); });
}
HRESULT CAnimationOptionsObject::get_enableFinish(LONG* pVal) {
  return get(pVal, [&] { return options_.getEnableFinish(); });
}
HRESULT CAnimationOptionsObject::put_enableFinish(LONG newVal) {
  return put([&] { options_.setEnableFinish(newVal); });
}
HRESULT CAnimationOptionsObject::get_name(BSTR* pVal) {
  return get(pVal, [&] { return options_.getName(); });
}
HRESULT CAnimationOptionsObject::put_name(BSTR newVal) {
  return put([&] { options_.setName(stringFromBstr(newVal)); });
}
HRESULT CAnimationOptionsObject::get_watchID(int* pVal) {
  return get(pVal, [&] { return options_.getWatchID(); });
}
HRESULT CAnimationOptionsObject::put_watchID(int newVal) {
  return put([&] { options_.setWatchID(newVal); });
}

HRESULT makeAnimationOptionsObject(IVXAnimationOptions** options) noexcept {
  if (options == nullptr) return E_POINTER;
  *options = nullptr;
  return comBoundary(IID_IVXAnimationOptions, [&] {
    return makeObject<CAnimationOptionsObject>(IID_IVXAnimationOptions,
                                               reinterpret_cast<void**>(options));
  });
}

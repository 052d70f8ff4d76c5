#include "automation/com/animation_channel_object.h"

#include <string>

#include "automation/com/bstr_text.h"
#include "automation/com/call_result_code.h"
#include "automation/com/error_boundary.h"

namespace {
template <class Body>
HRESULT channelCall(Body&& body) noexcept {
  return comBoundary(IID_IVXAnimationChannel, [&] { return hresultOf(body()); });
}
}  // namespace

HRESULT CAnimationChannelObject::getText(BSTR* out, Getter getter) const {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return channelCall([&] {
    std::string text;
    const CCallResult result = (channel_.*getter)(text);
    if (result == CCallResult::Ok) *out = bstrFromString(text).release();
    return result;
  });
}

HRESULT CAnimationChannelObject::putText(BSTR text, Setter setter) {
  return channelCall([&] { return (channel_.*setter)(stringFromBstr(text)); });
}

HRESULT CAnimationChannelObject::get_destination(BSTR* pVal) {
  return getText(pVal, &CAnimationChannel::getDestination);
}
HRESULT CAnimationChannelObject::put_destination(BSTR newVal) {
  return putText(newVal, &CAnimationChannel::setDestination);
}
HRESULT CAnimationChannelObject::get_after(BSTR* pVal) {
  return getText(pVal, &CAnimationChannel::getAfter);
}
HRESULT CAnimationChannelObject::put_after(BSTR newVal) {
  return putText(newVal, &CAnimationChannel::setAfter);
}
HRESULT CAnimationChannelObject::get_before(BSTR* pVal) {
  return getText(pVal, &CAnimationChannel::getBefore);
}
HRESULT CAnimationChannelObject::put_before(BSTR newVal) {
  return putText(newVal, &CAnimationChannel::setBefore);
}

HRESULT CAnimationChannelObject::addKeyframe(float time, float value, BSTR inInterpolation,
                                             BSTR outInterpolation) {
  return channelCall([&] {
    return channel_.addKeyframe(time, value, stringFromBstr(inInterpolation),
                                stringFromBstr(outInterpolation));
  });
}

HRESULT CAnimationChannelObject::addKeyframeWithTangents(float time, float value,
                                                         BSTR inInterpolation,
                                                         BSTR outInterpolation, float inTanX,
                                                         float inTanY, float outTanX,
                                                         float outTanY) {
  return channelCall([&] {
    return channel_.addKeyframeWithTangents(time, value, stringFromBstr(inInterpolation),
                                            stringFromBstr(outInterpolation), inTanX, inTanY,
                                            outTanX, outTanY);
  });
}

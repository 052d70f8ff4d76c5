#include "automation/com/animation_object.h"

#include "automation/com/animation_channel_object.h"
#include "automation/com/error_boundary.h"

HRESULT CAnimationObject::getNative(hyper* native) {
  if (native == nullptr) return E_POINTER;
  *native = reinterpret_cast<hyper>(&animation_);
  return S_OK;
}

HRESULT CAnimationObject::createChannel(IVXAnimationChannel** channel) {
  if (channel == nullptr) return E_POINTER;
  *channel = nullptr;
  return comBoundary(IID_IVXAnimation, [&] {
    return makeObject<CAnimationChannelObject>(
        IID_IVXAnimationChannel, reinterpret_cast<void**>(channel), animation_.createChannel());
  });
}

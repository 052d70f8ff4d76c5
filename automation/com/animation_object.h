#pragma once
// IVXAnimation over the core's CAnimation, the creatable class VXBr5.Animation (also made by the
// title manager's createAnimation). getNative hands the CAnimation's address to the other
// objects of this module, which take the native animation from it.
//
// The script's thread. Members report through the error boundary with IVXAnimation's id.
#include "automation/animation_objects.h"
#include "automation/com/dispatch_object.h"
#include "vxbr5.h"

class CAnimationObject final : public CDispatchObject<IVXAnimation> {
 public:
  HRESULT STDMETHODCALLTYPE getNative(hyper* native) override;
  HRESULT STDMETHODCALLTYPE createChannel(IVXAnimationChannel** channel) override;

 private:
  CAnimation animation_;
};

#pragma once
// IVXAnimationChannel over the core's CAnimationChannel: made only by an animation object's
// createChannel; one made any other way has no native channel and answers every member with
// E_INVALIDARG. Not a creatable class.
//
// The script's thread. Members report through the error boundary with IVXAnimationChannel's id
// (enumeration names the channel does not know: "Invalid enum name 'X'").
#include "automation/animation_objects.h"
#include "automation/com/dispatch_object.h"
#include "vxbr5.h"

class CAnimationChannelObject final : public CDispatchObject<IVXAnimationChannel> {
 public:
  CAnimationChannelObject() = default;
  explicit CAnimationChannelObject(CAnimationChannel channel) : channel_(std::move(channel)) {}

  HRESULT STDMETHODCALLTYPE get_destination(BSTR* pVal) override;
  HRESULT STDMETHODCALLTYPE put_destination(BSTR newVal) override;
  HRESULT STDMETHODCALLTYPE get_after(BSTR* pVal) override;
  HRESULT STDMETHODCALLTYPE put_after(BSTR newVal) override;
  HRESULT STDMETHODCALLTYPE get_before(BSTR* pVal) override;
  HRESULT STDMETHODCALLTYPE put_before(BSTR newVal) override;
  HRESULT STDMETHODCALLTYPE addKeyframe(float time, float value, BSTR inInterpolation,
                                        BSTR outInterpolation) override;
  HRESULT STDMETHODCALLTYPE addKeyframeWithTangents(float time, float value, BSTR inInterpolation,
                                                    BSTR outInterpolation, float inTanX,
                                                    float inTanY, float outTanX,
                                                    float outTanY) override;

 private:
  using Getter = CCallResult (CAnimationChannel::*)(std::string&) const;
  using Setter = CCallResult (CAnimationChannel::*)(std::string_view);
  HRESULT getText(BSTR* out, Getter getter) const;
  HRESULT putText(BSTR text, Setter setter);

  CAnimationChannel channel_;
};

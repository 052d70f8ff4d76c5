#include "automation/animation_objects.h"

#include "foundation/animation_enums.h"
#include "foundation/enum.h"

namespace {
const AFCEnumClass& enumClass(std::string_view name) {
  registerAnimationEnums();
  return AFCEnumClass::forName(name);
}

const AFCEnumClass& beyondEnum() { return enumClass("VXChannelBeyondEnum"); }

int32_t interpolation(std::string_view name) {
  return enumClass("VXChannelInterpolationEnum").getId(name);
}
}  // namespace

VXAnimationChannel* CAnimationChannel::getNative() const {
  return animation_ ? animation_->findChannel(key_) : nullptr;
}

template <class Use>
CCallResult CAnimationChannel::withNative(Use use) const {
  VXAnimationChannel* channel = getNative();
  if (channel == nullptr) return CCallResult::InvalidArgument;
  use(*channel);
  return CCallResult::Ok;
}

CCallResult CAnimationChannel::getDestination(std::string& destination) const {
  return withNative([&](VXAnimationChannel& c) { destination = c.getDestination(); });
}

CCallResult CAnimationChannel::setDestination(std::string_view destination) {
  return withNative([&](VXAnimationChannel& c) { c.setDestination(destination); });
}

CCallResult CAnimationChannel::getAfter(std::string& name) const {
  return withNative([&](VXAnimationChannel& c) { name = beyondEnum().getValueName(c.getAfter()); });
}

CCallResult CAnimationChannel::setAfter(std::string_view name) {
  return withNative([&](VXAnimationChannel& c) { c.setAfter(beyondEnum().getId(name)); });
}

CCallResult CAnimationChannel::getBefore(std::string& name) const {
  return withNative(
      [&](VXAnimationChannel& c) { name = beyondEnum().getValueName(c.getBefore()); });
}

CCallResult CAnimationChannel::setBefore(std::string_view name) {
  return withNative([&](VXAnimationChannel& c) { c.setBefore(beyondEnum().getId(name)); });
}

CCallResult CAnimationChannel::addKeyframe(float time, float value,
                                           std::string_view inInterpolation,
                                           std::string_view outInterpolation) {
  return addKeyframeWithTangents(time, value, inInterpolation, outInterpolation, 0, 0, 0, 0);
}

CCallResult CAnimationChannel::addKeyframeWithTangents(float time, float value,
                                                       std::string_view inInterpolation,
                                                       std::string_view outInterpolation,
                                                       float inTanX, float inTanY, float outTanX,
                                                       float outTanY) {
  return withNative([&](VXAnimationChannel& c) {
    VXAnimationChannel::Keyframe keyframe;
    keyframe.time = vxTimeFromSeconds(time);
    keyframe.value = value;
    keyframe.inInterpolation = interpolation(inInterpolation);
    keyframe.outInterpolation = interpolation(outInterpolation);
    keyframe.inTangent = {inTanX, inTanY};
    keyframe.outTangent = {outTanX, outTanY};
    c.addKeyframe(keyframe);
  });
}

CAnimationChannel CAnimation::createChannel() {
  return CAnimationChannel(animation_, animation_->createChannel().getKey());
}

float CAnimationOptions::getOffset() const { return vxTimeToSeconds(getNative().offset); }

void CAnimationOptions::setOffset(float seconds) {
  options_.getOptions().offset = vxTimeFromSeconds(seconds);
}

float CAnimationOptions::getSkip() const { return vxTimeToSeconds(getNative().skip); }

void CAnimationOptions::setSkip(float seconds) {
  options_.getOptions().skip = vxTimeFromSeconds(seconds);
}

float CAnimationOptions::getEnd() const { return vxTimeToSeconds(getNative().end); }

void CAnimationOptions::setEnd(float seconds) {
  options_.getOptions().end = vxTimeFromSeconds(seconds);
}

std::string CAnimationOptions::getPlayMode() const {
  return vxPlayModeToString(getNative().playMode);
}

void CAnimationOptions::setPlayMode(std::string_view name) { options_.setPlayModeFromString(name); }

int32_t CAnimationOptions::getEnableFinish() const { return getNative().enableFinish ? 1 : 0; }

void CAnimationOptions::setEnableFinish(int32_t enable) {
  options_.getOptions().enableFinish = enable != 0;
}

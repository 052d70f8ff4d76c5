#pragma once
// The animation objects a script builds and passes to a title's or a command list's animate:
// an animation, the channels it hands out, and the options of an animation start. Each is a thin
// wrapper around a record of the animation model.
//
// Objects of the script's thread; none is thread safe. A channel object without a native channel
// answers every member with CCallResult::InvalidArgument instead of throwing. Interpolation and
// beyond names outside their enumerations throw AFCEnumNameNotFoundException ("Invalid enum name
// 'X'"); nothing else throws.
#include <cstdint>
#include <string>
#include <string_view>

#include "animation/animation.h"
#include "animation/animation_options.h"
#include "automation/call_result.h"

// One channel of an animation object's native animation. The object keeps the animation alive
// and finds its channel by key, so it never points at a channel the animation no longer has.
class CAnimationChannel {
 public:
  // Without a native channel, as a host makes one that did not come from an animation.
  CAnimationChannel() = default;
  CAnimationChannel(AFCRef<VXAnimation> animation, int32_t key)
      : animation_(std::move(animation)), key_(key) {}

  // The native channel; nullptr without one.
  VXAnimationChannel* getNative() const;

  // "address:message.channel", the attribute the channel drives.
  CCallResult getDestination(std::string& destination) const;
  CCallResult setDestination(std::string_view destination);
  // The behaviour after the last and before the first keyframe, as VXChannelBeyondEnum names.
  CCallResult getAfter(std::string& name) const;
  CCallResult setAfter(std::string_view name);
  CCallResult getBefore(std::string& name) const;
  CCallResult setBefore(std::string_view name);
  // Appends a keyframe at time seconds; the interpolations are VXChannelInterpolationEnum names.
  CCallResult addKeyframe(float time, float value, std::string_view inInterpolation,
                          std::string_view outInterpolation);
  CCallResult addKeyframeWithTangents(float time, float value, std::string_view inInterpolation,
                                      std::string_view outInterpolation, float inTanX, float inTanY,
                                      float outTanX, float outTanY);

 private:
  // Runs use(channel) and answers Ok, or InvalidArgument without a native channel.
  template <class Use>
  CCallResult withNative(Use use) const;

  AFCRef<VXAnimation> animation_;
  int32_t key_ = 0;
};

// Owns a native animation, shared with every command that carries it.
class CAnimation {
 public:
  CAnimation() : animation_(new VXAnimation) {}

  const AFCRef<VXAnimation>& getNative() const { return animation_; }
  // A new channel at the end of the native animation, and its object.
  CAnimationChannel createChannel();

 private:
  AFCRef<VXAnimation> animation_;
};

// Owns the options of an animation start, with the record's defaults at first (end infinite,
// FORWARD, enableFinish true, speed 1). Times are seconds to the script; no member validates.
class CAnimationOptions {
 public:
  const VXActivateAnimationOptions& getNative() const { return options_.getOptions(); }

  float getOffset() const;
  void setOffset(float seconds);
  float getSkip() const;
  void setSkip(float seconds);
  float getEnd() const;
  void setEnd(float seconds);
  // "FIRST", "FORWARD", "BACKWARD", "LAST", "DEMAND", "STOP"; any other text leaves the mode and
  // writes "Unknown playMode type " and the text to the error log.
  std::string getPlayMode() const;
  void setPlayMode(std::string_view name);
  // 1 or 0; any non-zero value enables.
  int32_t getEnableFinish() const;
  void setEnableFinish(int32_t enable);
  const std::string& getName() const { return getNative().name; }
  void setName(std::string name) { options_.getOptions().name = std::move(name); }
  int32_t getWatchID() const { return getNative().watchID; }
  void setWatchID(int32_t watchID) { options_.getOptions().watchID = watchID; }

 private:
  VXActivateAnimationOptionsObject options_;
};

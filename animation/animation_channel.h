#pragma once
// One channel of a client-side animation: the value it drives on the server (target address,
// message name, channel name), its keyframes in the order they were added, and what happens
// before the first and after the last keyframe.
//
// A channel belongs to its VXAnimation (or to whoever made it alone); it is a plain object for
// one thread at a time. read() throws the stream's own errors and leaves the channel unchanged
// when it does; setKeyframeWithTangents and removeKeyframes throw VXEmptyChannelException on a
// channel without keyframes.
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "animation/animation_time.h"
#include "animation/channel_modes.h"
#include "foundation/class.h"
#include "foundation/exception.h"
#include "foundation/persistent_stream.h"

// "Empty animation channel": an operation that needs keyframes met a channel without any.
class VXEmptyChannelException : public AFCException {
 public:
  VXEmptyChannelException() : AFCException("Empty animation channel") {}
};

class VXAnimationChannel : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  // Streams for servers from this version on carry a third float with each tangent.
  static constexpr uint32_t kTangentExtraVersion = 2294017;

  struct Keyframe {
    VXAnimationTime time = 0;
    float value = 0.0f;
    std::array<float, 2> inTangent{};
    float inTangentExtra = 0.0f;  // carried through unchanged
    int32_t inInterpolation = VX_INTERPOLATION_SMOOTH;
    std::array<float, 2> outTangent{};
    float outTangentExtra = 0.0f;  // carried through unchanged
    int32_t outInterpolation = VX_INTERPOLATION_SMOOTH;

    bool operator==(const Keyframe&) const = default;
  };

  VXAnimationChannel() = default;
  VXAnimationChannel(const VXAnimationChannel&) = default;
  VXAnimationChannel& operator=(const VXAnimationChannel&) = default;
  VXAnimationChannel(VXAnimationChannel&&) = default;
  VXAnimationChannel& operator=(VXAnimationChannel&&) = default;
  VXAnimationChannel* clone() const override { return new VXAnimationChannel(*this); }

  // "address:message.channel": the target address is what precedes the first ':' (empty
  // without one); of the rest, the message name precedes the first '.' and the channel name
  // follows it (empty without one).
  void setDestination(std::string_view destination);
  // The destination text again, without the ':' for an empty target address and without the
  // '.' for an empty channel name.
  std::string getDestination() const;
  const std::string& getTargetAddress() const { return targetAddress_; }
  const std::string& getMsgName() const { return msgName_; }
  const std::string& getName() const { return channelName_; }

  // Appends at the end: no sorting, no merging of equal times. Tangents are 0.
  void addKeyframe(VXAnimationTime time, float value, int32_t inInterpolation,
                   int32_t outInterpolation);
  void addKeyframe(const Keyframe& keyframe) { keyframes_.push_back(keyframe); }
  // Gives the first keyframe at exactly that time the value, interpolations and tangents
  // (keeping its extra tangent floats). Throws VXEmptyChannelException without keyframes and
  // AFCIllegalArgumentException when no keyframe has that time.
  void setKeyframeWithTangents(const Keyframe& keyframe);
  // Removes every keyframe with from <= time <= to and returns how many went; throws
  // VXEmptyChannelException without keyframes.
  int32_t removeKeyframes(VXAnimationTime from, VXAnimationTime to);
  const std::vector<Keyframe>& getKeyframes() const { return keyframes_; }

  // Ids of the beyond text conversion (INHERIT, 7, included).
  void setBefore(int32_t beyond) { before_ = beyond; }
  void setAfter(int32_t beyond) { after_ = beyond; }
  int32_t getBefore() const { return before_; }
  int32_t getAfter() const { return after_; }

  // The key of the channel inside its animation; 0 for a channel outside any.
  int32_t getKey() const { return key_; }
  void setKey(int32_t key) { key_ = key; }

  // Addresses, beyond ids, then the keyframes; the extra tangent floats only for streams of
  // version kTangentExtraVersion and later.
  void write(AFCPersistentOutputStream& out) const;
  void read(AFCPersistentInputStream& in);
  // The text dump: one line per field and per keyframe, each ended by '\n', then an empty line.
  std::string toString() const override;

 private:
  std::string channelName_;
  std::string msgName_;
  std::string targetAddress_;
  std::vector<Keyframe> keyframes_;
  int32_t before_ = VX_BEYOND_CONSTANT;
  int32_t after_ = VX_BEYOND_CONSTANT;
  int32_t key_ = 0;
};

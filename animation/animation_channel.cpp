#include "animation/animation_channel.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_support.h"
#include "foundation/attribute_vector.h"

namespace {
VXAnimationChannel& channelOf(AFCObject* self) { return static_cast<VXAnimationChannel&>(*self); }

AFCResult text(std::string value) { return std::make_unique<AFCAttributeString>(std::move(value)); }

// The tangent methods check their argument kinds themselves, so that a wrong kind names its
// position, counted from 1: "args[1]" to "args[5]".
template <class Kind>
const Kind& argumentAt(AFCArguments args, std::size_t index) {
  const auto* argument = dynamic_cast<const Kind*>(args[index]);
  if (argument == nullptr)
    throw AFCIllegalArgumentException("args[" + std::to_string(index + 1) + "]");
  return *argument;
}

// (Int64 time, Float value, String inInterpolation, String outInterpolation, Vec4f tangents):
// the tangents are in.x, in.y, out.x, out.y; an undefined channel counts as 0.
VXAnimationChannel::Keyframe keyframeWithTangents(AFCArguments args) {
  VXAnimationChannel::Keyframe keyframe;
  keyframe.time = argumentAt<AFCAttributeInt64>(args, 0).get();
  keyframe.value = argumentAt<AFCAttributeFloat>(args, 1).get();
  keyframe.inInterpolation =
      vxInterpolationFromString(argumentAt<AFCAttributeString>(args, 2).get());
  keyframe.outInterpolation =
      vxInterpolationFromString(argumentAt<AFCAttributeString>(args, 3).get());
  const auto& tangents = argumentAt<AFCAttributeVec4f>(args, 4);
  keyframe.inTangent = {static_cast<float>(tangents.getChannelValue(0)),
                        static_cast<float>(tangents.getChannelValue(1))};
  keyframe.outTangent = {static_cast<float>(tangents.getChannelValue(2)),
                         static_cast<float>(tangents.getChannelValue(3))};
  return keyframe;
}

const std::string& stringAt(AFCArguments args, std::size_t index) {
  return static_cast<const AFCAttributeString*>(args[index])->get();
}

int64_t int64At(AFCArguments args, std::size_t index) {
  return static_cast<const AFCAttributeInt64*>(args[index])->get();
}

// Reflective methods of "VXChannel" (the kinds are declared unless noted):
//   setDestination(String destination)
//   getDestination() -> String;  getTargetAddress() -> String;  getName() -> String
//   addKeyframe(Int64 time, Float value, String inInterpolation, String outInterpolation)
//   addKeyframeWithTangents(Int64 time, Float value, String inInterpolation,
//                           String outInterpolation, Vec4f tangents)  -- kinds checked by position
//   setKeyframeWithTangents(the same five)                            -- kinds checked by position
//   removeKeyframes(Int64 from, Int64 to) -> Int32 number removed
//   setBefore(String beyond);  setAfter(String beyond)
//   getBefore() -> String;  getAfter() -> String
// Times are microseconds; interpolation and beyond texts go through the plain text conversions.
const AFCClass& channelRecord() {
  const AFCClass* string = &AFCAttributeString::staticClass();
  const AFCClass* int64 = &AFCAttributeInt64::staticClass();
  const AFCClass* any = &AFCAttribute::staticClass();
  const std::vector<const AFCClass*> fiveAny(5, any);
  auto* record = new AFCClassEx("VXChannel", &AFCObject::staticClass());
  record->defaultConstructor<VXAnimationChannel>()
      .method("setDestination", {string}, nullptr,
              [](AFCObject* self, AFCArguments args) -> AFCResult {
                channelOf(self).setDestination(stringAt(args, 0));
                return {};
              })
      .method("getDestination", {}, string,
              [](AFCObject* self, AFCArguments) { return text(channelOf(self).getDestination()); })
      .method(
          "getTargetAddress", {}, string,
          [](AFCObject* self, AFCArguments) { return text(channelOf(self).getTargetAddress()); })
      .method("getName", {}, string,
              [](AFCObject* self, AFCArguments) { return text(channelOf(self).getName()); })
      .method("addKeyframe", {int64, &AFCAttributeFloat::staticClass(), string, string}, nullptr,
              [](AFCObject* self, AFCArguments args) -> AFCResult {
                channelOf(self).addKeyframe(int64At(args, 0),
                                            static_cast<const AFCAttributeFloat*>(args[1])->get(),
                                            vxInterpolationFromString(stringAt(args, 2)),
                                            vxInterpolationFromString(stringAt(args, 3)));
                return {};
              })
      .method("addKeyframeWithTangents", fiveAny, nullptr,
              [](AFCObject* self, AFCArguments args) -> AFCResult {
                channelOf(self).addKeyframe(keyframeWithTangents(args));
                return {};
              })
      .method("setKeyframeWithTangents", fiveAny, nullptr,
              [](AFCObject* self, AFCArguments args) -> AFCResult {
                channelOf(self).setKeyframeWithTangents(keyframeWithTangents(args));
                return {};
              })
      .method("removeKeyframes", {int64, int64}, &AFCAttributeInt32::staticClass(),
              [](AFCObject* self, AFCArguments args) -> AFCResult {
                return std::make_unique<AFCAttributeInt32>(
                    channelOf(self).removeKeyframes(int64At(args, 0), int64At(args, 1)));
              })
      .method("setBefore", {string}, nullptr,
              [](AFCObject* self, AFCArguments args) -> AFCResult {
                channelOf(self).setBefore(vxBeyondFromString(stringAt(args, 0)));
                return {};
              })
      .method("setAfter", {string}, nullptr,
              [](AFCObject* self, AFCArguments args) -> AFCResult {
                channelOf(self).setAfter(vxBeyondFromString(stringAt(args, 0)));
                return {};
              })
      .method("getBefore", {}, string,
              [](AFCObject* self, AFCArguments) {
                return text(vxBeyondToString(channelOf(self).getBefore()));
              })
      .method("getAfter", {}, string, [](AFCObject* self, AFCArguments) {
        return text(vxBeyondToString(channelOf(self).getAfter()));
      });
  return record->registerClass();
}

void writeTangent(AFCPersistentOutputStream& out, const std::array<float, 2>& tangent,
                  float extra) {
  out.writeFloat(tangent[0]);
  out.writeFloat(tangent[1]);
  if (out.getVersion() >= VXAnimationChannel::kTangentExtraVersion) out.writeFloat(extra);
}

void readTangent(AFCPersistentInputStream& in, std::array<float, 2>& tangent, float& extra) {
  tangent[0] = in.readFloat();
  tangent[1] = in.readFloat();
  extra = in.getVersion() >= VXAnimationChannel::kTangentExtraVersion ? in.readFloat() : 0.0f;
}

std::string tangentText(const std::array<float, 2>& tangent) {
  return "[" + afcFormatDouble("%lg", tangent[0]) + ", " + afcFormatDouble("%lg", tangent[1]) + "]";
}
}  // namespace

const AFCClass& VXAnimationChannel::staticClass() {
  static const AFCClass& record = channelRecord();
  return record;
}

void VXAnimationChannel::setDestination(std::string_view destination) {
  std::string_view rest = destination;
  const std::size_t colon = destination.find(':');
  if (colon == std::string_view::npos) {
    targetAddress_.clear();
  } else {
    targetAddress_ = destination.substr(0, colon);
    rest = destination.substr(colon + 1);
  }
  const std::size_t dot = rest.find('.');
  msgName_ = rest.substr(0, dot);
  channelName_ = dot == std::string_view::npos ? std::string() : std::string(rest.substr(dot + 1));
}

std::string VXAnimationChannel::getDestination() const {
  std::string destination = targetAddress_.empty() ? std::string() : targetAddress_ + ":";
  destination += msgName_;
  if (!channelName_.empty()) destination += "." + channelName_;
  return destination;
}

void VXAnimationChannel::addKeyframe(VXAnimationTime time, float value, int32_t inInterpolation,
                                     int32_t outInterpolation) {
  Keyframe keyframe;
  keyframe.time = time;
  keyframe.value = value;
  keyframe.inInterpolation = inInterpolation;
  keyframe.outInterpolation = outInterpolation;
  keyframes_.push_back(keyframe);
}

void VXAnimationChannel::setKeyframeWithTangents(const Keyframe& keyframe) {
  if (keyframes_.empty()) throw VXEmptyChannelException();
  auto found = std::find_if(keyframes_.begin(), keyframes_.end(),
                            [&](const Keyframe& k) { return k.time == keyframe.time; });
  if (found == keyframes_.end()) {
    throw AFCIllegalArgumentException("no keyframe at time " + vxTimeToString(keyframe.time));
  }
  found->value = keyframe.value;
  found->inTangent = keyframe.inTangent;
  found->inInterpolation = keyframe.inInterpolation;
  found->outTangent = keyframe.outTangent;
  found->outInterpolation = keyframe.outInterpolation;
}

int32_t VXAnimationChannel::removeKeyframes(VXAnimationTime from, VXAnimationTime to) {
  if (keyframes_.empty()) throw VXEmptyChannelException();
  const auto removed =
      std::erase_if(keyframes_, [&](const Keyframe& k) { return k.time >= from && k.time <= to; });
  return static_cast<int32_t>(removed);
}

void VXAnimationChannel::write(AFCPersistentOutputStream& out) const {
  out.writeString(targetAddress_);
  out.writeString(msgName_);
  out.writeString(channelName_);
  out.writeInt32(before_);
  out.writeInt32(after_);
  out.writeUInt32(static_cast<uint32_t>(keyframes_.size()));
  for (const Keyframe& keyframe : keyframes_) {
    out.writeInt64(keyframe.time);
    out.writeFloat(keyframe.value);
    writeTangent(out, keyframe.inTangent, keyframe.inTangentExtra);
    out.writeInt32(keyframe.inInterpolation);
    writeTangent(out, keyframe.outTangent, keyframe.outTangentExtra);
    out.writeInt32(keyframe.outInterpolation);
  }
}

void VXAnimationChannel::read(AFCPersistentInputStream& in) {
  VXAnimationChannel loaded;
  loaded.targetAddress_ = in.readString();
  loaded.msgName_ = in.readString();
  loaded.channelName_ = in.readString();
  loaded.before_ = in.readInt32();
  loaded.after_ = in.readInt32();
  // The count comes off the wire: keyframes are read one by one, so a count larger than the
  // stream fails at its end instead of allocating for the count.
  const uint32_t count = in.readUInt32();
  for (uint32_t i = 0; i < count; ++i) {
    Keyframe keyframe;
    keyframe.time = in.readInt64();
    keyframe.value = in.readFloat();
    readTangent(in, keyframe.inTangent, keyframe.inTangentExtra);
    keyframe.inInterpolation = in.readInt32();
    readTangent(in, keyframe.outTangent, keyframe.outTangentExtra);
    keyframe.outInterpolation = in.readInt32();
    loaded.keyframes_.push_back(keyframe);
  }
  loaded.key_ = key_;
  *this = std::move(loaded);
}

std::string VXAnimationChannel::toString() const {
  std::string dump = "  targetAddress '" + targetAddress_ + "'\n";
  dump += "  msgName " + msgName_ + "\n";
  dump += "  channelName " + channelName_ + "\n";
  dump += std::string("  before ") + vxBeyondToString(before_) + "\n";
  dump += std::string("  after ") + vxBeyondToString(after_) + "\n";
  for (const Keyframe& k : keyframes_) {
    dump += "    time " + vxTimeToString(k.time) + "  value " + afcFormatDouble("%f", k.value) +
            "  in.tangent " + tangentText(k.inTangent) + "  in.interpolation " +
            vxInterpolationToString(k.inInterpolation) + "  out.tangent " +
            tangentText(k.outTangent) + "  out.interpolation " +
            vxInterpolationToString(k.outInterpolation) + "\n";
  }
  dump += "\n";
  return dump;
}

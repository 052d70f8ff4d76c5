#include "animation/animation.h"

#include <algorithm>
#include <utility>

#include "foundation/attribute_scalar.h"

namespace {
VXAnimation& animationOf(AFCObject* self) { return static_cast<VXAnimation&>(*self); }

int32_t keyAt(AFCArguments args) { return static_cast<const AFCAttributeInt32*>(args[0])->get(); }

AFCResult keyResult(const VXAnimationChannel& channel) {
  return std::make_unique<AFCAttributeInt32>(channel.getKey());
}

// Reflective methods of "VXAnimation"; channels are named by their Int32 keys:
//   createChannel() -> Int32 key of the new channel
//   copyChannel(Int32 key) -> Int32 key of the copy
//   removeChannel(Int32 key)
const AFCClass& animationRecord() {
  const AFCClass* int32 = &AFCAttributeInt32::staticClass();
  auto* record = new AFCClassEx("VXAnimation", &AFCObject::staticClass());
  record->defaultConstructor<VXAnimation>()
      .method("createChannel", {}, int32,
              [](AFCObject* self, AFCArguments) {
                return keyResult(animationOf(self).createChannel());
              })
      .method("copyChannel", {int32}, int32,
              [](AFCObject* self, AFCArguments args) {
                return keyResult(animationOf(self).copyChannel(keyAt(args)));
              })
      .method("removeChannel", {int32}, nullptr,
              [](AFCObject* self, AFCArguments args) -> AFCResult {
                animationOf(self).removeChannel(keyAt(args));
                return {};
              });
  return record->registerClass();
}
}  // namespace

const AFCClass& VXAnimation::staticClass() {
  static const AFCClass& record = animationRecord();
  return record;
}

VXAnimation::~VXAnimation() = default;

VXAnimationChannel& VXAnimation::createChannel() {
  return append(std::make_unique<VXAnimationChannel>());
}

VXAnimationChannel& VXAnimation::copyChannel(int32_t key) {
  return append(std::make_unique<VXAnimationChannel>(channelWithKey(key)));
}

void VXAnimation::removeChannel(int32_t key) {
  const VXAnimationChannel* channel = &channelWithKey(key);
  index_.erase(key);
  std::erase_if(channels_, [&](const auto& c) { return c.get() == channel; });
}

VXAnimationChannel* VXAnimation::findChannel(int32_t key) const {
  const auto found = index_.find(key);
  return found == index_.end() ? nullptr : found->second;
}

VXAnimationChannel& VXAnimation::getChannel(int32_t index) const {
  if (index < 0 || index >= getChannelCount()) {
    throw AFCRangeException(index, 0, getChannelCount() - 1);
  }
  return *channels_[static_cast<std::size_t>(index)];
}

void VXAnimation::write(AFCPersistentOutputStream& out) const {
  out.writeString("");
  out.writeInt32(getChannelCount());
  for (const auto& channel : channels_) channel->write(out);
}

void VXAnimation::read(AFCPersistentInputStream& in) {
  in.readString();  // always empty
  const int32_t count = in.readInt32();
  if (count < 0) throw AFCPersistentReadException2("Bad channel count");
  // Channels are read one by one, so a count larger than the stream fails at its end instead of
  // allocating for the count.
  std::vector<std::unique_ptr<VXAnimationChannel>> loaded;
  for (int32_t i = 0; i < count; ++i) {
    auto channel = std::make_unique<VXAnimationChannel>();
    channel->read(in);
    loaded.push_back(std::move(channel));
  }
  channels_.clear();
  index_.clear();
  for (auto& channel : loaded) append(std::move(channel));
}

std::string VXAnimation::toString() const {
  std::string dump;
  for (const auto& channel : channels_) dump += channel->toString();
  return dump;
}

VXAnimationChannel& VXAnimation::append(std::unique_ptr<VXAnimationChannel> channel) {
  channel->setKey(nextKey_++);
  VXAnimationChannel& added = *channel;
  index_.emplace(added.getKey(), &added);
  channels_.push_back(std::move(channel));
  return added;
}

VXAnimationChannel& VXAnimation::channelWithKey(int32_t key) const {
  VXAnimationChannel* channel = findChannel(key);
  if (channel == nullptr) {
    throw AFCIllegalArgumentException("no channel with key " + std::to_string(key));
  }
  return *channel;
}

#pragma once
// A client-side animation: an ordered list of channels, each found quickly by its key.
//
// Shared and reference counted (AFCShareBase, held through AFCRef): the scripting object and the
// commands that carry the animation hold it together, and the last holder frees it. The
// animation owns its channels; a removed channel dies at once, so holders of a channel pointer
// watch it with a destroy handler. Not thread safe: one thread at a time builds or writes it.
// read() throws the stream's own errors (and "Bad channel count" for a negative count) and
// leaves the animation unchanged when it does; an unknown channel key throws
// AFCIllegalArgumentException.
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "animation/animation_channel.h"
#include "foundation/class.h"
#include "foundation/object.h"
#include "foundation/persistent_stream.h"

class VXAnimation : public AFCObject, public AFCShareBase {
  AFC_DECLARE_CLASS()
 public:
  VXAnimation() = default;
  VXAnimation(const VXAnimation&) = delete;
  VXAnimation& operator=(const VXAnimation&) = delete;
  ~VXAnimation() override;

  // A new empty channel at the end of the list, under a new key.
  VXAnimationChannel& createChannel();
  // A copy of the channel at the end of the list, under a new key.
  VXAnimationChannel& copyChannel(int32_t key);
  void removeChannel(int32_t key);
  // nullptr when no channel has the key.
  VXAnimationChannel* findChannel(int32_t key) const;

  int32_t getChannelCount() const { return static_cast<int32_t>(channels_.size()); }
  // The channel at a list position; throws AFCRangeException outside the list.
  VXAnimationChannel& getChannel(int32_t index) const;

  // An empty string, the channel count, then each channel in list order.
  void write(AFCPersistentOutputStream& out) const;
  // Replaces every channel with the ones read; they get new keys in list order.
  void read(AFCPersistentInputStream& in);
  // The text dumps of the channels, in list order.
  std::string toString() const override;

 private:
  VXAnimationChannel& append(std::unique_ptr<VXAnimationChannel> channel);
  VXAnimationChannel& channelWithKey(int32_t key) const;

  std::vector<std::unique_ptr<VXAnimationChannel>> channels_;
  std::unordered_map<int32_t, VXAnimationChannel*> index_;  // by key, into channels_
  int32_t nextKey_ = 1;
};

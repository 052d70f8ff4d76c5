#pragma once
// The options of an animation start: where to start and stop, how to play and at what speed.
// VXActivateAnimationOptions is the plain record the commands embed by value;
// VXActivateAnimationOptionsObject wraps one for reflective access by method name.
//
// Plain values for one thread at a time. read() throws the stream's own errors and leaves the
// record unchanged when it does; nothing else throws except the argument checks of reflection.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "animation/animation_time.h"
#include "foundation/class.h"
#include "foundation/persistent_stream.h"

// Ids of VXActivateAnimationOptionsPlayModeEnum.
enum VXPlayMode : int32_t {
  VX_PLAY_MODE_FIRST = 0,
  VX_PLAY_MODE_FORWARD = 1,
  VX_PLAY_MODE_BACKWARD = 2,
  VX_PLAY_MODE_LAST = 3,
  VX_PLAY_MODE_DEMAND = 4,
  VX_PLAY_MODE_STOP = 5,
};

// "FIRST" ... "STOP"; "<unknown>" for any other id.
const char* vxPlayModeToString(int32_t playMode);
// The id of an exact (case-sensitive) play-mode text; nullopt for any other text.
std::optional<int32_t> vxPlayModeFromString(std::string_view text);

struct VXActivateAnimationOptions {
  // The server versions from which the persisted form carries the name, a non-zero watch id
  // and the speed.
  static constexpr uint32_t kNameVersion = 2000000;  // written above this version only
  static constexpr uint32_t kWatchIDVersion = 2293006;
  static constexpr uint32_t kSpeedVersion = 2294011;

  VXAnimationTime offset = 0;  // start position
  VXAnimationTime skip = 0;
  VXAnimationTime end = kVXTimeInfinite;
  int32_t playMode = VX_PLAY_MODE_FORWARD;
  bool enableFinish = true;
  std::string name;
  int32_t watchID = 0;  // 0: no watch
  float speed = 1.0f;

  bool operator==(const VXActivateAnimationOptions&) const = default;

  // The fields the stream's version admits: name (above 2000000), offset, skip, end,
  // playMode, watchID (non-zero, from 2293006), speed (from 2294011), enableFinish.
  void write(AFCPersistentOutputStream& out) const;
  // Decides by the type code of the next value, not by the version: a string is the name, an
  // int32 the watch id, a float the speed; absent ones get their defaults.
  void read(AFCPersistentInputStream& in);
  // "offset=...,skip=...,end=...,playMode=...,enableFinish=...,name=...,speed=..."
  std::string toString() const;
};

class VXActivateAnimationOptionsObject : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  VXActivateAnimationOptionsObject() = default;
  explicit VXActivateAnimationOptionsObject(const VXActivateAnimationOptions& options)
      : options_(options) {}
  VXActivateAnimationOptionsObject* clone() const override {
    return new VXActivateAnimationOptionsObject(*this);
  }

  VXActivateAnimationOptions& getOptions() { return options_; }
  const VXActivateAnimationOptions& getOptions() const { return options_; }
  // A known play-mode text sets the mode; any other text leaves it and writes
  // "Unknown playMode type " and the text to the error log.
  void setPlayModeFromString(std::string_view text);
  std::string toString() const override { return options_.toString(); }

 private:
  VXActivateAnimationOptions options_;
};

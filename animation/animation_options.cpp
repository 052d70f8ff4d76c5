#include "animation/animation_options.h"

#include <functional>
#include <memory>
#include <utility>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_support.h"
#include "foundation/errlog.h"

namespace {
constexpr const char* kPlayModeNames[] = {"FIRST", "FORWARD", "BACKWARD", "LAST", "DEMAND", "STOP"};
// The order in which texts are tried.
constexpr VXPlayMode kPlayModeLookupOrder[] = {VX_PLAY_MODE_BACKWARD, VX_PLAY_MODE_FIRST,
                                               VX_PLAY_MODE_LAST,     VX_PLAY_MODE_FORWARD,
                                               VX_PLAY_MODE_DEMAND,   VX_PLAY_MODE_STOP};

using Options = VXActivateAnimationOptions;

Options& optionsOf(AFCObject* self) {
  return static_cast<VXActivateAnimationOptionsObject&>(*self).getOptions();
}

template <class Kind>
const Kind& argument(AFCArguments args) {
  return static_cast<const Kind&>(*args[0]);
}

// A getter and a setter of one time field as float seconds.
void addSecondsPair(AFCClassEx& record, const char* getter, const char* setter,
                    VXAnimationTime Options::*field) {
  const AFCClass* floatKind = &AFCAttributeFloat::staticClass();
  record
      .method(getter, {}, floatKind,
              [field](AFCObject* self, AFCArguments) -> AFCResult {
                return std::make_unique<AFCAttributeFloat>(vxTimeToSeconds(optionsOf(self).*field));
              })
      .method(setter, {floatKind}, nullptr, [field](AFCObject* self, AFCArguments args) {
        optionsOf(self).*field = vxTimeFromSeconds(argument<AFCAttributeFloat>(args).get());
        return AFCResult();
      });
}

// Reflective methods of "VXActivateAnimationOptionsObject":
//   getPlayMode() -> Int32;  setPlayMode(Int32 id)  (not checked against the play modes)
//   getPlayModeToString() -> String;  setPlayModeFromString(String text)
//   getOffsetToFloat() -> Float;  setOffsetFromFloat(Float seconds)  (likewise Skip and End)
//   getEnableFinish() -> Bool;  setEnableFinish(Bool)
//   getName() -> String;  setName(String)
//   setWatchID(Int32);  setSpeed(Float)
const AFCClass& optionsRecord() {
  const AFCClass* int32 = &AFCAttributeInt32::staticClass();
  const AFCClass* string = &AFCAttributeString::staticClass();
  const AFCClass* boolKind = &AFCAttributeBool::staticClass();
  auto* record = new AFCClassEx("VXActivateAnimationOptionsObject", &AFCObject::staticClass());
  record->defaultConstructor<VXActivateAnimationOptionsObject>()
      .method("getPlayMode", {}, int32,
              [](AFCObject* self, AFCArguments) -> AFCResult {
                return std::make_unique<AFCAttributeInt32>(optionsOf(self).playMode);
              })
      .method("setPlayMode", {int32}, nullptr,
              [](AFCObject* self, AFCArguments args) {
                optionsOf(self).playMode = argument<AFCAttributeInt32>(args).get();
                return AFCResult();
              })
      .method("getPlayModeToString", {}, string,
              [](AFCObject* self, AFCArguments) -> AFCResult {
                return std::make_unique<AFCAttributeString>(
                    vxPlayModeToString(optionsOf(self).playMode));
              })
      .method("setPlayModeFromString", {string}, nullptr, [](AFCObject* self, AFCArguments args) {
        static_cast<VXActivateAnimationOptionsObject&>(*self).setPlayModeFromString(
            argument<AFCAttributeString>(args).get());
        return AFCResult();
      });
  addSecondsPair(*record, "getOffsetToFloat", "setOffsetFromFloat", &Options::offset);
  addSecondsPair(*record, "getSkipToFloat", "setSkipFromFloat", &Options::skip);
  addSecondsPair(*record, "getEndToFloat", "setEndFromFloat", &Options::end);
  record
      ->method("getEnableFinish", {}, boolKind,
               [](AFCObject* self, AFCArguments) -> AFCResult {
                 return std::make_unique<AFCAttributeBool>(optionsOf(self).enableFinish);
               })
      .method("setEnableFinish", {boolKind}, nullptr,
              [](AFCObject* self, AFCArguments args) {
                optionsOf(self).enableFinish = argument<AFCAttributeBool>(args).get();
                return AFCResult();
              })
      .method("getName", {}, string,
              [](AFCObject* self, AFCArguments) -> AFCResult {
                return std::make_unique<AFCAttributeString>(optionsOf(self).name);
              })
      .method("setName", {string}, nullptr,
              [](AFCObject* self, AFCArguments args) {
                optionsOf(self).name = argument<AFCAttributeString>(args).get();
                return AFCResult();
              })
      .method("setWatchID", {int32}, nullptr,
              [](AFCObject* self, AFCArguments args) {
                optionsOf(self).watchID = argument<AFCAttributeInt32>(args).get();
                return AFCResult();
              })
      .method("setSpeed", {&AFCAttributeFloat::staticClass()}, nullptr,
              [](AFCObject* self, AFCArguments args) {
                optionsOf(self).speed = argument<AFCAttributeFloat>(args).get();
                return AFCResult();
              });
  return record->registerClass();
}
}  // namespace

const char* vxPlayModeToString(int32_t playMode) {
  return playMode >= VX_PLAY_MODE_FIRST && playMode <= VX_PLAY_MODE_STOP ? kPlayModeNames[playMode]
                                                                         : "<unknown>";
}

std::optional<int32_t> vxPlayModeFromString(std::string_view text) {
  for (VXPlayMode mode : kPlayModeLookupOrder) {
    if (text == kPlayModeNames[mode]) return mode;
  }
  return std::nullopt;
}

void VXActivateAnimationOptions::write(AFCPersistentOutputStream& out) const {
  const uint32_t version = out.getVersion();
  if (version > kNameVersion) out.writeString(name);
  out.writeInt64(offset);
  out.writeInt64(skip);
  out.writeInt64(end);
  out.writeInt32(playMode);
  if (watchID != 0 && version >= kWatchIDVersion) out.writeInt32(watchID);
  if (version >= kSpeedVersion) out.writeFloat(speed);
  out.writeBool(enableFinish);
}

void VXActivateAnimationOptions::read(AFCPersistentInputStream& in) {
  Options loaded;
  loaded.name = in.peekHeader() == AFC_PC_STRING ? in.readString() : std::string();
  loaded.offset = in.readInt64();
  loaded.skip = in.readInt64();
  loaded.end = in.readInt64();
  loaded.playMode = in.readInt32();
  loaded.watchID = in.peekHeader() == AFC_PC_INT32 ? in.readInt32() : 0;
  loaded.speed = in.peekHeader() == AFC_PC_FLOAT ? in.readFloat() : 1.0f;
  loaded.enableFinish = in.readBool();
  *this = std::move(loaded);
}

std::string VXActivateAnimationOptions::toString() const {
  return "offset=" + vxTimeToString(offset) + ",skip=" + vxTimeToString(skip) +
         ",end=" + (end == kVXTimeInfinite ? std::string("INF") : vxTimeToString(end)) +
         ",playMode=" + vxPlayModeToString(playMode) +
         ",enableFinish=" + (enableFinish ? "true" : "false") + ",name=" + name +
         ",speed=" + afcFormatDouble("%f", speed);
}

const AFCClass& VXActivateAnimationOptionsObject::staticClass() {
  static const AFCClass& record = optionsRecord();
  return record;
}

void VXActivateAnimationOptionsObject::setPlayModeFromString(std::string_view text) {
  if (const std::optional<int32_t> mode = vxPlayModeFromString(text)) {
    options_.playMode = *mode;
  } else {
    AFC_REPORT(AFC_ERRLOG_WARNING, "libVX", "Unknown playMode type " + std::string(text));
  }
}

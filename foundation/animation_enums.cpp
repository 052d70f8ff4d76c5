#include "foundation/animation_enums.h"

#include <initializer_list>
#include <memory>
#include <utility>

namespace {
struct EnumValue {
  const char* name;
  int32_t id;
};

void registerEnum(const char* name, std::initializer_list<EnumValue> values) {
  auto enumClass = std::make_unique<AFCEnumClass>(name);
  for (const EnumValue& value : values) enumClass->addValue(value.name, value.id);
  AFCEnumClass::registerEnumClass(std::move(enumClass));
}

bool registerAll() {
  registerEnum("VXChannelInterpolationEnum",
               {{"LINEAR", 0}, {"SMOOTH", 1}, {"FLAT", 2}, {"STEP", 3}, {"FIXED", 4}});
  registerEnum("VXChannelBeyondEnum", {{"CONSTANT", 0},
                                       {"CYCLE", 1},
                                       {"CYCLE_OFFSET", 2},
                                       {"IDENTITY", 3},
                                       {"LINEAR", 4},
                                       {"OSCILLATE", 5},
                                       {"RELATIVE", 6}});
  registerEnum("VXActivateAnimationOptionsPlayModeEnum", {{"MFIRST", 0},
                                                          {"MFORWARD", 1},
                                                          {"MBACKWARD", 2},
                                                          {"MLAST", 3},
                                                          {"MDEMAND", 4},
                                                          {"MSTOP", 5}});
  return true;
}
}  // namespace

void registerAnimationEnums() {
  // The first caller registers; concurrent callers wait until it is done.
  [[maybe_unused]] static const bool registered = registerAll();
}

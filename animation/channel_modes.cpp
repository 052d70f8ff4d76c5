#include "animation/channel_modes.h"

namespace {
std::string_view withoutPrefix(std::string_view text, std::string_view prefix) {
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

constexpr const char* kBeyondNames[] = {"CONSTANT", "CYCLE",     "CYCLE_OFFSET", "IDENTITY",
                                        "LINEAR",   "OSCILLATE", "RELATIVE",     "INHERIT"};
}  // namespace

int32_t vxInterpolationFromString(std::string_view text) {
  const std::string_view name = withoutPrefix(text, "TAN_");
  if (name == "LINEAR") return VX_INTERPOLATION_LINEAR;
  if (name == "FLAT") return VX_INTERPOLATION_FLAT;
  if (name == "STEP") return VX_INTERPOLATION_STEP;
  if (name == "FIXED") return VX_INTERPOLATION_FIXED;
  return VX_INTERPOLATION_SMOOTH;
}

const char* vxInterpolationToString(int32_t id) {
  switch (id) {
    case VX_INTERPOLATION_LINEAR:
      return "LINEAR";
    case VX_INTERPOLATION_FLAT:
      return "FLAT";
    case VX_INTERPOLATION_STEP:
      return "STEP";
    case VX_INTERPOLATION_FIXED:
      return "FIXED";
    default:
      return "SMOOTH";
  }
}

int32_t vxBeyondFromString(std::string_view text) {
  if (text == "RELATIVE") return VX_BEYOND_RELATIVE;
  if (text == "INHERIT") return VX_BEYOND_INHERIT;
  std::string_view name = text;
  if (name.starts_with("PRE_")) {
    name.remove_prefix(4);
  } else if (name.starts_with("POST_")) {
    name.remove_prefix(5);
  }
  for (int32_t id = VX_BEYOND_CYCLE; id <= VX_BEYOND_OSCILLATE; ++id) {
    if (name == kBeyondNames[id]) return id;
  }
  return VX_BEYOND_CONSTANT;
}

const char* vxBeyondToString(int32_t id) {
  return id >= VX_BEYOND_CYCLE && id <= VX_BEYOND_INHERIT ? kBeyondNames[id] : "CONSTANT";
}

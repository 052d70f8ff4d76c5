#pragma once
// The plain text conversions of keyframe interpolation and of a channel's behaviour beyond its
// keyframes, as the scripting layer uses them. They never fail: an unknown text maps to SMOOTH
// or CONSTANT. They differ from the enum classes VXChannelInterpolationEnum and
// VXChannelBeyondEnum on purpose: the texts take "TAN_", "PRE_" and "POST_" forms, and the
// beyond text knows INHERIT (7), which the enum class does not have.
#include <cstdint>
#include <string_view>

enum VXChannelInterpolation : int32_t {
  VX_INTERPOLATION_LINEAR = 0,
  VX_INTERPOLATION_SMOOTH = 1,
  VX_INTERPOLATION_FLAT = 2,
  VX_INTERPOLATION_STEP = 3,
  VX_INTERPOLATION_FIXED = 4,
};

enum VXChannelBeyond : int32_t {
  VX_BEYOND_CONSTANT = 0,
  VX_BEYOND_CYCLE = 1,
  VX_BEYOND_CYCLE_OFFSET = 2,
  VX_BEYOND_IDENTITY = 3,
  VX_BEYOND_LINEAR = 4,
  VX_BEYOND_OSCILLATE = 5,
  VX_BEYOND_RELATIVE = 6,
  VX_BEYOND_INHERIT = 7,  // text form only
};

// "LINEAR"/"TAN_LINEAR" 0, "FLAT"/"TAN_FLAT" 2, "STEP"/"TAN_STEP" 3, "FIXED"/"TAN_FIXED" 4,
// anything else 1 (SMOOTH).
int32_t vxInterpolationFromString(std::string_view text);
// "LINEAR", "FLAT", "STEP", "FIXED" for 0, 2, 3, 4; "SMOOTH" for any other id.
const char* vxInterpolationToString(int32_t id);

// The names with their "PRE_" and "POST_" forms (RELATIVE and INHERIT have none), anything
// else 0 (CONSTANT).
int32_t vxBeyondFromString(std::string_view text);
// The name of ids 1 to 7; "CONSTANT" for any other id.
const char* vxBeyondToString(int32_t id);

#pragma once
// Animation time: a signed 64-bit count of microseconds, the largest value meaning infinite;
// its text form under the process-wide display mode, and float seconds as scripts see them.
//
// The display mode is one atomic word, read and set from any thread. Nothing here throws.
#include <cstdint>
#include <limits>
#include <string>

using VXAnimationTime = int64_t;

constexpr VXAnimationTime kVXTimeInfinite = std::numeric_limits<VXAnimationTime>::max();
constexpr int64_t kVXTimeUnitsPerSecond = 1000000;
constexpr int64_t kVXFramesPerSecond = 25;

// The forms of the time text. Any value other than 1, 2 and 3 selects the clock form.
enum VXTimeDisplayMode : int {
  VX_TIME_DISPLAY_CLOCK = 0,    // "%02d:%02d:%02d:%06d" of time / 25
  VX_TIME_DISPLAY_FRAMES = 1,   // "%d.%06d" of time / 25
  VX_TIME_DISPLAY_SECONDS = 2,  // whole seconds
  VX_TIME_DISPLAY_MICROS = 3,   // "%d.%06d": seconds and microseconds (the default)
};

int vxGetTimeDisplayMode();
void vxSetTimeDisplayMode(int mode);

// The text of a time under the current display mode; a negative time is "-" and the text of
// its magnitude.
std::string vxTimeToString(VXAnimationTime time);

// Seconds as a float (the infinite time too, as about 9.2e12 seconds).
float vxTimeToSeconds(VXAnimationTime time);
// Seconds rounded to the nearest microsecond. From the seconds of the infinite time upward the
// result is infinite (so the infinite time survives a trip through seconds); below the range it
// saturates at the lowest time; NaN gives 0.
VXAnimationTime vxTimeFromSeconds(float seconds);

#include "animation/animation_time.h"

#include <atomic>
#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace {
std::atomic<int> displayMode{VX_TIME_DISPLAY_MICROS};

std::string format(const char* pattern, auto... values) {
  char text[96];
  const int length = std::snprintf(text, sizeof text, pattern, values...);
  return length < 0 ? std::string() : std::string(text, static_cast<std::size_t>(length));
}

// The text of a non-negative time; the unsigned type holds the magnitude of the most negative
// time as well.
std::string magnitudeText(uint64_t time, int mode) {
  constexpr uint64_t kUnits = kVXTimeUnitsPerSecond;
  switch (mode) {
    case VX_TIME_DISPLAY_MICROS:
      return format("%" PRIu64 ".%06" PRIu64, time / kUnits, time % kUnits);
    case VX_TIME_DISPLAY_SECONDS:
      return format("%" PRIu64, time / kUnits);
    case VX_TIME_DISPLAY_FRAMES: {
      const uint64_t scaled = time / kVXFramesPerSecond;
      return format("%" PRIu64 ".%06" PRIu64, scaled / kUnits, scaled % kUnits);
    }
    default: {
      const uint64_t scaled = time / kVXFramesPerSecond;
      const uint64_t seconds = scaled / kUnits;
      return format("%02" PRIu64 ":%02" PRIu64 ":%02" PRIu64 ":%06" PRIu64, seconds / 3600,
                    seconds / 60 % 60, seconds % 60, scaled % kUnits);
    }
  }
}
}  // namespace

int vxGetTimeDisplayMode() { return displayMode.load(std::memory_order_relaxed); }

void vxSetTimeDisplayMode(int mode) { displayMode.store(mode, std::memory_order_relaxed); }

std::string vxTimeToString(VXAnimationTime time) {
  const int mode = vxGetTimeDisplayMode();
  if (time >= 0) return magnitudeText(static_cast<uint64_t>(time), mode);
  return "-" + magnitudeText(0 - static_cast<uint64_t>(time), mode);
}

float vxTimeToSeconds(VXAnimationTime time) {
  return static_cast<float>(static_cast<double>(time) / kVXTimeUnitsPerSecond);
}

VXAnimationTime vxTimeFromSeconds(float seconds) {
  if (std::isnan(seconds)) return 0;
  // The float nearest the infinite time lies a little below it; it must read back as infinite,
  // so that an end read as seconds and written back stays infinite.
  if (seconds >= vxTimeToSeconds(kVXTimeInfinite)) return kVXTimeInfinite;
  const double units = std::round(static_cast<double>(seconds) * kVXTimeUnitsPerSecond);
  // The lowest value is exactly -2^63.
  if (units <= -9223372036854775808.0) return std::numeric_limits<VXAnimationTime>::min();
  return static_cast<VXAnimationTime>(units);
}

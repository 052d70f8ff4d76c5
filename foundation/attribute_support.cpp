#include "foundation/attribute_support.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "foundation/class.h"

std::optional<double> afcLeadingNumber(std::string_view text) {
  const std::string copy(text);  // strtod needs a terminated string
  char* end = nullptr;
  const double value = std::strtod(copy.c_str(), &end);
  if (end == copy.c_str()) return std::nullopt;
  return value;
}

namespace {
template <class Int>
Int truncateClamped(double value) {
  if (std::isnan(value)) return 0;
  const double truncated = std::trunc(value);
  if (truncated <= static_cast<double>(std::numeric_limits<Int>::min())) {
    return std::numeric_limits<Int>::min();
  }
  // The max of int64 is not a double; anything at or above 2^63 clamps.
  if (truncated >= -static_cast<double>(std::numeric_limits<Int>::min())) {
    return std::numeric_limits<Int>::max();
  }
  return static_cast<Int>(truncated);
}
}  // namespace

int32_t afcTruncateToInt32(double value) { return truncateClamped<int32_t>(value); }

int64_t afcTruncateToInt64(double value) { return truncateClamped<int64_t>(value); }

int32_t afcBiasedInt32(double value) { return afcTruncateToInt32(value + 0.001); }

std::string afcFormatDouble(const char* format, double value) {
  // "%f" of the largest double needs 317 characters.
  char text[400];
  const int length = std::snprintf(text, sizeof text, format, value);
  if (length < 0) return {};
  return std::string(text, static_cast<std::size_t>(length) < sizeof text
                               ? static_cast<std::size_t>(length)
                               : sizeof text - 1);
}

uint32_t afcHashBytes(const void* bytes, std::size_t size) {
  const auto* p = static_cast<const uint8_t*>(bytes);
  uint32_t hash = 2166136261u;
  for (std::size_t i = 0; i < size; ++i) {
    hash ^= p[i];
    hash *= 16777619u;
  }
  return hash;
}

void afcThrowUndefined(const AFCAttribute& attribute) {
  throw AFCUndefinedAttributeValue("Undefined value of type " + attribute.getClass()->getName());
}

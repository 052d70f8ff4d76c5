#pragma once
// Small helpers shared by the attribute kinds: number parsing and formatting as the text forms
// need them, raw key bytes, the undefined-value error and all-or-nothing reads.
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "foundation/attribute.h"

// The leading number of the text as strtod reads it (leading white space skipped); nullopt when
// the text does not start with one.
std::optional<double> afcLeadingNumber(std::string_view text);
// A double as an int32, truncated toward zero and clamped to the int32 range; NaN gives 0.
int32_t afcTruncateToInt32(double value);
int64_t afcTruncateToInt64(double value);
// The integer stored for a double by the integer kinds: value + 0.001 truncated toward zero.
int32_t afcBiasedInt32(double value);
// printf-style text of one double ("%f", "%lf", "%lg").
std::string afcFormatDouble(const char* format, double value);
// A stable 32-bit hash (FNV-1a) of the bytes.
uint32_t afcHashBytes(const void* bytes, std::size_t size);
// "Undefined value of type " + the attribute's class name.
[[noreturn]] void afcThrowUndefined(const AFCAttribute& attribute);

// Appends the machine bytes of a trivially copyable value to a key.
template <class T>
void afcAppendRaw(std::string& key, const T& value) {
  static_assert(std::is_trivially_copyable_v<T>);
  char bytes[sizeof(T)];
  std::memcpy(bytes, &value, sizeof(T));
  key.append(bytes, sizeof(T));
}

// Runs a read that commits the value fields only after its last stream access; when it throws,
// the defined flag (or mask) the base read already changed is put back, so a failed read leaves
// the attribute as it was.
template <class State, class Read>
void afcReadOrRestore(State& state, Read&& read) {
  const State saved = state;
  try {
    read();
  } catch (...) {
    state = saved;
    throw;
  }
}

#pragma once
// The floor of the decode benchmarks: the stream's bytes read big-endian without a single check,
// and one plain heap object per value read (holding its text in its own storage, as the real
// values do), with no registry, no virtual read and no object numbering. What it costs against
// the plain write loop tells how much of a decode target is left for everything else.
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

struct FloorValue {
  virtual ~FloorValue() = default;
};
template <class T>
struct FloorValueOf : FloorValue {
  explicit FloorValueOf(T v) : value(std::move(v)) {}
  T value;
};
struct FloorVec3 {
  float c[3];
};

struct PlainReader {
  const uint8_t* p;
  uint32_t be32() {
    const uint32_t v =
        (uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | p[3];
    p += 4;
    return v;
  }
  float f32() {
    p += 2;
    return std::bit_cast<float>(be32());
  }
  // A new object's reference and class name, then its base part's header.
  void object() {
    p += 6;
    const std::size_t length = (std::size_t{p[0]} << 8) | p[1];
    p += 2 + length + 2;
  }
  FloorVec3 vec3() {
    FloorVec3 v;
    for (float& c : v.c) c = f32();
    return v;
  }
  std::string ascii() {
    p += 2;
    std::string text(be32(), '\0');
    for (char& c : text) c = static_cast<char>(p[1]), p += 2;
    return text;
  }
  std::u16string wide() {
    p += 2;
    std::u16string text(be32(), u'\0');
    for (char16_t& c : text) c = static_cast<char16_t>((p[0] << 8) | p[1]), p += 2;
    return text;
  }
};

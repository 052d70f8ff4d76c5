#pragma once
// The baseline of the serialization benchmarks: the stream's bytes written by hand, big-endian,
// into a preallocated buffer, with nothing a real writer needs (no capacity checks, no object
// numbering, no virtual calls). runPlainLoop times it and checks that it writes exactly the
// bytes of the real encoder, so the comparison is between equal outputs.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/buffer.h"

struct PlainWriter {
  uint8_t* p;
  void byte(uint8_t b) { *p++ = b; }
  void be32(uint32_t v) {
    p[0] = static_cast<uint8_t>(v >> 24);
    p[1] = static_cast<uint8_t>(v >> 16);
    p[2] = static_cast<uint8_t>(v >> 8);
    p[3] = static_cast<uint8_t>(v);
    p += 4;
  }
  void header(uint8_t code) { byte(0xDA), byte(code); }
  void f32(float v) {
    uint32_t bits;
    std::memcpy(&bits, &v, 4);
    header(0x09);
    be32(bits);
  }
  // A new object of the class, with its base part.
  void object(const char* name) {
    const std::size_t length = std::strlen(name);
    header(0x0C);
    be32(0xFFFFFFFFu);
    byte(static_cast<uint8_t>(length >> 8));
    byte(static_cast<uint8_t>(length));
    std::memcpy(p, name, length);
    p += length;
    header(0x0F);
  }
  void ascii(const std::string& text) {
    header(0x0B);
    be32(static_cast<uint32_t>(text.size()));
    for (char c : text) byte(0), byte(static_cast<uint8_t>(c));
  }
  void wide(const std::u16string& text) {
    header(0x0E);
    be32(static_cast<uint32_t>(text.size()));
    for (char16_t c : text) byte(static_cast<uint8_t>(c >> 8)), byte(static_cast<uint8_t>(c));
  }
};

// Times write(uint8_t* out) -> size, then checks its output against the encoder's bytes.
template <class Write>
void runPlainLoop(benchmark::State& state, const AFCBuffer& expected, Write write) {
  std::vector<uint8_t> out(expected.size() + 64);
  for (auto _ : state) {
    std::size_t size = write(out.data());
    benchmark::DoNotOptimize(out.data());
    benchmark::DoNotOptimize(size);
  }
  if (write(out.data()) != expected.size() ||
      std::memcmp(out.data(), expected.data(), expected.size()) != 0) {
    state.SkipWithError("the plain loop does not write the encoder's bytes");
  }
}

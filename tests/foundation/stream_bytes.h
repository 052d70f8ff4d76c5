#pragma once
// The pieces that expected stream bytes are put together from, straight from the wire layout
// (marker 0xDA, type code, big-endian payload), never taken from the writer under test. Shared
// by the tests of every layer.
#include <cstdint>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

inline Bytes operator+(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// DA 0C FF FF FF FF, the 16-bit name length, the name. Appended byte by byte: GCC 12 at -O2
// reports a false out-of-bounds copy for an insert here.
inline Bytes newObjectHeader(const std::string& className) {
  Bytes bytes = {0xDA,
                 0x0C,
                 0xFF,
                 0xFF,
                 0xFF,
                 0xFF,
                 static_cast<uint8_t>(className.size() >> 8),
                 static_cast<uint8_t>(className.size())};
  for (char c : className) bytes.push_back(static_cast<uint8_t>(c));
  return bytes;
}
inline const Bytes kBasePart = {0xDA, 0x0F};

inline Bytes uint32Bytes(uint8_t code, uint32_t v) {
  return {0xDA,
          code,
          static_cast<uint8_t>(v >> 24),
          static_cast<uint8_t>(v >> 16),
          static_cast<uint8_t>(v >> 8),
          static_cast<uint8_t>(v)};
}
inline Bytes boolBytes(bool v) { return {0xDA, 0x02, static_cast<uint8_t>(v ? 1 : 0)}; }
// An ASCII text as a string (code 0x0B): the unit count, then each unit big-endian.
inline Bytes stringBytes(const std::string& ascii) {
  Bytes bytes = uint32Bytes(0x0B, static_cast<uint32_t>(ascii.size()));
  for (char c : ascii) {
    bytes.push_back(0x00);
    bytes.push_back(static_cast<uint8_t>(c));
  }
  return bytes;
}

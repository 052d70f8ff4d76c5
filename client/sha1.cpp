#include "client/sha1.h"

#include <cstring>

namespace {

uint32_t rotl(uint32_t value, int bits) { return (value << bits) | (value >> (32 - bits)); }

void compress(uint32_t state[5], const uint8_t block[64]) {
  uint32_t w[80];
  for (int i = 0; i < 16; ++i) {
    w[i] = (uint32_t{block[4 * i]} << 24) | (uint32_t{block[4 * i + 1]} << 16) |
           (uint32_t{block[4 * i + 2]} << 8) | uint32_t{block[4 * i + 3]};
  }
  for (int i = 16; i < 80; ++i) w[i] = rotl(w[i - 3] ^ w[i - 8] ^ w[i - 14] ^ w[i - 16], 1);

  uint32_t a = state[0], b = state[1], c = state[2], d = state[3], e = state[4];
  for (int i = 0; i < 80; ++i) {
    uint32_t f, k;
    if (i < 20) {
      f = (b & c) | (~b & d);
      k = 0x5A827999;
    } else if (i < 40) {
      f = b ^ c ^ d;
      k = 0x6ED9EBA1;
    } else if (i < 60) {
      f = (b & c) | (b & d) | (c & d);
      k = 0x8F1BBCDC;
    } else {
      f = b ^ c ^ d;
      k = 0xCA62C1D6;
    }
    const uint32_t next = rotl(a, 5) + f + e + k + w[i];
    e = d;
    d = c;
    c = rotl(b, 30);
    b = a;
    a = next;
  }
  state[0] += a;
  state[1] += b;
  state[2] += c;
  state[3] += d;
  state[4] += e;
}

}  // namespace

VXSha1Digest vxSha1(const void* bytes, std::size_t length) {
  uint32_t state[5] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
  const auto* data = static_cast<const uint8_t*>(bytes);
  std::size_t done = 0;
  for (; length - done >= 64; done += 64) compress(state, data + done);

  // The tail, the 0x80 terminator and the bit length, in one or two blocks.
  uint8_t tail[128] = {};
  const std::size_t rest = length - done;
  if (rest > 0) std::memcpy(tail, data + done, rest);
  tail[rest] = 0x80;
  const std::size_t tailLength = rest + 9 <= 64 ? 64 : 128;
  const uint64_t bits = static_cast<uint64_t>(length) * 8;
  for (int i = 0; i < 8; ++i) tail[tailLength - 1 - i] = static_cast<uint8_t>(bits >> (8 * i));
  for (std::size_t i = 0; i < tailLength; i += 64) compress(state, tail + i);

  VXSha1Digest digest;
  for (int i = 0; i < 20; ++i) digest[i] = static_cast<uint8_t>(state[i / 4] >> (24 - 8 * (i % 4)));
  return digest;
}

std::string vxSha1ToText(const VXSha1Digest& digest) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string text;
  text.reserve(40);
  for (uint8_t byte : digest) {
    text += kHex[byte >> 4];
    text += kHex[byte & 0x0F];
  }
  return text;
}

#include "client/aes128.h"

namespace {

constexpr uint8_t xtime(uint8_t b) {
  return static_cast<uint8_t>((b << 1) ^ ((b & 0x80) != 0 ? 0x1B : 0x00));
}

constexpr uint8_t gmul(uint8_t a, uint8_t b) {
  uint8_t product = 0;
  for (; b != 0; b >>= 1, a = xtime(a)) {
    if ((b & 1) != 0) product ^= a;
  }
  return product;
}

constexpr uint8_t rotl8(uint8_t b, int bits) {
  return static_cast<uint8_t>((b << bits) | (b >> (8 - bits)));
}

// The S-box from its definition: the multiplicative inverse in GF(2^8), then the affine map.
// Inverses come from the powers of the generator 3, so the table takes a few thousand steps to
// compute, well inside every compiler's constant-evaluation limit.
constexpr std::array<uint8_t, 256> makeSbox() {
  std::array<uint8_t, 256> power{};
  std::array<uint8_t, 256> logarithm{};
  uint8_t value = 1;
  for (int i = 0; i < 255; ++i) {
    power[i] = value;
    logarithm[value] = static_cast<uint8_t>(i);
    value = static_cast<uint8_t>(value ^ xtime(value));  // times 3
  }
  std::array<uint8_t, 256> box{};
  for (int x = 0; x < 256; ++x) {
    const uint8_t inverse = x == 0 ? 0 : power[(255 - logarithm[x]) % 255];
    box[x] = static_cast<uint8_t>(inverse ^ rotl8(inverse, 1) ^ rotl8(inverse, 2) ^
                                  rotl8(inverse, 3) ^ rotl8(inverse, 4) ^ 0x63);
  }
  return box;
}

constexpr std::array<uint8_t, 256> kSbox = makeSbox();

using RoundKeys = std::array<VXAes128Block, 11>;

RoundKeys expandKey(const VXAes128Block& key) {
  RoundKeys keys;
  keys[0] = key;
  uint8_t rcon = 1;
  for (int round = 1; round <= 10; ++round) {
    const VXAes128Block& prev = keys[round - 1];
    VXAes128Block& next = keys[round];
    // RotWord, SubWord and the round constant on the last word of the previous key.
    uint8_t t[4] = {kSbox[prev[13]], kSbox[prev[14]], kSbox[prev[15]], kSbox[prev[12]]};
    t[0] ^= rcon;
    rcon = xtime(rcon);
    for (int i = 0; i < 16; ++i) {
      next[i] = static_cast<uint8_t>(prev[i] ^ (i < 4 ? t[i] : next[i - 4]));
    }
  }
  return keys;
}

void addRoundKey(VXAes128Block& state, const VXAes128Block& key) {
  for (int i = 0; i < 16; ++i) state[i] ^= key[i];
}

// SubBytes and ShiftRows together; the state is column-major (byte r + 4c is row r, column c).
void subShift(VXAes128Block& state) {
  VXAes128Block out;
  for (int c = 0; c < 4; ++c) {
    for (int r = 0; r < 4; ++r) out[r + 4 * c] = kSbox[state[r + 4 * ((c + r) % 4)]];
  }
  state = out;
}

void mixColumns(VXAes128Block& state) {
  for (int c = 0; c < 4; ++c) {
    uint8_t* col = &state[4 * c];
    const uint8_t a0 = col[0], a1 = col[1], a2 = col[2], a3 = col[3];
    col[0] = static_cast<uint8_t>(xtime(a0) ^ gmul(a1, 3) ^ a2 ^ a3);
    col[1] = static_cast<uint8_t>(a0 ^ xtime(a1) ^ gmul(a2, 3) ^ a3);
    col[2] = static_cast<uint8_t>(a0 ^ a1 ^ xtime(a2) ^ gmul(a3, 3));
    col[3] = static_cast<uint8_t>(gmul(a0, 3) ^ a1 ^ a2 ^ xtime(a3));
  }
}

}  // namespace

VXAes128Block vxAes128Encrypt(const VXAes128Block& key, const VXAes128Block& plain) {
  const RoundKeys keys = expandKey(key);
  VXAes128Block state = plain;
  addRoundKey(state, keys[0]);
  for (int round = 1; round < 10; ++round) {
    subShift(state);
    mixColumns(state);
    addRoundKey(state, keys[round]);
  }
  subShift(state);
  addRoundKey(state, keys[10]);
  return state;
}

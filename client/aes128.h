#pragma once
// AES-128 (FIPS-197) encryption of one 16-byte block, for the login handshake: no chaining, no
// padding. Pure function, thread safe, never throws.
#include <array>
#include <cstdint>

using VXAes128Block = std::array<uint8_t, 16>;

VXAes128Block vxAes128Encrypt(const VXAes128Block& key, const VXAes128Block& plain);

#pragma once
// SHA-1 (FIPS 180) of a byte sequence, for the login handshake. Pure functions, thread safe,
// never throw.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

using VXSha1Digest = std::array<uint8_t, 20>;

VXSha1Digest vxSha1(const void* bytes, std::size_t length);

// The digest as 40 lower-case hexadecimal characters.
std::string vxSha1ToText(const VXSha1Digest& digest);

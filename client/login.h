#pragma once
// The answer to the server's login challenge. Pure function, thread safe, never throws.
#include <cstdint>
#include <string_view>
#include <vector>

// A challenge shorter than 16 bytes is answered with itself. Otherwise the key is the first 16
// bytes of the SHA-1 of exactly 20 bytes: the password followed by the salt, cut at 20 (so only
// the first 20 password bytes count, and a short password is padded by the salt). The answer is
// the first 16 challenge bytes encrypted with that key as one AES-128 block.
std::vector<uint8_t> vxLoginResponse(std::string_view password,
                                     const std::vector<uint8_t>& challenge);

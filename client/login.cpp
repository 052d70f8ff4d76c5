#include "client/login.h"

#include <algorithm>

#include "client/aes128.h"
#include "client/sha1.h"

namespace {
constexpr std::size_t kDigestInput = 20;
constexpr uint8_t kSalt[kDigestInput] = {0x3c, 0x5e, 0x9a, 0x17, 0xd2, 0xb4, 0x40,
                                         0x8f, 0x6e, 0x21, 0xc7, 0xa9, 0x5b, 0x03,
                                         0xf8, 0xd4, 0xe6, 0x17, 0x2a, 0x9c};
}  // namespace

std::vector<uint8_t> vxLoginResponse(std::string_view password,
                                     const std::vector<uint8_t>& challenge) {
  VXAes128Block block;
  if (challenge.size() < block.size()) return challenge;

  uint8_t keyed[kDigestInput];
  const std::size_t used = std::min(password.size(), kDigestInput);
  std::copy_n(password.data(), used, keyed);
  std::copy_n(kSalt, kDigestInput - used, keyed + used);
  const VXSha1Digest digest = vxSha1(keyed, kDigestInput);

  VXAes128Block key;
  std::copy_n(digest.begin(), key.size(), key.begin());
  std::copy_n(challenge.begin(), block.size(), block.begin());
  const VXAes128Block cipher = vxAes128Encrypt(key, block);
  return {cipher.begin(), cipher.end()};
}

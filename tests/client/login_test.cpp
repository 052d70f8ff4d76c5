#include "client/login.h"

#include <gtest/gtest.h>

#include <string>

#include "client/aes128.h"
#include "client/sha1.h"

namespace {

const uint8_t kSalt[20] = {0x3c, 0x5e, 0x9a, 0x17, 0xd2, 0xb4, 0x40, 0x8f, 0x6e, 0x21,
                           0xc7, 0xa9, 0x5b, 0x03, 0xf8, 0xd4, 0xe6, 0x17, 0x2a, 0x9c};

// The answer worked out step by step: password then salt, 20 bytes hashed, 16 key bytes.
std::vector<uint8_t> expectedResponse(const std::string& password,
                                      const std::vector<uint8_t>& challenge) {
  std::vector<uint8_t> keyed(password.begin(), password.end());
  keyed.insert(keyed.end(), std::begin(kSalt), std::end(kSalt));
  const VXSha1Digest digest = vxSha1(keyed.data(), 20);
  VXAes128Block key, block;
  std::copy_n(digest.begin(), 16, key.begin());
  std::copy_n(challenge.begin(), 16, block.begin());
  const VXAes128Block cipher = vxAes128Encrypt(key, block);
  return {cipher.begin(), cipher.end()};
}

std::vector<uint8_t> challengeOf(std::size_t size) {
  std::vector<uint8_t> challenge(size);
  for (std::size_t i = 0; i < size; ++i) challenge[i] = static_cast<uint8_t>(0xA0 + i);
  return challenge;
}

}  // namespace

TEST(LoginResponse, EchoesAChallengeShorterThanOneBlock) {
  EXPECT_EQ(vxLoginResponse("secret", challengeOf(15)), challengeOf(15));
  EXPECT_TRUE(vxLoginResponse("secret", {}).empty());
}

TEST(LoginResponse, EncryptsTheFirstSixteenChallengeBytesWithTheSaltedPasswordKey) {
  const std::vector<uint8_t> response = vxLoginResponse("secret", challengeOf(32));
  EXPECT_EQ(response.size(), 16u);
  EXPECT_EQ(response, expectedResponse("secret", challengeOf(32)));
  EXPECT_EQ(response, vxLoginResponse("secret", challengeOf(16)));
  EXPECT_NE(response, vxLoginResponse("secreT", challengeOf(16)));
}

TEST(LoginResponse, CountsOnlyTheFirstTwentyPasswordBytes) {
  const std::string twenty = "abcdefghijklmnopqrst";
  EXPECT_EQ(vxLoginResponse(twenty + "uvw", challengeOf(16)),
            vxLoginResponse(twenty, challengeOf(16)));
  EXPECT_EQ(vxLoginResponse(twenty, challengeOf(16)), expectedResponse(twenty, challengeOf(16)));
}

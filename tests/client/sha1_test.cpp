#include "client/sha1.h"

#include <gtest/gtest.h>

#include <string>

namespace {
std::string digestOf(const std::string& text) {
  return vxSha1ToText(vxSha1(text.data(), text.size()));
}
}  // namespace

TEST(Sha1, MatchesTheStandardsOneBlockExample) {
  EXPECT_EQ(digestOf("abc"), "a9993e364706816aba3e25717850c26c9cd0d89d");
}

TEST(Sha1, MatchesTheStandardsTwoBlockExample) {
  // 448 bits: the padding needs a block of its own.
  EXPECT_EQ(digestOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "84983e441c3bd26ebaae4aa1f95129e5e54670f1");
}

TEST(Sha1, MatchesTheStandardsMillionCharacterExample) {
  EXPECT_EQ(digestOf(std::string(1000000, 'a')), "34aa973cd4c4daa4f61eeb2bdbad27316534016f");
}

TEST(Sha1, HashesTheEmptyInput) {
  EXPECT_EQ(digestOf(""), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
}

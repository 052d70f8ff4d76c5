// One stream of every attribute kind, written and read against the same golden bytes by every
// build: the native one and the Windows one under Wine. Bytes written on one platform therefore
// read back on the other.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/attribute_buffer.h"
#include "foundation/attribute_date_time.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/enum.h"
#include "foundation/persistent_dump.h"

namespace {

template <class Kind>
std::unique_ptr<AFCAttribute> parsed(const char* text) {
  auto value = std::make_unique<Kind>();
  value->fromString(text);
  return value;
}

std::vector<std::unique_ptr<AFCAttribute>> sample() {
  std::vector<std::unique_ptr<AFCAttribute>> values;
  values.push_back(std::make_unique<AFCAttributeBool>(true));
  values.push_back(std::make_unique<AFCAttributeInt32>(-2));
  values.push_back(std::make_unique<AFCAttributeInt64>(int64_t{1} << 40));
  values.push_back(std::make_unique<AFCAttributeFloat>(1.5f));
  values.push_back(std::make_unique<AFCAttributeDouble>(-0.25));
  values.push_back(std::make_unique<AFCAttributeString>("Title"));
  values.push_back(std::make_unique<AFCAttributeWString>(u"\u00C5\u20AC"));
  values.push_back(parsed<AFCAttributeVec3f>("[1, , 3]"));
  values.push_back(parsed<AFCAttributeColor>("[1, 0.5, 0, 1]"));
  values.push_back(parsed<AFCAttributeVec2s>("[7, -8]"));
  values.push_back(std::make_unique<AFCAttributeVecNf>(std::vector<float>{0.25f, 4.0f}));
  values.push_back(parsed<AFCAttributeDate>("7.3.2014"));
  values.push_back(parsed<AFCAttributeTime>("09:05:01"));
  values.push_back(std::make_unique<AFCAttributeBuffer>(AFCBuffer("ab", 2)));
  values.push_back(
      std::make_unique<AFCAttributeEnum>(AFCEnumClass::forName("VXChannelBeyondEnum"), 1));
  values.push_back(std::make_unique<AFCAttributeFloat>());  // undefined
  return values;
}

std::string hex(const uint8_t* bytes, std::size_t size) {
  static const char digits[] = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    text += digits[bytes[i] >> 4];
    text += digits[bytes[i] & 15];
  }
  return text;
}

std::vector<uint8_t> unhex(const std::string& text) {
  std::vector<uint8_t> bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
    bytes.push_back(static_cast<uint8_t>(std::stoi(text.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

const char* const kGolden =
#include "tests/foundation/wire_compat_golden.inc"
    ;

class WireCompat : public ::testing::Test {
 protected:
  void SetUp() override { registerFoundationClasses(); }
};

TEST_F(WireCompat, WritesTheGoldenBytes) {
  AFCPersistentOutputStreamBuffer out;
  const auto values = sample();
  for (const auto& value : values) out.writeObject(value.get());
  const AFCBuffer& bytes = out.getBuffer();
  EXPECT_EQ(hex(bytes.data(), bytes.size()), kGolden)
      << afcDumpPersistent(bytes.data(), bytes.size());
}

TEST_F(WireCompat, ReadsTheGoldenBytesBackToEqualValues) {
  const std::vector<uint8_t> bytes = unhex(kGolden);
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  for (const auto& expected : sample()) {
    std::unique_ptr<AFCAttribute> value = in.readOwnedObject<AFCAttribute>();
    EXPECT_TRUE(value->equals(*expected))
        << expected->toString() << " came back as " << value->toString();
    EXPECT_EQ(value->toString(), expected->toString());
  }
  EXPECT_TRUE(in.atEnd());
}

}  // namespace

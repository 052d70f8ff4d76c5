#pragma once
// Stream helpers shared by the command and action tests. Expected bytes are put together from
// the wire layout piece by piece (marker 0xDA, type code, big-endian payload), never taken from
// the writer under test.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "commands/register.h"
#include "foundation/persistent_stream.h"

// Registers every class before the first test runs (once, whichever test files are linked).
class CommandClasses : public ::testing::Environment {
 public:
  void SetUp() override { registerCommandClasses(); }
};
inline ::testing::Environment* const kCommandClasses =
    ::testing::AddGlobalTestEnvironment(new CommandClasses);

using Bytes = std::vector<uint8_t>;

inline Bytes operator+(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// DA 0C FF FF FF FF, the 16-bit name length, the name.
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
inline const Bytes kNullObject = {0xDA, 0x0C, 0x00, 0x00, 0x00, 0x00};
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
inline Bytes int8Bytes(int8_t v) { return {0xDA, 0x01, static_cast<uint8_t>(v)}; }
inline Bytes int32Bytes(int32_t v) { return uint32Bytes(0x05, static_cast<uint32_t>(v)); }
inline Bytes int64Bytes(int64_t v) {
  Bytes bytes = {0xDA, 0x07};
  for (int shift = 56; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<uint8_t>(static_cast<uint64_t>(v) >> shift));
  }
  return bytes;
}
// An ASCII text as a string (code 0x0B): the unit count, then each unit big-endian.
inline Bytes stringBytes(const std::string& ascii) {
  Bytes bytes = uint32Bytes(0x0B, static_cast<uint32_t>(ascii.size()));
  for (char c : ascii) {
    bytes.push_back(0x00);
    bytes.push_back(static_cast<uint8_t>(c));
  }
  return bytes;
}
// The same as a wide string (code 0x0E).
inline Bytes wstringBytes(const std::string& ascii) {
  Bytes bytes = stringBytes(ascii);
  bytes[1] = 0x0E;
  return bytes;
}

// The bytes of an object reference to a new object.
inline Bytes objectBytes(const AFCPersistent& object) {
  AFCPersistentOutputStreamBuffer out;
  out.writeObject(&object);
  const AFCBuffer& buffer = out.getBuffer();
  return Bytes(buffer.data(), buffer.data() + buffer.size());
}

// Written as an object and read back through the class registry.
template <class T>
std::unique_ptr<T> roundTrip(const T& object) {
  const Bytes bytes = objectBytes(object);
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  auto copy = in.readOwnedObject<T>();
  EXPECT_TRUE(in.atEnd());
  return copy;
}

// Reads one object from the bytes; the text of the exception it throws, "" when none.
inline std::string readObjectError(const Bytes& bytes) {
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  try {
    (void)in.readOwnedObject<AFCPersistent>();
  } catch (const AFCException& e) {
    return e.what();
  }
  return "";
}

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

#include "commands/command.h"
#include "commands/register.h"
#include "foundation/persistent_stream.h"
#include "tests/foundation/stream_bytes.h"

// Registers every class before the first test runs (once, whichever test files are linked).
class CommandClasses : public ::testing::Environment {
 public:
  void SetUp() override { registerCommandClasses(); }
};
inline ::testing::Environment* const kCommandClasses =
    ::testing::AddGlobalTestEnvironment(new CommandClasses);

inline const Bytes kNullObject = {0xDA, 0x0C, 0x00, 0x00, 0x00, 0x00};

inline Bytes int8Bytes(int8_t v) { return {0xDA, 0x01, static_cast<uint8_t>(v)}; }
inline Bytes int32Bytes(int32_t v) { return uint32Bytes(0x05, static_cast<uint32_t>(v)); }
inline Bytes int64Bytes(int64_t v) {
  Bytes bytes = {0xDA, 0x07};
  for (int shift = 56; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<uint8_t>(static_cast<uint64_t>(v) >> shift));
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

// One record's wire form: its class name, the fields after the base part, and its text.
struct GoldenRecord {
  std::string className;
  std::shared_ptr<const VXCommand> command;
  Bytes fields;
  std::string text;
};

inline void expectGolden(const std::vector<GoldenRecord>& rows) {
  for (const GoldenRecord& row : rows) {
    SCOPED_TRACE(row.className);
    EXPECT_EQ(objectBytes(*row.command), newObjectHeader(row.className) + kBasePart + row.fields);
    EXPECT_EQ(row.command->toString(), row.text);
  }
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

#pragma once
// Stream helpers shared by the attribute tests.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/attribute.h"
#include "foundation/persistent_stream.h"

using Bytes = std::vector<uint8_t>;

// The bytes of an object reference to the attribute.
inline Bytes objectBytes(const AFCAttribute& attribute) {
  AFCPersistentOutputStreamBuffer out;
  out.writeObject(&attribute);
  const AFCBuffer& buffer = out.getBuffer();
  return Bytes(buffer.data(), buffer.data() + buffer.size());
}

// The attribute's contents as its own write() puts them, without the object header.
inline Bytes contentBytes(const AFCAttribute& attribute) {
  AFCPersistentOutputStreamBuffer out;
  attribute.write(out);
  const AFCBuffer& buffer = out.getBuffer();
  return Bytes(buffer.data(), buffer.data() + buffer.size());
}

// Written as an object and read back as a new one.
inline std::unique_ptr<AFCAttribute> roundTrip(const AFCAttribute& attribute) {
  const Bytes bytes = objectBytes(attribute);
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  return in.readOwnedObject<AFCAttribute>();
}

// The text of the exception that reading the contents into target throws; "" when none.
inline std::string readError(AFCAttribute& target, const Bytes& contents) {
  AFCPersistentInputStreamBuffer in(contents.data(), contents.size());
  try {
    target.read(in);
  } catch (const AFCException& e) {
    return e.what();
  }
  return "";
}

// Big-endian header and payload bytes of the pieces the golden forms are made of.
inline Bytes operator+(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}
inline Bytes newObjectHeader(const std::string& className) {
  Bytes bytes = {0xDA, 0x0C, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, static_cast<uint8_t>(className.size())};
  bytes.insert(bytes.end(), className.begin(), className.end());
  return bytes;
}
inline Bytes uint32Bytes(uint8_t code, uint32_t v) {
  return {0xDA,
          code,
          static_cast<uint8_t>(v >> 24),
          static_cast<uint8_t>(v >> 16),
          static_cast<uint8_t>(v >> 8),
          static_cast<uint8_t>(v)};
}
inline Bytes stringBytes(const std::string& ascii) {
  Bytes bytes = uint32Bytes(0x0B, static_cast<uint32_t>(ascii.size()));
  for (char c : ascii) bytes.insert(bytes.end(), {0x00, static_cast<uint8_t>(c)});
  return bytes;
}
inline const Bytes kBasePart = {0xDA, 0x0F};
inline Bytes boolBytes(bool v) { return {0xDA, 0x02, static_cast<uint8_t>(v ? 1 : 0)}; }

#pragma once
// Stream helpers shared by the attribute tests.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/attribute.h"
#include "foundation/persistent_stream.h"
#include "tests/foundation/stream_bytes.h"

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

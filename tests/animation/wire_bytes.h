#pragma once
// Builds expected stream bytes by hand from the wire layout (marker 0xDA, type code, big-endian
// payload; strings as a 32-bit unit count and UTF-16BE units), independently of the writer, and
// runs writes and reads for a chosen server version.
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/persistent_stream.h"

namespace wire {

using Bytes = std::vector<uint8_t>;

inline void bigEndian(Bytes& bytes, uint64_t value, int size) {
  for (int i = size - 1; i >= 0; --i) bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

inline Bytes value(uint8_t code, uint64_t payload, int size) {
  Bytes bytes{0xDA, code};
  bigEndian(bytes, payload, size);
  return bytes;
}

inline Bytes i32(int32_t v) { return value(0x05, static_cast<uint32_t>(v), 4); }
inline Bytes u32(uint32_t v) { return value(0x06, v, 4); }
inline Bytes i64(int64_t v) { return value(0x07, static_cast<uint64_t>(v), 8); }
inline Bytes boolean(bool v) { return value(0x02, v ? 1 : 0, 1); }
inline Bytes f32(float v) {
  uint32_t bits;
  std::memcpy(&bits, &v, sizeof bits);
  return value(0x09, bits, 4);
}
// ASCII text only: each character is one UTF-16 unit.
inline Bytes str(std::string_view text) {
  Bytes bytes = value(0x0B, text.size(), 4);
  for (char c : text) bigEndian(bytes, static_cast<uint8_t>(c), 2);
  return bytes;
}

// The concatenation of the parts.
inline Bytes cat(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

template <class Record>
Bytes written(const Record& record, uint32_t version) {
  AFCPersistentOutputStreamBuffer out(version);
  record.write(out);
  const AFCBuffer& buffer = out.getBuffer();
  return Bytes(buffer.data(), buffer.data() + buffer.size());
}

// Reads the record from the bytes; "" when it succeeds and used up every byte, else the error
// text (or a note that bytes were left).
template <class Record>
std::string readInto(Record& record, const Bytes& bytes,
                     uint32_t version = AFCPersistentStream::kCurrentVersion) {
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size(), version);
  try {
    record.read(in);
  } catch (const AFCException& e) {
    return e.what();
  }
  return in.atEnd() ? "" : "bytes left over";
}

}  // namespace wire

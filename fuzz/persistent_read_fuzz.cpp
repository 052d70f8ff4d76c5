// Feeds arbitrary bytes to the persistent reader: every value is read by the kind its header
// names, objects through the class registry. Any failure must be an AFCException.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "foundation/persistent_stream.h"

namespace {
void readValue(AFCPersistentInputStream& in) {
  AFCBuffer buffer;
  switch (in.peekHeader()) {
    case AFC_PC_OBJECT: {
      std::unique_ptr<AFCPersistent> object = in.readOwnedObject<AFCPersistent>();
      if (object) (void)object->toString();
      break;
    }
    case AFC_PC_INT8: in.readInt8(); break;
    case AFC_PC_UINT8: in.readBool(); break;
    case AFC_PC_INT16: in.readInt16(); break;
    case AFC_PC_UINT16: in.readUInt16(); break;
    case AFC_PC_INT32: in.readInt32(); break;
    case AFC_PC_UINT32: in.readBuffer(buffer); break;
    case AFC_PC_INT64: in.readInt64(); break;
    case AFC_PC_UINT64: in.readUInt64(); break;
    case AFC_PC_FLOAT: in.readFloat(); break;
    case AFC_PC_DOUBLE: in.readDouble(); break;
    case AFC_PC_STRING: in.readString(); break;
    case AFC_PC_WSTRING: in.readWString(); break;
    case AFC_PC_BINARY: in.readBinary(buffer); break;
    default: in.readHeader(AFC_PC_PERSISTENT); break;
  }
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const bool registered = (registerFoundationClasses(), true);
  (void)registered;
  AFCPersistentInputStreamBuffer in(data, size);
  try {
    while (!in.atEnd()) readValue(in);
  } catch (const AFCException&) {
  }
  return 0;
}

#include "foundation/persistent_dump.h"

#include <cstdio>
#include <string_view>

#include "foundation/persistent_stream.h"

namespace {

std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

std::string formatNumber(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// Reads one object reference's framing: the number, and for a new object its class name.
std::string describeReference(AFCPersistentInputStream& in) {
  in.readHeader(AFC_PC_OBJECT);
  uint8_t raw[4];
  in.read(raw, 4);
  const uint32_t number = (uint32_t{raw[0]} << 24) | (uint32_t{raw[1]} << 16) |
                          (uint32_t{raw[2]} << 8) | raw[3];
  if (number == 0) return "object null";
  if (number != 0xFFFFFFFFu) return "object ref " + std::to_string(number);
  uint8_t length[2];
  in.read(length, 2);
  std::string name((std::size_t{length[0]} << 8) | length[1], '\0');
  if (name.empty()) throw AFCPersistentReadException2("Bad object type name");
  in.read(name.data(), static_cast<int32_t>(name.size()));
  return "object new " + name;
}

std::string describeValue(AFCPersistentInputStream& in) {
  switch (in.peekHeader()) {
    case AFC_PC_INT8: return "int8 " + std::to_string(in.readInt8());
    case AFC_PC_UINT8: return "uint8 " + std::to_string(in.readUInt8());
    case AFC_PC_INT16: return "int16 " + std::to_string(in.readInt16());
    case AFC_PC_UINT16: return "uint16 " + std::to_string(in.readUInt16());
    case AFC_PC_INT32: return "int32 " + std::to_string(in.readInt32());
    case AFC_PC_UINT32: return "uint32 " + std::to_string(in.readUInt32());
    case AFC_PC_INT64: return "int64 " + std::to_string(in.readInt64());
    case AFC_PC_UINT64: return "uint64 " + std::to_string(in.readUInt64());
    case AFC_PC_FLOAT: return "float " + formatNumber("%g", in.readFloat());
    case AFC_PC_DOUBLE: return "double " + formatNumber("%.17g", in.readDouble());
    case AFC_PC_STRING: return "string " + quoted(in.readString());
    case AFC_PC_WSTRING: return "wstring " + quoted(in.readString());
    case AFC_PC_OBJECT: return describeReference(in);
    case AFC_PC_PERSISTENT: in.readHeader(); return "base";
    case AFC_PC_BINARY: {
      AFCBuffer block;
      in.readBinary(block);
      return "binary " + std::to_string(block.size()) + " bytes";
    }
    default: {
      char text[16];
      std::snprintf(text, sizeof text, "header 0x%02x", in.readHeader());
      return text;
    }
  }
}

}  // namespace

std::string afcDumpPersistent(const uint8_t* bytes, std::size_t size) {
  AFCPersistentInputStreamBuffer in(bytes, size);
  std::string text;
  try {
    while (!in.atEnd()) {
      text += describeValue(in);
      text += '\n';
    }
  } catch (const AFCException& e) {
    text += "error at offset " + std::to_string(in.getPosition()) + ": " + e.toString() + "\n";
  }
  return text;
}

std::string afcHexDump(const uint8_t* bytes, std::size_t size) {
  std::string text;
  char cell[24];
  for (std::size_t line = 0; line < size; line += 16) {
    std::snprintf(cell, sizeof cell, "%06zx ", line);
    text += cell;
    std::string printable;
    for (std::size_t i = line; i < line + 16; ++i) {
      if (i < size) {
        std::snprintf(cell, sizeof cell, " %02x", bytes[i]);
        text += cell;
        printable += (bytes[i] >= 0x20 && bytes[i] < 0x7F) ? static_cast<char>(bytes[i]) : '.';
      } else {
        text += "   ";
      }
    }
    text += "  " + printable + "\n";
  }
  return text;
}

#pragma once
// Renders persistent-stream bytes as text, one value a line, without knowing any class: object
// references show their number or class name, and the values that follow are the object's
// contents. For logs, tools and people reading a capture.
#include <cstddef>
#include <cstdint>
#include <string>

// One line per value ("int32 -2", "string \"Title\"", "object new AFCAttributeInt32").
// Stops at the first malformed value with a line "error at offset N: text".
std::string afcDumpPersistent(const uint8_t* bytes, std::size_t size);

// Classic hex dump: offset, 16 bytes in hex, the printable characters.
std::string afcHexDump(const uint8_t* bytes, std::size_t size);

#include "tools/vxsim/sim_json.h"

#include <cstdint>

namespace {

// Length of the valid UTF-8 sequence of more than one byte at the start of text; 0 when there is
// none (overlong forms, surrogates and values past U+10FFFF are not valid).
std::size_t utf8SequenceLength(std::string_view text) {
  const auto byte = [&text](std::size_t i) { return static_cast<uint8_t>(text[i]); };
  const uint8_t lead = byte(0);
  std::size_t length = 0;
  uint32_t value = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    value = lead & 0x1Fu;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    value = lead & 0x0Fu;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    value = lead & 0x07u;
  } else {
    return 0;
  }
  if (text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    value = (value << 6) | (byte(i) & 0x3Fu);
  }
  const uint32_t smallest = length == 3 ? 0x800 : 0x10000;
  if (length > 2 && value < smallest) return 0;
  if ((value >= 0xD800 && value <= 0xDFFF) || value > 0x10FFFF) return 0;
  return length;
}

void appendEscaped(std::string& out, uint8_t byte) {
  static const char kHex[] = "0123456789abcdef";
  out += "\\u00";
  out += kHex[byte >> 4];
  out += kHex[byte & 0x0F];
}

}  // namespace

std::string vxSimJsonQuote(std::string_view text) {
  std::string out = "\"";
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<uint8_t>(text[i]);
    if (byte >= 0x80) {
      const std::size_t length = utf8SequenceLength(text.substr(i));
      if (length == 0) {
        appendEscaped(out, byte);
        ++i;
      } else {
        out.append(text.substr(i, length));
        i += length;
      }
      continue;
    }
    switch (byte) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\b':
        out += "\\b";
        break;
      case '\f':
        out += "\\f";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        if (byte < 0x20) {
          appendEscaped(out, byte);
        } else {
          out += static_cast<char>(byte);
        }
    }
    ++i;
  }
  return out + '"';
}

void VXSimJsonWriter::beforeValue() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (empty_.empty()) return;
  if (!empty_.back()) out_ += ',';
  empty_.back() = false;
}

void VXSimJsonWriter::open(char bracket) {
  beforeValue();
  out_ += bracket;
  empty_.push_back(true);
}

void VXSimJsonWriter::close(char bracket) {
  out_ += bracket;
  empty_.pop_back();
}

VXSimJsonWriter& VXSimJsonWriter::beginObject() {
  open('{');
  return *this;
}

VXSimJsonWriter& VXSimJsonWriter::endObject() {
  close('}');
  return *this;
}

VXSimJsonWriter& VXSimJsonWriter::beginArray() {
  open('[');
  return *this;
}

VXSimJsonWriter& VXSimJsonWriter::endArray() {
  close(']');
  return *this;
}

VXSimJsonWriter& VXSimJsonWriter::key(std::string_view name) {
  beforeValue();
  out_ += vxSimJsonQuote(name);
  out_ += ':';
  afterKey_ = true;
  return *this;
}

VXSimJsonWriter& VXSimJsonWriter::string(std::string_view text) {
  beforeValue();
  out_ += vxSimJsonQuote(text);
  return *this;
}

VXSimJsonWriter& VXSimJsonWriter::boolean(bool value) {
  beforeValue();
  out_ += value ? "true" : "false";
  return *this;
}

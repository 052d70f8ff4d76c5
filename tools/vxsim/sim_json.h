#pragma once
// A small JSON writer for what the simulator prints for programs (the scene as JSON): values are
// appended to one text in order, and the writer puts in the commas and escapes the strings.
// Strings are 8-bit: valid UTF-8 passes through, control characters, '"' and '\\' are escaped,
// and a byte that is not part of a valid UTF-8 sequence is written as the character of that
// number (\u00XX), so the output is always valid JSON in UTF-8.
//
// A plain value; the caller nests begin and end calls properly and puts a key before each value
// inside an object. Nothing throws but allocation.
#include <string>
#include <string_view>
#include <vector>

class VXSimJsonWriter {
 public:
  VXSimJsonWriter& beginObject();
  VXSimJsonWriter& endObject();
  VXSimJsonWriter& beginArray();
  VXSimJsonWriter& endArray();
  VXSimJsonWriter& key(std::string_view name);
  VXSimJsonWriter& string(std::string_view text);
  VXSimJsonWriter& boolean(bool value);

  const std::string& text() const { return out_; }

 private:
  // A comma before every value of a container but its first; none right after a key.
  void beforeValue();
  void open(char bracket);
  void close(char bracket);

  std::string out_;
  std::vector<bool> empty_;  // per open container: nothing in it yet
  bool afterKey_ = false;
};

// The text as a JSON string literal, quotes included.
std::string vxSimJsonQuote(std::string_view text);

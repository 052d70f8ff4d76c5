#include "foundation/charset.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>

namespace {

constexpr char16_t kNoMapping = 0xFFFF;  // a byte-table entry for a byte without a character
constexpr char16_t kReplacementUnit = 0xFFFD;
constexpr char kReplacementByte = '?';

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool isSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

[[noreturn]] void throwUnknownId(uint32_t id) {
  throw AFCCharsetException("Unknown character set id " + std::to_string(id));
}

// ---- Names ----

char foldCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Orders names ignoring ASCII letter case; transparent so that lookups need no copy.
struct NameLess {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char x, char y) { return foldCase(x) < foldCase(y); });
  }
};

using NameMap = std::map<std::string, uint32_t, NameLess>;

// ANSI_X3.4-1968 is the formal name of US-ASCII, yet both ANSI_X3 names deliberately select
// ISO 8859-1 (a superset, so ASCII text reads the same). Keep it that way.
const NameMap& nameMap() {
  static const NameMap names = {
      {"UTF-8", AFC_CHARSET_UTF8},
      {"US-ASCII", AFC_CHARSET_US_ASCII},
      {"US_ASCII", AFC_CHARSET_US_ASCII},
      {"ASCII", AFC_CHARSET_US_ASCII},
      {"ISO8859-1", AFC_CHARSET_ISO8859_1},
      {"ISO-8859-1", AFC_CHARSET_ISO8859_1},
      {"ANSI_X3.4-1968", AFC_CHARSET_ISO8859_1},
      {"ANSI_X3.110-1983", AFC_CHARSET_ISO8859_1},
      {"ISO8859-2", AFC_CHARSET_ISO8859_2},
      {"ISO-8859-2", AFC_CHARSET_ISO8859_2},
      {"ISO8859-3", AFC_CHARSET_ISO8859_3},
      {"ISO-8859-3", AFC_CHARSET_ISO8859_3},
      {"ISO8859-4", AFC_CHARSET_ISO8859_4},
      {"ISO-8859-4", AFC_CHARSET_ISO8859_4},
      {"ISO8859-5", AFC_CHARSET_ISO8859_5},
      {"ISO-8859-5", AFC_CHARSET_ISO8859_5},
      {"ISO8859-6", AFC_CHARSET_ISO8859_6},
      {"ISO-8859-6", AFC_CHARSET_ISO8859_6},
      {"ISO8859-7", AFC_CHARSET_ISO8859_7},
      {"ISO-8859-7", AFC_CHARSET_ISO8859_7},
      {"ISO8859-8", AFC_CHARSET_ISO8859_8},
      {"ISO-8859-8", AFC_CHARSET_ISO8859_8},
      {"ISO8859-9", AFC_CHARSET_ISO8859_9},
      {"ISO-8859-9", AFC_CHARSET_ISO8859_9},
      {"ISO8859-10", AFC_CHARSET_ISO8859_10},
      {"ISO-8859-10", AFC_CHARSET_ISO8859_10},
      {"ISO8859-13", AFC_CHARSET_ISO8859_13},
      {"ISO-8859-13", AFC_CHARSET_ISO8859_13},
      {"ISO8859-14", AFC_CHARSET_ISO8859_14},
      {"ISO-8859-14", AFC_CHARSET_ISO8859_14},
      {"ISO8859-15", AFC_CHARSET_ISO8859_15},
      {"ISO-8859-15", AFC_CHARSET_ISO8859_15},
      {"CP1250", AFC_CHARSET_CP1250},
      {"windows-1250", AFC_CHARSET_CP1250},
      {"CP1252", AFC_CHARSET_CP1252},
      {"windows-1252", AFC_CHARSET_CP1252},
      {"CP850", AFC_CHARSET_CP850},
      {"CP852", AFC_CHARSET_CP852},
      {"PCLATIN2", AFC_CHARSET_CP852},
      {"MACCE", AFC_CHARSET_MACCE},
      {"MACL2", AFC_CHARSET_MACL2},
      {"CP1251", AFC_CHARSET_CP1251},
      {"windows-1251", AFC_CHARSET_CP1251},
      {"UTF-16BE", AFC_CHARSET_UTF16BE},
      {"UTF-16LE", AFC_CHARSET_UTF16LE},
  };
  return names;
}

// The set id 0 stands for, asked of the platform once.
uint32_t resolve(uint32_t id) {
  if (id != AFC_CHARSET_DEFAULT) return id;
  static const uint32_t defaultId = AFCCharset::defaultId();
  return defaultId;
}

// ---- ASCII fast path ----
// Every set we convert agrees with ASCII on 0x00..0x7F (the table generator checks it), so a
// leading ASCII run is copied unit for byte, eight at a time while no high bit is set, then four.

size_t widenAscii(std::string_view text, char16_t* out) {
  const char* in = text.data();
  const size_t n = text.size();
  size_t i = 0;
  for (; i + 8 <= n; i += 8) {
    // Widening from a local copy lets the compiler see that out cannot alias the input.
    unsigned char chunk[8];
    uint64_t word;
    std::memcpy(chunk, in + i, sizeof chunk);
    std::memcpy(&word, chunk, sizeof word);
    if (word & 0x8080808080808080u) break;
    for (size_t k = 0; k < 8; ++k) out[i + k] = chunk[k];
  }
  if (i + 4 <= n) {
    unsigned char chunk[4];
    uint32_t word;
    std::memcpy(chunk, in + i, sizeof chunk);
    std::memcpy(&word, chunk, sizeof word);
    if ((word & 0x80808080u) == 0) {
      for (size_t k = 0; k < 4; ++k) out[i + k] = chunk[k];
      i += 4;
    }
  }
  for (; i < n && static_cast<unsigned char>(in[i]) < 0x80; ++i) out[i] = in[i];
  return i;
}

size_t narrowAscii(std::u16string_view units, char* out) {
  const char16_t* in = units.data();
  const size_t n = units.size();
  size_t i = 0;
  for (; i + 8 <= n; i += 8) {
    char16_t chunk[8];
    uint64_t words[2];
    std::memcpy(chunk, in + i, sizeof chunk);
    std::memcpy(words, chunk, sizeof words);
    if ((words[0] | words[1]) & 0xFF80FF80FF80FF80u) break;
    for (size_t k = 0; k < 8; ++k) out[i + k] = static_cast<char>(chunk[k]);
  }
  for (; i < n && in[i] < 0x80; ++i) out[i] = static_cast<char>(in[i]);
  return i;
}

// ---- UTF-8 ----

// What a lead byte promises: the sequence length and the range its second byte must be in
// (narrowed for E0, ED, F0 and F4 so that overlong forms, surrogates and code points past
// U+10FFFF are ill-formed). Length 0 for a byte that cannot start a sequence.
struct Utf8Lead {
  unsigned length;
  unsigned char secondLow;
  unsigned char secondHigh;
};

Utf8Lead utf8Lead(unsigned char byte) {
  if (byte < 0xC2) return {0, 0, 0};
  if (byte < 0xE0) return {2, 0x80, 0xBF};
  if (byte == 0xE0) return {3, 0xA0, 0xBF};
  if (byte == 0xED) return {3, 0x80, 0x9F};
  if (byte < 0xF0) return {3, 0x80, 0xBF};
  if (byte == 0xF0) return {4, 0x90, 0xBF};
  if (byte < 0xF4) return {4, 0x80, 0xBF};
  if (byte == 0xF4) return {4, 0x80, 0x8F};
  return {0, 0, 0};
}

void putCodePoint(char32_t cp, char16_t* out, size_t& w) {
  if (cp < 0x10000) {
    out[w++] = static_cast<char16_t>(cp);
    return;
  }
  cp -= 0x10000;
  out[w++] = static_cast<char16_t>(0xD800 + (cp >> 10));
  out[w++] = static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
}

// Decodes the sequence starting at in[i] (not ASCII) into out[w...]; returns where the next one
// starts. An ill-formed sequence yields one U+FFFD for its longest well-formed prefix, and the
// byte that broke it starts the next sequence.
size_t decodeUtf8Sequence(const unsigned char* in, size_t n, size_t i, char16_t* out, size_t& w) {
  const Utf8Lead lead = utf8Lead(in[i]);
  if (lead.length == 0) {
    out[w++] = kReplacementUnit;
    return i + 1;
  }
  char32_t cp = in[i] & (0x7Fu >> lead.length);
  unsigned char low = lead.secondLow;
  unsigned char high = lead.secondHigh;
  const size_t end = i + lead.length;
  for (size_t j = i + 1; j < end; ++j) {
    if (j >= n || in[j] < low || in[j] > high) {
      out[w++] = kReplacementUnit;
      return j;
    }
    cp = (cp << 6) | (in[j] & 0x3Fu);
    low = 0x80;
    high = 0xBF;
  }
  putCodePoint(cp, out, w);
  return end;
}

// No sequence yields more units than it has bytes, so out never needs more than text.size().
void decodeUtf8(std::string_view text, std::u16string& out) {
  const auto* in = reinterpret_cast<const unsigned char*>(text.data());
  const size_t n = text.size();
  out.resize(n);
  char16_t* o = out.data();
  size_t i = widenAscii(text, o);
  size_t w = i;
  while (i < n) {
    if (in[i] < 0x80) {
      o[w++] = in[i++];
    } else {
      i = decodeUtf8Sequence(in, n, i, o, w);
    }
  }
  out.resize(w);
}

void putUtf8(char32_t cp, char* out, size_t& w) {
  if (cp < 0x80) {
    out[w++] = static_cast<char>(cp);
  } else if (cp < 0x800) {
    out[w++] = static_cast<char>(0xC0 | (cp >> 6));
    out[w++] = static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out[w++] = static_cast<char>(0xE0 | (cp >> 12));
    out[w++] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out[w++] = static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out[w++] = static_cast<char>(0xF0 | (cp >> 18));
    out[w++] = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out[w++] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out[w++] = static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// A unit takes at most three bytes (a pair takes four for two units).
void encodeUtf8(std::u16string_view units, std::string& out) {
  const size_t n = units.size();
  out.resize(n);
  size_t i = narrowAscii(units, out.data());
  if (i == n) return;
  out.resize(i + 3 * (n - i));
  char* o = out.data();
  size_t w = i;
  while (i < n) {
    char32_t cp = units[i++];
    if (isHighSurrogate(cp) && i < n && isLowSurrogate(units[i])) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (units[i++] - 0xDC00);
    } else if (isSurrogate(cp)) {
      cp = kReplacementUnit;
    }
    putUtf8(cp, o, w);
  }
  out.resize(w);
}

// ---- UTF-16 byte streams ----

void decodeUtf16Bytes(std::string_view text, bool bigEndian, std::u16string& out) {
  const size_t count = text.size() / 2;
  out.resize(count + text.size() % 2);
  const size_t highByte = bigEndian ? 0 : 1;
  for (size_t k = 0; k < count; ++k) {
    const auto high = static_cast<unsigned char>(text[2 * k + highByte]);
    const auto low = static_cast<unsigned char>(text[2 * k + 1 - highByte]);
    out[k] = static_cast<char16_t>(high << 8 | low);
  }
  if (text.size() % 2 != 0) out[count] = kReplacementUnit;  // half a unit is no character
}

void encodeUtf16Bytes(std::u16string_view units, bool bigEndian, std::string& out) {
  out.resize(2 * units.size());
  const size_t highByte = bigEndian ? 0 : 1;
  for (size_t k = 0; k < units.size(); ++k) {
    out[2 * k + highByte] = static_cast<char>(units[k] >> 8);
    out[2 * k + 1 - highByte] = static_cast<char>(units[k] & 0xFF);
  }
}

// ---- Single-byte sets ----

void decodeSingleByte(const char16_t* table, std::string_view text, std::u16string& out) {
  const size_t n = text.size();
  out.resize(n);
  char16_t* o = out.data();
  for (size_t i = widenAscii(text, o); i < n; ++i) {
    const char16_t unit = table[static_cast<unsigned char>(text[i])];
    o[i] = unit == kNoMapping ? kReplacementUnit : unit;
  }
}

// The inverse of one byte table above 0x7F: its mapped units sorted, for a binary search.
class ReverseTable {
public:
  void build(const char16_t* table) {
    for (unsigned byte = 0x80; byte < 256; ++byte) {
      if (table[byte] != kNoMapping) {
        entries_[count_++] = {table[byte], static_cast<unsigned char>(byte)};
      }
    }
    std::sort(entries_.begin(), entries_.begin() + count_,
              [](const Entry& a, const Entry& b) { return a.unit < b.unit; });
  }

  // The byte of unit, or -1 when the set has none.
  int find(char16_t unit) const {
    const Entry* end = entries_.data() + count_;
    const Entry* at = std::lower_bound(entries_.data(), end, unit,
                                       [](const Entry& e, char16_t u) { return e.unit < u; });
    return at != end && at->unit == unit ? at->byte : -1;
  }

private:
  struct Entry {
    char16_t unit;
    unsigned char byte;
  };
  std::array<Entry, 128> entries_{};
  size_t count_ = 0;
};

// The inverse of every byte table, indexed by id.
class ReverseTables {
public:
  using TableLookup = const char16_t* (*)(uint32_t);
  explicit ReverseTables(TableLookup lookup) {
    for (uint32_t id = 0; id < tables_.size(); ++id) {
      if (const char16_t* table = lookup(id)) tables_[id].build(table);
    }
  }
  const ReverseTable& operator[](uint32_t id) const { return tables_[id]; }

private:
  std::array<ReverseTable, AFC_CHARSET_UTF16LE + 1> tables_;
};

void encodeSingleByte(const ReverseTable& reverse, std::u16string_view units, std::string& out) {
  const size_t n = units.size();
  out.resize(n);
  char* o = out.data();
  size_t i = narrowAscii(units, o);
  size_t w = i;
  while (i < n) {
    const char16_t unit = units[i++];
    const int byte = unit < 0x80 ? unit : reverse.find(unit);
    if (byte >= 0) {
      o[w++] = static_cast<char>(byte);
      continue;
    }
    if (isHighSurrogate(unit) && i < n && isLowSurrogate(units[i])) ++i;  // one character
    o[w++] = kReplacementByte;
  }
  out.resize(w);
}

}  // namespace

std::optional<uint32_t> AFCCharset::idForName(std::string_view name) {
  const NameMap& names = nameMap();
  const auto found = names.find(name);
  if (found == names.end()) return std::nullopt;
  return found->second;
}

void AFCCharset::toUtf16(uint32_t id, std::string_view text, std::u16string& out) {
  id = resolve(id);
  switch (id) {
    case AFC_CHARSET_UTF8:
      return decodeUtf8(text, out);
    case AFC_CHARSET_UTF16BE:
      return decodeUtf16Bytes(text, true, out);
    case AFC_CHARSET_UTF16LE:
      return decodeUtf16Bytes(text, false, out);
    default: {
      const char16_t* table = byteTable(id);
      if (table == nullptr) throwUnknownId(id);
      return decodeSingleByte(table, text, out);
    }
  }
}

void AFCCharset::fromUtf16(uint32_t id, std::u16string_view units, std::string& out) {
  id = resolve(id);
  switch (id) {
    case AFC_CHARSET_UTF8:
      return encodeUtf8(units, out);
    case AFC_CHARSET_UTF16BE:
      return encodeUtf16Bytes(units, true, out);
    case AFC_CHARSET_UTF16LE:
      return encodeUtf16Bytes(units, false, out);
    default: {
      if (byteTable(id) == nullptr) throwUnknownId(id);
      static const ReverseTables reverse(&AFCCharset::byteTable);
      return encodeSingleByte(reverse[id], units, out);
    }
  }
}

#include "foundation/charset.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "foundation/charset_tables.h"

// Replacement rules: a byte without a mapping, a malformed UTF-8 sequence, an odd last byte of
// a UTF-16 byte stream and an unpaired surrogate all become U+FFFD; a character that a
// single-byte set cannot represent becomes '?'.
namespace {
constexpr char16_t kReplacement = 0xFFFD;
constexpr char kUnrepresentable = '?';

// ---- names ----

struct NoCase {
  bool operator()(std::string_view a, std::string_view b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
      return std::tolower(static_cast<unsigned char>(x)) < std::tolower(static_cast<unsigned char>(y));
    });
  }
};

const std::map<std::string_view, uint32_t, NoCase>& names() {
  // "ANSI_X3.4-1968" and "ANSI_X3.110-1983" select ISO 8859-1 on purpose.
  static const std::map<std::string_view, uint32_t, NoCase> table = {
      {"UTF-8", 2},         {"US-ASCII", 3},        {"US_ASCII", 3},        {"ASCII", 3},
      {"ISO8859-1", 4},     {"ISO-8859-1", 4},      {"ANSI_X3.4-1968", 4},  {"ANSI_X3.110-1983", 4},
      {"ISO8859-2", 5},     {"ISO-8859-2", 5},      {"ISO8859-3", 6},       {"ISO-8859-3", 6},
      {"ISO8859-4", 7},     {"ISO-8859-4", 7},      {"ISO8859-5", 8},       {"ISO-8859-5", 8},
      {"ISO8859-6", 9},     {"ISO-8859-6", 9},      {"ISO8859-7", 10},      {"ISO-8859-7", 10},
      {"ISO8859-8", 11},    {"ISO-8859-8", 11},     {"ISO8859-9", 12},      {"ISO-8859-9", 12},
      {"ISO8859-10", 13},   {"ISO-8859-10", 13},    {"ISO8859-13", 14},     {"ISO-8859-13", 14},
      {"ISO8859-14", 15},   {"ISO-8859-14", 15},    {"ISO8859-15", 16},     {"ISO-8859-15", 16},
      {"CP1250", 17},       {"windows-1250", 17},   {"CP1252", 18},         {"windows-1252", 18},
      {"CP850", 19},        {"CP852", 20},          {"PCLATIN2", 20},       {"MACCE", 21},
      {"MACL2", 22},        {"CP1251", 23},         {"windows-1251", 23},   {"UTF-16BE", 24},
      {"UTF-16LE", 25},
  };
  return table;
}

// ---- single-byte sets ----

// The inverse of one table: (unit, byte) pairs sorted by unit, built on first use.
class ReverseTable {
public:
  explicit ReverseTable(const char16_t* table) {
    for (int byte = 0x80; byte < 256; ++byte) {
      if (table[byte] != kAFCUnmappedByte) pairs_.push_back({table[byte], static_cast<uint8_t>(byte)});
    }
    std::sort(pairs_.begin(), pairs_.end(), [](auto& a, auto& b) { return a.unit < b.unit; });
  }
  char toByte(char32_t cp) const {
    if (cp < 0x80) return static_cast<char>(cp);
    auto it = std::lower_bound(pairs_.begin(), pairs_.end(), cp,
                               [](const Pair& p, char32_t c) { return p.unit < c; });
    return (it != pairs_.end() && it->unit == cp) ? static_cast<char>(it->byte) : kUnrepresentable;
  }

private:
  struct Pair {
    char16_t unit;
    uint8_t byte;
  };
  std::vector<Pair> pairs_;
};

const ReverseTable& reverseTable(uint32_t id, const char16_t* table) {
  static std::mutex lock;
  static std::array<std::unique_ptr<ReverseTable>, 32> built;
  std::lock_guard guard(lock);
  if (!built[id]) built[id] = std::make_unique<ReverseTable>(table);
  return *built[id];
}

// ---- UTF-8 and UTF-16 ----

void appendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

void appendUtf16(std::u16string& out, char32_t cp) {
  if (cp < 0x10000) {
    out += static_cast<char16_t>(cp);
  } else {
    cp -= 0x10000;
    out += static_cast<char16_t>(0xD800 + (cp >> 10));
    out += static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
  }
}

// Decodes one sequence at text[i] and advances i past it (one byte for a bad lead byte).
char32_t decodeUtf8(std::string_view text, std::size_t& i) {
  const auto lead = static_cast<unsigned char>(text[i++]);
  if (lead < 0x80) return lead;
  int extra;
  char32_t cp;
  char32_t minimum;
  if ((lead & 0xE0) == 0xC0) {
    extra = 1, cp = lead & 0x1F, minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    extra = 2, cp = lead & 0x0F, minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    extra = 3, cp = lead & 0x07, minimum = 0x10000;
  } else {
    return kReplacement;
  }
  for (int k = 0; k < extra; ++k) {
    if (i >= text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
      return kReplacement;
    }
    cp = (cp << 6) | (static_cast<unsigned char>(text[i++]) & 0x3F);
  }
  if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return kReplacement;
  return cp;
}

// Decodes the code point at units[i] (a surrogate pair or one unit) and advances i.
char32_t decodeUtf16(std::u16string_view units, std::size_t& i) {
  char32_t cp = units[i++];
  if (cp >= 0xD800 && cp <= 0xDBFF && i < units.size() && units[i] >= 0xDC00 && units[i] <= 0xDFFF) {
    return 0x10000 + ((cp - 0xD800) << 10) + (units[i++] - 0xDC00);
  }
  return (cp >= 0xD800 && cp <= 0xDFFF) ? kReplacement : cp;
}

uint32_t resolve(uint32_t id) {
  if (id == AFC_CHARSET_DEFAULT) return AFCCharset::defaultId();
  if (id == AFC_CHARSET_UTF8 || id == AFC_CHARSET_UTF16BE || id == AFC_CHARSET_UTF16LE ||
      afcSingleByteTable(id) != nullptr) {
    return id;
  }
  throw AFCCharsetException("Unknown character set id " + std::to_string(id));
}

bool isAscii(std::string_view text) {
  for (char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}
}  // namespace

std::optional<uint32_t> AFCCharset::idForName(std::string_view name) {
  auto it = names().find(name);
  if (it == names().end()) return std::nullopt;
  return it->second;
}

void AFCCharset::toUtf16(uint32_t id, std::string_view text, std::u16string& out) {
  const uint32_t set = resolve(id);
  out.clear();
  if (set != AFC_CHARSET_UTF16BE && set != AFC_CHARSET_UTF16LE && isAscii(text)) {
    out.assign(text.begin(), text.end());
    return;
  }
  out.reserve(text.size());
  if (set == AFC_CHARSET_UTF8) {
    for (std::size_t i = 0; i < text.size();) appendUtf16(out, decodeUtf8(text, i));
  } else if (set == AFC_CHARSET_UTF16BE || set == AFC_CHARSET_UTF16LE) {
    const int high = set == AFC_CHARSET_UTF16BE ? 0 : 1;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
      const auto a = static_cast<unsigned char>(text[i + high]);
      const auto b = static_cast<unsigned char>(text[i + 1 - high]);
      out += static_cast<char16_t>((a << 8) | b);
    }
    if (text.size() % 2 != 0) out += kReplacement;
  } else {
    const char16_t* table = afcSingleByteTable(set);
    for (char c : text) {
      const char16_t unit = table[static_cast<unsigned char>(c)];
      out += unit == kAFCUnmappedByte ? kReplacement : unit;
    }
  }
}

void AFCCharset::fromUtf16(uint32_t id, std::u16string_view units, std::string& out) {
  const uint32_t set = resolve(id);
  out.clear();
  out.reserve(units.size());
  if (set == AFC_CHARSET_UTF16BE || set == AFC_CHARSET_UTF16LE) {
    const bool bigEndian = set == AFC_CHARSET_UTF16BE;
    for (char16_t unit : units) {
      const auto high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
      out += bigEndian ? high : low;
      out += bigEndian ? low : high;
    }
    return;
  }
  const ReverseTable* reverse =
      set == AFC_CHARSET_UTF8 ? nullptr : &reverseTable(set, afcSingleByteTable(set));
  for (std::size_t i = 0; i < units.size();) {
    if (units[i] < 0x80) {
      out += static_cast<char>(units[i++]);
      continue;
    }
    const char32_t cp = decodeUtf16(units, i);
    if (reverse == nullptr) {
      appendUtf8(out, cp);
    } else {
      out += reverse->toByte(cp);
    }
  }
}

#include "foundation/charset.h"

// UTF-8 and ASCII conversion. Malformed UTF-8 gives U+FFFD per bad sequence; an unpaired
// surrogate is written as U+FFFD.
namespace {
constexpr char16_t kReplacement = 0xFFFD;

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

// Decodes one sequence at text[i]; advances i past it (one byte for a bad lead byte).
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

uint32_t resolve(uint32_t id) {
  if (id == AFC_CHARSET_DEFAULT) id = AFCCharset::defaultId();
  if (id != AFC_CHARSET_UTF8 && id != AFC_CHARSET_US_ASCII) {
    throw AFCCharsetException("Character set id " + std::to_string(id) + " is not available");
  }
  return id;
}
}  // namespace

std::optional<uint32_t> AFCCharset::idForName(std::string_view name) {
  if (name == "UTF-8") return AFC_CHARSET_UTF8;
  if (name == "US-ASCII" || name == "US_ASCII" || name == "ASCII") return AFC_CHARSET_US_ASCII;
  return std::nullopt;
}

uint32_t AFCCharset::defaultId() { return AFC_CHARSET_UTF8; }

void AFCCharset::toUtf16(uint32_t id, std::string_view text, std::u16string& out) {
  const uint32_t set = resolve(id);
  out.clear();
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (set == AFC_CHARSET_US_ASCII) {
      const auto byte = static_cast<unsigned char>(text[i++]);
      out += byte < 0x80 ? static_cast<char16_t>(byte) : kReplacement;
    } else {
      appendUtf16(out, decodeUtf8(text, i));
    }
  }
}

void AFCCharset::fromUtf16(uint32_t id, std::u16string_view units, std::string& out) {
  const uint32_t set = resolve(id);
  out.clear();
  out.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t cp = units[i];
    if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < units.size() && units[i + 1] >= 0xDC00 &&
        units[i + 1] <= 0xDFFF) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (units[++i] - 0xDC00);
    } else if (cp >= 0xD800 && cp <= 0xDFFF) {
      cp = kReplacement;
    }
    if (set == AFC_CHARSET_US_ASCII) {
      out += cp < 0x80 ? static_cast<char>(cp) : '?';
    } else {
      appendUtf8(out, cp);
    }
  }
}

#pragma once
// Conversion between 8-bit text in a named or numbered character set and UTF-16 code units.
// Id 0 is the process default (UTF-8 on POSIX; the ANSI code page 1250, 1251 or 1252 on
// Windows, else 1252). Id 1 names no set. Conversions are thread safe and never throw for bad
// bytes; only an unknown id throws AFCCharsetException ("Unknown character set id 99").
//
// What cannot be converted is replaced, never dropped silently:
// - a byte that its single-byte set does not define becomes U+FFFD;
// - malformed UTF-8 becomes one U+FFFD per maximal ill-formed subsequence (as Unicode
//   recommends), and truncated input is never read past its end;
// - the lone last byte of a UTF-16BE/LE stream with an odd length becomes U+FFFD;
// - a character that a single-byte set cannot represent becomes '?', one '?' for a whole
//   surrogate pair;
// - an unpaired surrogate becomes U+FFFD (EF BF BD) in UTF-8. UTF-16BE/LE bytes carry the units
//   as they are, unpaired surrogates included, in both directions.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/exception.h"

enum AFCCharsetId : uint32_t {
  AFC_CHARSET_DEFAULT = 0,
  AFC_CHARSET_UTF8 = 2,
  AFC_CHARSET_US_ASCII = 3,
  AFC_CHARSET_ISO8859_1 = 4,
  AFC_CHARSET_ISO8859_2 = 5,
  AFC_CHARSET_ISO8859_3 = 6,
  AFC_CHARSET_ISO8859_4 = 7,
  AFC_CHARSET_ISO8859_5 = 8,
  AFC_CHARSET_ISO8859_6 = 9,
  AFC_CHARSET_ISO8859_7 = 10,
  AFC_CHARSET_ISO8859_8 = 11,
  AFC_CHARSET_ISO8859_9 = 12,
  AFC_CHARSET_ISO8859_10 = 13,
  AFC_CHARSET_ISO8859_13 = 14,
  AFC_CHARSET_ISO8859_14 = 15,
  AFC_CHARSET_ISO8859_15 = 16,
  AFC_CHARSET_CP1250 = 17,
  AFC_CHARSET_CP1252 = 18,
  AFC_CHARSET_CP850 = 19,
  AFC_CHARSET_CP852 = 20,
  AFC_CHARSET_MACCE = 21,
  AFC_CHARSET_MACL2 = 22,
  AFC_CHARSET_CP1251 = 23,
  AFC_CHARSET_UTF16BE = 24,
  AFC_CHARSET_UTF16LE = 25,
};

// An id that names no character set.
AFC_DECLARE_EXCEPTION(AFCCharsetException, AFCException);

class AFCCharset {
public:
  // The id a name selects; nullopt for an unknown name. ASCII letter case is ignored
  // ("utf-8" and "Windows-1252" work), nothing else is: no trimming, no aliases beyond the table.
  static std::optional<uint32_t> idForName(std::string_view name);
  // What id 0 stands for on this platform.
  static uint32_t defaultId();
  // 8-bit text in set id to UTF-16 units (out is replaced). For ids 24 and 25 the text is the
  // UTF-16 byte stream in that byte order.
  static void toUtf16(uint32_t id, std::string_view text, std::u16string& out);
  // UTF-16 units to 8-bit text in set id (out is replaced).
  static void fromUtf16(uint32_t id, std::u16string_view units, std::string& out);

  static std::u16string toUtf16(uint32_t id, std::string_view text) {
    std::u16string out;
    toUtf16(id, text, out);
    return out;
  }
  static std::string fromUtf16(uint32_t id, std::u16string_view units) {
    std::string out;
    fromUtf16(id, units, out);
    return out;
  }

private:
  // The 256-entry byte-to-unit table of a single-byte set (ids 3 to 23), 0xFFFF marking a byte
  // without a mapping; nullptr for any other id. Generated into charset_tables.cpp.
  static const char16_t* byteTable(uint32_t id);
};

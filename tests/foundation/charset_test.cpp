#include "foundation/charset.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/failure_text.h"

namespace {

const std::vector<uint32_t> kSingleByteIds = {
    AFC_CHARSET_US_ASCII,   AFC_CHARSET_ISO8859_1,  AFC_CHARSET_ISO8859_2,  AFC_CHARSET_ISO8859_3,
    AFC_CHARSET_ISO8859_4,  AFC_CHARSET_ISO8859_5,  AFC_CHARSET_ISO8859_6,  AFC_CHARSET_ISO8859_7,
    AFC_CHARSET_ISO8859_8,  AFC_CHARSET_ISO8859_9,  AFC_CHARSET_ISO8859_10, AFC_CHARSET_ISO8859_13,
    AFC_CHARSET_ISO8859_14, AFC_CHARSET_ISO8859_15, AFC_CHARSET_CP1250,     AFC_CHARSET_CP1252,
    AFC_CHARSET_CP850,      AFC_CHARSET_CP852,      AFC_CHARSET_MACCE,      AFC_CHARSET_MACL2,
    AFC_CHARSET_CP1251};

char16_t unitOf(uint32_t id, unsigned char byte) {
  const std::u16string units = AFCCharset::toUtf16(id, std::string(1, static_cast<char>(byte)));
  return units.size() == 1 ? units[0] : u'\0';
}

}  // namespace

TEST(CharsetNames, SelectEveryIdOfTheTable) {
  const std::vector<std::pair<const char*, uint32_t>> names = {
      {"UTF-8", 2},         {"US-ASCII", 3},      {"US_ASCII", 3},    {"ASCII", 3},
      {"ISO8859-1", 4},     {"ISO-8859-1", 4},    {"ISO8859-2", 5},   {"ISO-8859-2", 5},
      {"ISO8859-3", 6},     {"ISO-8859-3", 6},    {"ISO8859-4", 7},   {"ISO-8859-4", 7},
      {"ISO8859-5", 8},     {"ISO-8859-5", 8},    {"ISO8859-6", 9},   {"ISO-8859-6", 9},
      {"ISO8859-7", 10},    {"ISO-8859-7", 10},   {"ISO8859-8", 11},  {"ISO-8859-8", 11},
      {"ISO8859-9", 12},    {"ISO-8859-9", 12},   {"ISO8859-10", 13}, {"ISO-8859-10", 13},
      {"ISO8859-13", 14},   {"ISO-8859-13", 14},  {"ISO8859-14", 15}, {"ISO-8859-14", 15},
      {"ISO8859-15", 16},   {"ISO-8859-15", 16},  {"CP1250", 17},     {"windows-1250", 17},
      {"CP1252", 18},       {"windows-1252", 18}, {"CP850", 19},      {"CP852", 20},
      {"PCLATIN2", 20},     {"MACCE", 21},        {"MACL2", 22},      {"CP1251", 23},
      {"windows-1251", 23}, {"UTF-16BE", 24},     {"UTF-16LE", 25}};
  for (const auto& [name, id] : names) EXPECT_EQ(AFCCharset::idForName(name), id) << name;
}

// ANSI_X3 names select Latin-1, not ASCII; only the letter case may differ from the table.
TEST(CharsetNames, AcceptOtherLetterCasesAndNothingElse) {
  const std::vector<std::pair<const char*, std::optional<uint32_t>>> names = {
      {"ANSI_X3.4-1968", AFC_CHARSET_ISO8859_1},
      {"ANSI_X3.110-1983", AFC_CHARSET_ISO8859_1},
      {"utf-8", AFC_CHARSET_UTF8},
      {"WINDOWS-1252", AFC_CHARSET_CP1252},
      {"MacCE", AFC_CHARSET_MACCE},
      {"utf8", std::nullopt},
      {" UTF-8", std::nullopt},
      {"KOI8-R", std::nullopt},
      {"", std::nullopt}};
  for (const auto& [name, id] : names) EXPECT_EQ(AFCCharset::idForName(name), id) << name;
}

TEST(CharsetIds, UnknownIdThrowsWithItsNumber) {
  std::u16string units = u"kept";
  EXPECT_EQ(failureOf<AFCCharsetException>([&] { AFCCharset::toUtf16(99, "abc", units); }),
            "Unknown character set id 99");
  EXPECT_EQ(units, u"kept");
  EXPECT_THROW(AFCCharset::fromUtf16(1, u"abc"), AFCCharsetException);
  EXPECT_THROW(AFCCharset::fromUtf16(26, u"abc"), AFCException);
}

TEST(CharsetIds, DefaultIsAConvertibleSetAndIdZeroUsesIt) {
  const uint32_t id = AFCCharset::defaultId();
#ifdef _WIN32
  EXPECT_TRUE(id == AFC_CHARSET_CP1250 || id == AFC_CHARSET_CP1251 || id == AFC_CHARSET_CP1252);
#else
  EXPECT_EQ(id, AFC_CHARSET_UTF8);
#endif
  const std::u16string text = u"Zo\u00EB \u00C9t\u00E9";
  EXPECT_EQ(AFCCharset::fromUtf16(0, text), AFCCharset::fromUtf16(id, text));
  EXPECT_EQ(AFCCharset::toUtf16(0, AFCCharset::fromUtf16(id, text)), text);
}

TEST(SingleByteCharsets, RoundTripEveryMappedByte) {
  for (uint32_t id : kSingleByteIds) {
    for (unsigned byte = 0; byte < 256; ++byte) {
      const char16_t unit = unitOf(id, static_cast<unsigned char>(byte));
      if (byte < 0x80) {
        EXPECT_EQ(unit, static_cast<char16_t>(byte)) << "id " << id;
      }
      if (unit == 0xFFFD) continue;
      EXPECT_EQ(AFCCharset::fromUtf16(id, std::u16string(1, unit)),
                std::string(1, static_cast<char>(byte)))
          << "id " << id << " byte " << byte;
    }
  }
}

// A byte without a mapping becomes the replacement character.
TEST(SingleByteCharsets, MapWellKnownBytes) {
  const struct {
    uint32_t id;
    unsigned char byte;
    char16_t unit;
  } cases[] = {
      {AFC_CHARSET_CP1252, 0x80, u'\u20AC'},    {AFC_CHARSET_ISO8859_15, 0xA4, u'\u20AC'},
      {AFC_CHARSET_ISO8859_1, 0xA4, u'\u00A4'}, {AFC_CHARSET_CP850, 0x9B, u'\u00F8'},
      {AFC_CHARSET_CP1251, 0xC0, u'\u0410'},    {AFC_CHARSET_ISO8859_5, 0xB0, u'\u0410'},
      {AFC_CHARSET_ISO8859_2, 0xB1, u'\u0105'}, {AFC_CHARSET_CP852, 0xA5, u'\u0105'},
      {AFC_CHARSET_CP1250, 0x8A, u'\u0160'},    {AFC_CHARSET_ISO8859_7, 0xC1, u'\u0391'},
      {AFC_CHARSET_ISO8859_8, 0xE0, u'\u05D0'}, {AFC_CHARSET_ISO8859_6, 0xC7, u'\u0627'},
      {AFC_CHARSET_ISO8859_9, 0xD0, u'\u011E'}, {AFC_CHARSET_ISO8859_14, 0xA1, u'\u1E02'},
      {AFC_CHARSET_MACCE, 0x80, u'\u00C4'},     {AFC_CHARSET_US_ASCII, 0x80, u'\uFFFD'},
      {AFC_CHARSET_US_ASCII, 0xFF, u'\uFFFD'},  {AFC_CHARSET_CP1252, 0x81, u'\uFFFD'},
      {AFC_CHARSET_ISO8859_3, 0xA5, u'\uFFFD'}, {AFC_CHARSET_ISO8859_7, 0xFF, u'\uFFFD'},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(unitOf(c.id, c.byte), c.unit) << "id " << c.id << " byte " << int{c.byte};
  }
}

TEST(SingleByteCharsets, MacLatin2SharesTheCentralEuropeanTable) {
  std::string all;
  for (unsigned byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(AFCCharset::toUtf16(AFC_CHARSET_MACL2, all),
            AFCCharset::toUtf16(AFC_CHARSET_MACCE, all));
}

TEST(SingleByteCharsets, UnrepresentableCharacterBecomesQuestionMark) {
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_US_ASCII, u"1\u20AC"), "1?");
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_ISO8859_1, u"\u20AC\u00E9"), "?\xE9");
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_CP1252, u"a\U0001F600b"), "a?b");
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_CP1252, u"\xDC00\xD800"), "??");
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_CP1252, u"\uFFFD\uFFFF"), "??");
}

TEST(Utf8, RoundTripsEverySequenceLength) {
  const std::string bytes = "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF";
  const std::u16string units = u"A\u00E9\u20AC\U0001F600\U0010FFFF";
  EXPECT_EQ(AFCCharset::toUtf16(AFC_CHARSET_UTF8, bytes), units);
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_UTF8, units), bytes);
}

TEST(Utf8, MalformedSequencesBecomeOneReplacementEach) {
  const std::vector<std::pair<std::string, std::u16string>> cases = {
      {"\x80", u"\uFFFD"},                                // stray continuation byte
      {"a\xE2\x82", u"a\uFFFD"},                          // truncated at the end
      {"\xE2\x82\x41", u"\uFFFD\x41"},                    // truncated before ASCII
      {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong lead, then a stray byte
      {"\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},            // overlong three-byte form
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // encoded surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // past U+10FFFF
      {"\xF5", u"\uFFFD"},
      {"\xF0\x9F\x98", u"\uFFFD"},
      {"\xF0\x9F\x98\xC3\xA9", u"\uFFFD\u00E9"},
  };
  for (const auto& [bytes, units] : cases) {
    EXPECT_EQ(AFCCharset::toUtf16(AFC_CHARSET_UTF8, bytes), units) << testing::PrintToString(bytes);
  }
}

TEST(Utf8, UnpairedSurrogateEncodesAsReplacementCharacter) {
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_UTF8, u"a\xD800"), "a\xEF\xBF\xBD");
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_UTF8, u"\xDC00\x62"), "\xEF\xBF\xBD\x62");
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_UTF8, u"\xD800\xD800\xDC00"),
            "\xEF\xBF\xBD\xF0\x90\x80\x80");
}

// The ASCII run is copied in blocks: a non-ASCII character anywhere must end it correctly.
TEST(Utf8, NonAsciiAtAnyOffsetOfAnAsciiRunConverts) {
  for (uint32_t id : {uint32_t{AFC_CHARSET_UTF8}, uint32_t{AFC_CHARSET_CP1252}}) {
    for (size_t at = 0; at <= 24; ++at) {
      std::u16string units(24, u'x');
      units.insert(at, u"\u00E9");
      const std::string bytes = AFCCharset::fromUtf16(id, units);
      EXPECT_EQ(bytes.size(), id == AFC_CHARSET_UTF8 ? 26u : 25u);
      EXPECT_EQ(AFCCharset::toUtf16(id, bytes), units) << "id " << id << " at " << at;
    }
  }
}

TEST(Utf8, ResultReplacesWhatTheOutputHeld) {
  std::u16string units = u"old text that is longer";
  AFCCharset::toUtf16(AFC_CHARSET_UTF8, "new", units);
  EXPECT_EQ(units, u"new");
  std::string bytes = "old text that is longer";
  AFCCharset::fromUtf16(AFC_CHARSET_UTF8, u"", bytes);
  EXPECT_EQ(bytes, "");
}

TEST(Utf16Bytes, ConvertInTheirByteOrder) {
  const std::string big("\x00\x41\x20\xAC\xD8\x3D\xDE\x00", 8);
  const std::string little("\x41\x00\xAC\x20\x3D\xD8\x00\xDE", 8);
  const std::u16string units = u"A\u20AC\U0001F600";
  EXPECT_EQ(AFCCharset::toUtf16(AFC_CHARSET_UTF16BE, big), units);
  EXPECT_EQ(AFCCharset::toUtf16(AFC_CHARSET_UTF16LE, little), units);
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_UTF16BE, units), big);
  EXPECT_EQ(AFCCharset::fromUtf16(AFC_CHARSET_UTF16LE, units), little);
}

TEST(Utf16Bytes, OddLastByteBecomesReplacementCharacter) {
  EXPECT_EQ(AFCCharset::toUtf16(AFC_CHARSET_UTF16BE, std::string("\x00\x41\x00", 3)), u"A\uFFFD");
  EXPECT_EQ(AFCCharset::toUtf16(AFC_CHARSET_UTF16LE, "B"), u"\uFFFD");
}

TEST(Utf16Bytes, CarryUnpairedSurrogatesUnchanged) {
  const std::u16string units = u"\xDC00\xD800";
  EXPECT_EQ(
      AFCCharset::toUtf16(AFC_CHARSET_UTF16LE, AFCCharset::fromUtf16(AFC_CHARSET_UTF16LE, units)),
      units);
}

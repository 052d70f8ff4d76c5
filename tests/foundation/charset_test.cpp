#include "foundation/charset.h"

#include <gtest/gtest.h>

namespace {

std::u16string decode(uint32_t id, std::string_view text) { return AFCCharset::toUtf16(id, text); }
std::string encode(uint32_t id, std::u16string_view units) {
  return AFCCharset::fromUtf16(id, units);
}

TEST(Charset, SelectsIdsByEveryName) {
  EXPECT_EQ(AFCCharset::idForName("UTF-8"), 2u);
  EXPECT_EQ(AFCCharset::idForName("ASCII"), 3u);
  EXPECT_EQ(AFCCharset::idForName("US_ASCII"), 3u);
  EXPECT_EQ(AFCCharset::idForName("ISO-8859-15"), 16u);
  EXPECT_EQ(AFCCharset::idForName("windows-1251"), 23u);
  EXPECT_EQ(AFCCharset::idForName("PCLATIN2"), 20u);
  EXPECT_EQ(AFCCharset::idForName("MACL2"), 22u);
  EXPECT_EQ(AFCCharset::idForName("UTF-16LE"), 25u);
  EXPECT_EQ(AFCCharset::idForName("utf-8"), 2u);  // case is ignored
  EXPECT_EQ(AFCCharset::idForName("EBCDIC"), std::nullopt);
}

TEST(Charset, AnsiX3NamesSelectLatin1NotAscii) {
  EXPECT_EQ(AFCCharset::idForName("ANSI_X3.4-1968"), 4u);
  EXPECT_EQ(AFCCharset::idForName("ANSI_X3.110-1983"), 4u);
}

TEST(Charset, MapsBytesThroughThePublishedTables) {
  EXPECT_EQ(decode(AFC_CHARSET_CP1252, "\x80"), u"\u20AC");
  EXPECT_EQ(decode(AFC_CHARSET_ISO8859_15, "\xA4"), u"\u20AC");
  EXPECT_EQ(decode(AFC_CHARSET_ISO8859_1, "\xA4"), u"\u00A4");
  EXPECT_EQ(decode(AFC_CHARSET_CP850, "\x9B"), u"\u00F8");
  EXPECT_EQ(decode(AFC_CHARSET_CP1251, "\xC0"), u"\u0410");
  EXPECT_EQ(decode(AFC_CHARSET_ISO8859_2, "\xB1"), u"\u0105");
  EXPECT_EQ(decode(AFC_CHARSET_CP852, "\xA5"), u"\u0105");
  EXPECT_EQ(decode(AFC_CHARSET_MACCE, "\x88"), u"\u0105");
  EXPECT_EQ(decode(AFC_CHARSET_ISO8859_7, "\xC1"), u"\u0391");
}

TEST(Charset, RoundTripsEveryMappedByteOfEverySingleByteSet) {
  for (uint32_t id = AFC_CHARSET_US_ASCII; id <= AFC_CHARSET_CP1251; ++id) {
    for (int byte = 0; byte < 256; ++byte) {
      const std::string one(1, static_cast<char>(byte));
      const std::u16string units = decode(id, one);
      ASSERT_EQ(units.size(), 1u);
      if (units[0] == 0xFFFD) continue;  // no mapping in this set
      EXPECT_EQ(encode(id, units), one) << "set " << id << " byte " << byte;
    }
  }
}

TEST(Charset, ReplacesWhatASetCannotHold) {
  EXPECT_EQ(decode(AFC_CHARSET_CP1252, "\x81"), u"\uFFFD");
  EXPECT_EQ(decode(AFC_CHARSET_US_ASCII, "a\xE9"), u"a\uFFFD");
  EXPECT_EQ(encode(AFC_CHARSET_ISO8859_1, u"x\u20ACy"), "x?y");
  EXPECT_EQ(encode(AFC_CHARSET_CP1251, u"\u00E9"), "?");
}

TEST(Charset, ConvertsUtf8IncludingSurrogatePairs) {
  const std::string text = "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xAC";  // A é € 🎬
  const std::u16string units = u"A\u00E9\u20AC\U0001F3AC";
  EXPECT_EQ(decode(AFC_CHARSET_UTF8, text), units);
  EXPECT_EQ(encode(AFC_CHARSET_UTF8, units), text);
}

TEST(Charset, ReplacesMalformedUtf8WithoutReadingPastTheEnd) {
  EXPECT_EQ(decode(AFC_CHARSET_UTF8, "\xC3"), u"\uFFFD");
  EXPECT_EQ(decode(AFC_CHARSET_UTF8, "\xFF" "a"), u"\uFFFDa");
  EXPECT_EQ(decode(AFC_CHARSET_UTF8, "\xC0\x80"), u"\uFFFD");        // overlong
  EXPECT_EQ(decode(AFC_CHARSET_UTF8, "\xED\xA0\x80"), u"\uFFFD");    // encoded surrogate
  EXPECT_EQ(encode(AFC_CHARSET_UTF8, u"\xD800x"), "\xEF\xBF\xBDx");  // unpaired surrogate
}

TEST(Charset, ReadsBothUtf16ByteOrders) {
  EXPECT_EQ(decode(AFC_CHARSET_UTF16BE, std::string("\x20\xAC\x00\x41", 4)), u"\u20ACA");
  EXPECT_EQ(decode(AFC_CHARSET_UTF16LE, std::string("\xAC\x20\x41\x00", 4)), u"\u20ACA");
  EXPECT_EQ(decode(AFC_CHARSET_UTF16BE, std::string("\x00\x41\x00", 3)), u"A\uFFFD");
  EXPECT_EQ(encode(AFC_CHARSET_UTF16LE, u"\u20AC"), std::string("\xAC\x20", 2));
  EXPECT_EQ(encode(AFC_CHARSET_UTF16BE, u"\u20AC"), std::string("\x20\xAC", 2));
}

TEST(Charset, TheDefaultSetIsOneOfTheKnownOnes) {
  const uint32_t id = AFCCharset::defaultId();
  EXPECT_TRUE(id == AFC_CHARSET_UTF8 || id == AFC_CHARSET_CP1250 || id == AFC_CHARSET_CP1251 ||
              id == AFC_CHARSET_CP1252);
  EXPECT_EQ(decode(AFC_CHARSET_DEFAULT, "plain"), u"plain");
}

TEST(Charset, RejectsUnknownIds) {
  EXPECT_THROW(decode(1, "x"), AFCCharsetException);
  try {
    encode(99, u"x");
    FAIL();
  } catch (const AFCCharsetException& e) {
    EXPECT_STREQ(e.what(), "Unknown character set id 99");
  }
}

}  // namespace

#include "foundation/attribute_string.h"

#include <gtest/gtest.h>

#include <cstring>

#include "foundation/charset.h"
#include "foundation/persistent_stream.h"
#include "tests/foundation/attribute_test_support.h"

namespace {

TEST(AttributeString, HashIsStableAndFollowsTheText) {
  EXPECT_EQ(AFCAttributeString("abc").getHashValue(), AFCAttributeString("abc").getHashValue());
  EXPECT_NE(AFCAttributeString("abc").getHashValue(), AFCAttributeString("abd").getHashValue());
  // FNV-1a of "a": the hash must not change between builds or machines.
  EXPECT_EQ(AFCAttributeString("a").getHashValue(), 0xE40C292Cu);
  EXPECT_EQ(AFCAttributeWString(u"abc").getHashValue(), AFCAttributeWString(u"abc").getHashValue());
}

TEST(AttributeString, KeyIsTheTextItself) {
  EXPECT_EQ(AFCAttributeString("node.x").getKey(), "node.x");
  const std::string wideKey = AFCAttributeWString(u"A").getKey();
  ASSERT_EQ(wideKey.size(), 2u);
  char16_t unit;
  std::memcpy(&unit, wideKey.data(), 2);
  EXPECT_EQ(unit, u'A');
}

TEST(AttributeWString, TextFormGoesThroughTheDefaultCharacterSet) {
  // UTF-8 on POSIX; the ANSI code page on Windows (1252 under Wine with an English locale).
  const bool utf8 = AFCCharset::defaultId() == AFC_CHARSET_UTF8;
  const std::string uUmlaut = utf8 ? "\xC3\xBC" : "\xFC";
  const std::string euro = utf8 ? "\xE2\x82\xAC" : "\x80";
  if (!utf8) {
    ASSERT_EQ(AFCCharset::defaultId(), AFC_CHARSET_CP1252);
  }
  AFCAttributeWString value;
  value.fromString(uUmlaut + "ber");
  EXPECT_EQ(value.get(), u"\u00FCber");
  EXPECT_EQ(AFCAttributeWString(u"\u20AC").toString(), euro);
}

TEST(AttributeString, CrossAssignmentKeepsTheWordUndefinedAsText) {
  AFCAttributeString narrow;
  narrow.fromAttribute(AFCAttributeWString(u"<undefined>"));
  EXPECT_TRUE(narrow.isDefined());
  EXPECT_EQ(narrow.get(), "<undefined>");
  AFCAttributeWString wide;
  wide.fromAttribute(AFCAttributeString("<undefined>"));
  EXPECT_EQ(wide.get(), u"<undefined>");
}

TEST(AttributeString, NumbersBecomeTheirShortText) {
  AFCAttributeString value;
  value.setValue(2.5);
  EXPECT_EQ(value.get(), "2.5");
  value.fromAttribute(AFCAttributeString());
  EXPECT_FALSE(value.isDefined());
}

TEST(AttributeString, WritesEightBitTextAsAStringAndWideTextAsAWideString) {
  EXPECT_EQ(contentBytes(AFCAttributeString("ab")),
            kBasePart + boolBytes(true) + stringBytes("ab"));
  Bytes wide = contentBytes(AFCAttributeWString(u"ab"));
  ASSERT_GT(wide.size(), 6u);
  EXPECT_EQ(wide[6], 0x0E);
}

TEST(AttributeWString, ReadsAnEightBitStringToo) {
  const Bytes contents = kBasePart + boolBytes(true) + stringBytes("hi");
  AFCAttributeWString value;
  EXPECT_EQ(readError(value, contents), "");
  EXPECT_EQ(value.get(), u"hi");
}

}  // namespace

#include "tools/vxsim/sim_json.h"

#include <gtest/gtest.h>

TEST(SimJson, PutsCommasBetweenMembersAndElementsAtEveryLevel) {
  VXSimJsonWriter json;
  json.beginObject().key("a").string("x").key("b").beginArray();
  json.boolean(true).beginObject().endObject().beginArray().endArray().string("y").endArray();
  json.key("c").beginObject().key("d").boolean(false).endObject().endObject();
  EXPECT_EQ(json.text(), R"({"a":"x","b":[true,{},[],"y"],"c":{"d":false}})");
}

TEST(SimJson, EscapesQuotesBackslashesAndControlCharacters) {
  EXPECT_EQ(vxSimJsonQuote(""), R"("")");
  EXPECT_EQ(vxSimJsonQuote("say \"hi\" \\ bye"), R"("say \"hi\" \\ bye")");
  EXPECT_EQ(vxSimJsonQuote("a\nb\tc\rd\be\ff"), R"("a\nb\tc\rd\be\ff")");
  EXPECT_EQ(vxSimJsonQuote(std::string("\x01\x1f\x7f/", 4)), "\"\\u0001\\u001f\x7f/\"");
  EXPECT_EQ(vxSimJsonQuote(std::string("nul\0end", 7)), R"("nul\u0000end")");
  VXSimJsonWriter json;
  json.beginObject().key("k\"ey").string("<pick id=\"1\"/>").endObject();
  EXPECT_EQ(json.text(), R"({"k\"ey":"<pick id=\"1\"/>"})");
}

TEST(SimJson, KeepsValidUtf8AndWritesOtherBytesAsTheirOwnCharacter) {
  // e acute, euro sign, a character outside the basic plane, and U+10FFFF: all valid.
  EXPECT_EQ(vxSimJsonQuote("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"),
            "\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF\"");
  EXPECT_EQ(vxSimJsonQuote("caf\xE9"), R"("caf\u00e9")");                // a Latin-1 byte
  EXPECT_EQ(vxSimJsonQuote("\xE2\x82"), R"("\u00e2\u0082")");            // cut short
  EXPECT_EQ(vxSimJsonQuote("\xE2\x82x"), R"("\u00e2\u0082x")");          // broken by an ASCII byte
  EXPECT_EQ(vxSimJsonQuote("\xC0\xAF"), R"("\u00c0\u00af")");            // overlong '/'
  EXPECT_EQ(vxSimJsonQuote("\xE0\x80\xAF"), R"("\u00e0\u0080\u00af")");  // overlong, 3 bytes
  EXPECT_EQ(vxSimJsonQuote("\xED\xA0\x80"), R"("\u00ed\u00a0\u0080")");  // a surrogate
  EXPECT_EQ(vxSimJsonQuote("\xF4\x90\x80\x80"), R"("\u00f4\u0090\u0080\u0080")");  // > U+10FFFF
  EXPECT_EQ(vxSimJsonQuote("\xFF\xBF"), R"("\u00ff\u00bf")");                      // no lead byte
}

// Script text to the system's strings and back.
#include "automation/com/bstr_text.h"

#include <gtest/gtest.h>

#include "foundation/charset.h"

namespace {
TEST(BstrText, RoundTripsEveryUnitAndTheDefaultCharacterSet) {
  const std::u16string cases[] = {u"", u"abc", std::u16string(u"a\0b", 3), u"Gr\u00fc\u00dfe"};
  for (const std::u16string& text : cases) {
    const CUniqueBstr made = bstrFromU16(text);
    EXPECT_EQ(SysStringLen(made.get()), text.size());
    EXPECT_EQ(u16FromBstr(made.get()), text);
    const std::string bytes = AFCCharset::fromUtf16(AFC_CHARSET_DEFAULT, text);
    EXPECT_EQ(stringFromBstr(made.get()), bytes);
    EXPECT_EQ(u16FromBstr(bstrFromString(bytes).get()),
              AFCCharset::toUtf16(AFC_CHARSET_DEFAULT, bytes));
  }
}

TEST(BstrText, NullIsTheEmptyText) {
  EXPECT_EQ(u16FromBstr(nullptr), u"");
  EXPECT_EQ(stringFromBstr(nullptr), "");
}
}  // namespace

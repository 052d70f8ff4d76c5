#include "foundation/attribute_date_time.h"

#include <gtest/gtest.h>

#include "tests/foundation/attribute_test_support.h"

namespace {

TEST(AttributeDateTime, TextFormsAreTheCalendarForms) {
  EXPECT_EQ(AFCAttributeDate(AFCDate(5, 3, 2024)).toString(), "05.03.2024");
  EXPECT_EQ(AFCAttributeTime(AFCTime(7, 8, 9)).toString(), "07:08:09");
  EXPECT_EQ(AFCAttributeTimestamp(AFCTimestamp(AFCDate(5, 3, 2024), AFCTime(7, 8, 9))).toString(),
            "05.03.2024 07:08:09");
}

TEST(AttributeDateTime, TravelsAsItsTextForm) {
  EXPECT_EQ(contentBytes(AFCAttributeTime(AFCTime(7, 8, 9))),
            kBasePart + boolBytes(true) + stringBytes("07:08:09"));
}

TEST(AttributeDateTime, UnreadableTextGivesTheDefaultValue) {
  AFCAttributeDate date(AFCDate(5, 3, 2024));
  date.fromString("yesterday");
  EXPECT_TRUE(date.isDefined());
  EXPECT_EQ(date.get(), AFCDate());
  date.fromString("31.12.1999");
  EXPECT_EQ(date.get(), AFCDate(31, 12, 1999));
}

TEST(AttributeDateTime, RefusesUnreadableTextOfADefinedValueOnTheWire) {
  const Bytes contents = kBasePart + boolBytes(true) + stringBytes("25:00:00");
  AFCAttributeTime value(AFCTime(1, 2, 3));
  EXPECT_NE(readError(value, contents), "");
  EXPECT_EQ(value.get(), AFCTime(1, 2, 3));
}

TEST(AttributeDateTime, KeysDifferByKindAndValue) {
  const AFCAttributeDate date(AFCDate(1, 2, 2003));
  EXPECT_EQ(date.getKey().substr(0, 4), "Date");
  EXPECT_NE(date.getKey(), AFCAttributeDate(AFCDate(2, 1, 2003)).getKey());
  EXPECT_EQ(AFCAttributeTime().getKey().substr(0, 4), "Time");
  const AFCTimestamp stamp(AFCDate(1, 2, 2003), AFCTime(4, 5, 6), 7);
  EXPECT_EQ(AFCAttributeTimestamp(stamp).getKey().substr(0, 9), "Timestamp");
}

}  // namespace

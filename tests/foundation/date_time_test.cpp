#include "foundation/date_time.h"

#include <gtest/gtest.h>

#include <climits>

#include "tests/support/failure_text.h"

TEST(Time, AcceptsTwoLeapSecondsButNotAThird) {
  EXPECT_EQ(AFCTime(23, 59, 61).getSecond(), 61);
  EXPECT_EQ(failureOf<AFCInvalidTimeException>([] { AFCTime(23, 59, 62); }),
            "Invalid time: second out of range\n");
}

TEST(Time, RejectsNegativeAndTooLargeFieldsWithTheirOwnTexts) {
  AFCTime time;
  EXPECT_EQ(failureOf<AFCInvalidTimeException>([&] { time.setHour(-1); }),
            "Invalid time: hour out of range\n");
  EXPECT_EQ(failureOf<AFCInvalidTimeException>([&] { time.setHour(24); }),
            "Invalid time: hour out of range\n");
  EXPECT_EQ(failureOf<AFCInvalidTimeException>([&] { time.setMinute(60); }),
            "Invalid time: minute out of range\n");
  EXPECT_EQ(failureOf<AFCInvalidTimeException>([&] { time.setSecond(INT_MIN); }),
            "Invalid time: second out of range\n");
  EXPECT_EQ(time, AFCTime());
}

TEST(Time, PrintsTwoDigitsAndReadsItsTextBack) {
  AFCTime time(7, 5, 0);
  EXPECT_EQ(time.toString(), "07:05:00");
  AFCTime read;
  read.fromString(time.toString());
  EXPECT_EQ(read, time);
}

TEST(Time, UnreadableTextIsTheMessage) {
  AFCTime time;
  EXPECT_EQ(failureOf<AFCInvalidTimeException>([&] { time.fromString("12:30"); }),
            "Invalid time: 12:30\n");
  EXPECT_EQ(failureOf<AFCInvalidTimeException>([&] { time.fromString("12:99:00"); }),
            "Invalid time: minute out of range\n");
}

TEST(Date, RejectsFieldsOutOfRangeButNotDaysTheMonthLacks) {
  EXPECT_EQ(failureOf<AFCInvalidDateException>([] { AFCDate(0, 1, 2000); }),
            "Invalid date: day out of range\n");
  EXPECT_EQ(failureOf<AFCInvalidDateException>([] { AFCDate(32, 1, 2000); }),
            "Invalid date: day out of range\n");
  EXPECT_EQ(failureOf<AFCInvalidDateException>([] { AFCDate(1, 13, 2000); }),
            "Invalid date: month out of range\n");
  EXPECT_EQ(failureOf<AFCInvalidDateException>([] { AFCDate(1, 1, -1); }),
            "Invalid date: year out of range\n");
  EXPECT_EQ(AFCDate(1, 1, INT_MAX).getYear(), INT_MAX);
  EXPECT_EQ(AFCDate(31, 2, 2014).getDay(), 31);  // no calendar check
}

TEST(Date, ReadsDayFirstAndPrintsTwoDigitDayAndMonth) {
  AFCDate date;
  date.fromString("7.3.2014");
  EXPECT_EQ(date, AFCDate(7, 3, 2014));
  EXPECT_EQ(date.toString(), "07.03.2014");
}

TEST(Date, FewerThanThreeNumbersThrowWithTheTextAsMessage) {
  AFCDate date;
  try {
    date.fromString("7.3");
    FAIL() << "7.3 was accepted";
  } catch (const AFCInvalidDateException& e) {
    EXPECT_EQ(e.getMessage(), "7.3");
    EXPECT_STREQ(e.what(), "Invalid date: 7.3\n");
  }
  EXPECT_THROW(date.fromString(""), AFCInvalidDateException);
  EXPECT_THROW(date.fromString("7.x.2014"), AFCInvalidDateException);
  EXPECT_THROW(date.fromString("7.3.99999999999"), AFCInvalidDateException);
  EXPECT_EQ(date, AFCDate());
}

TEST(Date, ToleratesBlanksBeforeNumbersAndIgnoresTrailingText) {
  AFCDate date;
  date.fromString(" 7. 3. 2014 10:00:00");
  EXPECT_EQ(date, AFCDate(7, 3, 2014));
}

TEST(Date, FollowsTheLocalCalendarOfASystemTime) {
  std::tm local{};
  ASSERT_TRUE(afcLocalTime(86400 * 365, local));
  AFCDate date;
  date.setFromSystemTime(86400 * 365);
  EXPECT_EQ(date, AFCDate(local.tm_mday, local.tm_mon + 1, local.tm_year + 1900));
  AFCTime time;
  time.setFromSystemTime(86400 * 365);
  EXPECT_EQ(time, AFCTime(local.tm_hour, local.tm_min, local.tm_sec));
}

TEST(Timestamp, FormatsFullAndTimeOnlyForms) {
  const AFCTimestamp stamp(AFCDate(7, 3, 2014), AFCTime(9, 5, 3), 42);
  EXPECT_EQ(stamp.toString(), "07.03.2014 09:05:03.000000042");
  EXPECT_EQ(AFCTimestamp(AFCDate(7, 3, 2014), AFCTime(9, 5, 3)).toString(), "07.03.2014 09:05:03");
  EXPECT_EQ(stamp.format("%d.%m.%Y %H:%M:%S"), "07.03.2014 09:05:03");
  EXPECT_EQ(stamp.format("(%H:%M:%S)"), "(09:05:03)");
  EXPECT_EQ(stamp.format("%d.%m.%Y %% %q"), "07.03.2014 % %q");
}

TEST(Timestamp, ReadsItsTextFormWithAnOptionalFraction) {
  AFCTimestamp stamp;
  stamp.fromString("07.03.2014 09:05:03");
  EXPECT_EQ(stamp, AFCTimestamp(AFCDate(7, 3, 2014), AFCTime(9, 5, 3)));
  stamp.fromString("07.03.2014 09:05:03.5");
  EXPECT_EQ(stamp.getNanos(), 500000000);
  stamp.fromString("07.03.2014 09:05:03.000000123");
  EXPECT_EQ(stamp.getNanos(), 123);
  // The text form keeps the fraction, so the value survives its own text.
  for (int32_t nanos : {1, 500000000, 999999999}) {
    const AFCTimestamp original(AFCDate(7, 3, 2014), AFCTime(9, 5, 3), nanos);
    AFCTimestamp back;
    back.fromString(original.toString());
    EXPECT_EQ(back, original) << original.toString();
  }
}

TEST(Timestamp, UnreadableTextOrNegativeNanosThrowAndLeaveTheValue) {
  const AFCTimestamp before(AFCDate(1, 2, 2003), AFCTime(4, 5, 6), 7);
  AFCTimestamp stamp = before;
  for (const char* text : {"07.03.2014", "07.03.2014 09:05", "07.03.2014 09:05:03.",
                           "07.03.2014 09:05:03.1234567890", "07.03.2014 09:05:03 x"}) {
    EXPECT_EQ(failureOf<AFCInvalidTimestampException>([&] { stamp.fromString(text); }),
              std::string("Invalid timestamp: ") + text + "\n");
  }
  EXPECT_THROW(stamp.fromString("07.13.2014 09:05:03"), AFCInvalidDateException);
  EXPECT_EQ(failureOf<AFCInvalidTimestampException>([&] { stamp.setNanos(-1); }),
            "Invalid timestamp: nanos out of range\n");
  EXPECT_EQ(stamp, before);
}

TEST(Timestamp, NowIsAValidLocalTime) {
  const AFCTimestamp now = AFCTimestamp::now();
  EXPECT_GE(now.getYear(), 2020);
  EXPECT_LT(now.getNanos(), 1000000000);
}

#include "foundation/errlog_layout.h"

#include <gtest/gtest.h>

#include "foundation/errlog_event.h"

namespace {
const AFCDate kOpenedOn(7, 3, 2014);
const AFCTimestamp kSameDay(kOpenedOn, AFCTime(9, 5, 3));

std::string textOf(const AFCErrLogEvent& event, AFCErrLogLayout layout = {},
                   const AFCDate& openedOn = kOpenedOn) {
  std::string text;
  layout.format(text, event, openedOn);
  return text;
}

AFCErrLogEvent eventAt(unsigned level, const AFCTimestamp& time = kSameDay) {
  return AFCErrLogEvent(level, "libAFC", time, "socket.cpp", 12, "connect failed, 10061");
}
}  // namespace

TEST(ErrLogLayout, FullLineOnTheDayTheOutputWasOpened) {
  EXPECT_EQ(textOf(eventAt(AFC_ERRLOG_ERROR)),
            "ERROR: libAFC (09:05:03) \"socket.cpp\", line 12\n connect failed, 10061\n");
}

TEST(ErrLogLayout, TagsArePaddedToSevenCharacters) {
  EXPECT_EQ(textOf(eventAt(AFC_ERRLOG_DEBUG)).substr(0, 14), "DEBUG: libAFC ");
  EXPECT_EQ(textOf(eventAt(AFC_ERRLOG_INFO)).substr(0, 14), "INFO:  libAFC ");
  EXPECT_EQ(textOf(eventAt(AFC_ERRLOG_WARNING)).substr(0, 14), "WARN:  libAFC ");
  EXPECT_EQ(textOf(eventAt(AFC_ERRLOG_NONE)).substr(0, 14), "ERROR: libAFC ");
}

TEST(ErrLogLayout, OtherDaysShowTheDate) {
  const AFCTimestamp nextDay(AFCDate(8, 3, 2014), AFCTime(0, 0, 1));
  EXPECT_EQ(textOf(eventAt(AFC_ERRLOG_INFO, nextDay)),
            "INFO:  libAFC (08.03.2014 00:00:01) \"socket.cpp\", line 12\n"
            " connect failed, 10061\n");
}

TEST(ErrLogLayout, UnknownAreaFileAndLineAreLeftOut) {
  const AFCErrLogEvent event(AFC_ERRLOG_INFO, "", kSameDay, "", 0, "started");
  EXPECT_EQ(textOf(event), "INFO:  (09:05:03)\n started\n");
  const AFCErrLogEvent noLine(AFC_ERRLOG_INFO, "", kSameDay, "main.cpp", 0, "started");
  EXPECT_EQ(textOf(noLine), "INFO:  (09:05:03) \"main.cpp\"\n started\n");
}

TEST(ErrLogLayout, LettersSwitchPartsOffIgnoringCaseAndOthers) {
  const AFCErrLogLayout noAreaNoTime = AFCErrLogLayout::withPartsOff("at");
  EXPECT_EQ(textOf(eventAt(AFC_ERRLOG_ERROR), noAreaNoTime),
            "ERROR:  \"socket.cpp\", line 12\n connect failed, 10061\n");
  const AFCErrLogLayout noSource = AFCErrLogLayout::withPartsOff("xS?");
  EXPECT_EQ(textOf(eventAt(AFC_ERRLOG_ERROR), noSource),
            "ERROR: libAFC (09:05:03)\n connect failed, 10061\n");
  const AFCErrLogLayout nothing = AFCErrLogLayout::withPartsOff("TSA");
  EXPECT_EQ(textOf(eventAt(AFC_ERRLOG_ERROR), nothing), "ERROR: \n connect failed, 10061\n");
}

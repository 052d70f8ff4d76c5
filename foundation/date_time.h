#pragma once
// Calendar values: time of day, date, and timestamp (date, time and nanoseconds). Every field
// is range-checked on assignment; a value out of range throws the class's exception.
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

#include "foundation/exception.h"

// Local time of a calendar time in seconds; false when the platform cannot convert it.
bool afcLocalTime(std::time_t seconds, std::tm& out);

class AFCDateTimeException : public AFCException {
public:
  using AFCException::AFCException;
};
// "Invalid time: " + message + line break.
class AFCInvalidTimeException : public AFCDateTimeException {
public:
  using AFCDateTimeException::AFCDateTimeException;
  void print(std::string& out) const override;
};
// "Invalid date: " + message + line break.
class AFCInvalidDateException : public AFCDateTimeException {
public:
  using AFCDateTimeException::AFCDateTimeException;
  void print(std::string& out) const override;
};
// "Invalid timestamp: " + message + line break.
class AFCInvalidTimestampException : public AFCDateTimeException {
public:
  using AFCDateTimeException::AFCDateTimeException;
  void print(std::string& out) const override;
};

class AFCTime {
public:
  AFCTime() = default;
  AFCTime(int32_t hour, int32_t minute, int32_t second);
  int32_t getHour() const { return hour_; }
  int32_t getMinute() const { return minute_; }
  int32_t getSecond() const { return second_; }
  void setHour(int32_t hour);      // 0..23, "hour out of range"
  void setMinute(int32_t minute);  // 0..59, "minute out of range"
  void setSecond(int32_t second);  // 0..61, "second out of range"
  // Local time of a calendar time in seconds.
  void setFromSystemTime(std::time_t seconds);
  // "%.2d:%.2d:%.2d"
  std::string toString() const;
  // "%d:%d:%d" read like the date text; fewer than three numbers: AFCInvalidTimeException with
  // the text as message; otherwise each field through its range check.
  void fromString(std::string_view text);
  bool operator==(const AFCTime&) const = default;

private:
  int32_t hour_ = 0, minute_ = 0, second_ = 0;
};

class AFCDate {
public:
  AFCDate() = default;  // 1.1.0: every field valid
  AFCDate(int32_t day, int32_t month, int32_t year);
  int32_t getDay() const { return day_; }
  int32_t getMonth() const { return month_; }
  int32_t getYear() const { return year_; }
  void setDay(int32_t day);      // 1..31, "day out of range"
  void setMonth(int32_t month);  // 1..12, "month out of range"
  void setYear(int32_t year);    // >= 0, "year out of range"
  void setFromSystemTime(std::time_t seconds);
  // "%.2d.%.2d.%d" (day first)
  std::string toString() const;
  // "%d.%d.%d" as sscanf reads it (blanks before numbers skipped, text after the third number
  // ignored); fewer than three numbers: AFCInvalidDateException with the text as message.
  void fromString(std::string_view text);
  bool operator==(const AFCDate&) const = default;

private:
  int32_t day_ = 1, month_ = 1, year_ = 0;
};

class AFCTimestamp {
public:
  AFCTimestamp() = default;  // every field 0
  AFCTimestamp(const AFCDate& date, const AFCTime& time, int32_t nanos = 0);
  // Now, in local time, with nanoseconds; AFCInvalidTimestampException "error get localtime"
  // when the local-time conversion fails.
  static AFCTimestamp now();
  int32_t getDay() const { return day_; }
  int32_t getMonth() const { return month_; }
  int32_t getYear() const { return year_; }
  int32_t getHour() const { return hour_; }
  int32_t getMinute() const { return minute_; }
  int32_t getSecond() const { return second_; }
  int32_t getNanos() const { return nanos_; }
  void setNanos(int32_t nanos);  // >= 0, "nanos out of range"
  AFCDate getDate() const;
  AFCTime getTime() const;
  // strftime-style formatting of the fields ("%d.%m.%Y %H:%M:%S", "%H:%M:%S"): %d %m %H %M %S
  // as two digits, %Y as the plain year, %% as a percent sign; anything else is copied as is.
  std::string format(const char* pattern) const;
  // "%d.%m.%Y %H:%M:%S", followed by the fraction of a second (".5") when there are
  // nanoseconds, so that the text carried by attributes keeps the whole value.
  std::string toString() const;
  // Reads the text form back, "%d.%d.%d %d:%d:%d" with an optional fraction of a second
  // (".5", ".000000123"; at most nine digits) right after the seconds. Unreadable text:
  // AFCInvalidTimestampException with the text as message; a field out of range: the exception
  // of its date or time check. Nothing changes when it throws.
  void fromString(std::string_view text);
  bool operator==(const AFCTimestamp&) const = default;

private:
  int32_t day_ = 0, month_ = 0, year_ = 0;
  int32_t hour_ = 0, minute_ = 0, second_ = 0;
  int32_t nanos_ = 0;
};

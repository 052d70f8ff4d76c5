#include "foundation/date_time.h"

#include <chrono>
#include <cstdio>

namespace {
// Accepts lower..lower+span with one unsigned comparison, so negative values fail too.
bool inRange(int32_t value, int32_t lower, uint32_t span) {
  return static_cast<uint32_t>(value) - static_cast<uint32_t>(lower) <= span;
}

constexpr uint32_t kNoUpperBound = INT32_MAX;

// Reads numbers and separators the way sscanf reads "%d": blanks before a number are skipped,
// a sign is allowed, and a number must fit into 32 bits.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  bool number(int32_t& out) {
    while (pos_ < text_.size() && isBlank(text_[pos_])) ++pos_;
    std::size_t at = pos_;
    const bool negative = at < text_.size() && text_[at] == '-';
    if (at < text_.size() && (text_[at] == '-' || text_[at] == '+')) ++at;
    int64_t value = 0;
    const std::size_t firstDigit = at;
    for (; at < text_.size() && isDigit(text_[at]); ++at) {
      value = value * 10 + (text_[at] - '0');
      if (value > int64_t{INT32_MAX} + 1) return false;
    }
    if (at == firstDigit) return false;
    value = negative ? -value : value;
    if (value > INT32_MAX) return false;
    out = static_cast<int32_t>(value);
    pos_ = at;
    return true;
  }

  bool literal(char c) {
    if (pos_ >= text_.size() || text_[pos_] != c) return false;
    ++pos_;
    return true;
  }

  // Digits after the decimal point as nanoseconds; at most nine digits, at least one.
  bool fraction(int32_t& nanos) {
    int32_t value = 0;
    int digits = 0;
    for (; pos_ < text_.size() && isDigit(text_[pos_]); ++pos_, ++digits) {
      if (digits == 9) return false;
      value = value * 10 + (text_[pos_] - '0');
    }
    if (digits == 0) return false;
    for (int i = digits; i < 9; ++i) value *= 10;
    nanos = value;
    return true;
  }

  bool atEnd() const { return pos_ == text_.size(); }

 private:
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }
  static bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

  std::string_view text_;
  std::size_t pos_ = 0;
};

// Three numbers with the separator between them, as "%d<sep>%d<sep>%d".
bool readTriple(Scanner& in, char separator, int32_t (&out)[3]) {
  return in.number(out[0]) && in.literal(separator) && in.number(out[1]) && in.literal(separator) &&
         in.number(out[2]);
}

void appendTwoDigits(std::string& out, int32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "%.2d", value);
  out += text;
}

std::tm localTimeOrThrow(std::time_t seconds, auto makeException) {
  std::tm local{};
  if (!afcLocalTime(seconds, local)) throw makeException("error get localtime");
  return local;
}
}  // namespace

void AFCInvalidTimeException::print(std::string& out) const {
  out += "Invalid time: " + message_ + "\n";
}

void AFCInvalidDateException::print(std::string& out) const {
  out += "Invalid date: " + message_ + "\n";
}

void AFCInvalidTimestampException::print(std::string& out) const {
  out += "Invalid timestamp: " + message_ + "\n";
}

AFCTime::AFCTime(int32_t hour, int32_t minute, int32_t second) {
  setHour(hour);
  setMinute(minute);
  setSecond(second);
}

void AFCTime::setHour(int32_t hour) {
  if (!inRange(hour, 0, 23)) throw AFCInvalidTimeException("hour out of range");
  hour_ = hour;
}

void AFCTime::setMinute(int32_t minute) {
  if (!inRange(minute, 0, 59)) throw AFCInvalidTimeException("minute out of range");
  minute_ = minute;
}

void AFCTime::setSecond(int32_t second) {
  if (!inRange(second, 0, 61)) throw AFCInvalidTimeException("second out of range");
  second_ = second;
}

void AFCTime::setFromSystemTime(std::time_t seconds) {
  const std::tm local =
      localTimeOrThrow(seconds, [](const char* m) { return AFCInvalidTimeException(m); });
  *this = AFCTime(local.tm_hour, local.tm_min, local.tm_sec);
}

std::string AFCTime::toString() const {
  char text[48];
  std::snprintf(text, sizeof text, "%.2d:%.2d:%.2d", hour_, minute_, second_);
  return text;
}

void AFCTime::fromString(std::string_view text) {
  Scanner in(text);
  int32_t fields[3];
  if (!readTriple(in, ':', fields)) throw AFCInvalidTimeException(std::string(text));
  *this = AFCTime(fields[0], fields[1], fields[2]);
}

AFCDate::AFCDate(int32_t day, int32_t month, int32_t year) {
  setDay(day);
  setMonth(month);
  setYear(year);
}

void AFCDate::setDay(int32_t day) {
  if (!inRange(day, 1, 30)) throw AFCInvalidDateException("day out of range");
  day_ = day;
}

void AFCDate::setMonth(int32_t month) {
  if (!inRange(month, 1, 11)) throw AFCInvalidDateException("month out of range");
  month_ = month;
}

void AFCDate::setYear(int32_t year) {
  if (!inRange(year, 0, kNoUpperBound)) throw AFCInvalidDateException("year out of range");
  year_ = year;
}

void AFCDate::setFromSystemTime(std::time_t seconds) {
  const std::tm local =
      localTimeOrThrow(seconds, [](const char* m) { return AFCInvalidDateException(m); });
  *this = AFCDate(local.tm_mday, local.tm_mon + 1, local.tm_year + 1900);
}

std::string AFCDate::toString() const {
  char text[48];
  std::snprintf(text, sizeof text, "%.2d.%.2d.%d", day_, month_, year_);
  return text;
}

void AFCDate::fromString(std::string_view text) {
  Scanner in(text);
  int32_t fields[3];
  if (!readTriple(in, '.', fields)) throw AFCInvalidDateException(std::string(text));
  *this = AFCDate(fields[0], fields[1], fields[2]);
}

AFCTimestamp::AFCTimestamp(const AFCDate& date, const AFCTime& time, int32_t nanos)
    : day_(date.getDay()),
      month_(date.getMonth()),
      year_(date.getYear()),
      hour_(time.getHour()),
      minute_(time.getMinute()),
      second_(time.getSecond()) {
  setNanos(nanos);
}

AFCTimestamp AFCTimestamp::now() {
  using namespace std::chrono;
  const auto sinceEpoch = system_clock::now().time_since_epoch();
  const auto whole = duration_cast<seconds>(sinceEpoch);
  const auto nanos = duration_cast<nanoseconds>(sinceEpoch - whole);
  const std::tm local =
      localTimeOrThrow(static_cast<std::time_t>(whole.count()),
                       [](const char* m) { return AFCInvalidTimestampException(m); });
  return AFCTimestamp(AFCDate(local.tm_mday, local.tm_mon + 1, local.tm_year + 1900),
                      AFCTime(local.tm_hour, local.tm_min, local.tm_sec),
                      static_cast<int32_t>(nanos.count()));
}

void AFCTimestamp::setNanos(int32_t nanos) {
  if (!inRange(nanos, 0, kNoUpperBound)) throw AFCInvalidTimestampException("nanos out of range");
  nanos_ = nanos;
}

AFCDate AFCTimestamp::getDate() const { return AFCDate(day_, month_, year_); }

AFCTime AFCTimestamp::getTime() const { return AFCTime(hour_, minute_, second_); }

std::string AFCTimestamp::format(const char* pattern) const {
  std::string out;
  for (const char* p = pattern; *p != '\0'; ++p) {
    if (*p != '%' || p[1] == '\0') {
      out += *p;
      continue;
    }
    switch (*++p) {
      case 'd':
        appendTwoDigits(out, day_);
        break;
      case 'm':
        appendTwoDigits(out, month_);
        break;
      case 'Y':
        out += std::to_string(year_);
        break;
      case 'H':
        appendTwoDigits(out, hour_);
        break;
      case 'M':
        appendTwoDigits(out, minute_);
        break;
      case 'S':
        appendTwoDigits(out, second_);
        break;
      case '%':
        out += '%';
        break;
      default:
        out += '%', out += *p;
    }
  }
  return out;
}

std::string AFCTimestamp::toString() const {
  std::string text = format("%d.%m.%Y %H:%M:%S");
  if (nanos_ == 0) return text;
  // The fraction that fromString reads back: nine digits without the trailing zeros.
  std::string fraction = std::to_string(nanos_ % 1000000000 + 1000000000).substr(1);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  return text + "." + fraction;
}

void AFCTimestamp::fromString(std::string_view text) {
  Scanner in(text);
  int32_t date[3];
  int32_t time[3];
  int32_t nanos = 0;
  const bool readable = readTriple(in, '.', date) && readTriple(in, ':', time) &&
                        (!in.literal('.') || in.fraction(nanos)) && in.atEnd();
  if (!readable) throw AFCInvalidTimestampException(std::string(text));
  *this =
      AFCTimestamp(AFCDate(date[0], date[1], date[2]), AFCTime(time[0], time[1], time[2]), nanos);
}

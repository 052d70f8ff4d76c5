#pragma once
// The process-wide error log: reports with a level, an area, a source position and a message,
// time-stamped, passed through the repeat filter and handed to every backend.
// Thread safe: the filter and the backends run under the log's own lock, so each event reaches
// every backend whole and in order. Reporting never throws; a backend that throws misses that
// one event. Backends must not report to the log they are attached to.
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

enum AFCErrLogLevel : unsigned {
  AFC_ERRLOG_NONE = 0,
  AFC_ERRLOG_DEBUG = 1,
  AFC_ERRLOG_INFO = 2,
  AFC_ERRLOG_WARNING = 3,
  AFC_ERRLOG_ERROR = 4,
};

// "NONE", "DEBUG", "INFO", "WARNING", "ERROR"; any other level as its number.
std::string afcErrLogLevelName(unsigned level);

class AFCErrLogBackend;
class AFCErrLogEvent;
class AFCErrLogRepeatFilter;
class AFCErrLogStream;

class AFCErrLog {
 public:
  // Microseconds on a clock that never goes back; the repeat filter measures pauses with it.
  using Clock = std::function<int64_t()>;

  // The process-wide log. It starts with a standard-error backend, so that nothing reported
  // before the application adds its own backends is lost; it is never destroyed, so reports
  // from static destructors are safe.
  static AFCErrLog& instance();

  // A log of its own, without backends.
  AFCErrLog();
  ~AFCErrLog();
  AFCErrLog(const AFCErrLog&) = delete;
  AFCErrLog& operator=(const AFCErrLog&) = delete;

  // Stamps the report with the current local time.
  void report(unsigned level, std::string_view area, std::string_view sourceFile, int sourceLine,
              std::string_view message) noexcept;
  // An event that already carries its time (such as one forwarded from the server).
  void report(const AFCErrLogEvent& event) noexcept;
  // A text stream whose every line becomes one report.
  AFCErrLogStream stream(std::string_view area, unsigned level, std::string_view sourceFile = {},
                         int sourceLine = 0);

  void addBackend(std::shared_ptr<AFCErrLogBackend> backend);
  // False when the backend was not attached.
  bool removeBackend(const AFCErrLogBackend* backend);
  void removeAllBackends();
  std::vector<std::shared_ptr<AFCErrLogBackend>> getBackends() const;
  // Replaces the filter's clock (a monotonic clock by default).
  void setClock(Clock microseconds);

 private:
  void writeToBackends(const AFCErrLogEvent& event) noexcept;

  mutable std::mutex lock_;
  std::vector<std::shared_ptr<AFCErrLogBackend>> backends_;
  std::unique_ptr<AFCErrLogRepeatFilter> filter_;
  Clock clock_;
};

// Composes reports as text: everything written up to a newline is the message of one report
// for the stream's area, level and source position; text still pending when the stream ends is
// reported too. One stream belongs to one thread; take a new one per report.
//   AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC") << "connect failed, " << code << '\n';
class AFCErrLogStream : public std::ostream {
 public:
  AFCErrLogStream(AFCErrLog& log, std::string_view area, unsigned level,
                  std::string_view sourceFile = {}, int sourceLine = 0);
  ~AFCErrLogStream() override;
  AFCErrLogStream(const AFCErrLogStream&) = delete;
  AFCErrLogStream& operator=(const AFCErrLogStream&) = delete;

 private:
  class LineBuffer : public std::streambuf {
   public:
    LineBuffer(AFCErrLog& log, std::string_view area, unsigned level, std::string_view sourceFile,
               int sourceLine);
    // Reports the pending text, if any.
    void flushPending();

   protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;

   private:
    void reportLine();

    AFCErrLog& log_;
    std::string area_;
    unsigned level_;
    std::string sourceFile_;
    int sourceLine_;
    std::string line_;
  };
  LineBuffer buffer_;
};

// Reports one message from the calling source line.
#define AFC_REPORT(level, area, message) \
  AFCErrLog::instance().report((level), (area), __FILE__, __LINE__, (message))

// A report stream of the process-wide log for the calling source line.
#define AFC_ERRLOG_STREAM(level, area) \
  AFCErrLog::instance().stream((area), (level), __FILE__, __LINE__)

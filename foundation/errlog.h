#pragma once
// The process-wide error log: reports with a level, an area, a source position and a message,
// time-stamped, passed through the repeat filter and handed to every backend.
// Thread safe: the filter and the backends run under the log's own lock.
#include <string_view>

enum AFCErrLogLevel : unsigned {
  AFC_ERRLOG_NONE = 0,
  AFC_ERRLOG_DEBUG = 1,
  AFC_ERRLOG_INFO = 2,
  AFC_ERRLOG_WARNING = 3,
  AFC_ERRLOG_ERROR = 4,
};

class AFCErrLog {
public:
  static AFCErrLog& instance();
  void report(unsigned level, std::string_view area, std::string_view sourceFile, int sourceLine,
              std::string_view message);
};

// Reports one message from the calling source line.
#define AFC_REPORT(level, area, message) \
  AFCErrLog::instance().report((level), (area), __FILE__, __LINE__, (message))

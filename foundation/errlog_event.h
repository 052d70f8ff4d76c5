#pragma once
// One report of the error log, and its persisted form (the error-log entry the server sends).
#include <cstdint>
#include <string>

#include "foundation/date_time.h"
#include "foundation/errlog.h"
#include "foundation/persistent_stream.h"

// A plain value, not thread safe. An empty area or source file means unknown and reads as
// "-unknown-". Reading a persisted event throws the stream's exceptions, or
// AFCInvalidTimestampException for an unreadable time; the event is unchanged then.
class AFCErrLogEvent : public AFCPersistent {
  AFC_DECLARE_CLASS()
 public:
  AFCErrLogEvent() = default;
  AFCErrLogEvent(unsigned type, std::string area, const AFCTimestamp& time, std::string sourceFile,
                 int32_t sourceLine, std::string message);

  unsigned getType() const { return type_; }
  // The level name ("ERROR").
  std::string getTypeString() const { return afcErrLogLevelName(type_); }
  const std::string& getArea() const;
  bool hasArea() const { return !area_.empty(); }
  const AFCTimestamp& getTime() const { return time_; }
  // "%d.%m.%Y %H:%M:%S"
  // Whole seconds: "%d.%m.%Y %H:%M:%S".
  std::string getTimeString() const { return time_.format("%d.%m.%Y %H:%M:%S"); }
  const std::string& getSourceFileName() const;
  bool hasSourceFile() const { return !sourceFile_.empty(); }
  // 0 when unknown.
  int32_t getSourceLineNumber() const { return sourceLine_; }
  const std::string& getMessage() const { return message_; }
  void setMessage(std::string message) { message_ = std::move(message); }

  // Same level, area, source file, line and message; the time does not count.
  bool isSameReport(const AFCErrLogEvent& other) const;

  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  unsigned type_ = AFC_ERRLOG_NONE;
  std::string area_;
  AFCTimestamp time_;
  std::string sourceFile_;
  int32_t sourceLine_ = 0;
  std::string message_;
};

#pragma once
// Sinks of the error log. The log calls write() under its own lock, one event at a time; a
// backend needs a lock of its own only for what other threads do with it (reading the memory
// backend).
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

#include "foundation/date_time.h"
#include "foundation/errlog_event.h"
#include "foundation/errlog_layout.h"

class AFCErrLogBackend {
 public:
  virtual ~AFCErrLogBackend() = default;
  virtual void write(const AFCErrLogEvent& event) = 0;
};

// Writes the text form to a stream the caller keeps alive, flushed after every event. The time
// shows its date for events that are not on the day the backend was made.
class AFCErrLogBackendStream : public AFCErrLogBackend {
 public:
  explicit AFCErrLogBackendStream(std::ostream& out, AFCErrLogLayout layout = {});
  void write(const AFCErrLogEvent& event) override;

 private:
  std::ostream& out_;
  AFCErrLogLayout layout_;
  AFCDate openedOn_;
};

// Standard error (std::cerr). The letters of AFC_ERRLOG_STDERR, read once when the backend is
// made, switch parts of the text off: 'a' area, 't' time, 's' source.
class AFCErrLogBackendCerr : public AFCErrLogBackendStream {
 public:
  AFCErrLogBackendCerr();
};

// Keeps the events for later retrieval, mostly by tests. Thread safe.
class AFCErrLogBackendMemory : public AFCErrLogBackend {
 public:
  void write(const AFCErrLogEvent& event) override;
  std::vector<AFCErrLogEvent> events() const;
  // The messages of the events, in order.
  std::vector<std::string> messages() const;
  void clear();

 private:
  mutable std::mutex lock_;
  std::vector<AFCErrLogEvent> events_;
};

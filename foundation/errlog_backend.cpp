#include "foundation/errlog_backend.h"

#include <cstdlib>
#include <ctime>
#include <iostream>

namespace {
// Today in local time; the zero date when the platform cannot tell.
AFCDate today() {
  AFCDate date;
  try {
    date.setFromSystemTime(std::time(nullptr));
  } catch (const AFCDateTimeException&) {
  }
  return date;
}

AFCErrLogLayout layoutFromEnvironment() {
  const char* letters = std::getenv("AFC_ERRLOG_STDERR");
  return AFCErrLogLayout::withPartsOff(letters != nullptr ? letters : "");
}
}  // namespace

AFCErrLogBackendStream::AFCErrLogBackendStream(std::ostream& out, AFCErrLogLayout layout)
    : out_(out), layout_(layout), openedOn_(today()) {}

void AFCErrLogBackendStream::write(const AFCErrLogEvent& event) {
  std::string text;
  layout_.format(text, event, openedOn_);
  out_.write(text.data(), static_cast<std::streamsize>(text.size()));
  out_.flush();
}

AFCErrLogBackendCerr::AFCErrLogBackendCerr()
    : AFCErrLogBackendStream(std::cerr, layoutFromEnvironment()) {}

void AFCErrLogBackendMemory::write(const AFCErrLogEvent& event) {
  std::lock_guard guard(lock_);
  events_.push_back(event);
}

std::vector<AFCErrLogEvent> AFCErrLogBackendMemory::events() const {
  std::lock_guard guard(lock_);
  return events_;
}

std::vector<std::string> AFCErrLogBackendMemory::messages() const {
  std::lock_guard guard(lock_);
  std::vector<std::string> messages;
  messages.reserve(events_.size());
  for (const AFCErrLogEvent& event : events_) messages.push_back(event.getMessage());
  return messages;
}

void AFCErrLogBackendMemory::clear() {
  std::lock_guard guard(lock_);
  events_.clear();
}

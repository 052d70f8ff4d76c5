#include "foundation/errlog.h"

#include <algorithm>
#include <chrono>

#include "foundation/errlog_backend.h"
#include "foundation/errlog_event.h"
#include "foundation/errlog_filter.h"

namespace {
int64_t monotonicMicros() {
  using namespace std::chrono;
  return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}
}  // namespace

std::string afcErrLogLevelName(unsigned level) {
  static const char* const kNames[] = {"NONE", "DEBUG", "INFO", "WARNING", "ERROR"};
  return level < std::size(kNames) ? kNames[level] : std::to_string(level);
}

AFCErrLog& AFCErrLog::instance() {
  static AFCErrLog* const log = [] {
    auto* created = new AFCErrLog();
    created->addBackend(std::make_shared<AFCErrLogBackendCerr>());
    return created;
  }();
  return *log;
}

AFCErrLog::AFCErrLog()
    : filter_(std::make_unique<AFCErrLogRepeatFilter>()), clock_(monotonicMicros) {}

AFCErrLog::~AFCErrLog() = default;

void AFCErrLog::report(unsigned level, std::string_view area, std::string_view sourceFile,
                       int sourceLine, std::string_view message) noexcept {
  try {
    report(AFCErrLogEvent(level, std::string(area), AFCTimestamp::now(), std::string(sourceFile),
                          sourceLine, std::string(message)));
  } catch (...) {
    // Out of memory or no local time: the report is lost, the caller goes on.
  }
}

void AFCErrLog::report(const AFCErrLogEvent& event) noexcept {
  try {
    std::lock_guard guard(lock_);
    switch (filter_->check(event, clock_())) {
      case AFCErrLogRepeatFilter::Verdict::Drop:
        return;
      case AFCErrLogRepeatFilter::Verdict::NoticeThenPass: {
        AFCErrLogEvent notice = event;
        notice.setMessage(AFCErrLogRepeatFilter::kNotice);
        writeToBackends(notice);
        break;
      }
      case AFCErrLogRepeatFilter::Verdict::Pass:
        break;
    }
    writeToBackends(event);
  } catch (...) {
    // Out of memory or a failing clock: the report is lost, the caller goes on.
  }
}

void AFCErrLog::writeToBackends(const AFCErrLogEvent& event) noexcept {
  for (const auto& backend : backends_) {
    try {
      backend->write(event);
    } catch (...) {
      // One failing backend must not keep the event from the others.
    }
  }
}

AFCErrLogStream AFCErrLog::stream(std::string_view area, unsigned level,
                                  std::string_view sourceFile, int sourceLine) {
  return AFCErrLogStream(*this, area, level, sourceFile, sourceLine);
}

void AFCErrLog::addBackend(std::shared_ptr<AFCErrLogBackend> backend) {
  std::lock_guard guard(lock_);
  backends_.push_back(std::move(backend));
}

bool AFCErrLog::removeBackend(const AFCErrLogBackend* backend) {
  std::lock_guard guard(lock_);
  const auto found = std::find_if(backends_.begin(), backends_.end(),
                                  [&](const auto& attached) { return attached.get() == backend; });
  if (found == backends_.end()) return false;
  backends_.erase(found);
  return true;
}

void AFCErrLog::removeAllBackends() {
  std::lock_guard guard(lock_);
  backends_.clear();
}

std::vector<std::shared_ptr<AFCErrLogBackend>> AFCErrLog::getBackends() const {
  std::lock_guard guard(lock_);
  return backends_;
}

void AFCErrLog::setClock(Clock microseconds) {
  std::lock_guard guard(lock_);
  clock_ = std::move(microseconds);
}

AFCErrLogStream::AFCErrLogStream(AFCErrLog& log, std::string_view area, unsigned level,
                                 std::string_view sourceFile, int sourceLine)
    : std::ostream(nullptr), buffer_(log, area, level, sourceFile, sourceLine) {
  rdbuf(&buffer_);
}

AFCErrLogStream::~AFCErrLogStream() { buffer_.flushPending(); }

AFCErrLogStream::LineBuffer::LineBuffer(AFCErrLog& log, std::string_view area, unsigned level,
                                        std::string_view sourceFile, int sourceLine)
    : log_(log), area_(area), level_(level), sourceFile_(sourceFile), sourceLine_(sourceLine) {}

void AFCErrLogStream::LineBuffer::flushPending() {
  if (!line_.empty()) reportLine();
}

AFCErrLogStream::LineBuffer::int_type AFCErrLogStream::LineBuffer::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char character = traits_type::to_char_type(c);
  if (character == '\n') {
    reportLine();
  } else {
    line_ += character;
  }
  return c;
}

std::streamsize AFCErrLogStream::LineBuffer::xsputn(const char* text, std::streamsize count) {
  std::string_view rest(text, static_cast<std::size_t>(count));
  for (std::size_t newline; (newline = rest.find('\n')) != std::string_view::npos;) {
    line_ += rest.substr(0, newline);
    reportLine();
    rest.remove_prefix(newline + 1);
  }
  line_ += rest;
  return count;
}

void AFCErrLogStream::LineBuffer::reportLine() {
  log_.report(level_, area_, sourceFile_, sourceLine_, line_);
  line_.clear();
}

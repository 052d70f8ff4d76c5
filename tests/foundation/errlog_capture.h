#pragma once
// Captures what the process-wide error log receives while it lives, then gives the log its
// backends back. One at a time.
#include <memory>
#include <string>
#include <vector>

#include "foundation/errlog.h"
#include "foundation/errlog_backend.h"

class CapturedErrLog {
 public:
  CapturedErrLog() : saved_(AFCErrLog::instance().getBackends()) {
    AFCErrLog::instance().removeAllBackends();
    AFCErrLog::instance().addBackend(memory_);
  }
  ~CapturedErrLog() {
    AFCErrLog::instance().removeAllBackends();
    for (const auto& backend : saved_) AFCErrLog::instance().addBackend(backend);
  }
  CapturedErrLog(const CapturedErrLog&) = delete;
  CapturedErrLog& operator=(const CapturedErrLog&) = delete;

  std::vector<std::string> messages() const { return memory_->messages(); }

 private:
  std::vector<std::shared_ptr<AFCErrLogBackend>> saved_;
  std::shared_ptr<AFCErrLogBackendMemory> memory_ = std::make_shared<AFCErrLogBackendMemory>();
};

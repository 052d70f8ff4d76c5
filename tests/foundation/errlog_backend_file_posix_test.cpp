#include <gtest/gtest.h>
#include <stdlib.h>

#include <optional>

#include "foundation/errlog_backend_file.h"

namespace {
// Sets or unsets one environment variable for the lifetime of the object.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* old = getenv(name)) saved_ = old;
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
  }
  ~ScopedVariable() { saved_ ? setenv(name_, saved_->c_str(), 1) : unsetenv(name_); }

 private:
  const char* name_;
  std::optional<std::string> saved_;
};
}  // namespace

TEST(ErrLogBackendFile, LogDirectoryVariableComesFirst) {
  ScopedVariable logDir("AFC_LOGDIR", "/srv/logs");
  ScopedVariable state("XDG_STATE_HOME", "/state");
  EXPECT_EQ(AFCErrLogBackendFile::defaultDirectory(), "/srv/logs");
}

TEST(ErrLogBackendFile, WithoutLogDirectoryUsesTheStateDirectory) {
  ScopedVariable logDir("AFC_LOGDIR", nullptr);
  ScopedVariable state("XDG_STATE_HOME", "/state");
  EXPECT_EQ(AFCErrLogBackendFile::defaultDirectory(), "/state/vx/log");
}

TEST(ErrLogBackendFile, WithoutStateDirectoryUsesTheOneInHome) {
  ScopedVariable logDir("AFC_LOGDIR", "");
  ScopedVariable state("XDG_STATE_HOME", nullptr);
  ScopedVariable home("HOME", "/home/op");
  EXPECT_EQ(AFCErrLogBackendFile::defaultDirectory(), "/home/op/.local/state/vx/log");
}

TEST(ErrLogBackendFile, NamesTheFileAfterTheProgram) {
  EXPECT_EQ(AFCErrLogBackendFile::programName(), "foundation_tests");
}

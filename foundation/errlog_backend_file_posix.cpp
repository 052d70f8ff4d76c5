#include <unistd.h>

#include <cstdlib>

#include "foundation/errlog_backend_file.h"

std::filesystem::path AFCErrLogBackendFile::platformDirectory() {
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state != '\0') return std::filesystem::path(state) / "vx" / "log";
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') {
    return std::filesystem::path(home) / ".local" / "state" / "vx" / "log";
  }
  std::error_code error;
  return std::filesystem::temp_directory_path(error) / "vx" / "log";
}

std::string AFCErrLogBackendFile::programName() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string("afc") : program.stem().string();
}

int AFCErrLogBackendFile::processId() { return static_cast<int>(getpid()); }

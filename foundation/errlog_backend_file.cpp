#include "foundation/errlog_backend_file.h"

#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <system_error>

namespace {
void reportOpenFailure(const std::string& reason) {
  std::cerr << "Can't open error log output, " << reason << '\n';
}
}  // namespace

AFCErrLogBackendFile::AFCErrLogBackendFile()
    : AFCErrLogBackendFile(defaultDirectory(), programName()) {}

AFCErrLogBackendFile::AFCErrLogBackendFile(const std::filesystem::path& directory,
                                           std::string_view programName)
    : path_(directory / (std::string(programName) + ".txt")) {
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (error) {
    reportOpenFailure(directory.string() + ": " + error.message());
    return;
  }
  moveOldFileAside(directory, programName);
  open(programName);
}

std::filesystem::path AFCErrLogBackendFile::defaultDirectory() {
  const char* directory = std::getenv("AFC_LOGDIR");
  if (directory != nullptr && *directory != '\0') return directory;
  return platformDirectory();
}

void AFCErrLogBackendFile::moveOldFileAside(const std::filesystem::path& directory,
                                            std::string_view programName) {
  std::error_code error;
  if (!std::filesystem::exists(path_, error)) return;
  const std::filesystem::path old = directory / (std::string(programName) + ".old.txt");
  std::filesystem::rename(path_, old, error);
  if (error) std::cerr << "Can't rename old log file to " << old.string() << '\n';
}

// Appending keeps the old file's contents when it could not be moved aside.
void AFCErrLogBackendFile::open(std::string_view programName) {
  errno = 0;
  file_.open(path_, std::ios::out | std::ios::app);
  if (!file_.is_open()) {
    const int cause = errno != 0 ? errno : EACCES;
    reportOpenFailure(path_.string() + ": " + std::generic_category().message(cause));
    return;
  }
  const AFCTimestamp start = AFCTimestamp::now();
  openedOn_ = start.getDate();
  file_ << "---------- START " << start.toString() << " (pid " << processId() << ") ("
        << programName << ")  ---------\n";
  file_.flush();
}

void AFCErrLogBackendFile::write(const AFCErrLogEvent& event) {
  if (!file_.is_open()) return;
  std::string text;
  layout_.format(text, event, openedOn_);
  file_.write(text.data(), static_cast<std::streamsize>(text.size()));
  file_.flush();
}

#pragma once
// The error-log file of a run: <directory>/<program>.txt, begun with a START header line. The
// file of an earlier run is moved aside to <program>.old.txt first.
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "foundation/date_time.h"
#include "foundation/errlog_backend.h"

// When the file cannot be opened the backend says why on standard error and stays inactive:
// write() then does nothing. Not locked: the
// log calls write() under its own lock.
class AFCErrLogBackendFile : public AFCErrLogBackend {
 public:
  // In defaultDirectory(), named after the running program.
  AFCErrLogBackendFile();
  // The directory is created when missing.
  AFCErrLogBackendFile(const std::filesystem::path& directory, std::string_view programName);

  void write(const AFCErrLogEvent& event) override;
  bool isActive() const { return file_.is_open(); }
  const std::filesystem::path& getPath() const { return path_; }

  // AFC_LOGDIR when set, else the platform's place for logs.
  static std::filesystem::path defaultDirectory();
  // The running program's file name without directory and extension.
  static std::string programName();
  static int processId();

 private:
  // The platform's place for logs (see defaultDirectory()).
  static std::filesystem::path platformDirectory();
  void moveOldFileAside(const std::filesystem::path& directory, std::string_view programName);
  void open(std::string_view programName);

  std::filesystem::path path_;
  std::ofstream file_;
  AFCErrLogLayout layout_;
  AFCDate openedOn_;
};

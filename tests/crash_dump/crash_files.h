#pragma once
// The crash files a test program leaves beside itself, the names a crash between two moments
// may give them, the "ORUDUMP" switch, and a fault on demand.
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "foundation/crash_dump.h"

// Out of the optimizer's sight, so the read really happens and faults.
[[gnu::noipa]] inline int readAt(std::uintptr_t address) {
  return *reinterpret_cast<volatile int*>(address);
}

inline void setOrudump(const char* value) {
#ifdef _WIN32
  _putenv_s("ORUDUMP", value != nullptr ? value : "");
#else
  if (value != nullptr) {
    setenv("ORUDUMP", value, 1);
  } else {
    unsetenv("ORUDUMP");
  }
#endif
}

// Every "<program>_crash_*<extension>" beside program.
inline std::vector<std::filesystem::path> crashFiles(const std::filesystem::path& program,
                                                     const std::string& extension) {
  const std::string prefix = program.stem().string() + "_crash_";
  std::vector<std::filesystem::path> found;
  for (const auto& entry : std::filesystem::directory_iterator(program.parent_path())) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(prefix) && name.ends_with(extension)) found.push_back(entry.path());
  }
  return found;
}

inline void removeCrashFiles(const std::filesystem::path& program, const std::string& extension) {
  for (const auto& file : crashFiles(program, extension)) std::filesystem::remove(file);
}

// The file name a crash at from or at to would have (the minute may turn in between).
inline std::vector<std::string> crashFileNames(const std::filesystem::path& program,
                                               std::time_t from, std::time_t to,
                                               const char* extension) {
  std::vector<std::string> names;
  for (const std::time_t moment : {from, to}) {
    char name[1024];
    AFCCrashDump::fileName(name, sizeof name, program.filename().string().c_str(),
                           *std::localtime(&moment), extension);
    names.push_back(name);
  }
  return names;
}

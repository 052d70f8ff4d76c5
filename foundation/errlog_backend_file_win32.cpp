#include <windows.h>

#include "foundation/errlog_backend_file.h"

std::filesystem::path AFCErrLogBackendFile::platformDirectory() { return "C:\\Log\\Oru"; }

std::string AFCErrLogBackendFile::programName() {
  char name[MAX_PATH];
  const DWORD length = GetModuleFileNameA(nullptr, name, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return "afc";
  return std::filesystem::path(std::string(name, length)).stem().string();
}

int AFCErrLogBackendFile::processId() { return static_cast<int>(GetCurrentProcessId()); }

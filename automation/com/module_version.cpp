#include "automation/com/module_version.h"

#include <windows.h>

#include <cstring>
#include <vector>

#include "automation/com/com_module.h"
#include "automation/com/error_boundary.h"

namespace {
// The resource's fixed part. VerQueryValue wants a writable copy of the resource.
VS_FIXEDFILEINFO fixedVersionInfo() {
  const HMODULE module = CModule::handle();
  HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16));
  HGLOBAL loaded = found != nullptr ? LoadResource(module, found) : nullptr;
  const void* bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
  if (bytes == nullptr) throw CFailedCall{E_FAIL};
  std::vector<char> copy(SizeofResource(module, found));
  std::memcpy(copy.data(), bytes, copy.size());
  void* fixed = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(copy.data(), L"\\", &fixed, &length) || length < sizeof(VS_FIXEDFILEINFO)) {
    throw CFailedCall{E_FAIL};
  }
  return *static_cast<const VS_FIXEDFILEINFO*>(fixed);
}
}  // namespace

std::string moduleVersionText() {
  const VS_FIXEDFILEINFO info = fixedVersionInfo();
  std::string text = std::to_string(HIWORD(info.dwProductVersionMS)) + "." +
                     std::to_string(LOWORD(info.dwProductVersionMS)) + "." +
                     std::to_string(HIWORD(info.dwProductVersionLS));
  if (LOWORD(info.dwProductVersionLS) != 0) {
    text += "." + std::to_string(LOWORD(info.dwProductVersionLS));
  }
  return text;
}

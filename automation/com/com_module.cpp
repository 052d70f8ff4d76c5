#include "automation/com/com_module.h"

#include <atomic>

namespace {
std::atomic<HMODULE> moduleHandle{nullptr};
std::atomic<long> locks{0};
}  // namespace

void CModule::setHandle(HMODULE module) noexcept { moduleHandle = module; }

HMODULE CModule::handle() noexcept {
  const HMODULE module = moduleHandle;
  return module != nullptr ? module : GetModuleHandleW(nullptr);
}

std::wstring CModule::path() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(handle(), path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

void CModule::lock() noexcept { ++locks; }

void CModule::unlock() noexcept { --locks; }

long CModule::lockCount() noexcept { return locks; }

HRESULT CModule::canUnloadNow() noexcept { return lockCount() == 0 ? S_OK : S_FALSE; }

void CModule::pin() noexcept {
  HMODULE pinned = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(&CModule::pin), &pinned);
}

// Text conversions of the script host (host_text.h).
#include "tests/windows/script_host/host_text.h"

#include "automation/com/com_handles.h"

std::wstring wideFromUtf8(std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

std::string utf8FromWide(std::wstring_view text) {
  const int size = static_cast<int>(text.size());
  std::string bytes(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), static_cast<int>(bytes.size()),
                      nullptr, nullptr);
  return bytes;
}

std::string utf8Of(const VARIANT& value) {
  CUniqueVariant direct, text;
  if (FAILED(VariantCopyInd(direct.put(), const_cast<VARIANT*>(&value))) ||
      FAILED(VariantChangeTypeEx(text.put(), &direct.get(), LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL,
                                 VT_BSTR))) {
    return {};
  }
  return utf8FromWide(std::wstring_view(text.get().bstrVal, SysStringLen(text.get().bstrVal)));
}

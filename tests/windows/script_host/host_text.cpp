// Text conversions of the script host (host_text.h).
#include "tests/windows/script_host/host_text.h"

#include "automation/com/com_handles.h"

std::wstring wideFromBytes(std::string_view text, UINT codePage) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0), L'\0');
  MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

std::string bytesFromWide(std::wstring_view text, UINT codePage) {
  const int size = static_cast<int>(text.size());
  std::string bytes(
      WideCharToMultiByte(codePage, 0, text.data(), size, nullptr, 0, nullptr, nullptr), '\0');
  WideCharToMultiByte(codePage, 0, text.data(), size, bytes.data(), static_cast<int>(bytes.size()),
                      nullptr, nullptr);
  return bytes;
}

std::string bytesOf(const VARIANT& value, UINT codePage) {
  CUniqueVariant direct, text;
  if (FAILED(VariantCopyInd(direct.put(), const_cast<VARIANT*>(&value))) ||
      FAILED(VariantChangeTypeEx(text.put(), &direct.get(), LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL,
                                 VT_BSTR))) {
    return {};
  }
  return bytesFromWide(std::wstring_view(text.get().bstrVal, SysStringLen(text.get().bstrVal)),
                       codePage);
}

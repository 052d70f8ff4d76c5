#include "automation/com/bstr_text.h"

#include <new>

#include "foundation/charset.h"

// BSTR is UTF-16 on Windows: wchar_t and char16_t share size and representation there.
static_assert(sizeof(OLECHAR) == sizeof(char16_t));

std::u16string u16FromBstr(BSTR text) {
  if (text == nullptr) return {};
  return std::u16string(reinterpret_cast<const char16_t*>(text), SysStringLen(text));
}

std::string stringFromBstr(BSTR text) {
  if (text == nullptr) return {};
  const std::u16string_view units(reinterpret_cast<const char16_t*>(text), SysStringLen(text));
  return AFCCharset::fromUtf16(AFC_CHARSET_DEFAULT, units);
}

CUniqueBstr bstrFromU16(std::u16string_view text) {
  CUniqueBstr out(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                    static_cast<UINT>(text.size())));
  if (!out.valid()) throw std::bad_alloc();
  return out;
}

CUniqueBstr bstrFromString(std::string_view text) {
  return bstrFromU16(AFCCharset::toUtf16(AFC_CHARSET_DEFAULT, text));
}

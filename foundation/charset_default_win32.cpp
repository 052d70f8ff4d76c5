#include <windows.h>

#include "foundation/charset.h"

// The process ANSI code page when we have its table; 1252 for every other code page.
uint32_t AFCCharset::defaultId() {
  switch (GetACP()) {
    case 1250:
      return AFC_CHARSET_CP1250;
    case 1251:
      return AFC_CHARSET_CP1251;
    default:
      return AFC_CHARSET_CP1252;
  }
}

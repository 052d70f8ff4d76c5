#include <windows.h>

#include "foundation/charset.h"

// The process ANSI code page when there is a table for it, else Windows-1252.
uint32_t AFCCharset::defaultId() {
  static const uint32_t id = [] {
    switch (GetACP()) {
      case 1250: return uint32_t{AFC_CHARSET_CP1250};
      case 1251: return uint32_t{AFC_CHARSET_CP1251};
      default: return uint32_t{AFC_CHARSET_CP1252};
    }
  }();
  return id;
}

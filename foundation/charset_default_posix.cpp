#include "foundation/charset.h"

// POSIX text is UTF-8.
uint32_t AFCCharset::defaultId() { return AFC_CHARSET_UTF8; }

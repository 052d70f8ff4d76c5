#include "foundation/charset.h"

// UTF-8 whatever the locale says, so that every POSIX process reads and writes text alike.
uint32_t AFCCharset::defaultId() { return AFC_CHARSET_UTF8; }

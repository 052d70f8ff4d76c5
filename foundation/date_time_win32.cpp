#include <time.h>

#include "foundation/date_time.h"

bool afcLocalTime(std::time_t seconds, std::tm& out) { return localtime_s(&out, &seconds) == 0; }

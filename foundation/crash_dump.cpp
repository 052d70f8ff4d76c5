#include "foundation/crash_dump.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "foundation/crash_text.h"

namespace {
// Where the program's path stops being its name: at the dot of the last component's extension.
const char* withoutExtension(const char* path) {
  const char* end = path + std::strlen(path);
  for (const char* at = end; at != path; --at) {
    const char c = at[-1];
    if (c == '/' || c == '\\') break;
    if (c == '.') return at - 1;
  }
  return end;
}

thread_local int translationDepth = 0;
}  // namespace

int AFCCrashDump::requestedKind() {
  const char* value = std::getenv("ORUDUMP");
  if (value == nullptr) return 0;
  constexpr int kLongest = 31;
  int at = 0;
  while (at < kLongest && (value[at] == ' ' || value[at] == '\t')) ++at;
  const bool negative = at < kLongest && value[at] == '-';
  if (at < kLongest && (value[at] == '-' || value[at] == '+')) ++at;
  // Held at INT_MAX, so that no string of digits wraps around to 0.
  long long kind = 0;
  for (; at < kLongest && value[at] >= '0' && value[at] <= '9'; ++at) {
    kind = std::min<long long>(kind * 10 + (value[at] - '0'), INT_MAX);
  }
  return static_cast<int>(negative ? -kind : kind);
}

void AFCCrashDump::fileName(char* out, std::size_t size, const char* programPath,
                            const std::tm& local, const char* extension) {
  AFCCrashText name(out, size);
  name.text(programPath, withoutExtension(programPath));
  name.text("_crash_");
  name.number(local.tm_mday);
  name.text("_");
  name.number(local.tm_mon + 1);
  name.text("_");
  name.number(local.tm_hour);
  name.text("_");
  name.number(local.tm_min, 2);
  name.text(extension);
}

AFCCrashDump::Translation::Translation() { ++translationDepth; }
AFCCrashDump::Translation::~Translation() { --translationDepth; }
bool AFCCrashDump::translating() { return translationDepth > 0; }

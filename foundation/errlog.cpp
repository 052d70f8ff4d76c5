#include "foundation/errlog.h"

#include <cstdio>
#include <string>

AFCErrLog& AFCErrLog::instance() {
  static AFCErrLog log;
  return log;
}

void AFCErrLog::report(unsigned level, std::string_view area, std::string_view sourceFile,
                       int sourceLine, std::string_view message) {
  std::string line(area);
  line += ": ";
  line += message;
  line += '\n';
  std::fputs(line.c_str(), stderr);
}

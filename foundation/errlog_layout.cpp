#include "foundation/errlog_layout.h"

#include "foundation/errlog_event.h"

namespace {
// Seven characters each, so that the messages line up.
const char* levelTag(unsigned level) {
  switch (level) {
    case AFC_ERRLOG_DEBUG:
      return "DEBUG: ";
    case AFC_ERRLOG_INFO:
      return "INFO:  ";
    case AFC_ERRLOG_WARNING:
      return "WARN:  ";
    default:
      return "ERROR: ";
  }
}

bool isOnDate(const AFCTimestamp& time, const AFCDate& date) {
  return time.getDay() == date.getDay() && time.getMonth() == date.getMonth() &&
         time.getYear() == date.getYear();
}
}  // namespace

AFCErrLogLayout AFCErrLogLayout::withPartsOff(std::string_view letters) {
  AFCErrLogLayout layout;
  for (char letter : letters) {
    switch (letter) {
      case 'a':
      case 'A':
        layout.showArea = false;
        break;
      case 't':
      case 'T':
        layout.showTime = false;
        break;
      case 's':
      case 'S':
        layout.showSource = false;
        break;
      default:
        break;
    }
  }
  return layout;
}

void AFCErrLogLayout::format(std::string& out, const AFCErrLogEvent& event,
                             const AFCDate& openedOn) const {
  out += levelTag(event.getType());
  if (showArea && event.hasArea()) {
    out += event.getArea();
    out += ' ';
  }
  if (showTime) {
    const AFCTimestamp& time = event.getTime();
    out += time.format(isOnDate(time, openedOn) ? "(%H:%M:%S)" : "(%d.%m.%Y %H:%M:%S)");
  }
  if (showSource && event.hasSourceFile()) {
    out += " \"";
    out += event.getSourceFileName();
    out += '"';
    if (event.getSourceLineNumber() != 0)
      out += ", line " + std::to_string(event.getSourceLineNumber());
  }
  out += "\n ";
  out += event.getMessage();
  out += '\n';
}

#pragma once
// The text form of an error-log event, shared by the text backends:
//   ERROR: libAFC (10:15:02) "socket.cpp", line 12
//    connect failed, 10061
#include <string>
#include <string_view>

#include "foundation/date_time.h"

class AFCErrLogEvent;

// Which optional parts of the text are shown; all of them by default.
struct AFCErrLogLayout {
  bool showArea = true;
  bool showTime = true;
  bool showSource = true;

  // Every part on except those named by a letter: 'a' the area, 't' the time, 's' the source
  // file and line; case-insensitive, other letters are ignored.
  static AFCErrLogLayout withPartsOff(std::string_view letters);

  // Appends the text of the event. The time shows its date only when the event is not on
  // openedOn, the day the output was opened.
  void format(std::string& out, const AFCErrLogEvent& event, const AFCDate& openedOn) const;
};

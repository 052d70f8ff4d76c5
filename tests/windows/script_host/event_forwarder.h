#pragma once
// Events of an object's connection points handed to script procedures by name: for a source
// named "tm", an event "onCommand" calls the script's procedure "tm_onCommand" with the event's
// arguments; a script without that procedure does not hear the event. The event's name comes
// from the event interface's type info, which the source's own type library holds.
//
// EventForwarding advises every connection point of the source on construction and unadvises
// them when it goes. Threads: the script's thread; events arrive on it too (the source fires them
// from inside calls the script makes). A failing procedure is reported to the engine; the
// constructor throws std::runtime_error when the source has no connection points or no type
// information for them.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <ocidl.h>

#include <string>
#include <utility>
#include <vector>

#include "automation/com/com_handles.h"
#include "tests/windows/script_host/script_engine.h"

class EventForwarding {
 public:
  EventForwarding(ScriptEngine& engine, const std::wstring& sourceName, IDispatch* source);
  EventForwarding(const EventForwarding&) = delete;
  EventForwarding& operator=(const EventForwarding&) = delete;

 private:
  // One advised sink, unadvised when this goes.
  struct Connection {
    Connection(CUniqueRef<IConnectionPoint> advised, DWORD given)
        : point(std::move(advised)), cookie(given) {}
    Connection(Connection&&) noexcept = default;
    ~Connection() {
      if (point.valid()) point.get()->Unadvise(cookie);
    }
    CUniqueRef<IConnectionPoint> point;
    DWORD cookie;
  };
  std::vector<Connection> connections_;
};

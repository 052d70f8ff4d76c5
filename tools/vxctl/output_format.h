#pragma once
// What vxctl prints: values and the asynchronous events of a watch, for people (one line each,
// "TIME KIND key=value ...") and for programs (JSON, one object a line).
//
// Functions and plain values only, no state, nothing throws except allocation.
#include <chrono>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "commands/zone_state.h"
#include "foundation/attribute.h"
#include "foundation/errlog_event.h"

using VXCtlJson = nlohmann::ordered_json;
using VXCtlClock = std::chrono::system_clock;

// One asynchronous event as received, stamped with the local receive time.
struct VXCtlEvent {
  VXCtlClock::time_point time;
  std::string kind;  // "errlog", "zone", "message", "pick", "callback", "disconnect"
  VXCtlJson fields = VXCtlJson::object();
};

// "2026-11-23T19:54:18.123Z": UTC, milliseconds.
std::string vxctlTimeText(VXCtlClock::time_point time);

// The value for JSON: numbers, bools, strings, arrays of numbers (null for undefined channels);
// null for no value or an undefined one; other kinds as their text.
VXCtlJson vxctlValueJson(const AFCAttribute* value);

// "key=value" joined by blanks; texts quoted (with escapes) when empty or holding blanks,
// quotes or '='.
std::string vxctlHumanFields(const VXCtlJson& fields);

std::string vxctlEventLine(const VXCtlEvent& event);
std::string vxctlEventJson(const VXCtlEvent& event);

// Events from what the listeners receive. A zone record gives one event per zone, by name.
VXCtlEvent vxctlErrLogEvent(VXCtlClock::time_point time, const AFCErrLogEvent& entry);
std::vector<VXCtlEvent> vxctlZoneEvents(VXCtlClock::time_point time, const VXZonesState& zones);
VXCtlEvent vxctlSimpleEvent(VXCtlClock::time_point time, std::string kind, std::string key,
                            VXCtlJson value);
